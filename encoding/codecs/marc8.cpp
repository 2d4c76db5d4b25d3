// MARC-8, the encoding of library records: ASCII and ANSEL, and by escape sequences other scripts.
//
// A byte below 80 means a character of G0, one from A1 on of G1; at the beginning these are ASCII
// and ANSEL. The East Asian set (EACC) has three bytes a character. Marks stand in front of their
// letter, and are read behind it. Writing uses G0 for all other scripts, so that G1 stays ANSEL.
#include "encoding/codecs/escape_sequence.h"
#include "encoding/codecs/mapping_list.h"
#include "encoding/codecs/unit_text.h"

namespace {

using Entry = CodeTable::Entry;

// Sets, by the last byte of their escape sequence, which the codes of kMap_marc_8 begin with.
constexpr unsigned char kAscii = 'B', kAnsel = 'E', kEacc = '1', kUnknown = '?';
constexpr std::string_view kSets = "BENQS2341", kSymbols = "gbp";
constexpr unsigned char kBackToAscii = 's';

constexpr unsigned int kMaxMarks = 2;
constexpr unsigned int kMostOfCharacter = 6;  // bytes of text that wait for what follows

constexpr bool isGraphic(unsigned char byte) {
  return (byte > 0x20 && byte < 0x7F) || (byte > 0xA0 && byte != 0xFF);
}
constexpr bool isMark(char32_t scalar) {
  return (scalar >= 0x300 && scalar <= 0x36F) || (scalar >= 0x5B0 && scalar <= 0x5BC) ||
         scalar == 0x5BF || scalar == 0x5C1 || (scalar >= 0x64B && scalar <= 0x652) ||
         scalar == 0xFB1E || (scalar >= 0xFE20 && scalar <= 0xFE2F);
}

// CodecState::bits has the sets in G0 and G1, exclusive-or with those of the beginning.
constexpr unsigned char setIn(const CodecState& state, bool isG1) {
  return static_cast<unsigned char>(isG1 ? (state.bits >> 8 & 0xFF) ^ kAnsel
                                         : (state.bits & 0xFF) ^ kAscii);
}
bool isState(const void*, const CodecState& state, bool isWriting) {
  const auto isAmong = [](std::string_view sets, unsigned char set) {
    return sets.find(static_cast<char>(set)) != sets.npos;
  };
  const unsigned char first = setIn(state, false), second = setIn(state, true);
  const bool isUnknown = first == kUnknown && !isWriting;
  const bool isSecond = isWriting ? second == kAnsel : isAmong(kSets, second) || second == kUnknown;
  return (isAmong(kSets, first) || isAmong(kSymbols, first) || isUnknown) && isSecond &&
         state.bits <= 0xFFFF && hasOnly(state, {.bits = state.bits});
}

template <class Base>
struct Direction : Base {
  using Base::Base;
  using Base::state;
  const CodeTable& ansel = *CodeTable::open(kMap_ansel);
  const CodeTable& table = *CodeTable::open(kMap_marc_8);

  unsigned char set(bool isG1) const { return setIn(state, isG1); }
  void designate(bool isG1, unsigned char what) {
    if (isG1) {
      state.bits = (state.bits & 0xFF) | static_cast<std::uint32_t>(what ^ kAnsel) << 8;
    } else {
      state.bits = (state.bits & 0xFF00) | static_cast<std::uint32_t>(what ^ kAscii);
    }
  }
  static char32_t scalarOf(const CodeTable& from, std::uint32_t code) {
    const Entry entry = from.find(code);
    const bool isScalar = (entry & CodeTable::kKind) == CodeTable::kScalar;
    return isScalar ? static_cast<char32_t>(entry & ~CodeTable::kKind) : char32_t{0};
  }
};

// ---- Reading ----

struct Reader : Direction<UnitReader> {
  using Direction::Direction;

  bool step() {
    const unsigned char* const stop = readable();
    if (set(false) == kAscii) {
      while (p < stop && *p < 0x80 && *p != kEscape) putUnit(*p++);
    }
    return p == stop || readOne();
  }
  void finish() { state.bits = 0; }

  // What stands at a place of the input.
  enum class Kind : std::uint8_t { kCut, kNothing, kMark, kCharacter };
  struct Found {
    Kind kind;
    unsigned int length;
    char32_t scalar;  // of a mark 0: read as nothing
  };

  Found at(const unsigned char* from) const {
    if (from == end) return {Kind::kCut, 0, 0};
    const unsigned char byte = *from;
    if (byte == ' ') return {Kind::kCharacter, 1, ' '};
    if (!isGraphic(byte)) return {Kind::kNothing, 1, 0};
    const unsigned char its = set(byte >= 0x80), seven = byte & 0x7F;
    if (its == kAscii) return {Kind::kCharacter, 1, seven};
    if (its == kEacc) return eaccAt(from);
    char32_t scalar = 0;
    if (its == kAnsel) {
      const Entry entry = ansel.root()[seven | 0x80];
      if ((entry & CodeTable::kKind) == CodeTable::kNode && entry != CodeTable::kNothing) {
        const char32_t mark = scalarOf(ansel, (seven | 0x80u) << 8);
        return {Kind::kMark, 1, mark};
      }
      scalar = scalarOf(ansel, seven | 0x80u);
    } else {
      scalar = scalarOf(table, std::uint32_t{its} << 8 | seven);
    }
    const Kind kind = scalar == 0      ? Kind::kNothing
                      : isMark(scalar) ? Kind::kMark
                                       : Kind::kCharacter;
    return {kind, 1, scalar};
  }
  // The second and the third byte may be a space; a malformed piece ends before it.
  Found eaccAt(const unsigned char* from) const {
    std::uint32_t code = kEacc;
    unsigned int graphic = 0;
    for (unsigned int i = 0; i < 3; ++i) {
      if (from + i == end) return {Kind::kCut, graphic, 0};
      const bool isSpace = i != 0 && (from[i] & 0x7F) == ' ';
      const bool isOther = (from[i] ^ *from) >= 0x80 || !(isSpace || isGraphic(from[i]));
      if (isOther) return {Kind::kNothing, graphic, 0};
      if (graphic == i && !isSpace) ++graphic;
      code = code << 8 | (from[i] & 0x7Fu);
    }
    const char32_t scalar = scalarOf(table, code);
    return scalar == 0 ? Found{Kind::kNothing, graphic, 0} : Found{Kind::kCharacter, 3, scalar};
  }

  // False when what follows decides. Programs write the mark before or behind the escape sequence
  // of its letter; it is read in both places.
  bool readOne() {
    if (*p == kEscape) return readEscape();
    if (*p < 0x20 || *p == 0x7F || (*p >= 0x80 && *p <= 0xA0)) return readControl();
    const std::uint32_t sets = state.bits;
    char32_t marks[kMaxMarks + 1];
    unsigned int count = 0, length = 0;
    Found found = at(p);
    while (found.kind == Kind::kMark && count <= kMaxMarks) {
      marks[count++] = found.scalar;
      length += found.length;
      const Escape escape = escapeAt(p + length);
      if (escape.kind == Escape::kKnown) {
        designate(escape.isG1, escape.set);
        length += escape.length;
      }
      found = escape.kind == Escape::kCut ? Found{Kind::kCut, 1, 0} : at(p + length);
    }
    if (found.kind != Kind::kCharacter) {
      state.bits = sets;
      if (found.kind == Kind::kCut && !last) return false;
      return refuse(count == 0 ? std::max(1u, found.length) : 1);
    }
    putScalar(found.scalar);
    for (unsigned int i = 0; i < count; ++i) {
      if (marks[i] != 0) putScalar(marks[i]);
    }
    p += length + found.length;
    return true;
  }

  // Those from 80 on that the records have are in ANSEL's table.
  bool readControl() {
    const char32_t scalar = *p < 0x80 ? *p : scalarOf(ansel, *p);
    if (*p >= 0x80 && scalar == 0) return refuse(1);
    putUnit(scalar);
    ++p;
    return true;
  }

  // An escape sequence, and the set that it designates.
  struct Escape {
    enum Kind : std::uint8_t { kCut, kNone, kUnknown, kKnown } kind;
    unsigned int length = 0;
    bool isG1 = false;
    unsigned char set = 0;
  };
  // ESC $ or not; an intermediate byte, which pairs and more may lack; "!" or not; the last byte.
  Escape escapeAt(const unsigned char* from) const {
    if (from == end || *from != kEscape) return {Escape::kNone};
    const unsigned char* q = from + 1;
    if (q != end && (*q == kBackToAscii || kSymbols.find(static_cast<char>(*q)) != kSymbols.npos)) {
      return {Escape::kKnown, 2, false, *q == kBackToAscii ? kAscii : *q};
    }
    const bool isMulti = q != end && *q == '$';
    if (isMulti) ++q;
    const bool isG1 = q != end && (*q == ')' || *q == '-');
    const bool hasPlace = q != end && (isG1 || *q == '(' || *q == ',');
    if (hasPlace) ++q;
    const bool isBegun = hasPlace || isMulti;
    if (isBegun && q != end && *q == '!') ++q;
    if (q == end) return {Escape::kCut};
    if (!isBegun || *q < 0x30 || *q > 0x7E) return {Escape::kNone};
    const auto length = static_cast<unsigned int>(q - from) + 1;
    const bool isKnown =
        kSets.find(static_cast<char>(*q)) != kSets.npos && isMulti == (*q == kEacc);
    return {isKnown ? Escape::kKnown : Escape::kUnknown, length, isG1, *q};
  }

  bool readEscape() {
    const Escape escape = escapeAt(p);
    if (escape.kind == Escape::kCut && !last) return false;
    if (escape.kind == Escape::kCut || escape.kind == Escape::kNone) {
      putUnit(*p++);
      return true;
    }
    const bool isKnown = escape.kind == Escape::kKnown;
    designate(escape.isG1, isKnown ? escape.set : kUnknown);
    if (!isKnown) return refuse(escape.length);
    p += escape.length;
    return true;
  }
};

// ---- Writing ----

struct Writer : Direction<UnitWriter> {
  using Direction::Direction;

  bool step() {
    const unsigned char* const stop = writable();
    if (set(false) == kAscii) {
      while (stop - p >= 4 && isPlain(p) && isPlain(p + 2)) put(*p), p += 2;
    }
    return p == stop || writeOne();
  }
  void finish() {
    enter(kAscii);
    state.bits = 0;
  }
  static bool isPlain(const unsigned char* at) {
    return at[1] == 0 && at[0] < 0x80 && at[0] != kEscape;
  }

  // Where a character stands: in a set, with marks of ANSEL in front of the letter's byte.
  struct Place {
    unsigned char set = 0;  // 0: none
    std::uint32_t code = 0;
    bool isMark = false;
  };
  Place placeOf(const Character& character) const {
    if (!character.isScalar) return {};
    const char32_t scalar = character.scalar;
    if (scalar < 0x80) return {kAscii, scalar, false};
    if (const std::uint32_t code = ansel.codeOf(scalar); code != 0) {
      const bool isAlone = code > 0xFF && (code & 0xFF) == 0;
      return {kAnsel, isAlone ? code >> 8 : code, isAlone};
    }
    const std::uint32_t code = table.codeOf(scalar);
    if (code == 0) return {};
    const unsigned int shift = code > 0xFFFFFF ? 24 : code > 0xFFFF ? 16 : 8;
    const std::uint32_t own = code & ((1u << shift) - 1);
    return {static_cast<unsigned char>(code >> shift), own, isMark(scalar)};
  }

  // A character, with the marks behind it. False when what follows decides.
  bool writeOne() {
    const Character character = characterAt(p);
    if (character.length == 0) return false;
    const Place place = placeOf(character);
    if (place.set == 0 || place.isMark) return refuseAs(character.length);
    if (place.set == kAscii && (place.code < 0x20 || place.code == 0x7F)) {
      return writeControl(place.code);
    }
    if (place.set == kAnsel && place.code <= 0xA0) {
      putCode(place.code);
      p += 2;
      return true;
    }
    // Of the letter, which may be taken apart.
    const unsigned char letterSet =
        place.set == kAnsel && ((place.code & 0xFF) < 0x80) ? kAscii : place.set;
    Place marks[kMaxMarks + 1];
    unsigned int length = character.length, count = 0;
    const unsigned int before = place.set == kEacc || place.code <= 0xFF ? 0
                                : place.code <= 0xFFFF                   ? 1
                                                                         : 2;
    for (; length < kMostOfCharacter && count + before <= kMaxMarks; ++count) {
      const Character next = characterAt(p + length);
      if (next.length == 0 && !last) return false;
      marks[count] = next.length == 0 ? Place{} : placeOf(next);
      const bool fits = marks[count].set == kAnsel || marks[count].set == letterSet;
      if (!marks[count].isMark || !fits) break;
      length += next.length;
    }
    if (letterSet != kAnsel) enter(letterSet);
    if (before != 0) putCode(place.code >> 8);
    for (unsigned int i = 0; i < count; ++i) putCode(marks[i].code);
    putCode(before != 0 ? place.code & 0xFF : place.code);
    p += length;
    return true;
  }

  void enter(unsigned char what) {
    if (set(false) == what) return;
    put(kEscape);
    if (kSymbols.find(static_cast<char>(what)) != kSymbols.npos) {
      put(what);
    } else if (what == kAscii && kSymbols.find(static_cast<char>(set(false))) != kSymbols.npos) {
      put(kBackToAscii);
    } else {
      put(what == kEacc ? '$' : '(', what);
    }
    designate(false, what);
  }

  // Text must not turn into escape sequences on the way.
  bool writeControl(std::uint32_t code) {
    if (code == kEscape) {
      const Character next = characterAt(p + 2);
      if (next.length == 0 && !last) return false;
      const bool isCode =
          next.length != 0 && next.isScalar && next.scalar > ' ' && next.scalar < 0x7F;
      if (isCode) return refuseAs(2);
    }
    enter(kAscii);
    putCode(code);
    p += 2;
    return true;
  }
  bool refuseAs(unsigned int length) {
    enter(kAscii);
    return refuse(length, '?');
  }
};

template <typename Direction>
unsigned int run(const void* parameters, const unsigned char* data, unsigned int length, bool last,
                 CodecState& state, DataBuffer& out, ReplacementSink* sink) {
  if (CodeTable::open(kMap_ansel) != nullptr && CodeTable::open(kMap_marc_8) != nullptr) {
    return runCodec<Direction>(parameters, data, length, last, state, out, sink);
  }
  out.latchFailure();
  return length;
}

}  // namespace

extern const Codec kMarc8Codec = cutBy(cutMarc8, {.codePage = 1200,
                                                  .read = run<Reader>,
                                                  .write = run<Writer>,
                                                  .mappings =
                                                      [](const void*, MappingVisitor& visitor) {
                                                        visitor.visit(kMap_ansel);
                                                        visitor.visit(kMap_marc_8);
                                                      },
                                                  .isState = isState});
