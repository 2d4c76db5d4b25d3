// ISO-2022-JP to and from code page 932.
#include "encoding/codecs/escape_sequence.h"
#include "encoding/codecs/jis_plane.h"
#include "encoding/codecs/pair_runs.h"

namespace {

// CodecState::set.
enum Set : std::uint8_t {
  kAscii,     // ESC ( B; reading takes JIS X 0201 Roman (ESC ( J) for the same
  kKatakana,  // ESC ( I, half-width
  kJis0208,   // ESC $ @ and ESC $ B
  kJis0212,   // ESC $ ( D, only read: nothing in it has a Shift_JIS form
  // Where unknown designations are malformed: of the text in these sets nothing can be read.
  kUnknown94,     // ESC ( and any other
  kUnknown94x94,  // ESC $ and any other
};

bool isState(const void*, const CodecState& state, bool isWriting) {
  const bool isOfWriter = state.set <= kJis0208 && !state.shiftedOut;
  return (isWriting ? isOfWriter : state.set <= kUnknown94x94) &&
         hasOnly(state, {.set = state.set, .shiftedOut = state.shiftedOut});
}

// ---- Codes outside the plane: IBM's extension, and NEC's selection of it in rows 89 to 92. ----

// From trail byte `first` of lead FA on, count codes are the JIS positions from `row`, `cell` (as
// bytes) on. Roman numerals and five signs repeat characters of NEC row 13 and of row 2 and go
// there.
struct IbmRange {
  std::uint8_t first, count;
  std::uint8_t row, cell;
};
constexpr IbmRange kIbmRanges[] = {
    {0x40, 10, 0x7C, 0x71},  // small roman numerals
    {0x4A, 10, 0x2D, 0x35},  // roman numerals
    {0x54, 1, 0x22, 0x4C},   // not sign
    {0x55, 3, 0x7C, 0x7C},   // broken bar, full-width apostrophe and quotation mark
    {0x58, 1, 0x2D, 0x6A},   // parenthesized stock
    {0x59, 1, 0x2D, 0x62},   // numero sign
    {0x5A, 1, 0x2D, 0x64},   // telephone sign
    {0x5B, 1, 0x22, 0x68},   // because
};

// Trail bytes in their order, counted from 0.
constexpr unsigned int trailNumber(unsigned int trail) {
  return trail - (trail > 0x7F ? 0x41 : 0x40);
}
constexpr unsigned int kTrails = 188;
constexpr unsigned int kKanji = 360;  // FA5C to FC4B, which begin the last block

// Position in rows 89 to 92, counted from 0, to JIS bytes.
constexpr CodeBytes jisOfLastBlock(unsigned int position) {
  return {static_cast<std::uint8_t>(kLastBlockFirst + position / 94),
          static_cast<std::uint8_t>(0x21 + position % 94)};
}

// The JIS bytes of a well-formed Shift_JIS code that is not in the plane; none when it has no
// place.
CodeBytes placeOutsidePlane(unsigned int lead, unsigned int trail) {
  // The NEC-selected characters stand in rows 89 to 92 by their codes already.
  if (lead == 0xED || lead == 0xEE) {
    const unsigned int position = (lead - 0xED) * kTrails + trailNumber(trail);
    return isEmptyInLastBlock(position) ? CodeBytes{} : jisOfLastBlock(position);
  }
  if (lead < 0xFA) return {};
  if (lead == 0xFA && trail < 0x5C) {
    for (const IbmRange& range : kIbmRanges) {
      if (trail < range.first || trail >= range.first + range.count) continue;
      return {range.row, static_cast<std::uint8_t>(range.cell + trail - range.first)};
    }
    return {};
  }
  const unsigned int position = (lead - 0xFA) * kTrails + trailNumber(trail) - trailNumber(0x5C);
  return position < kKanji ? jisOfLastBlock(position) : CodeBytes{};
}

// The Shift_JIS code of a position in rows 89 to 92; the same list as
// Japanese::GetSjisFrom2022_LastBlock.
CodeBytes shiftJisOfLastBlock(unsigned int position) {
  if (position < kKanji) {
    const unsigned int number = position + trailNumber(0x5C);
    const unsigned int trail = number % kTrails + 0x40;
    return {static_cast<std::uint8_t>(0xFA + number / kTrails),
            static_cast<std::uint8_t>(trail + (trail >= 0x7F ? 1 : 0))};
  }
  const CodeBytes jis = jisOfLastBlock(position);
  for (const IbmRange& range : kIbmRanges) {
    if (jis.first != range.row || jis.second < range.cell) continue;
    if (jis.second >= range.cell + range.count) continue;
    return {0xFA, static_cast<std::uint8_t>(range.first + jis.second - range.cell)};
  }
  // The not sign of JIS X 0208; and the middle dot where there is no character.
  return isEmptyInLastBlock(position) ? CodeBytes{0x81, 0x45} : CodeBytes{0x81, 0xCA};
}

// ---- Reading ----

struct Escape {
  std::string_view tail;
  Set set;
};
constexpr Escape kEscapes[] = {
    {"$B", kJis0208},  // the usual two first
    {"(B", kAscii},    {"(J", kAscii},
    {"(H", kAscii},  // a mistake for "(J" that old mail is full of
    {"(I", kKatakana}, {"$@", kJis0208},
    {"$(@", kJis0208},                          // the same in the long form
    {"$(B", kJis0208}, {"&@\x1B$B", kJis0208},  // with the announcement of the revision of 1990
    {"$(D", kJis0212},
};

// The usual turns of a text, for copyTurns.
struct ReadTurns : JisToShiftJis {
  static bool turn(const unsigned char*& p, unsigned char*&, bool& inPairs) {
    const unsigned char kind = inPairs ? '(' : '$';
    if (p[0] != kEscape || p[1] != kind || p[2] != 'B') return false;
    p += 3;
    inPairs = !inPairs;
    return true;
  }
};

// Every byte of the output belongs to a code of 932, whatever the input: a lead byte that got
// through on its own would take the next character with it when the text is decoded. So a code of
// JIS where 932 has none, and every byte above 7F that is not katakana, becomes the mark. A
// designation that is not known is copied; or malformed, isStrict, and so is the text in its set.
template <bool isStrict>
struct Reader : CodecRun {
  using CodecRun::CodecRun;

  bool step() {
    if (state.shiftedOut || state.set == kKatakana) {
      copyKatakana();
    } else if (state.set == kAscii || state.set == kJis0208) {
      const bool inPairs =
          copyTurns<ReadTurns, kEscape, kShiftOut, kShiftIn>(*this, state.set == kJis0208);
      state.set = inPairs ? kJis0208 : kAscii;
      if (inPairs) {
        if (!copyPairs<JisToShiftJis>(*this)) return true;
      } else {
        copyPlain<kEscape, kShiftOut, kShiftIn>(*this);
      }
    }
    return left() == 0 || room() < kMinRoom || readUnit();
  }
  void finish() {
    state.set = kAscii;
    state.shiftedOut = false;
  }

  void copyKatakana() {
    for (std::ptrdiff_t count = copyable(1); count > 0 && *p >= 0x21 && *p <= 0x5F; --count) {
      put(static_cast<unsigned char>(*p++ + 0x80));
    }
  }

  // What the loops above left: one unit of any kind.
  bool readUnit() {
    const unsigned char byte = *p;
    if (byte >= 0x80) return isHalfWidthKatakana(byte) ? pass(1) : geta(1);
    if (byte == kEscape) return readEscape();
    if (byte == kShiftOut || byte == kShiftIn) return readShift();
    if (byte == '\r' || byte == '\n') finish();  // whoever forgot to return has returned
    if (!isPlaneByte(byte) || (state.set == kAscii && !state.shiftedOut)) return pass(1);
    const bool isOneByte = state.set == kKatakana || state.set == kUnknown94;
    return state.shiftedOut || isOneByte ? geta(1) : readPair();
  }

  bool readPair() {
    if (left() < 2 && !last) return false;
    if (left() < 2 || !isPlaneByte(p[1])) return geta(1);  // half a pair: what follows it stays
    const bool isLastBlock = p[0] >= kLastBlockFirst && p[0] <= kLastBlockLast;
    if (state.set != kJis0208 || !isLastBlock) return geta(2);
    const unsigned int position = (p[0] - kLastBlockFirst) * 94 + p[1] - 0x21u;
    const CodeBytes code = shiftJisOfLastBlock(position);
    if (isEmptyInLastBlock(position)) return mark(2, code.first, code.second);
    put(code.first, code.second);
    p += 2;
    return true;
  }

  bool readEscape() {
    bool atEnd = false;
    for (const Escape& escape : kEscapes) {
      const EscapeMatch match = matchEscape(p + 1, end, escape.tail);
      if (match == EscapeMatch::kYes) {
        state.set = escape.set;
        state.shiftedOut = false;
        p += 1 + escape.tail.size();
        return true;
      }
      if (match == EscapeMatch::kMaybe) atEnd = true;
    }
    const unsigned int unknown = designationLength(p + 1, end, atEnd);
    if (atEnd && !last) return false;
    return isStrict && unknown != 0 ? refuseDesignation(1 + unknown) : pass(1 + unknown);
  }

  // What is designated as G1 and above is not in use.
  bool refuseDesignation(unsigned int length) {
    const bool isMultiple = p[1] == '$';
    if (isMultiple ? length == 3 || p[2] == '(' : p[1] == '(') {
      state.set = isMultiple ? kUnknown94x94 : kUnknown94;
      state.shiftedOut = false;
    }
    return geta(length);
  }

  // A shift that would change nothing, or for no character at all, is a control character of the
  // text and stays.
  bool readShift() {
    bool isShift = state.shiftedOut;
    if (*p == kShiftOut && !state.shiftedOut) {
      if (left() < 2 && !last) return false;
      isShift = left() >= 2 && p[1] != kShiftIn && p[1] != '\r' && p[1] != '\n';
    } else if (*p == kShiftOut) {
      isShift = false;
    }
    if (!isShift) return pass(1);
    state.shiftedOut = *p++ == kShiftOut;
    return true;
  }

  bool geta(unsigned int length) { return mark(length, 0x81, 0xAC); }
};

// ---- Writing ----

// The usual turns of a text, for copyTurns. What is neither ASCII nor katakana is written in pairs,
// marks included.
struct WriteTurns : ShiftJisToJis {
  static bool turn(const unsigned char*& p, unsigned char*& dest, bool& inPairs) {
    const bool isPlain = *p < 0x80;
    if (isPlain != inPairs || isHalfWidthKatakana(*p)) return false;
    if (isPlain && (*p == kEscape || *p == kShiftOut || *p == kShiftIn)) return false;
    dest[0] = kEscape;
    dest[1] = isPlain ? '(' : '$';
    dest[2] = 'B';
    dest += 3;
    inPairs = !inPairs;
    return true;
  }
};

struct Writer : CodecRun {
  using CodecRun::CodecRun;

  bool step() {
    if (state.set != kKatakana) {
      const bool inPairs =
          copyTurns<WriteTurns, kEscape, kShiftOut, kShiftIn>(*this, state.set == kJis0208);
      state.set = inPairs ? kJis0208 : kAscii;
    }
    return left() == 0 || room() < kMinRoom || writeUnit();
  }
  void finish() { enter(kAscii); }

  bool writeUnit() {
    const unsigned char byte = *p;
    if (byte < 0x80) {
      if (byte == kEscape || byte == kShiftOut) return writeControl();
      enter(kAscii);
      if (byte == kShiftIn) return pass(1);  // nothing ever shifts out, so it reads as itself
      copyPlain<kEscape, kShiftOut, kShiftIn>(*this);
      return true;
    }
    return isHalfWidthKatakana(byte) ? writeKatakana() : writePair();
  }

  // Line ends and all other controls are ASCII: the text returns there before each of them.
  void enter(Set set) {
    if (state.set == set) return;
    put(kEscape, set == kJis0208 ? '$' : '(');
    put(set == kKatakana ? 'I' : 'B');
    state.set = set;
  }

  bool writeKatakana() {
    enter(kKatakana);
    for (std::ptrdiff_t count = copyable(1); count > 0 && isHalfWidthKatakana(*p); --count) {
      put(static_cast<unsigned char>(*p++ - 0x80));
    }
    return true;
  }

  bool writePair() {
    if (!isShiftJisLead(*p)) return geta(1);
    if (left() < 2 && !last) return false;
    if (left() < 2 || !isShiftJisTrail(p[1])) return geta(1);  // half a pair, as in reading
    if (shiftJisAt(shiftJisIndex(p[0], p[1])).first != 0) {
      enter(kJis0208);
      copyPairs<ShiftJisToJis>(*this);
      return true;
    }
    const CodeBytes place = placeOutsidePlane(p[0], p[1]);
    if (place.first == 0) {
      // A user-defined code is a character that has no place. Any other is no code, and its second
      // byte may well be a letter on its own.
      const bool isUserDefined = p[0] >= 0xF0 && p[0] <= 0xF9;
      return geta(isUserDefined || p[1] >= 0x80 ? 2 : 1);
    }
    enter(kJis0208);
    put(place.first, place.second);
    p += 2;
    return true;
  }

  // An ESC or SO of the text stays as long as the reader of the result will take it for that.
  bool writeControl() {
    bool misread = false, atEnd = left() < 2;
    if (*p == kShiftOut) {
      misread = !atEnd && p[1] != kShiftIn && p[1] != '\r' && p[1] != '\n';
    } else {
      for (const Escape& escape : kEscapes) {
        const std::string_view tail = escape.tail.substr(0, escape.tail.find('\x1B'));
        const EscapeMatch match = matchEscape(p + 1, end, tail);
        misread = misread || match == EscapeMatch::kYes;
        atEnd = atEnd || match == EscapeMatch::kMaybe;
      }
    }
    if (!misread && atEnd && !last) return false;
    if (misread) return geta(1);
    enter(kAscii);
    return pass(1);
  }

  bool geta(unsigned int length) {
    enter(kJis0208);
    return mark(length, 0x22, 0x2E);
  }
};

}  // namespace

extern const Codec kIso2022JpCodec = {.codePage = 932,
                                      .read = runCodec<Reader<false>>,
                                      .write = runCodec<Writer>,
                                      .readStrictly = runCodec<Reader<true>>,
                                      .cut = cutIso2022Jp,
                                      .isState = isState};
