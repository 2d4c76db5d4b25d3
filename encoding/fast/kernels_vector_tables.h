// Table-driven code pages, a register at a time where that can be.
#ifndef ENCODING_FAST_KERNELS_VECTOR_TABLES_H_
#define ENCODING_FAST_KERNELS_VECTOR_TABLES_H_

#include <cstring>

#include "encoding/fast/kernels_vector_utf8.h"

namespace fast {
namespace {

// ---- Single-byte code pages: tables of 256 bytes in shuffles. ----

// Looks every byte up in kRows rows of 16 table entries, of which the last belongs to the bytes
// from F0: each row by the lower half of the byte, then the right row by the bits of the upper
// half, a pair of rows at a time. Bytes below the rows get any value.
template <class V, unsigned int kRows>
inline typename V::Reg lookUp(const std::uint8_t* table, typename V::Reg bytes) {
  using Reg = typename V::Reg;
  const Reg lower = V::both(bytes, V::bytes(0x0F));
  Reg rows[kRows];
  for (unsigned int i = 0; i < kRows; ++i) {
    rows[i] = V::shuffle(V::loadLanes(table + 256 - 16 * (kRows - i)), lower);
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

template <class V>
inline void decodeBytes(const SingleByteDecoder& table, typename V::Reg bytes, typename V::Reg& low,
                        typename V::Reg& high) {
  if (table.isAscii) {
    low = V::choose(bytes, lookUp<V, 8>(table.low, bytes), bytes);
    high = V::choose(V::zero(), lookUp<V, 8>(table.high, bytes), bytes);
  } else {
    low = lookUp<V, 16>(table.low, bytes);
    high = lookUp<V, 16>(table.high, bytes);
  }
}

template <class V>
KernelResult singleByteToUtf16(const SingleByteDecoder& table, const Byte* in, const Byte* inEnd,
                               Byte* out, Byte* outEnd) {
  return inBlocks<V::kSize>(
      in, inEnd, out, outEnd,
      [&table](const Byte*& p, Byte*& q) {
        const auto bytes = V::load(p);
        typename V::Reg low, high;
        decodeBytes<V>(table, bytes, low, high);
        // Unit 0 is right for byte 00 alone.
        const auto isZero = V::equalBytes(V::either(low, high), V::zero());
        if (!V::isZero(V::both(isZero, bytes))) return false;
        typename V::Reg first, second;
        V::join(low, high, first, second);
        V::store(q, first);
        V::store(q + V::kSize, second);
        p += V::kSize;
        q += 2 * V::kSize;
        return true;
      },
      [&table](const Byte*& p, const Byte* end, Byte*& q) {
        return stepSingleByteToUtf16(table, p, end, q);
      });
}

template <class V>
KernelResult singleByteToUtf8(const SingleByteDecoder& table, const Byte* in, const Byte* inEnd,
                              Byte* out, Byte* outEnd) {
  return inBlocks<V::kSize>(
      in, inEnd, out, outEnd,
      [&table](const Byte*& p, Byte*& q) {
        const auto bytes = V::load(p);
        if (table.isAscii && V::topBits(bytes) == 0) {
          if (hasZeroByte<V>(bytes)) return false;
          V::store(q, bytes);
          p += V::kSize;
          q += V::kSize;
          return true;
        }
        typename V::Reg low, high;
        decodeBytes<V>(table, bytes, low, high);
        if (hasZeroByte<V>(V::either(low, high))) return false;
        if (V::isZero(high) && V::topBits(low) == 0) {
          V::store(q, low);
          q += V::kSize;
        } else {
          typename V::Reg first, second;
          V::join(low, high, first, second);
          if (V::areDisjoint(high, V::bytes(0xF8))) {
            encodeShort<V>(first, q);
            encodeShort<V>(second, q);
          } else {
            encodeAny<V>(first, q);
            encodeAny<V>(second, q);
          }
        }
        p += V::kSize;
        return true;
      },
      [&table](const Byte*& p, const Byte* end, Byte*& q) {
        return stepSingleByteToUtf8(table, p, end, q);
      });
}

template <class V>
KernelResult mapBytes(const ByteMap& table, const Byte* in, const Byte* inEnd, Byte* out,
                      Byte* outEnd) {
  return inBlocks<V::kSize>(
      in, inEnd, out, outEnd,
      [&table](const Byte*& p, Byte*& q) {
        const auto bytes = V::load(p);
        const auto mapped = lookUp<V, 16>(table.bytes, bytes);
        if (!V::isZero(V::both(V::equalBytes(mapped, V::zero()), bytes))) return false;
        V::store(q, mapped);
        p += V::kSize;
        q += V::kSize;
        return true;
      },
      [&table](const Byte*& p, const Byte* end, Byte*& q) {
        return stepMapBytes(table, p, end, q);
      });
}

// ---- Encoding: runs of ASCII by registers, else a flat table by unit. ----

template <class V>
KernelResult utf16ToSingleByte(const SingleByteEncoder& table, const Byte* in, const Byte* inEnd,
                               Byte* out, Byte* outEnd) {
  return inBlocks<2 * V::kSize>(
      in, inEnd, out, outEnd,
      [&table](const Byte*& p, Byte*& q) {
        typename V::Reg bytes;
        if (table.isAscii && narrowAscii<V>(p, bytes)) {
          V::store(q, bytes);
        } else {
          // Going below 0 tells of a byte 0 among them.
          unsigned int borrow = 0;
          for (unsigned int i = 0; i < V::kSize; ++i) {
            q[i] = table.bytes[getUnit(p + 2 * i)];
            borrow |= q[i] - 1u;
          }
          if (borrow > 0xFF) return false;
        }
        p += 2 * V::kSize;
        q += V::kSize;
        return true;
      },
      [&table](const Byte*& p, const Byte* end, Byte*& q) {
        return stepUtf16ToSingleByte(table, p, end, q);
      });
}

template <class V>
KernelResult utf16ToDoubleByte(const DoubleByteEncoder& table, const Byte* in, const Byte* inEnd,
                               Byte* out, Byte* outEnd) {
  return inBlocks<2 * V::kSize>(
      in, inEnd, out, outEnd,
      [&table](const Byte*& p, Byte*& q) {
        typename V::Reg bytes;
        if (table.isAscii && narrowAscii<V>(p, bytes)) {
          V::store(q, bytes);
          p += 2 * V::kSize;
          q += V::kSize;
          return true;
        }
        for (unsigned int i = 0; i < V::kSize; ++i) {
          const unsigned int code = table.codes[getUnit(p)];
          if (code == 0) return i != 0;
          const bool isPair = code > 0xFF;
          const auto stored = static_cast<std::uint16_t>(isPair ? code >> 8 | code << 8 : code);
          std::memcpy(q, &stored, 2);
          p += 2;
          q += isPair ? 2 : 1;
        }
        return true;
      },
      [&table](const Byte*& p, const Byte* end, Byte*& q) {
        return stepUtf16ToDoubleByte(table, p, end, q);
      });
}

// ---- Double-byte code pages, decoding. ----

// The characters are taken one by one, because each tells where the next begins; ASCII runs by
// registers.
template <class V>
KernelResult doubleByteToUtf16(const DoubleByteDecoder& table, const Byte* in, const Byte* inEnd,
                               Byte* out, Byte* outEnd) {
  return inBlocks<V::kSize>(
      in, inEnd, out, outEnd,
      [&table](const Byte*& p, Byte*& q) {
        const Byte* const last = p + V::kSize - 1;  // a pair may begin before it
        if (table.isAscii) {
          const auto bytes = V::load(p);
          const std::uint32_t others = V::topBits(bytes);
          storeWidened<V>(q, bytes);
          if (others == 0) {
            p += V::kSize;
            q += 2 * V::kSize;
            return true;
          }
          const auto count = static_cast<unsigned int>(__builtin_ctz(others));
          p += count;
          q += 2 * count;
        }
        while (p < last && (*p >= 0x80 || !table.isAscii)) {
          const unsigned int unit = table.pairs[p[0] << 8 | p[1]];
          if (unit - 1u >= DoubleByteDecoder::kStop - 1u) {
            const unsigned int single = table.singles[p[0]];
            if (unit != 0 || single - 1u >= DoubleByteDecoder::kStop - 1u) return false;
            putUnit(q, single);
            p += 1;
          } else {
            putUnit(q, unit);
            p += 2;
          }
        }
        return true;
      },
      [&table](const Byte*& p, const Byte* end, Byte*& q) {
        return stepDoubleByteToUtf16(table, p, end, q);
      });
}

}  // namespace
}  // namespace fast

#endif  // ENCODING_FAST_KERNELS_VECTOR_TABLES_H_
