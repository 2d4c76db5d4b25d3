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

// What drives both directions.
struct Rules {
  const AccentScheme& scheme;
  const CodeTable& table;
};

template <class Base>
struct Direction : Base {
  using Base::Base;
  const AccentScheme& scheme = static_cast<const Rules*>(Base::parameters)->scheme;
  const CodeTable& table = static_cast<const Rules*>(Base::parameters)->table;
  void finish() {}
};

// ---- Reading ----

struct Reader : Direction<UnitReader> {
  using Direction::Direction;

  bool isAccent(unsigned char byte) const { return isNode(table.root()[byte]); }

  bool step() {
    const unsigned char* const stop = readable();
    while (p < stop) {
      if (table.isAscii() && !scheme.isBehind) copyAscii(stop);
      scheme.isBehind ? copyBehind(stop) : copyInFront(stop);
      if (p < stop) return scheme.isBehind ? readBehind() : readInFront();
    }
    return true;
  }

  // Most of a text: characters of one unit. readEntry() moves over one, and gives its entry.
  template <class ReadEntry>
  void copyUnits(const unsigned char* stop, ReadEntry readEntry) {
    const unsigned char* in = p;
    unsigned char* to = dest;
    for (; in < stop; to += 2) {
      const unsigned char* next = in;
      const Entry entry = readEntry(next);
      if (!isUnit(entry)) break;
      storeLow(to, static_cast<std::uint16_t>(entry));
      in = next;
    }
    p = in;
    dest = to;
  }
  // Single bytes, and letters with one accent that are a character together.
  void copyInFront(const unsigned char* stop) {
    copyUnits(stop, [this, root = table.root()](const unsigned char*& at) {
      const unsigned char byte = *at++;
      return isNode(root[byte]) && at < end ? composedOf(byte, *at++) : root[byte];
    });
  }
  void copyBehind(const unsigned char* stop) {
    copyUnits(stop, [this, root = table.root()](const unsigned char*& at) {
      const unsigned char byte = *at++;
      if (at == end) return last ? root[byte] : CodeTable::kNothing;
      if (!isUnit(root[byte]) || !isNode(root[*at])) return root[byte];
      const Entry composed = composedOf(*at, byte);
      if (!isUnit(composed)) return root[byte];
      ++at;
      return composed;
    });
  }
  // Nothing where they are two characters, or the letter is a control character.
  Entry composedOf(unsigned char accent, unsigned char letter) const {
    const unsigned char least = scheme.isBehind ? 1 : 0x20;
    return scheme.composes && letter >= least ? table.node(table.root()[accent])[letter]
                                              : CodeTable::kNothing;
  }

  char32_t scalarOf(std::uint32_t code) const {
    const Entry entry = table.find(code);
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
    const Entry letter = table.root()[p[accents]];
    if (!isScalar(letter)) return refuse(1);
    const char32_t composed = scheme.composes ? scalarOf(code << 8 | p[accents]) : 0;
    if (composed != 0) {
      putScalar(composed);
    } else {
      putEntry(table, letter);
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
    return isScalar(table.root()[*p]) ? false : refuse(1);
  }
};

// ---- Writing ----

struct Writer : Direction<UnitWriter> {
  using Direction::Direction;

  bool step() {
    const unsigned char* const stop = writable();
    while (p < stop) {
      if (table.isAscii()) copyAsciiText(stop);
      copyCharacters(stop);
      if (p < stop) return writeOne();
    }
    return true;
  }

  // All but the last character, behind which a mark may stand.
  void copyAsciiText(const unsigned char* stop) {
    const unsigned char* const before = p;
    copyAscii(stop);
    if (p == before || scheme.isBehind) return;
    p -= 2;
    --dest;
  }
  // Units that have a code, of one accent at most, and no mark behind them.
  void copyCharacters(const unsigned char* stop) {
    const CodeTable::Codes codes = table.codes();
    const auto codeAt = [codes](const unsigned char* at) {
      return codes.of(loadLow<std::uint16_t>(at));
    };
    const bool isBehind = scheme.isBehind;
    // Of the last character of a piece it is not known yet.
    const unsigned char* const textEnd = last || isBehind ? stop : std::min(stop, end - 2);
    const unsigned char* in = p;
    unsigned char* to = dest;
    std::uint32_t code = textEnd - in >= 2 ? codeAt(in) : 0;
    while (textEnd - in >= 2 && code - 1 < 0xFFFF && !isMark(code)) {
      const std::uint32_t next = end - in >= 4 ? codeAt(in + 2) : 0;
      if (isMark(next) && !isBehind) break;
      const auto letter = static_cast<unsigned char>(code);
      const auto accent = static_cast<unsigned char>(code >> 8);
      to[0] = isBehind || accent == 0 ? letter : accent;
      to[1] = isBehind ? accent : letter;
      to += accent == 0 ? 1 : 2;
      in += 2;
      code = next;
    }
    p = in;
    dest = to;
  }

  // A character, with the marks behind it. False when what follows decides.
  bool writeOne() {
    const Character character = characterAt(p);
    if (character.length == 0) return false;
    const std::uint32_t code = character.isScalar ? table.codeOf(character.scalar) : 0;
    const bool isNul = character.isScalar && character.scalar == 0;
    if (code == 0 && !isNul) return refuse(character.length, '?');
    if (scheme.isBehind) {
      putBehind(code);
      p += character.length;
      return true;
    }
    if (isMark(code)) return refuse(character.length, '?');
    std::uint32_t marks[kMaxMarks];
    std::size_t count = 0;
    unsigned int length = character.length;
    if ((code & 0xFF) >= 0x20) {
      unsigned int room = kMaxAccents - (code > 0xFFFF ? 2 : code > 0xFF ? 1 : 0);
      for (; count < kMaxMarks && count < room; ++count) {
        const Character next = characterAt(p + length);
        if (next.length == 0 && !last) return false;
        marks[count] = next.length != 0 && next.isScalar ? table.codeOf(next.scalar) : 0;
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
