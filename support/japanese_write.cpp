#include "support/codec_run.h"
#include "support/escape_sequence.h"
#include "support/japanese.h"
#include "support/jis_plane.h"

namespace {

using Set = Iso2022JpState::Set;

// What reads as an escape sequence behind a lone ESC.
constexpr std::string_view kEscapeTails[] = {"(B", "(J",  "(H",  "(I",  "$@",
                                             "$B", "$(@", "$(B", "$(D", "&@"};

// IBM's extension as the codes FA40 to FC4B: from `first` on, count codes go to the JIS positions
// from `row`, `cell` (bytes) on. Roman numerals and five signs repeat characters of NEC row 13 and
// of row 2 and go there.
struct IbmRange {
  std::uint8_t first, count;  // trail bytes of lead FA
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

// The JIS bytes of a well-formed Shift_JIS code that is not in the plane; none when it has no
// place.
CodeBytes placeOutsidePlane(unsigned int lead, unsigned int trail) {
  // The NEC-selected characters stand in rows 89 to 92 by their codes already.
  if (lead == 0xED || lead == 0xEE) {
    const unsigned int position = (lead - 0xED) * kTrails + trailNumber(trail);
    if (isEmptyInLastBlock(position)) return {};
    return {static_cast<std::uint8_t>(kLastBlockFirst + position / 94),
            static_cast<std::uint8_t>(0x21 + position % 94)};
  }
  if (lead < 0xFA) return {};
  if (lead == 0xFA && trail < 0x5C) {
    for (const IbmRange& range : kIbmRanges) {
      if (trail < range.first || trail >= range.first + range.count) continue;
      return {range.row, static_cast<std::uint8_t>(range.cell + trail - range.first)};
    }
    return {};
  }
  // FA5C to FC4B: the kanji, which begin the last block.
  const unsigned int position = (lead - 0xFA) * kTrails + trailNumber(trail) - trailNumber(0x5C);
  if (position >= 360) return {};
  return {static_cast<std::uint8_t>(kLastBlockFirst + position / 94),
          static_cast<std::uint8_t>(0x21 + position % 94)};
}

// The usual turns of a text, for copyTurns. What is neither ASCII nor katakana is written in pairs,
// marks included.
struct Turns : ShiftJisToJis {
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
  Writer(const unsigned char* data, unsigned int length, bool isLast, Iso2022JpState& carried,
         DataBuffer& output, ReplacementSink* replacementSink)
      : CodecRun(data, length, isLast, output, replacementSink), state(carried) {}

  bool step() {
    if (state.set != Set::kKatakana) {
      const bool inPairs =
          copyTurns<Turns, kEscape, kShiftOut, kShiftIn>(*this, state.set == Set::kJis0208);
      state.set = inPairs ? Set::kJis0208 : Set::kAscii;
    }
    return left() == 0 || room() < kMinRoom || writeUnit();
  }
  void finish() { enter(Set::kAscii); }

  bool writeUnit() {
    const unsigned char byte = *p;
    if (byte < 0x80) {
      if (byte == kEscape || byte == kShiftOut) return writeControl();
      enter(Set::kAscii);
      if (byte == kShiftIn) {
        pass(1);  // nothing ever shifts out, so it reads as itself
      } else {
        copyPlain<kEscape, kShiftOut, kShiftIn>(*this);
      }
      return true;
    }
    if (isHalfWidthKatakana(byte)) {
      writeKatakana();
      return true;
    }
    return writePair();
  }

  // Line ends and all other controls are ASCII: the text returns there before each of them.
  void enter(Set set) {
    if (state.set == set) return;
    put(kEscape, set == Set::kJis0208 ? '$' : '(');
    put(set == Set::kKatakana ? 'I' : 'B');
    state.set = set;
  }

  void writeKatakana() {
    enter(Set::kKatakana);
    for (std::ptrdiff_t count = copyable(1); count > 0 && isHalfWidthKatakana(*p); --count) {
      put(static_cast<unsigned char>(*p++ - 0x80));
    }
  }

  bool writePair() {
    if (!isShiftJisLead(*p)) {
      geta(1);
      return true;
    }
    if (left() < 2 && !last) return false;
    if (left() < 2 || !isShiftJisTrail(p[1])) {
      geta(1);  // half a pair: what follows it stays
      return true;
    }
    if (shiftJisAt(shiftJisIndex(p[0], p[1])).first != 0) {
      enter(Set::kJis0208);
      copyPairs<ShiftJisToJis>(*this);
      return true;
    }
    const CodeBytes place = placeOutsidePlane(p[0], p[1]);
    if (place.first != 0) {
      enter(Set::kJis0208);
      put(place.first, place.second);
      p += 2;
    } else {
      // A user-defined code is a character that has no place. Any other is no code, and its second
      // byte may well be a letter on its own.
      const bool isUserDefined = p[0] >= 0xF0 && p[0] <= 0xF9;
      geta(isUserDefined || p[1] >= 0x80 ? 2 : 1);
    }
    return true;
  }

  // An ESC or SO of the text stays as long as the reader of the result will take it for that.
  bool writeControl() {
    bool misread = false, atEnd = left() < 2;
    if (*p == kShiftOut) {
      misread = !atEnd && p[1] != kShiftIn && p[1] != '\r' && p[1] != '\n';
    } else {
      for (const std::string_view tail : kEscapeTails) {
        const EscapeMatch match = matchEscape(p + 1, end, tail);
        misread = misread || match == EscapeMatch::kYes;
        atEnd = atEnd || match == EscapeMatch::kMaybe;
      }
    }
    if (!misread && atEnd && !last) return false;
    if (misread) {
      geta(1);
    } else {
      enter(Set::kAscii);
      pass(1);
    }
    return true;
  }

  void geta(unsigned int length) {
    enter(Set::kJis0208);
    mark(length, 0x22, 0x2E, state.replaced);
  }

  Iso2022JpState& state;
};

}  // namespace

unsigned int Japanese::writePiece(const unsigned char* data, unsigned int length, bool last,
                                  Iso2022JpState& state, DataBuffer& out, ReplacementSink* sink) {
  Writer writer(data, length, last, state, out, sink);
  return runCodec(writer);
}

bool Japanese::ShiftJisToIso2022(const unsigned char* data, int length, DataBuffer& out, LogBase&) {
  if (length <= 0) return true;
  Iso2022JpState state;
  writePiece(data, static_cast<unsigned int>(length), true, state, out);
  return !state.replaced && !out.hasFailed();
}
