// UTF-16 text, little endian, as the codecs over mappings read and write it.
#ifndef ENCODING_CODECS_UNIT_TEXT_H_
#define ENCODING_CODECS_UNIT_TEXT_H_

#include <algorithm>

#include "encoding/codecs/code_table.h"
#include "encoding/codecs/codec_run.h"
#include "encoding/codecs/text_bytes.h"
#include "encoding/tables/kernel_tables.h"
#include "support/utf.h"

namespace {  // NOLINT(cert-dcl59-cpp): internal linkage, see lanes.h

// Reading into UTF-16.
struct UnitReader : CodecRun {
  using CodecRun::CodecRun;
  static constexpr unsigned int kGrowth = 10;

  // Up to where bytes of the input can be read, each of which becomes one unit at most, so that
  // there is still the least room behind them.
  const unsigned char* readable() const {
    return p + std::min(left(), (room() - kMinRoom) / 2 + 1);
  }

  void putUnit(std::uint32_t unit) {
    put(static_cast<unsigned char>(unit), static_cast<unsigned char>(unit >> 8));
  }
  void putScalar(char32_t scalar) {
    if (scalar > 0xFFFF) putUnit(highSurrogateOf(scalar));
    putUnit(scalar > 0xFFFF ? lowSurrogateOf(scalar) : scalar);
  }
  // What an entry of a table stands for, which is not a node.
  void putEntry(const CodeTable& table, CodeTable::Entry entry) {
    const CodeTable::Entry value = entry & ~CodeTable::kKind;
    if ((entry & CodeTable::kKind) == CodeTable::kScalar) return putScalar(value);
    for (const char32_t scalar : table.sequences()[value].scalars) {
      if (scalar != 0) putScalar(scalar);
    }
  }

  void copyAscii(const unsigned char* stop) {
    while (stop - p >= std::ptrdiff_t{kVector}) {
      const Bytes16 text = Bytes16::load(p);
      const unsigned int count = countLow(text);
      if (count == 0) return;
      storeAsUnits(text, dest);
      p += count;
      dest += 2 * count;
      if (count != kVector) return;
    }
    while (p < stop && *p < 0x80) putUnit(*p++);
  }
  // ASCII up to one of the bytes that mean something else. There may be none of it, or a line end.
  template <typename... Bytes>
  void copyAsciiBut(const unsigned char* stop, Bytes... others) {
    const unsigned char* in = p;
    unsigned char* to = dest;
    const auto isText = [&](unsigned char byte) { return byte < 0x80 && (... & (byte != others)); };
    if (stop - in < 2 || !isText(in[0]) || !isText(in[1])) {
      if (in < stop && isText(*in)) putUnit(*p++);
      return;
    }
    bool isWhole = true;
    while (isWhole && stop - in >= std::ptrdiff_t{kVector}) {
      const Bytes16 text = Bytes16::load(in);
      const unsigned int count = countLow((text | ... | equal(text, others)));
      storeAsUnits(text, to);
      in += count;
      to += 2 * count;
      isWhole = count == kVector;
    }
    for (; isWhole && in < stop && isText(*in); ++in, to += 2) {
      storeLow(to, std::uint16_t{*in});
    }
    p = in;
    dest = to;
  }

  // Text in ASCII from 20 to 7E, as far as vectors go, and what copyOther(in, to) copies and moves
  // both pointers over of what is not, two bytes at most; false where it does not.
  template <class CopyOther>
  static bool copyTextAnd(const CopyOther& copyOther, const unsigned char*& in, unsigned char*& to,
                          const unsigned char* stop) {
    if (!copyBlocks<4>(copyOther, in, to, stop) || !copyBlocks<1>(copyOther, in, to, stop)) {
      return false;
    }
    if (stop - in >= std::ptrdiff_t{kVector}) {
      copyBytes(in, to, static_cast<int>(countLow(~isAsciiText(Bytes16::load(in)))));
    }
    return true;
  }
  // The same in blocks of several vectors. Bits say where the others stand: a loop that looked for
  // them would have to wait for itself.
  template <unsigned int kVectors, class CopyOther>
  static bool copyBlocks(const CopyOther& copyOther, const unsigned char*& in, unsigned char*& to,
                         const unsigned char* stop) {
    constexpr std::ptrdiff_t kBlock = kVectors * kVector;
    while (stop - in > kBlock + std::ptrdiff_t{kVector}) {
      const unsigned char* const blockEnd = in + kBlock;
      std::uint64_t others = 0;
      for (unsigned int i = 0; i < kBlock; i += kVector) {
        others |= std::uint64_t{topBits(~isAsciiText(Bytes16::load(in + i)))} << i;
      }
      while (others != 0) {
        const int count = std::countr_zero(others);
        copyBytes(in, to, count);
        const unsigned char* const other = in;
        if (!copyOther(in, to)) return false;
        others = others >> count >> (in - other);
      }
      copyBytes(in, to, std::max<std::ptrdiff_t>(blockEnd - in, 0));
    }
    return true;
  }
  // By vectors, of which the last one may be written, and read, in part for nothing.
  static void copyBytes(const unsigned char*& in, unsigned char*& to, std::ptrdiff_t count) {
    std::ptrdiff_t done = 0;
    do {
      storeAsUnits(Bytes16::load(in + done), to + 2 * done);
      done += kVector;
    } while (done < count);
    in += count;
    to += 2 * count;
  }

  // Pairs of seven bits, which the table has with the high bits set, up to one that is none.
  void copyPairs(const unsigned char* stop, const fast::DoubleByteDecoder& pairs) {
    stop = std::min(stop, end - 1);
    const unsigned char* in = p;
    unsigned char* to = dest;
    // A high bit here is one of a byte that is not from 21 to 7E, or of a pair that is no
    // character.
    constexpr std::uint64_t kBytes = 0x0101010101010101, kPairs = 0x0001000100010001;
    const auto unusual = [](std::uint64_t bytes) {
      return (bytes | (bytes - 0x21 * kBytes) | (bytes + kBytes)) & 0x80 * kBytes;
    };
    const auto lacking = [](std::uint64_t units) {
      return (units - kPairs) & ~units & kPairs << 15;
    };
    for (; stop - in >= 8; in += 8, to += 8) {
      const auto bytes = loadLow<std::uint64_t>(in);
      const std::uint64_t four = bytes | 0x80 * kBytes;
      std::uint64_t units = 0;
      for (unsigned int i = 0; i < 64; i += 16) {
        units |= std::uint64_t{pairs.units[four >> i & 0xFFFF]} << i;
      }
      if ((unusual(bytes) | lacking(units)) != 0) break;
      storeLow(to, units);
    }
    for (; in < stop; in += 2, to += 2) {
      const std::uint32_t pair = loadLow<std::uint16_t>(in);
      const std::uint16_t unit = pairs.units[pair | 0x8080];
      if ((unusual(pair) & 0x8080) != 0 || unit == 0) break;
      storeLow(to, unit);
    }
    p = in;
    dest = to;
  }

  bool refuse(unsigned int length) {
    return mark(length, kReplacementCharacter & 0xFF, kReplacementCharacter >> 8);
  }
};

// Writing from UTF-16.
struct UnitWriter : CodecRun {
  using CodecRun::CodecRun;
  static constexpr unsigned int kGrowth = 9;

  // Up to where units can be written that become four bytes at most, so that there is still the
  // least room behind them.
  const unsigned char* writable() const {
    // Whole units, or the loops would never come to the end.
    return p + std::min(left(), ((room() - kMinRoom) / 4 + 1) * 2);
  }

  void copyAscii(const unsigned char* stop) {
    while (stop - p >= std::ptrdiff_t{2 * kVector}) {
      const Bytes16 text = loadUnits(p);
      const unsigned int count = countLow(text);
      if (count == 0) return;
      text.store(dest);
      p += 2 * count;
      dest += count;
      if (count != kVector) return;
    }
    for (; stop - p >= 2 && p[1] == 0 && p[0] < 0x80; p += 2) put(*p);
  }
  // ASCII up to one of the characters that mean something else. There may be none of it, or a line
  // end.
  template <typename... Bytes>
  void copyAsciiBut(const unsigned char* stop, Bytes... others) {
    const unsigned char* in = p;
    unsigned char* to = dest;
    const auto isText = [&](const unsigned char* unit) {
      return unit[1] == 0 && unit[0] < 0x80 && (... & (unit[0] != others));
    };
    if (stop - in < 4 || !isText(in) || !isText(in + 2)) {
      if (stop - in < 2 || !isText(in)) return;
      put(*in);
      p = in + 2;
      return;
    }
    bool isWhole = true;
    while (isWhole && stop - in >= std::ptrdiff_t{2 * kVector}) {
      const Bytes16 text = loadUnits(in);
      const unsigned int count = countLow((text | ... | equal(text, others)));
      text.store(to);
      in += 2 * count;
      to += count;
      isWhole = count == kVector;
    }
    for (; isWhole && stop - in >= 2 && isText(in); in += 2) *to++ = *in;
    p = in;
    dest = to;
  }

  // As in UnitReader; copyOther() copies one unit.
  template <class CopyOther>
  static bool copyTextAnd(const CopyOther& copyOther, const unsigned char*& in, unsigned char*& to,
                          const unsigned char* stop) {
    if (!copyBlocks<4>(copyOther, in, to, stop) || !copyBlocks<1>(copyOther, in, to, stop)) {
      return false;
    }
    while (stop - in >= std::ptrdiff_t{kVector}) {
      const Bytes16 text = loadEightUnits(in);
      text.store(to);
      const unsigned int count = std::min(countLow(~isAsciiText(text)), kVector / 2);
      in += 2 * count;
      to += count;
      if (count != kVector / 2 && !copyOther(in, to)) return false;
    }
    return true;
  }
  template <unsigned int kVectors, class CopyOther>
  static bool copyBlocks(const CopyOther& copyOther, const unsigned char*& in, unsigned char*& to,
                         const unsigned char* stop) {
    constexpr std::ptrdiff_t kBlock = kVectors * kVector;
    while (stop - in > 2 * (kBlock + std::ptrdiff_t{kVector})) {
      std::uint64_t others = 0;
      for (unsigned int i = 0; i < kBlock; i += kVector) {
        others |= std::uint64_t{topBits(~isAsciiText(loadUnits(in + 2 * i)))} << i;
      }
      std::ptrdiff_t rest = kBlock;
      while (others != 0) {
        const int count = std::countr_zero(others);
        copyUnits(in, to, count);
        if (!copyOther(in, to)) return false;
        others = others >> count >> 1;
        rest -= count + 1;
      }
      copyUnits(in, to, rest);
    }
    return true;
  }
  static void copyUnits(const unsigned char*& in, unsigned char*& to, std::ptrdiff_t count) {
    std::ptrdiff_t done = 0;
    do {
      loadLowBytes(in + 2 * done).store(to + done);
      done += kVector;
    } while (done < count);
    in += 2 * count;
    to += count;
  }

  // The bytes of a code of a table; those behind are written over by what comes next.
  static unsigned char* putCode(unsigned char* to, std::uint32_t code) {
    const auto unused = static_cast<unsigned int>(std::countl_zero(code | 1)) / 8;
    storeBig(to, code << 8 * unused);
    return to + 4 - unused;
  }
  void putCode(std::uint32_t code) { dest = putCode(dest, code); }

  // A character of the text: its value and how many bytes it has. Length 0: what follows the piece
  // decides. No scalar: half a unit, or half a pair of surrogates.
  struct Character {
    char32_t scalar;
    unsigned int length;
    bool isScalar;
  };
  Character characterAt(const unsigned char* at) const {
    const auto known = static_cast<unsigned int>(std::min<std::ptrdiff_t>(end - at, 4));
    if (known < 2) return {0, last ? known : 0, false};
    const std::uint32_t unit = loadLow<std::uint16_t>(at);
    if (!isSurrogate(unit)) return {unit, 2, true};
    if (!isHighSurrogate(unit)) return {unit, 2, false};
    if (known < 4) return {unit, last ? 2u : 0u, false};
    const std::uint32_t second = loadLow<std::uint16_t>(at + 2);
    if (!isLowSurrogate(second)) return {unit, 2, false};
    return {joinSurrogates(unit, second), 4, true};
  }

  // What loadCode() says of a unit in front of stop, but for one that begins sequences its code if
  // it is seen that none stands there.
  static std::uint32_t codeAt(const CodeTable& table, const unsigned char* at,
                              const unsigned char* stop) {
    const std::uint32_t code = table.loadCode(loadLow<std::uint16_t>(at));
    if (code < CodeTable::kBegins || table.sequences().isEmpty() || stop - at < 4) return code;
    const std::uint32_t next = table.loadCode(loadLow<std::uint16_t>(at + 2));
    return (next & CodeTable::kFollows) == 0 ? code & ~CodeTable::kMarks : code;
  }

  // The longest sequence of a table that stands here, and its length in bytes; null for none.
  // isCut: what follows the piece may belong to one.
  const CodeTable::Sequence* sequenceAt(const CodeTable& table, unsigned int& length,
                                        bool& isCut) const {
    isCut = false;
    if (table.sequences().isEmpty()) return nullptr;
    if ((table.loadCode(characterAt(p).scalar) & CodeTable::kBegins) == 0) return nullptr;
    char32_t scalars[CodeTable::kMaxScalars];
    unsigned int lengths[CodeTable::kMaxScalars];
    std::size_t count = 0;
    const unsigned char* at = p;
    for (; count < CodeTable::kMaxScalars && at != end; ++count) {
      const Character character = characterAt(at);
      if (!character.isScalar) {
        // Half a pair, which ends what may be a sequence.
        if (character.length != 0) scalars[count++] = character.scalar;
        break;
      }
      scalars[count] = character.scalar;
      lengths[count] = character.length;
      at += character.length;
    }
    const CodeTable::Sequence* const found = table.findSequence(scalars, count, isCut);
    if (found == nullptr) return nullptr;
    for (std::size_t i = 0; i < found->length(); ++i) length += lengths[i];
    return found;
  }

  // Writes a mark of one byte, a code of a table, in place of the next length bytes.
  bool refuse(unsigned int length, std::uint32_t code) {
    report(p, length);
    p += length;
    putCode(code != 0 ? code : '?');
    return true;
  }
};

}  // namespace

#endif  // ENCODING_CODECS_UNIT_TEXT_H_
