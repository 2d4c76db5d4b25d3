// From UTF-8 to UTF-16 and UTF-32, and whether it is UTF-8.
#ifndef ENCODING_KERNELS_VECTOR_UTF8_H_
#define ENCODING_KERNELS_VECTOR_UTF8_H_

#include "encoding/kernels/vector.h"
#include "support/compiler.h"

namespace fast {
namespace {  // NOLINT(cert-dcl59-cpp): internal linkage, see lanes.h

// Every byte gets a unit: what the character would be if it ended there, computed from the byte and
// the two before it. Then the units of the bytes that do end a character are kept and closed up,
// eight at a time, with a shuffle from a table of all 256 masks. Nothing waits for the length of
// the character before, and the work is the same for any mixture of one to three bytes. A character
// of four bytes leaves two units, of its third byte (the high surrogate) and of its fourth; in
// UTF-32 the fourth leaves all.
//
// What is well formed is told by three look-ups of half bytes, from J. Keiser and D. Lemire,
// "Validating UTF-8 In Less Than One Instruction Per Byte" (Software: Practice and Experience 51,
// 2021); closing up by shuffles from a table is found in D. Lemire and W. Mula, "Transcoding
// Billions of Unicode Characters per Second with SIMD Instructions" (the same journal, 52, 2022).

namespace malformed {
constexpr std::uint8_t kTooShort = 1 << 0;      // a first byte, then no continuation
constexpr std::uint8_t kTooLong = 1 << 1;       // ASCII, then a continuation
constexpr std::uint8_t kOverlong3 = 1 << 2;     // E0, then below A0
constexpr std::uint8_t kTooLarge = 1 << 3;      // F4, then 90 or more; F5 and up
constexpr std::uint8_t kSurrogate = 1 << 4;     // ED, then A0 or more
constexpr std::uint8_t kOverlong2 = 1 << 5;     // C0 or C1
constexpr std::uint8_t kTooLarge1000 = 1 << 6;  // F5 and up, then 80 to 8F
constexpr std::uint8_t kOverlong4 = 1 << 6;     // F0, then below 90
constexpr std::uint8_t kTwoContinuations = 1 << 7;

// By the upper half of the first of two neighbouring bytes, its lower half, and the upper half of
// the second.
struct Tables {
  alignas(16) std::uint8_t firstHigh[16], firstLow[16], secondHigh[16];
};
constexpr Tables kTables = [] {
  Tables tables = {};
  for (unsigned int half = 0; half < 16; ++half) {
    unsigned int high = half < 8 ? kTooLong : half < 0xC ? kTwoContinuations : kTooShort;
    if (half == 0xC) high |= kOverlong2;
    if (half == 0xE) high |= kOverlong3 | kSurrogate;
    if (half == 0xF) high |= kTooLarge | kTooLarge1000 | kOverlong4;
    unsigned int low = kTooShort | kTooLong | kTwoContinuations;
    if (half < 2) low |= kOverlong2;
    if (half == 0) low |= kOverlong3 | kOverlong4;
    if (half >= 4) low |= kTooLarge;
    if (half >= 5) low |= kTooLarge1000;
    if (half == 0xD) low |= kSurrogate;
    unsigned int second = kTooShort;
    if (half >= 8 && half < 0xC) {
      second = kTooLong | kOverlong2 | kTwoContinuations | (half < 0xA ? kOverlong3 : kSurrogate) |
               (half == 8 ? kTooLarge1000 | kOverlong4 : kTooLarge);
    }
    tables.firstHigh[half] = static_cast<std::uint8_t>(high);
    tables.firstLow[half] = static_cast<std::uint8_t>(low);
    tables.secondHigh[half] = static_cast<std::uint8_t>(second);
  }
  return tables;
}();
}  // namespace malformed

template <class V>
struct Utf8Block {
  using Bytes = typename V::Bytes;
  using Units = typename V::Units;
  Bytes current, previous1, previous2, previous3;

  explicit Utf8Block(const Byte* in)
      : current(Bytes::load(in)),
        previous1(Bytes::load(in - 1)),
        previous2(Bytes::load(in - 2)),
        previous3(Bytes::load(in - 3)) {}
  // For the beginning of a text, with nothing before it.
  explicit Utf8Block(Bytes first)
      : current(first),
        previous1(moveUp<1>(first)),
        previous2(moveUp<2>(first)),
        previous3(moveUp<3>(first)) {}

  // Not 0 in the bytes that do not follow rightly on the three before them.
  Bytes wrong() const {
    const auto lookUp = [](const std::uint8_t(&table)[16], Bytes places) {
      Bytes bytes;
      loadEachPart(table, bytes);
      return lookup16(bytes, places);
    };
    const auto upperHalf = [](Bytes a) { return as<Bytes>(as<Units>(a) >> 4) & 0x0F; };
    const Bytes pairs = lookUp(malformed::kTables.firstHigh, upperHalf(previous1)) &
                        lookUp(malformed::kTables.firstLow, previous1 & 0x0F) &
                        lookUp(malformed::kTables.secondHigh, upperHalf(current));
    // Two continuations are right where a third or fourth byte has to be, and only there.
    const Bytes isThird = subtractSaturated(previous2, 0xE0 - 0x80);
    const Bytes isFourth = subtractSaturated(previous3, 0xF0 - 0x80);
    return ((isThird | isFourth) & 0x80) ^ pairs;
  }
  std::uint32_t malformed() const {
    const Bytes bytes = wrong();
    return isZero(bytes) ? 0 : V::kAllBits & ~topBits(equal(bytes, 0));
  }

  // Whether there are third or fourth bytes of characters of four.
  bool hasLong() const { return topBits(subtractSaturated(max(previous2, previous3), 0x70)) != 0; }
  Mask<Bytes> isThirdOfFour() const { return isFrom(previous2, 0xF0); }
  Mask<Bytes> isFourth() const { return isFrom(previous3, 0xF0); }
  static Mask<Bytes> isFrom(Bytes bytes, unsigned int first) {
    return equal(max(bytes, first), bytes);
  }

  // Bits 12 to 15 of the unit or scalar value of each byte, if it is the last of its character, as
  // upper half: the lower half of first bytes from E0 up.
  Bytes topBitsOfThree() const {
    return as<Bytes>(as<Units>(subtractSaturated(previous2, 0xE0) & 0x0F) << 4);
  }
  // The unit of each byte, if it is the last of its character; at third bytes of four, bits 6 to 20
  // of the scalar value, and bits 0 to 11 at fourth bytes. Of each 16 bytes the low ones' units are
  // in low, and the high ones' in high.
  void units(Bytes top, Units& low, Units& high) const {
    const auto isAscii = greaterSigned(current, 0xFF);
    const Bytes last = current & 0x7F;
    const Bytes middle = previous1 & 0x3F & ~isAscii;
    const auto weights = as<Bytes>(Units(0x4001));
    low = multiplyAddPairs(interleaveLow(last, middle), weights) | as<Units>(interleaveLow(0, top));
    high =
        multiplyAddPairs(interleaveHigh(last, middle), weights) | as<Units>(interleaveHigh(0, top));
  }

  // The bytes that end a character, or are the third of four: all but first bytes, and second bytes
  // of more than two.
  std::uint32_t kept() const {
    return ~topBits(subtractSaturated(current, 0x40) | subtractSaturated(previous1, 0x60));
  }
};

// What becomes of the characters. write() writes those whose last bytes are in a mask of kept ones.

template <class V>
struct ToUtf16 {
  using Bytes = typename V::Bytes;
  using Units = typename V::Units;
  static constexpr auto kStep = stepUtf8ToUtf16;
  static constexpr std::ptrdiff_t kAsciiRun = 2 * V::kSize;  // bytes that are treated at a time
  static constexpr std::ptrdiff_t kOfThird = 2;  // bytes written for the third byte of four

  static void writeAscii(const Byte* in, Byte*& out) {
    storeWidened<Units, V>(out, in);
    storeWidened<Units, V>(out + 2 * V::kSize, in + V::kSize);
    out += 4 * V::kSize;
  }

  static void write(const Utf8Block<V>& block, std::uint32_t mask, Byte*& out) {
    Units low, high;
    block.units(block.topBitsOfThree(), low, high);
    if (block.hasLong()) {
      const Bytes isThird = block.isThirdOfFour();
      const Bytes isFourth = block.isFourth();
      low = surrogatesOf(low, interleaveLow(isThird, isThird), interleaveLow(isFourth, isFourth));
      high =
          surrogatesOf(high, interleaveHigh(isThird, isThird), interleaveHigh(isFourth, isFourth));
    }
    forEachPart<V>([&](auto n) {
      writeKept(part<n>(low), mask >> 16 * n & 0xFF, out);
      writeKept(part<n>(high), mask >> (16 * n + 8) & 0xFF, out);
    });
  }
  static Units surrogatesOf(Units units, Bytes isThird, Bytes isFourth) {
    const Units upper = (units >> 4) + 0xD7C0;
    const Units lower = (units & 0x03FF) | 0xDC00;
    units = select(Mask<Units>(isThird.native()), upper, units);
    return select(Mask<Units>(isFourth.native()), lower, units);
  }
};

template <class V>
struct ToUtf32 {
  using Bytes = typename V::Bytes;
  using Units = typename V::Units;
  static constexpr auto kStep = stepUtf8ToUtf32;
  static constexpr std::ptrdiff_t kAsciiRun = 32;
  static constexpr std::ptrdiff_t kOfThird = 0;

  static void writeAscii(const Byte* in, Byte*& out) {
    for (unsigned int i = 0; i < 32; i += V::kSize, out += 4 * V::kSize) {
      storeWidened<typename V::Scalars, V>(out, in + i);
    }
  }

  static void write(const Utf8Block<V>& block, std::uint32_t mask, Byte*& out) {
    if (block.hasLong()) {
      writeLong(block, mask, out);
      return;
    }
    Units low, high;
    block.units(block.topBitsOfThree(), low, high);
    const auto write = [&](Units16 units, std::uint32_t kept) {
      storeScalars(keepUnits(units, kept), out);
      out += 4 * countBits(kept);
    };
    forEachPart<V>([&](auto n) {
      write(part<n>(low), mask >> 16 * n & 0xFF);
      write(part<n>(high), mask >> (16 * n + 8) & 0xFF);
    });
  }
  static void writeLong(const Utf8Block<V>& block, std::uint32_t mask, Byte*& out) {
    const auto isFourth = block.isFourth();
    const auto shifted = [](Bytes bytes, int n) { return as<Bytes>(as<Units>(bytes) << n); };
    Units low, high;
    block.units(select(isFourth, shifted(block.previous2 & 0x0F, 4), block.topBitsOfThree()), low,
                high);
    const Bytes sixteenUp =
        (shifted(block.previous3 & 0x07, 2) | (as<Bytes>(as<Units>(block.previous2) >> 4) & 0x03)) &
        isFourth;
    const auto lowUp = as<Units>(interleaveLow(sixteenUp, 0));
    const auto highUp = as<Units>(interleaveHigh(sixteenUp, 0));
    mask &= ~topBits(block.isThirdOfFour());
    forEachPart<V>([&](auto n) {
      writeScalars(part<n>(low), part<n>(lowUp), mask >> 16 * n & 0xFF, out);
      writeScalars(part<n>(high), part<n>(highUp), mask >> (16 * n + 8) & 0xFF, out);
    });
  }
};

inline bool isInsideCharacter(const Byte* in) {
  return in[-1] >= 0xC0 || in[-2] >= 0xE0 || in[-3] >= 0xF0;
}

// Goes back to the end of the last whole character of a well-formed text.
inline void dropCutShort(const Byte* begin, std::ptrdiff_t ofThird, const Byte*& in, Byte*& out) {
  const auto size = in - begin;
  if (size >= 1 && in[-1] >= 0xC0) {
    in -= 1;
  } else if (size >= 2 && in[-2] >= 0xE0) {
    in -= 2;
  } else if (size >= 3 && in[-3] >= 0xF0) {
    in -= 3;
    out -= ofThird;
  }
}

// The bits below the first one of a mask, or all.
inline std::uint32_t below(std::uint32_t mask) { return ~mask & (mask - 1); }

// Converts what is not yet converted (from in) of the register at block, up to its end or to what
// is malformed.
template <template <class> class To, class V>
COMPILER_NO_INLINE COMPILER_FLATTEN KernelResult utf8Part(const Byte* begin, const Byte* block,
                                                          const Byte* in, Byte* out) {
  const auto part = block == begin ? Utf8Block<V>(V::Bytes::load(block)) : Utf8Block<V>(block);
  const std::uint32_t left = V::kAllBits & (V::kAllBits << (in - block));
  const std::uint32_t malformed = part.malformed() & left;
  To<V>::write(part, part.kept() & left & below(malformed), out);
  return {block + (malformed == 0 ? V::kSize : firstBit(malformed)), out};
}

// Converts by registers, the last of which goes over again what does not fill it. False when it
// stopped at something malformed.
template <template <class> class To, class V>
inline bool utf8Blocks(const Byte* begin, const Byte*& in, const Byte* inEnd, Byte*& out,
                       Byte* outEnd) {
  using Bytes = typename V::Bytes;
  constexpr auto kSize = static_cast<std::ptrdiff_t>(V::kSize);
  constexpr auto kRun = To<V>::kAsciiRun;
  const auto treatPart = [&](const Byte* block) {
    const KernelResult r = utf8Part<To, V>(begin, block, in, out);
    in = r.in;
    out = r.out;
    return in == block + kSize;
  };
  const auto isAsciiRun = [&] {
    return inEnd - in >= kRun && outEnd - out >= kRoom &&
           topBits(Bytes::load(in) | Bytes::load(in + kRun - kSize)) == 0;
  };
  if (inEnd - begin < kSize || outEnd - out < kRoom) return true;
  if (in == begin && !treatPart(in)) return false;
  while (inEnd - in >= kSize && outEnd - out >= kRoom) {
    if (isAsciiRun() && !isInsideCharacter(in)) {
      do {
        To<V>::writeAscii(in, out);
        in += kRun;
      } while (isAsciiRun());
      continue;
    }
    const Utf8Block<V> block(in);
    const std::uint32_t malformed = block.malformed();
    if (malformed != 0) {
      To<V>::write(block, block.kept() & below(malformed), out);
      in += firstBit(malformed);
      return false;
    }
    To<V>::write(block, block.kept(), out);
    in += kSize;
  }
  const auto left = inEnd - in;
  if (left == 0 || left >= kSize || inEnd - begin < kSize + 3 || outEnd - out < kRoom) return true;
  return treatPart(inEnd - kSize);
}

// A text that fits one register; the zeros behind it are not written.
template <template <class> class To, class V>
inline void utf8Short(const Byte*& in, const Byte* inEnd, Byte*& out) {
  const auto size = static_cast<unsigned int>(inEnd - in);
  const Utf8Block<V> block(loadFront<V>(in, size));
  const std::uint32_t all = (std::uint32_t{1} << size) - 1;
  const std::uint32_t malformed = block.malformed() & all;
  To<V>::write(block, block.kept() & all & below(malformed), out);
  in += malformed == 0 ? size : firstBit(malformed);
}

template <template <class> class To, class V>
COMPILER_NO_INLINE COMPILER_FLATTEN KernelResult fromUtf8Long(const Byte* begin, const Byte* inEnd,
                                                              Byte* out, Byte* outEnd) {
  const Byte* in = begin;
  bool isClean = utf8Blocks<To, V>(begin, in, inEnd, out, outEnd);
  if constexpr (V::kParts > 1) {
    isClean = isClean && utf8Blocks<To, Vector16>(begin, in, inEnd, out, outEnd);
  }
  dropCutShort(begin, To<V>::kOfThird, in, out);
  if (!isClean || outEnd - out < kRoom) return {in, out};
  return repeat<To<V>::kStep>(in, inEnd, out, outEnd);
}

template <template <class> class To, class V>
COMPILER_FLATTEN KernelResult fromUtf8(const Byte* begin, const Byte* inEnd, Byte* out,
                                       Byte* outEnd) {
  if constexpr (V::kParts > 1) {
    if (fitsOneRegister<V>(begin, inEnd, out, outEnd)) {
      const Byte* in = begin;
      utf8Short<To, V>(in, inEnd, out);
      dropCutShort(begin, To<V>::kOfThird, in, out);
      return {in, out};
    }
  }
  return fromUtf8Long<To, V>(begin, inEnd, out, outEnd);
}

// ---- Only to see whether it is well formed ----

// Goes on by several registers at a time, as long as nothing is malformed.
template <class V>
inline void passWellFormed(const Byte*& in, const Byte* inEnd) {
  using Bytes = typename V::Bytes;
  constexpr auto kSize = static_cast<std::ptrdiff_t>(V::kSize);
  for (; inEnd - in >= 4 * kSize; in += 4 * kSize) {
    const Bytes all = (Bytes::load(in) | Bytes::load(in + kSize)) |
                      (Bytes::load(in + 2 * kSize) | Bytes::load(in + 3 * kSize));
    if (topBits(all) == 0 && !isInsideCharacter(in)) continue;
    const auto wrong = [&](int i) { return Utf8Block<V>(in + i * kSize).wrong(); };
    if (!isZero((wrong(0) | wrong(1)) | (wrong(2) | wrong(3)))) return;
  }
}

// Of a text in one register, and zeros: where what is malformed in it begins, or its end.
template <class V>
inline const Byte* passShort(const Byte* in, std::ptrdiff_t size) {
  const Utf8Block<V> block(loadFront<V>(in, static_cast<unsigned int>(size)));
  const std::uint32_t malformed = block.malformed() & ((std::uint32_t{1} << size) - 1);
  return malformed == 0 ? in + size : in + firstBit(malformed);
}

// The same of a longer one; the last register goes over again what does not fill it.
template <class V>
inline const Byte* passLong(const Byte* begin, const Byte* inEnd) {
  constexpr auto kSize = static_cast<std::ptrdiff_t>(V::kSize);
  const Byte* in = begin;
  const auto pass = [&](const Utf8Block<V>& block, const Byte* at) {
    const std::uint32_t malformed = block.malformed() & V::kAllBits << (in - at);
    in = malformed == 0 ? at + kSize : at + firstBit(malformed);
    return malformed == 0;
  };
  bool isGood = pass(Utf8Block<V>(V::Bytes::load(begin)), begin);
  if (isGood) passWellFormed<V>(in, inEnd);
  while (isGood && inEnd - in >= kSize) isGood = pass(Utf8Block<V>(in), in);
  if (isGood && in != inEnd) pass(Utf8Block<V>(inEnd - kSize), inEnd - kSize);
  return in;
}

template <class V>
COMPILER_FLATTEN const Byte* wellFormedUtf8(const Byte* begin, const Byte* inEnd) {
  constexpr auto kSize = static_cast<std::ptrdiff_t>(V::kSize);
  constexpr std::ptrdiff_t kBefore = 3;  // bytes that a register looks back at
  const auto size = inEnd - begin;
  const Byte* in = begin;
  if (size >= kSize + kBefore) {
    in = passLong<V>(begin, inEnd);
  } else {
    if constexpr (V::kParts > 1) {
      if (size >= kLeastFilled && size < kSize) in = passShort<V>(begin, size);
    }
    if (in == begin) return scan<readUtf8>(begin, inEnd);
  }
  Byte* nothing = nullptr;
  dropCutShort(begin, 0, in, nothing);
  return in;
}

}  // namespace
}  // namespace fast

#endif  // ENCODING_KERNELS_VECTOR_UTF8_H_
