// Table-driven code pages, a register at a time where that can be.
#ifndef ENCODING_KERNELS_VECTOR_TABLES_H_
#define ENCODING_KERNELS_VECTOR_TABLES_H_

#include "encoding/kernels/vector_utf8.h"

namespace fast {
namespace {  // NOLINT(cert-dcl59-cpp): internal linkage, see steps.h

// ---- Single-byte code pages: tables of 256 bytes in shuffles. ----

// Looks every byte up in kRows rows of 16 table entries: each row by the lower half of the byte,
// then the right row by the bits of the upper half, a pair of rows at a time. Bits that the rows do
// not need, those of 16 * kRows and up, count for nothing.
template <class V, unsigned int kRows>
[[gnu::always_inline]] inline typename V::Reg lookUpRows(const std::uint8_t* table,
                                                         typename V::Reg bytes) {
  using Reg = typename V::Reg;
  const Reg lower = V::both(bytes, V::bytes(0x0F));
  Reg rows[kRows];
  for (unsigned int i = 0; i < kRows; ++i) {
    rows[i] = V::shuffle(V::loadLanes(table + 16 * i), lower);
  }
  const Reg bits[4] = {V::template shiftLeft<3>(bytes), V::template shiftLeft<2>(bytes),
                       V::template shiftLeft<1>(bytes), bytes};
  unsigned int level = 0;
  for (unsigned int count = kRows / 2; count != 0; count /= 2, ++level) {
    for (unsigned int i = 0; i < count; ++i) {
      rows[i] = V::choose(rows[2 * i], rows[2 * i + 1], bits[level]);
    }
  }
  return rows[0];
}

// Looks every byte up in the last kRows rows of a table of all bytes. Bytes below these get any
// value.
template <class V, unsigned int kRows>
inline typename V::Reg lookUp(const std::uint8_t (&table)[256], typename V::Reg bytes) {
  return lookUpRows<V, kRows>(table + 256 - 16 * kRows, bytes);
}

// The lower and upper halves of the units of all bytes.
template <class V>
inline void decodeBytes(const SingleByteDecoder& table, typename V::Reg bytes, typename V::Reg& low,
                        typename V::Reg& high) {
  if (table.isAscii) {
    low = V::choose(bytes, lookUp<V, 8>(table.low, bytes), bytes);
    high = V::choose(V::zero(), lookUp<V, 8>(table.high, bytes), bytes);
    return;
  }
  low = lookUp<V, 16>(table.ascii, bytes);
  high = V::zero();
  if (V::topBits(low) == 0) return;
  low = lookUp<V, 16>(table.low, bytes);
  high = lookUp<V, 16>(table.high, bytes);
}

template <class V>
struct SingleByteToUtf16 {
  static constexpr std::ptrdiff_t kBlock = V::kSize;
  const SingleByteDecoder& table;
  bool step(const Byte*& in, const Byte* inEnd, Byte*& out) const {
    return stepSingleByteToUtf16(table, in, inEnd, out);
  }
  bool treat(const Byte*& in, Byte*& out) const {
    const auto bytes = V::load(in);
    typename V::Reg low, high;
    decodeBytes<V>(table, bytes, low, high);
    // Unit 0 is right for byte 00 alone.
    const auto isZero = V::equalBytes(V::either(low, high), V::zero());
    if (!V::areDisjoint(isZero, bytes)) return false;
    typename V::Reg first, second;
    V::join(low, high, first, second);
    V::store(out, first);
    V::store(out + V::kSize, second);
    in += V::kSize;
    out += 2 * V::kSize;
    return true;
  }
};

// Two registers of ASCII at a time, one of anything else.
template <class V, unsigned int kRegisters>
struct SingleByteToUtf8 {
  using Reg = typename V::Reg;
  static constexpr std::ptrdiff_t kBlock = kRegisters * V::kSize;
  const SingleByteDecoder& table;
  bool step(const Byte*& in, const Byte* inEnd, Byte*& out) const {
    return stepSingleByteToUtf8(table, in, inEnd, out);
  }

  bool treat(const Byte*& in, Byte*& out) const {
    const Reg bytes = V::load(in);
    return treatRegisters(bytes, kRegisters > 1 ? V::load(in + V::kSize) : bytes, in, out);
  }
  bool treatRegister(Reg bytes, const Byte*& in, Byte*& out) const {
    return treatRegisters(bytes, bytes, in, out);
  }
  // The second is looked at for a run of ASCII only.
  bool treatRegisters(Reg bytes, Reg next, const Byte*& in, Byte*& out) const {
    if (table.isAscii) {
      if (V::topBits(V::either(bytes, next)) == 0) {
        if (hasZeroByte<V>(V::minBytes(bytes, next))) return false;
        V::store(out, bytes);
        V::store(out + V::kSize, next);
        in += kBlock;
        out += kBlock;
        return true;
      }
    } else {
      const Reg ascii = lookUp<V, 16>(table.ascii, bytes);
      if (V::topBits(ascii) == 0 && !hasZeroByte<V>(ascii)) {
        V::store(out, ascii);
        in += V::kSize;
        out += V::kSize;
        return true;
      }
    }
    if (!table.isAscii) return encode<16>(bytes, in, out);
    // The letters of most code pages have bytes from C0.
    const bool isBelow = !V::isZero(V::greaterBytes(V::bytes(0xC0), bytes));
    return isBelow ? encode<8>(bytes, in, out) : encode<4>(bytes, in, out);
  }

  // The bytes at one place of the UTF-8 forms.
  template <unsigned int kRows>
  Reg place(unsigned int index, Reg bytes) const {
    const Reg found = lookUp<V, kRows>(table.utf8Bytes[index], bytes);
    if constexpr (kRows == 16) return found;
    return V::choose(index == 2 ? bytes : V::zero(), found, bytes);
  }

  // The forms are looked up byte by byte and closed up as those of utf16ToUtf8 are.
  template <unsigned int kRows>
  bool encode(Reg bytes, const Byte*& in, Byte*& out) const {
    const Reg last = place<kRows>(2, bytes);
    if (hasZeroByte<V>(last)) return false;
    const Reg middle = place<kRows>(1, bytes);
    const Reg isAscii = V::equalBytes(middle, V::zero());
    // The middle byte is a continuation, which is to say, not the first.
    const Reg isLong = V::greaterBytes(V::bytes(0xC0), middle);
    Reg fields[2];
    if (V::isZero(isLong)) {
      V::join(middle, last, fields[0], fields[1]);
      std::uint32_t mask = V::topBits(isAscii);
      for (const Reg half : fields) {
        writeShort(V::template lane<0>(half), mask & 0xFF, out);
        if constexpr (V::kLanes == 2) {
          mask >>= 8;
          writeShort(V::template lane<1>(half), mask & 0xFF, out);
        }
        mask >>= 8;
      }
    } else {
      Reg lasts[2], lengths[2];
      V::join(place<kRows>(0, bytes), middle, fields[0], fields[1]);
      V::widen(last, lasts[0], lasts[1]);
      V::join(isAscii, V::equalBytes(isLong, V::zero()), lengths[0], lengths[1]);
      for (int i = 0; i < 2; ++i) writeFields<V>(fields[i], lasts[i], V::topBits(lengths[i]), out);
    }
    in += V::kSize;
    return true;
  }
};

template <class V>
[[gnu::noinline]] KernelResult singleByteToUtf8Long(const SingleByteDecoder& table, const Byte* in,
                                                    const Byte* inEnd, Byte* out, Byte* outEnd) {
  return treatAll<SingleByteToUtf8<V, 2>, SingleByteToUtf8<Vector16, 1>>(in, inEnd, out, outEnd,
                                                                         table);
}

template <class V>
KernelResult singleByteToUtf8(const SingleByteDecoder& table, const Byte* in, const Byte* inEnd,
                              Byte* out, Byte* outEnd) {
  if constexpr (V::kLanes > 1) {
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
  bool step(const Byte*& in, const Byte* inEnd, Byte*& out) const {
    return stepMapBytes(table, in, inEnd, out);
  }
  bool treat(const Byte*& in, Byte*& out) const {
    const auto bytes = V::load(in);
    const auto mapped = lookUp<V, 16>(table.bytes, bytes);
    if (!V::areDisjoint(V::equalBytes(mapped, V::zero()), bytes)) return false;
    V::store(out, mapped);
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
  using Reg = typename V::Reg;
  static constexpr std::ptrdiff_t kBlock = 2 * V::kSize;
  const SingleByteEncoder& table;
  bool step(const Byte*& in, const Byte* inEnd, Byte*& out) const {
    return stepUtf16ToSingleByte(table, in, inEnd, out);
  }
  bool treat(const Byte*& in, Byte*& out) const {
    const Reg first = V::load(in);
    const Reg second = V::load(in + V::kSize);
    const Reg low = V::narrow(V::both(first, V::units(0xFF)), V::both(second, V::units(0xFF)));
    if (isUnchanged(V::either(first, second), low)) {
      V::store(out, low);
      in += kBlock;
      out += V::kSize;
      return true;
    }
    const Reg high = V::narrow(V::template shiftRight<8>(first), V::template shiftRight<8>(second));
    // Of these masks the top bits count: a range is half of the units with one upper byte.
    const Reg isLower = V::without(V::equalBytes(high, V::zero()), low);
    const Reg isMain = V::without(V::equalBytes(high, V::bytes(table.mainRange >> 8)),
                                  V::differ(low, V::bytes(table.mainRange & 0xFF)));
    Reg result = table.isAscii ? low : lookUpRows<V, 8>(table.bytes, low);
    if (V::topBits(isMain) != 0) {
      result = V::choose(result, lookUpRows<V, 8>(table.bytes + table.mainRange, low), isMain);
    }
    V::store(out, result);
    const Reg isFound = V::without(V::either(isLower, isMain), V::equalBytes(result, V::zero()));
    return lookUpOthers(V::kAllBits & ~V::topBits(isFound), in, out);
  }

  // Whether the lower halves of the units are what the code page has. bits: those of all units.
  bool isUnchanged(Reg bits, Reg low) const {
    if (table.isLatin1) {
      const Reg isControl = V::greaterBytes(V::bytes(0xA0), low);  // 80..9F
      return V::areDisjoint(bits, V::units(0xFF00)) && V::isZero(isControl);
    }
    return table.isAscii && V::areDisjoint(bits, V::units(0xFF80));
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

template <class V>
struct Utf16ToDoubleByte {
  static constexpr std::ptrdiff_t kBlock = 2 * V::kSize;
  const DoubleByteEncoder& table;
  bool step(const Byte*& in, const Byte* inEnd, Byte*& out) const {
    return stepUtf16ToDoubleByte(table, in, inEnd, out);
  }
  bool treat(const Byte*& in, Byte*& out) const {
    typename V::Reg bytes;
    if (table.isAscii && narrowAscii<V>(in, bytes)) {
      V::store(out, bytes);
      in += 2 * V::kSize;
      out += V::kSize;
      return true;
    }
    constexpr unsigned int kUnits = 16;
    for (unsigned int i = 0; i < kUnits; ++i) {
      const unsigned int code = table.codes[getUnit(in + 2 * i)];
      if (code == 0) {
        in += 2 * i;
        return false;
      }
      storeUnit(out, static_cast<std::uint16_t>(code));
      out += code > 0xFF ? 2 : 1;
    }
    in += 2 * kUnits;
    return true;
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

  bool step(const Byte*& in, const Byte* inEnd, Byte*& out) const {
    return stepDoubleByteToUtf16(table, in, inEnd, out);
  }

  bool treat(const Byte*& in, Byte*& out) const {
    std::uint64_t others = 0;  // not ASCII
    std::uint64_t leads = 0;
    for (unsigned int i = 0; i < kRegisters; ++i) {
      const auto bytes = V::load(in + i * V::kSize);
      others |= std::uint64_t{V::topBits(bytes)} << i * V::kSize;
      leads |= std::uint64_t{leadBits(bytes)} << i * V::kSize;
    }
    // Runs of ASCII from this length on are not worth looking up.
    constexpr std::uint64_t kRun = 0xFF;
    if ((others & kRun) == 0) {
      for (unsigned int i = 0; i < kRegisters; ++i) {
        storeWidened<V>(out + 2 * i * V::kSize, V::load(in + i * V::kSize));
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

  std::uint32_t leadBits(typename V::Reg bytes) const {
    const auto half = V::bytes(0x0F);
    const auto rows = V::shuffle(V::loadLanes(table.leads), V::both(bytes, half));
    const auto row =
        V::shuffle(V::loadLanes(kRowBits), V::both(V::template shiftRight<4>(bytes), half));
    return V::kAllBits & ~V::topBits(V::equalBytes(V::both(rows, row), V::zero()));
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
#pragma GCC unroll 8
    for (unsigned int i = 0; i < kBytes; i += 2) {
      if (!look(in + i, out + i)) {
        in += i;
        out += i;
        return false;
      }
    }
    in += kBytes;
    out += kBytes;
    return true;
  }

  // The characters at the places of a mask, those of eight bytes at a time: they are shuffled into
  // a row of keys first. More than five are rare.
  bool characters(const Byte*& in, Byte*& out, std::uint64_t places, std::uint64_t size) const {
    const Byte* const end = in + size;
    for (unsigned int i = 0; places != 0; i += 8, places >>= 8) {
      const unsigned int mask = places & 0xFF;
      const unsigned int back = kIsShort && i == 8 ? 7 : 0;  // not to read beyond the block
      const __m128i control = Vector16::load(kItemsAt.control[mask]);
      const __m128i keys = Vector16::shuffle(
          Vector16::load(in - back), Vector16::addUnits(control, Vector16::units(back * 0x0101)));
      std::uint64_t key = Vector16::lowHalf(keys);
      unsigned int done = 0;
      for (; done < 4; ++done, key >>= 16) {
        if (!lookKey(key, out + 2 * done)) return stopAt(mask, done, in, out);
      }
      key = Vector16::highHalf(keys);
      for (; done < 5; ++done, key >>= 16) {
        if (!lookKey(key, out + 2 * done)) return stopAt(mask, done, in, out);
      }
      const unsigned int count = countBits(mask);
      for (; done < count; ++done, key >>= 16) {
        if (!lookKey(key, out + 2 * done)) return stopAt(mask, done, in, out);
      }
      in += 8;
      out += 2 * count;
    }
    in = end;
    return true;
  }

  bool lookKey(std::uint64_t key, Byte* out) const {
    const std::uint16_t unit = table.units[key & 0xFFFF];
    storeUnit(out, unit);
    return unit != 0;
  }

  // Only the first of repeated keys can be the one without a unit.
  static bool stopAt(unsigned int mask, unsigned int done, const Byte*& in, Byte*& out) {
    out += 2 * done;
    for (; done != 0; --done) mask &= mask - 1;
    in += firstBit(mask);
    return false;
  }
};

template <class V>
KernelResult doubleByteToUtf16(const DoubleByteDecoder& table, const Byte* in, const Byte* inEnd,
                               Byte* out, Byte* outEnd) {
  return treatAll<DoubleByteWork<V, 64 / V::kSize>, DoubleByteWork<Vector16, 1>>(in, inEnd, out,
                                                                                 outEnd, table);
}

}  // namespace
}  // namespace fast

#endif  // ENCODING_KERNELS_VECTOR_TABLES_H_
