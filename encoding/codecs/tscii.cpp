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
constexpr bool isByte(std::uint32_t code) { return isWithin(code, 1, 0xFF); }
constexpr bool isPrefix(std::uint32_t byte) { return isWithin(byte, 0xA6, 0xA8); }
constexpr bool isScalar(Entry entry) { return (entry & CodeTable::kKind) == CodeTable::kScalar; }
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
      if (p < stop) return copyCodes(stop) || readOne();
    }
    return true;
  }

  // Bytes that are something by themselves, and letters between the halves of a sign, up to ASCII.
  // False for none.
  bool copyCodes(const unsigned char* stop) {
    const Entry* const root = table.root();
    const unsigned char* in = p;
    unsigned char* to = dest;
    while (stop - in >= 3 && destEnd - to >= kMinRoom) {
      if ((in[0] | in[1]) < 0x80) break;
      const Entry entry = root[*in];
      if (isScalar(entry)) {
        storeLow(to, static_cast<std::uint16_t>(entry));
        to += 2;
        in += 1;
      } else if (isNode(entry)) {
        const Entry letter = root[in[1]];
        if (!isPrefix(*in) || !isLetter(in[1]) || !isScalar(letter)) break;
        const Entry* const halves = table.node(entry);
        const Entry whole = in[2] == 0 ? CodeTable::kNothing : halves[in[2]];
        storeLow(to, static_cast<std::uint16_t>(letter));
        storeLow(to + 2, static_cast<std::uint16_t>(isScalar(whole) ? whole : halves[0]));
        to += 4;
        in += isScalar(whole) ? 3 : 2;
      } else if (entry != CodeTable::kNothing) {
        const CodeTable::Sequence& sequence = table.sequences()[entry & ~CodeTable::kKind];
        for (const char32_t scalar : sequence.scalars) {
          storeLow(to, static_cast<std::uint16_t>(scalar));
          to += 2;
        }
        to -= 2 * (CodeTable::kMaxScalars - sequence.length());
        in += 1;
      } else {
        break;
      }
    }
    const bool isSome = in != p;
    p = in;
    dest = to;
    return isSome;
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
      if (p < stop && !copyCodes(stop)) return writeOne();
    }
    return true;
  }

  // Units and pairs of them that are one byte, and letters with a sign, up to ASCII. False for
  // none.
  bool copyCodes(const unsigned char* stop) {
    const CodeTable::Codes codes = table.codes();
    const unsigned char* in = p;
    unsigned char* to = dest;
    while (stop - in >= 6) {
      const std::uint32_t unit = loadLow<std::uint16_t>(in), next = loadLow<std::uint16_t>(in + 2);
      if ((unit | next) < 0x80) break;
      std::uint32_t code = codes.load(unit);
      const std::uint32_t nextCode = codes.load(next);
      if (code >= CodeTable::kBegins && (nextCode & CodeTable::kFollows) != 0) {
        code = table.codeOfPair(unit, next, loadLow<std::uint16_t>(in + 4));
        if (!isByte(code)) break;
        *to++ = static_cast<unsigned char>(code);
        in += 4;
        continue;
      }
      code &= ~CodeTable::kMarks;
      if (!isByte(code)) break;
      const std::uint32_t sign = nextCode & ~CodeTable::kMarks;
      if (isLetter(code) && isPrefix(sign >> 8)) {
        *to++ = static_cast<unsigned char>(sign >> 8);
        to = putCode(to, code << 8 | (sign & 0xFF));
        to -= (sign & 0xFF) == 0 ? 1 : 0;
        in += 4;
        continue;
      }
      *to++ = static_cast<unsigned char>(code);
      in += 2;
    }
    const bool isSome = in != p;
    p = in;
    dest = to;
    return isSome;
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
