#include "encoding/codecs/accents.h"

#include <utility>

#include "encoding/codecs/mapping_list.h"
#include "encoding/codecs/unit_text.h"

namespace {

using Entry = CodeTable::Entry;

constexpr unsigned int kMaxAccents = 3;  // in front of a letter
constexpr std::size_t kMaxMarks = 2;     // that are taken together with the character before

constexpr bool isNode(Entry entry) { return (entry & CodeTable::kKind) == CodeTable::kNode; }
constexpr bool isScalar(Entry entry) { return (entry & CodeTable::kKind) == CodeTable::kScalar; }
// Whether a code is that of a mark, which is one byte in the text.
constexpr bool isMark(std::uint32_t code) { return code > 0xFF && (code & 0xFF) == 0; }

template <class Base>
struct Direction : Base {
  using Base::Base;
  const AccentScheme& scheme = *static_cast<const AccentScheme*>(Base::parameters);
  const CodeTable& table = *CodeTable::open(*scheme.mapping);
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
      copySingles(stop);
      if (p < stop) return scheme.isBehind ? readBehind() : readInFront();
    }
    return true;
  }

  // Bytes that are characters with no accent at them.
  void copySingles(const unsigned char* stop) {
    const unsigned char* in = p;
    unsigned char* to = dest;
    for (; in < stop; ++in, to += 2) {
      const Entry entry = table.root()[*in];
      if (!isScalar(entry)) break;
      const bool isAlone = in + 1 == end ? last : !isAccent(in[1]);
      if (scheme.isBehind && !isAlone) break;
      storeLow(to, static_cast<std::uint16_t>(entry));
    }
    p = in;
    dest = to;
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
    unsigned int accents = 0;
    std::uint32_t code = 0;
    while (std::cmp_less(accents, left()) && accents < kMaxAccents && isAccent(p[accents])) {
      code = code << 8 | p[accents++];
    }
    const bool isEnd = std::cmp_equal(accents, left());
    if (isEnd && !last) return false;
    if (isEnd || p[accents] < 0x20) return refuse(1);
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
    const Entry letter = table.root()[*p];
    if (!isScalar(letter)) return refuse(1);
    if (left() < 2) return false;
    const char32_t composed = scheme.composes ? scalarOf(p[1] * 0x100u + p[0]) : 0;
    putScalar(composed != 0 ? composed : letter & ~CodeTable::kKind);
    p += composed != 0 ? 2 : 1;
    return true;
  }
};

// ---- Writing ----

struct Writer : Direction<UnitWriter> {
  using Direction::Direction;

  bool step() {
    const unsigned char* const stop = writable();
    while (p < stop) {
      if (table.isAscii()) copyAsciiText(stop);
      copySingles(stop);
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
  // Units that have a code of one byte, and no mark behind them.
  void copySingles(const unsigned char* stop) {
    const unsigned char* in = p;
    unsigned char* to = dest;
    std::uint32_t code = stop - in >= 2 ? codeAt(in) : 0;
    while (stop - in >= 2 && code - 1 < 0xFF) {
      std::uint32_t next = 0;
      if (end - in >= 4) {
        next = codeAt(in + 2);
        if (isMark(next) && !scheme.isBehind) break;
      } else if (!last && !scheme.isBehind) {
        break;
      }
      *to++ = static_cast<unsigned char>(code);
      in += 2;
      code = next;
    }
    p = in;
    dest = to;
  }
  std::uint32_t codeAt(const unsigned char* at) const {
    return table.codeOf(loadLow<std::uint16_t>(at));
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
  if (CodeTable::open(*scheme.mapping) != nullptr) {
    return runCodec<Direction>(parameters, data, length, last, state, out, sink);
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
