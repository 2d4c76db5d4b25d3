#include "encoding/codecs/accents.h"

#include <algorithm>

#include "encoding/codecs/mapping_list.h"
#include "encoding/codecs/unit_text.h"

namespace {

using Entry = CodeTable::Entry;

constexpr unsigned int kMaxAccents = 3;  // in front of a letter
constexpr std::size_t kMaxMarks = 2;     // that are taken together with the character before

constexpr bool isNode(Entry entry) { return (entry & CodeTable::kKind) == CodeTable::kNode; }
constexpr bool isScalar(Entry entry) { return (entry & CodeTable::kKind) == CodeTable::kScalar; }
// A scalar value of one unit.
constexpr bool isUnit(Entry entry) { return entry - CodeTable::kScalar <= 0xFFFF; }
// Whether a code is that of a mark, which is one byte in the text.
constexpr bool isMark(std::uint32_t code) { return code > 0xFF && (code & 0xFF) == 0; }

// What drives both directions. They refer to it: a copy of both members by one load would have to
// wait for the two stores that have just made it, which a short text would feel.
struct Rules {
  const AccentScheme& scheme;
  const CodeTable& table;
};

template <class Base>
struct Direction : Base {
  using Base::Base;
  const Rules& rules = *static_cast<const Rules*>(Base::parameters);
  void finish() {}
};

// ---- Reading ----

struct Reader : Direction<UnitReader> {
  using Direction::Direction;

  bool isAccent(unsigned char byte) const { return isNode(rules.table.root()[byte]); }

  bool step() {
    const unsigned char* const stop = readable();
    while (p < stop) {
      rules.scheme.isBehind ? copyBehind(stop) : copyInFront(stop);
      if (p < stop) return rules.scheme.isBehind ? readBehind() : readInFront();
    }
    return true;
  }

  // Both loops read most of a text: characters of one unit.

  // Single bytes, and letters with one accent that are a character together.
  void copyInFront(const unsigned char* stop) {
    const Entry* const root = rules.table.root();
    const bool composes = rules.scheme.composes;
    const auto copyOne = [=, this](const unsigned char*& in, unsigned char*& to) {
      const Entry own = root[*in];
      const bool isAccent = isNode(own);
      if (isAccent && (!composes || end - in < 2 || in[1] < 0x20)) return false;
      const Entry unit = isAccent ? rules.table.node(own)[in[1]] : own;
      if (!isUnit(unit)) return false;
      storeLow(to, static_cast<std::uint16_t>(unit));
      in += isAccent ? 2 : 1;
      to += 2;
      return true;
    };
    copyAll(copyOne, stop);
  }
  // Single bytes, which become one with an accent behind them where that makes a character.
  void copyBehind(const unsigned char* stop) {
    const Entry* const root = rules.table.root();
    const bool composes = rules.scheme.composes;
    const unsigned char* first = p;  // of the letters that have no accent yet
    const auto copyOne = [=, this, &first](const unsigned char*& in, unsigned char*& to) {
      const Entry own = root[*in];
      const bool isAccent = isNode(own);
      if (isAccent && (!composes || in == first || in[-1] == 0)) return false;
      const Entry unit = isAccent ? rules.table.node(own)[in[-1]] : own;
      if (!isUnit(unit)) return false;
      storeLow(isAccent ? to - 2 : to, static_cast<std::uint16_t>(unit));
      ++in;
      to += isAccent ? 0 : 2;
      if (isAccent) first = in;
      return true;
    };
    if (stop < end && isAccent(*stop)) ++stop;  // which needs no room of its own
    copyAll(copyOne, stop);
    // Of the last letter of a piece it is not known yet.
    if (p != end || p == first || last) return;
    --p;
    dest -= 2;
  }
  template <class CopyOne>
  void copyAll(const CopyOne& copyOne, const unsigned char* stop) {
    const unsigned char* in = p;
    unsigned char* to = dest;
    if (!rules.table.isAsciiText() || copyTextAnd(copyOne, in, to, stop)) {
      while (in < stop && copyOne(in, to)) {
      }
    }
    p = in;
    dest = to;
  }

  char32_t scalarOf(std::uint32_t code) const {
    const Entry entry = rules.table.find(code);
    return isScalar(entry) ? static_cast<char32_t>(entry & ~CodeTable::kKind) : char32_t{0};
  }
  void putMark(unsigned char accent) {
    const char32_t mark = scalarOf(std::uint32_t{accent} << 8);
    if (mark != 0) putScalar(mark);
  }

  // False when what follows decides.
  bool readInFront() {
    if (!isAccent(*p)) return refuse(1);
    const auto rest = static_cast<std::size_t>(left());
    unsigned int accents = 0;
    std::uint32_t code = 0;
    while (accents < rest && accents < kMaxAccents && isAccent(p[accents])) {
      code = code << 8 | p[accents++];
    }
    if (accents == rest && !last) return false;
    if (accents == rest || p[accents] < 0x20) return refuse(1);
    const Entry letter = rules.table.root()[p[accents]];
    if (!isScalar(letter)) return refuse(1);
    const char32_t composed = rules.scheme.composes ? scalarOf(code << 8 | p[accents]) : 0;
    if (composed != 0) {
      putScalar(composed);
    } else {
      putEntry(rules.table, letter);
      for (unsigned int i = 0; i < accents; ++i) putMark(p[i]);
    }
    p += accents + 1;
    return true;
  }

  bool readBehind() {
    if (isAccent(*p)) {
      putMark(*p++);
      return true;
    }
    return isScalar(rules.table.root()[*p]) ? false : refuse(1);
  }
};

// ---- Writing ----

struct Writer : Direction<UnitWriter> {
  using Direction::Direction;

  bool step() {
    const unsigned char* const stop = writable();
    while (p < stop) {
      if (!(rules.scheme.isBehind ? copyCharacters<true>(stop) : copyCharacters<false>(stop))) {
        return false;
      }
      if (p < stop) return writeOne();
    }
    return true;
  }

  // Units that have a code, of one accent at most, and no mark behind them. False when what follows
  // decides.
  template <bool isBehind>
  bool copyCharacters(const unsigned char* stop) {
    const CodeTable::Codes codes = rules.table.codes();
    const auto codeAt = [codes](const unsigned char* at) {
      return codes.of(loadLow<std::uint16_t>(at));
    };
    const auto copyOne = [codes](const unsigned char*& in, unsigned char*& to) {
      const std::uint32_t code = codes.loadAt(in);
      const std::uint32_t letter = code & 0xFF, accent = code >> 8;
      if (accent > 0xFF || letter == 0) return false;
      const std::uint32_t isPair = accent != 0 ? 1 : 0;
      const std::uint32_t first = accent | (letter & (isPair - 1));
      to[0] = static_cast<unsigned char>(isBehind ? letter : first);
      to[1] = static_cast<unsigned char>(isBehind ? accent : letter);
      in += 2;
      to += 1 + isPair;
      return true;
    };
    const unsigned char* const unitsEnd = stop - (stop - p) % 2;
    const unsigned char* in = p;
    unsigned char* to = dest;
    if (!rules.table.isAsciiText() || copyTextAnd(copyOne, in, to, stop)) {
      while (in != unitsEnd && copyOne(in, to)) {
      }
    }
    // A mark behind the last one goes in front of it.
    const bool isOver = end - in < 2;
    bool isOpen = false;
    if (!isBehind && in != p && (isOver ? !last : isMark(codeAt(in)))) {
      const std::uint32_t code = codeAt(in - 2);
      if (takesMarks(code)) {
        in -= 2;
        to -= code > 0xFF ? 2 : 1;
        isOpen = isOver;
      }
    }
    p = in;
    dest = to;
    return !isOpen;
  }
  // Control characters do not.
  static bool takesMarks(std::uint32_t code) { return (code & 0xFF) >= 0x20; }

  // A character, with the marks behind it. False when what follows decides.
  bool writeOne() {
    const Character character = characterAt(p);
    if (character.length == 0) return false;
    const std::uint32_t code = character.isScalar ? rules.table.codeOf(character.scalar) : 0;
    const bool isNul = character.isScalar && character.scalar == 0;
    if (code == 0 && !isNul) return refuse(character.length, '?');
    if (rules.scheme.isBehind) {
      putBehind(code);
      p += character.length;
      return true;
    }
    if (isMark(code)) return refuse(character.length, '?');
    std::uint32_t marks[kMaxMarks];
    std::size_t count = 0;
    unsigned int length = character.length;
    if (takesMarks(code)) {
      unsigned int room = kMaxAccents - (code > 0xFFFF ? 2 : code > 0xFF ? 1 : 0);
      for (; count < kMaxMarks && count < room; ++count) {
        const Character next = characterAt(p + length);
        if (next.length == 0 && !last) return false;
        marks[count] = next.length != 0 && next.isScalar ? rules.table.codeOf(next.scalar) : 0;
        if (!isMark(marks[count])) break;
        length += next.length;
      }
    }
    if (code > 0xFF) putCode(code >> 8);
    for (std::size_t i = 0; i < count; ++i) put(static_cast<unsigned char>(marks[i] >> 8));
    put(static_cast<unsigned char>(code));
    p += length;
    return true;
  }
  void putBehind(std::uint32_t code) {
    if (!isMark(code)) put(static_cast<unsigned char>(code));
    if (code > 0xFF) put(static_cast<unsigned char>(code >> 8));
  }
};

template <typename Direction>
unsigned int run(const void* parameters, const unsigned char* data, unsigned int length, bool last,
                 CodecState& state, DataBuffer& out, ReplacementSink* sink) {
  const auto& scheme = *static_cast<const AccentScheme*>(parameters);
  if (const CodeTable* const table = CodeTable::open(*scheme.mapping)) {
    const Rules rules = {scheme, *table};
    return runCodec<Direction>(&rules, data, length, last, state, out, sink);
  }
  out.latchFailure();
  return length;
}

constexpr AccentScheme kAnsel = {&kMap_ansel, false, false},
                       kIso6937 = {&kMap_iso_6937, false, true},
                       kIso6937Part2 = {&kMap_iso_6937_2, false, true},
                       kT61 = {&kMap_t_61_8bit, false, true},
                       kX3110 = {&kMap_ansi_x3_110, false, true},
                       kTcvn = {&kMap_tcvn5712_1, true, true};

constexpr Codec codecFor(const AccentScheme& scheme) {
  return cutBy(cutAccents, {.codePage = 1200,
                            .read = {readAccents, &scheme},
                            .write = {writeAccents, &scheme},
                            .isStateless = true,
                            .mappings = [](const void* parameters, MappingVisitor& visitor) {
                              visitor.visit(*static_cast<const AccentScheme*>(parameters)->mapping);
                            }});
}

}  // namespace

unsigned int readAccents(const void* parameters, const unsigned char* data, unsigned int length,
                         bool last, CodecState& state, DataBuffer& out, ReplacementSink* sink) {
  return run<Reader>(parameters, data, length, last, state, out, sink);
}

unsigned int writeAccents(const void* parameters, const unsigned char* data, unsigned int length,
                          bool last, CodecState& state, DataBuffer& out, ReplacementSink* sink) {
  return run<Writer>(parameters, data, length, last, state, out, sink);
}

extern const Codec kAnselCodec = codecFor(kAnsel);
extern const Codec kIso6937Codec = codecFor(kIso6937);
extern const Codec kIso6937Part2Codec = codecFor(kIso6937Part2);
extern const Codec kT61Codec = codecFor(kT61);
extern const Codec kX3110Codec = codecFor(kX3110);
extern const Codec kTcvnCodec = codecFor(kTcvn);
