// TSCII 1.7: Tamil as it stands on the page, so that the left half of a vowel sign is in front of
// its letter. Unicode has the sign behind it, and both halves as one.
#include "encoding/codecs/mapping_list.h"
#include "encoding/codecs/unit_text.h"

namespace {

using Entry = CodeTable::Entry;

constexpr bool isWithin(std::uint32_t code, std::uint32_t first, std::uint32_t last) {
  return code - first <= last - first;
}
// What a left half stands in front of: the letters of Tamil, and those of Grantha with KSSA.
constexpr bool isLetter(std::uint32_t code) {
  return isWithin(code, 0xB8, 0xC9) || isWithin(code, 0x83, 0x87);
}
constexpr bool isPrefix(std::uint32_t byte) { return isWithin(byte, 0xA6, 0xA8); }
constexpr bool isNode(Entry entry) { return (entry & CodeTable::kKind) == CodeTable::kNode; }

// In the mapping 00 is behind a byte that is by itself, though others may change it.
template <class Base>
struct Direction : Base {
  using Base::Base;
  const CodeTable& table = *static_cast<const CodeTable*>(Base::parameters);
  void finish() {}
};

struct Reader : Direction<UnitReader> {
  using Direction::Direction;

  bool step() {
    const unsigned char* const stop = readable();
    while (p < stop) {
      copyAscii(stop);
      if (p < stop) return readOne();
    }
    return true;
  }

  // False when what follows decides.
  bool readOne() {
    Entry entry = table.root()[*p];
    std::ptrdiff_t length = 1;
    Entry letter = CodeTable::kNothing;
    if (isNode(entry)) {
      if (left() < 2 && !last) return false;
      if (isPrefix(*p) && left() >= 2 && isLetter(p[1])) letter = table.root()[p[length++]];
      if (left() <= length && !last) return false;
      const Entry* const halves = table.node(entry);
      const unsigned char next = left() <= length ? 0 : p[length];
      entry = halves[next];
      length += next != 0 && entry != CodeTable::kNothing ? 1 : 0;
      if (entry == CodeTable::kNothing) entry = halves[0];
    }
    if (entry == CodeTable::kNothing) return refuse(1);
    if (letter != CodeTable::kNothing) putEntry(table, letter);
    putEntry(table, entry);
    p += length;
    return true;
  }
};

struct Writer : Direction<UnitWriter> {
  using Direction::Direction;

  bool step() {
    const unsigned char* const stop = writable();
    while (p < stop) {
      copyAscii(stop);
      if (p < stop) return writeOne();
    }
    return true;
  }

  // False when what follows decides.
  bool writeOne() {
    const Character character = characterAt(p);
    if (character.length == 0) return false;
    if (!character.isScalar) return refuse(character.length, '?');
    std::uint32_t code = codeAt(table, p, end);
    unsigned int length = character.length;
    if (code >= CodeTable::kBegins) {
      bool isCut = false;
      unsigned int sequenceLength = 0;
      const CodeTable::Sequence* const sequence = sequenceAt(table, sequenceLength, isCut);
      if (isCut && !last) return false;
      if (sequence != nullptr) {
        code = sequence->code;
        length = sequenceLength;
      }
    }
    code &= ~CodeTable::kMarks;
    if (code == 0) return refuse(length, '?');
    std::uint32_t sign = 0;
    if (isLetter(code)) {
      const Character next = characterAt(p + length);
      if (next.length == 0 && !last) return false;
      if (next.isScalar) sign = table.codeOf(next.scalar);
      isPrefix(sign >> 8) ? length += next.length : sign = 0;
    }
    if (sign != 0) put(static_cast<unsigned char>(sign >> 8));
    if (code > 0xFF) put(static_cast<unsigned char>(code >> 8));
    putHalf(code);
    putHalf(sign);
    p += length;
    return true;
  }
  // The last byte of a code, if it is one of the text.
  void putHalf(std::uint32_t code) {
    if ((code & 0xFF) != 0) put(static_cast<unsigned char>(code));
  }
};

template <class Direction>
unsigned int run(const void*, const unsigned char* data, unsigned int length, bool last,
                 CodecState& state, DataBuffer& out, ReplacementSink* sink) {
  if (const CodeTable* const table = CodeTable::open(kMap_tscii)) {
    return runCodec<Direction>(table, data, length, last, state, out, sink);
  }
  out.latchFailure();
  return length;
}

}  // namespace

extern const Codec kTsciiCodec = {
    .codePage = 1200,
    .read = {run<Reader>},
    .write = {run<Writer>},
    .isStateless = true,
    .unitsPerByte = 4,
    .cut = cutTscii,
    .mappings = [](const void*, MappingVisitor& visitor) { visitor.visit(kMap_tscii); }};
