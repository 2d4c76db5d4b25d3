// Table-driven code pages, a register at a time where that can be.
#ifndef ENCODING_KERNELS_VECTOR_TABLES_H_
#define ENCODING_KERNELS_VECTOR_TABLES_H_

#include "encoding/kernels/vector_utf16.h"
#include "support/compiler.h"

namespace fast {
namespace {  // NOLINT(cert-dcl59-cpp): internal linkage, see lanes.h

// ---- Single-byte code pages: tables of 256 bytes in registers. ----

// Looks every byte up in the last kRows rows of a table of all bytes. Bytes below these get any
// value.
template <class V, unsigned int kRows>
inline typename V::Bytes lookUp(const std::uint8_t (&table)[256], typename V::Bytes bytes) {
  return lookUpRows<kRows>(table + 256 - 16 * kRows, bytes);
}

// The lower and upper halves of the units of all bytes.
template <class V>
inline void decodeBytes(const SingleByteDecoder& table, typename V::Bytes bytes,
                        typename V::Bytes& low, typename V::Bytes& high) {
  if (table.isAscii) {
    low = selectByTopBit(bytes, lookUp<V, 8>(table.low, bytes), bytes);
    high = selectByTopBit(bytes, lookUp<V, 8>(table.high, bytes), 0);
    return;
  }
  low = lookUp<V, 16>(table.ascii, bytes);
  high = 0;
  if (topBits(low) == 0) return;
  low = lookUp<V, 16>(table.low, bytes);
  high = lookUp<V, 16>(table.high, bytes);
}

template <class V>
struct SingleByteToUtf16 {
  static constexpr std::ptrdiff_t kBlock = V::kSize;
  const SingleByteDecoder& table;
  static constexpr auto kStep = stepSingleByteToUtf16;
  bool treat(const Byte*& in, Byte*& out) const {
    const auto bytes = V::Bytes::load(in);
    typename V::Bytes low, high;
    decodeBytes<V>(table, bytes, low, high);
    // Unit 0 is right for byte 00 alone.
    if (!areDisjoint(equal(low | high, 0), bytes)) return false;
    typename V::Units first, second;
    joinBytes(low, high, first, second);
    first.store(out);
    second.store(out + V::kSize);
    in += V::kSize;
    out += 2 * V::kSize;
    return true;
  }
};

// Two registers of ASCII at a time, one of anything else.
template <class V, unsigned int kRegisters>
struct SingleByteToUtf8 {
  using Bytes = typename V::Bytes;
  using Units = typename V::Units;
  static constexpr std::ptrdiff_t kBlock = kRegisters * V::kSize;
  const SingleByteDecoder& table;
  static constexpr auto kStep = stepSingleByteToUtf8;

  bool treat(const Byte*& in, Byte*& out) const {
    const auto bytes = Bytes::load(in);
    return treatRegisters(bytes, kRegisters > 1 ? Bytes::load(in + V::kSize) : bytes, in, out);
  }
  bool treatRegister(Bytes bytes, const Byte*& in, Byte*& out) const {
    return treatRegisters(bytes, bytes, in, out);
  }
  // The second is looked at for a run of ASCII only.
  bool treatRegisters(Bytes bytes, Bytes next, const Byte*& in, Byte*& out) const {
    if (!table.isAscii) {
      const Bytes last = place<16>(2, bytes);  // the only ones of ASCII
      if (topBits(last) != 0 || hasZero(last)) return encode<16>(bytes, last, in, out);
      last.store(out);
      in += V::kSize;
      out += V::kSize;
      return true;
    }
    if (topBits(bytes | next) == 0) {
      if (hasZero(min(bytes, next))) return false;
      bytes.store(out);
      next.store(out + V::kSize);
      in += kBlock;
      out += kBlock;
      return true;
    }
    // The letters of most code pages have bytes from C0.
    const bool isBelow = greaterSigned(0xC0, bytes).any();
    return isBelow ? encode<8>(bytes, place<8>(2, bytes), in, out)
                   : encode<4>(bytes, place<4>(2, bytes), in, out);
  }

  // The bytes at one place of the UTF-8 forms.
  template <unsigned int kRows>
  Bytes place(unsigned int index, Bytes bytes) const {
    const Bytes found = lookUp<V, kRows>(table.utf8Bytes[index], bytes);
    return kRows == 16 ? found : selectByTopBit(bytes, found, index == 2 ? bytes : Bytes(0));
  }

  // The forms, of which the last bytes are known, are looked up byte by byte and closed up as those
  // of utf16ToUtf8 are.
  template <unsigned int kRows>
  bool encode(Bytes bytes, Bytes last, const Byte*& in, Byte*& out) const {
    if (hasZero(last)) return false;
    const Bytes middle = place<kRows>(1, bytes);
    const Bytes isAscii = equal(middle, 0);
    // The middle byte is a continuation, which is to say, not the first.
    const auto isLong = greaterSigned(0xC0, middle);
    Units fields[2];
    joinBytes(middle, last, fields[0], fields[1]);
    if (isLong.none()) {
      std::uint32_t mask = topBits(isAscii);
      for (const Units half : fields) {
        forEachPart<V>([&](auto n) {
          writeShort(part<n>(half), mask & 0xFF, out);
          mask >>= 8;
        });
      }
    } else {
      Units firsts[2], lengths[2];
      joinBytes(0, place<kRows>(0, bytes), firsts[0], firsts[1]);
      joinBytes(isAscii, ~isLong, lengths[0], lengths[1]);
      for (int i = 0; i < 2; ++i) {
        writeItemsOf<V>(firsts[i], fields[i], topBits(as<Bytes>(lengths[i])), out);
      }
    }
    in += V::kSize;
    return true;
  }
};

template <class V>
COMPILER_NO_INLINE COMPILER_FLATTEN KernelResult singleByteToUtf8Long(
    const SingleByteDecoder& table, const Byte* in, const Byte* inEnd, Byte* out, Byte* outEnd) {
  return treatAll<SingleByteToUtf8<V, 2>, SingleByteToUtf8<Vector16, 1>>(in, inEnd, out, outEnd,
                                                                         table);
}

template <class V>
COMPILER_FLATTEN KernelResult singleByteToUtf8(const SingleByteDecoder& table, const Byte* in,
                                               const Byte* inEnd, Byte* out, Byte* outEnd) {
  if constexpr (V::kParts > 1) {
    if (table.isAscii && fitsOneRegister<V>(in, inEnd, out, outEnd) &&
        treatFilled<1, V>(SingleByteToUtf8<V, 1>{table}, in, inEnd, out)) {
      return {in, out};
    }
  }
  return singleByteToUtf8Long<V>(table, in, inEnd, out, outEnd);
}

template <class V>
struct MapBytes {
  static constexpr std::ptrdiff_t kBlock = V::kSize;
  const ByteMap& table;
  static constexpr auto kStep = stepMapBytes;
  bool treat(const Byte*& in, Byte*& out) const {
    const auto bytes = V::Bytes::load(in);
    const auto mapped = lookUp<V, 16>(table.bytes, bytes);
    if (!areDisjoint(equal(mapped, 0), bytes)) return false;
    mapped.store(out);
    in += V::kSize;
    out += V::kSize;
    return true;
  }
};

// ---- Encoding: runs of ASCII by registers, else tables by unit. ----

// Units below 80 and those of the code page's main range are looked up by registers, and what other
// units are strewn in among them one by one.
template <class V>
struct Utf16ToSingleByte {
  using Bytes = typename V::Bytes;
  using Units = typename V::Units;
  static constexpr std::ptrdiff_t kBlock = 2 * V::kSize;
  const SingleByteEncoder& table;
  static constexpr auto kStep = stepUtf16ToSingleByte;
  bool treat(const Byte*& in, Byte*& out) const {
    const auto first = Units::load(in);
    const auto second = Units::load(in + V::kSize);
    const Bytes low = narrow(first & 0xFF, second & 0xFF);
    if (isUnchanged(first | second, low)) {
      low.store(out);
      in += kBlock;
      out += V::kSize;
      return true;
    }
    const Bytes high = narrow(first >> 8, second >> 8);
    // Of these masks the top bits count: a range is half of the units with one upper byte.
    const Bytes isLower = equal(high, 0) & ~low;
    const Bytes isMain = equal(high, table.mainRange >> 8) & ~(low ^ (table.mainRange & 0xFFu));
    Bytes result = table.isAscii ? low : lookUpRows<8>(table.bytes, low);
    if (topBits(isMain) != 0) {
      result = selectByTopBit(isMain, lookUpRows<8>(table.bytes + table.mainRange, low), result);
    }
    result.store(out);
    const Bytes isFound = (isLower | isMain) & ~equal(result, 0);
    return lookUpOthers(V::kAllBits & ~topBits(isFound), in, out);
  }

  // Whether the lower halves of the units are what the code page has. bits: those of all units.
  bool isUnchanged(Units bits, Bytes low) const {
    if (table.isLatin1) {
      const auto isControl = greaterSigned(0xA0, low);  // 80..9F
      return areDisjoint(bits, 0xFF00) && isControl.none();
    }
    return table.isAscii && areDisjoint(bits, 0xFF80);
  }

  bool lookUpOthers(std::uint32_t others, const Byte*& in, Byte*& out) const {
    for (; others != 0; others &= others - 1) {
      const unsigned int place = firstBit(others);
      const unsigned int unit = getUnit(in + 2 * place);
      const Byte byte = table.bytes[unit];
      if (byte == 0 && unit != 0) {
        in += 2 * place;
        out += place;
        return false;
      }
      out[place] = byte;
    }
    in += kBlock;
    out += V::kSize;
    return true;
  }
};

// What a table of 65536 has for four keys, in the places from n on.
template <int n>
inline void lookUpFour(const std::uint16_t* table, std::uint64_t keys, Units16& found) {
  loadPlace<n>(table + (keys & 0xFFFF), found);
  loadPlace<n + 1>(table + (keys >> 16 & 0xFFFF), found);
  loadPlace<n + 2>(table + (keys >> 32 & 0xFFFF), found);
  loadPlace<n + 3>(table + (keys >> 48), found);
}

template <class V>
struct Utf16ToDoubleByte {
  static constexpr std::ptrdiff_t kBlock = 2 * V::kSize;
  const DoubleByteEncoder& table;
  static constexpr auto kStep = stepUtf16ToDoubleByte;
  bool treat(const Byte*& in, Byte*& out) const {
    typename V::Bytes bytes;
    if (table.isAscii && narrowAscii<V>(in, bytes)) {
      bytes.store(out);
      in += 2 * V::kSize;
      out += V::kSize;
      return true;
    }
    return eight(in, out) && eight(in, out);
  }

  // How long each code is decides nothing but a shuffle.
  bool eight(const Byte*& in, Byte*& out) const {
    const auto units = Bytes16::load(in);
    Units16 codes = 0;
    lookUpFour<0>(table.codes, half<0>(units), codes);
    lookUpFour<4>(table.codes, half<1>(units), codes);
    if (equal(codes, 0).any()) return upToFree(in, out);
    const auto isSingle = isAtMost(codes, 0xFF);
    const unsigned int singles = eightBits<0>(isSingle);
    const auto bytes = as<Bytes16>(select(isSingle, codes << 8, codes));
    lookup16(bytes, Bytes16::load(kOneOrTwo.control[singles])).store(out);
    in += 16;
    out += 16 - countBits(singles);
    return true;
  }

  bool upToFree(const Byte*& in, Byte*& out) const {
    while (const unsigned int code = table.codes[getUnit(in)]) {
      storeUnit(out, static_cast<std::uint16_t>(code));
      in += 2;
      out += code > 0xFF ? 2 : 1;
    }
    return false;
  }
};

// ---- Double-byte code pages, decoding. ----

// The bytes of a mask that begin a pair, where candidates may do so and each pair takes the byte
// behind it with it. A run of candidates begins with a first byte, because what is before it does
// not begin a pair, and goes on with every second; that the parity of a run's start tells all bits
// of the run, by one addition, is from G. Langdale and D. Lemire, "Parsing Gigabytes of JSON per
// Second" (VLDB Journal 28, 2019), there for backslashes.
inline std::uint64_t pairStarts(std::uint64_t candidates) {
  constexpr std::uint64_t kEven = 0x5555555555555555u;
  const std::uint64_t runStarts = candidates & ~(candidates << 1);
  const std::uint64_t evenRuns = candidates & ~(candidates + (runStarts & kEven));
  return (evenRuns & kEven) | (candidates & ~evenRuns & ~kEven);
}

// Where the characters of a block begin is known before any is looked up; so the look-ups wait
// neither for one another nor for a guess at the length of the next character.
template <class V, unsigned int kRegisters>
struct DoubleByteWork {
  static constexpr unsigned int kBytes = kRegisters * V::kSize;
  // With the last pair's second byte, and more where short texts do not matter.
  static constexpr bool kIsShort = kBytes == 16;
  static constexpr std::ptrdiff_t kBlock = kBytes + (kIsShort ? 1 : 8);
  static constexpr std::uint64_t kEven = 0x5555555555555555u >> (64 - kBytes);
  const DoubleByteDecoder& table;

  static constexpr auto kStep = stepDoubleByteToUtf16;

  bool treat(const Byte*& in, Byte*& out) const {
    std::uint64_t others = 0;  // not ASCII
    std::uint64_t leads = 0;
    for (unsigned int i = 0; i < kRegisters; ++i) {
      const auto bytes = V::Bytes::load(in + i * V::kSize);
      others |= std::uint64_t{topBits(bytes)} << i * V::kSize;
      leads |= std::uint64_t{leadBits(bytes)} << i * V::kSize;
    }
    // Runs of ASCII from this length on are not worth looking up.
    constexpr std::uint64_t kRun = 0xFF;
    if ((others & kRun) == 0) {
      for (unsigned int i = 0; i < kRegisters; ++i) {
        storeWidened<typename V::Units, V>(out + 2 * i * V::kSize, in + i * V::kSize);
      }
      const unsigned int count = others == 0 ? kBytes : firstBit(others);
      in += count;
      out += 2 * count;
      return true;
    }
    const std::uint64_t starts = pairStarts(leads);
    if (starts == kEven) return pairs(in, out);
    std::uint64_t runs = ~others & ~others >> 1;
    runs &= runs >> 2;
    runs &= runs >> 4;
    const unsigned int size = kBytes < 64 || runs != 0 ? firstBit(runs) : 64;
    return characters(in, out, ~(starts << 1) & ~std::uint64_t{0} >> (64 - size),
                      size + (starts >> (size - 1) & 1));
  }

  std::uint32_t leadBits(typename V::Bytes bytes) const {
    using Bytes = typename V::Bytes;
    Bytes leads, rowBits;
    loadEachPart(table.leads, leads);
    loadEachPart(kRowBits, rowBits);
    const Bytes rows = lookup16(leads, bytes & 0x0F);
    const Bytes row = lookup16(rowBits, as<Bytes>(as<typename V::Units>(bytes) >> 4) & 0x0F);
    return V::kAllBits & ~topBits(equal(rows & row, 0));
  }
  alignas(16) static constexpr std::uint8_t kRowBits[16] = {0, 0, 0, 0, 0,  0,  0,  0,
                                                            1, 2, 4, 8, 16, 32, 64, 128};

  // The unit of the character at in, whatever its length; false for none.
  bool look(const Byte* in, Byte* out) const {
    const std::uint16_t unit = table.units[loadUnit(in)];
    storeUnit(out, unit);
    return unit != 0;
  }

  // A block of pairs alone.
  bool pairs(const Byte*& in, Byte*& out) const {
    for (unsigned int i = 0; i < kBytes; i += 16) {
      const auto keys = Bytes16::load(in);
      Units16 units = 0;
      lookUpFour<0>(table.units, half<0>(keys), units);
      lookUpFour<4>(table.units, half<1>(keys), units);
      if (equal(units, 0).any()) {
        while (look(in, out)) in += 2, out += 2;
        return false;
      }
      units.store(out);
      in += 16;
      out += 16;
    }
    return true;
  }

  // The characters at the places of a mask, those of eight bytes at a time: they are shuffled into
  // a row of keys first. More than five are rare.
  bool characters(const Byte*& in, Byte*& out, std::uint64_t places, std::uint64_t size) const {
    const Byte* const end = in + size;
    for (unsigned int i = 0; places != 0; i += 8, places >>= 8) {
      const unsigned int mask = places & 0xFF;
      const unsigned int back = kIsShort && i == 8 ? 7 : 0;  // not to read beyond the block
      const Bytes16 control = Bytes16::load(kItemsAt.control[mask]) + back;
      const Bytes16 keys = lookup16(Bytes16::load(in - back), control);
      const unsigned int count = countBits(mask);
      Units16 units = 1;
      lookUpFour<0>(table.units, half<0>(keys), units);
      if (count > 5) {
        lookUpFour<4>(table.units, half<1>(keys), units);
      } else {
        loadPlace<4>(&table.units[half<1>(keys) & 0xFFFF], units);
      }
      units.store(out);
      if (equal(units, 0).any()) return stopAt(mask, in, out);
      in += 8;
      out += 2 * count;
    }
    in = end;
    return true;
  }

  // Moves to the first of the characters at the places of a mask that has no unit.
  bool stopAt(unsigned int mask, const Byte*& in, Byte*& out) const {
    while (look(in + firstBit(mask), out)) {
      mask &= mask - 1;
      out += 2;
    }
    in += firstBit(mask);
    return false;
  }
};

template <class V>
COMPILER_FLATTEN KernelResult doubleByteToUtf16(const DoubleByteDecoder& table, const Byte* in,
                                                const Byte* inEnd, Byte* out, Byte* outEnd) {
  return treatAll<DoubleByteWork<V, 64 / V::kSize>, DoubleByteWork<Vector16, 1>>(in, inEnd, out,
                                                                                 outEnd, table);
}

}  // namespace
}  // namespace fast

#endif  // ENCODING_KERNELS_VECTOR_TABLES_H_
