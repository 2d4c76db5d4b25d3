// UTF-8 and UTF-16, a register at a time.
#ifndef ENCODING_KERNELS_VECTOR_UTF8_H_
#define ENCODING_KERNELS_VECTOR_UTF8_H_

#include "encoding/kernels/vector.h"

namespace fast {
namespace {  // NOLINT(cert-dcl59-cpp): internal linkage, see steps.h

// ---- UTF-8 to UTF-16 ----
//
// Every byte gets a unit: what the character would be if it ended there, computed from the byte and
// the two before it. Then the units of the bytes that do end a character are kept and closed up,
// eight at a time, with a shuffle from a table of all 256 masks. Nothing waits for the length of
// the character before, and the work is the same for any mixture of one to three bytes. A character
// of four bytes leaves two units, of its third byte (the high surrogate) and of its fourth.
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
constexpr std::uint8_t kAnyLow = kTooShort | kTooLong | kTwoContinuations;
constexpr std::uint8_t kAnyContinuation = kTooLong | kOverlong2 | kTwoContinuations;

// By the upper and lower half of the first of two neighbouring bytes, and the upper of the second.
alignas(16) constexpr std::uint8_t kFirstHigh[16] = {
    kTooLong,
    kTooLong,
    kTooLong,
    kTooLong,
    kTooLong,
    kTooLong,
    kTooLong,
    kTooLong,
    kTwoContinuations,
    kTwoContinuations,
    kTwoContinuations,
    kTwoContinuations,
    kTooShort | kOverlong2,
    kTooShort,
    kTooShort | kOverlong3 | kSurrogate,
    kTooShort | kTooLarge | kTooLarge1000 | kOverlong4};
alignas(16) constexpr std::uint8_t kFirstLow[16] = {
    kAnyLow | kOverlong3 | kOverlong2 | kOverlong4,
    kAnyLow | kOverlong2,
    kAnyLow,
    kAnyLow,
    kAnyLow | kTooLarge,
    kAnyLow | kTooLarge | kTooLarge1000,
    kAnyLow | kTooLarge | kTooLarge1000,
    kAnyLow | kTooLarge | kTooLarge1000,
    kAnyLow | kTooLarge | kTooLarge1000,
    kAnyLow | kTooLarge | kTooLarge1000,
    kAnyLow | kTooLarge | kTooLarge1000,
    kAnyLow | kTooLarge | kTooLarge1000,
    kAnyLow | kTooLarge | kTooLarge1000,
    kAnyLow | kTooLarge | kTooLarge1000 | kSurrogate,
    kAnyLow | kTooLarge | kTooLarge1000,
    kAnyLow | kTooLarge | kTooLarge1000};
alignas(16) constexpr std::uint8_t kSecondHigh[16] = {
    kTooShort,
    kTooShort,
    kTooShort,
    kTooShort,
    kTooShort,
    kTooShort,
    kTooShort,
    kTooShort,
    kAnyContinuation | kOverlong3 | kTooLarge1000 | kOverlong4,
    kAnyContinuation | kOverlong3 | kTooLarge,
    kAnyContinuation | kSurrogate | kTooLarge,
    kAnyContinuation | kSurrogate | kTooLarge,
    kTooShort,
    kTooShort,
    kTooShort,
    kTooShort};
}  // namespace malformed

// The bytes that do not follow rightly on the three before them.
template <class V>
inline std::uint32_t malformedBytes(typename V::Reg current, typename V::Reg previous1,
                                    typename V::Reg previous2, typename V::Reg previous3) {
  const auto half = V::bytes(0x0F);
  const auto upperHalf = [&](typename V::Reg a) {
    return V::both(V::template shiftRight<4>(a), half);
  };
  const auto pairs =
      V::both(V::both(V::shuffle(V::loadLanes(malformed::kFirstHigh), upperHalf(previous1)),
                      V::shuffle(V::loadLanes(malformed::kFirstLow), V::both(previous1, half))),
              V::shuffle(V::loadLanes(malformed::kSecondHigh), upperHalf(current)));
  // Two continuations are right where a third or fourth byte has to be, and only there.
  const auto isThird = V::subtractBytes(previous2, V::bytes(0xE0 - 0x80));
  const auto isFourth = V::subtractBytes(previous3, V::bytes(0xF0 - 0x80));
  const auto expected = V::both(V::either(isThird, isFourth), V::bytes(0x80));
  const auto wrong = V::differ(expected, pairs);
  return V::isZero(wrong) ? 0 : V::kAllBits & ~V::topBits(V::equalBytes(wrong, V::zero()));
}

template <class V>
struct Utf8Block {
  using Reg = typename V::Reg;
  Reg current, previous1, previous2, previous3;

  Utf8Block(Reg a, Reg b, Reg c, Reg d) : current(a), previous1(b), previous2(c), previous3(d) {}

  explicit Utf8Block(const Byte* in)
      : current(V::load(in)),
        previous1(V::load(in - 1)),
        previous2(V::load(in - 2)),
        previous3(V::load(in - 3)) {}
  // For the beginning of a text, with nothing before it.
  static Utf8Block atBeginning(Reg first) {
    return {first, V::template previousBytes<1>(first), V::template previousBytes<2>(first),
            V::template previousBytes<3>(first)};
  }

  std::uint32_t malformed() const {
    return malformedBytes<V>(current, previous1, previous2, previous3);
  }
  // Third and fourth bytes of characters of four.
  bool hasLong() const {
    return V::topBits(V::subtractBytes(V::maxBytes(previous2, previous3), V::bytes(0x70))) != 0;
  }

  // The unit of each byte, if it is the last of its character; at third bytes of four, bits 6 to 20
  // of the scalar value, and bits 0 to 11 at fourth bytes.
  void units(Reg& low, Reg& high) const {
    const Reg isAscii = V::greaterBytes(current, V::bytes(0xFF));
    const Reg last = V::both(current, V::bytes(0x7F));
    const Reg middle = V::without(V::both(previous1, V::bytes(0x3F)), isAscii);
    // The low half of first bytes from E0 up, as upper half of the unit's high byte; else 0.
    const Reg first = V::template shiftLeft<4>(
        V::both(V::subtractBytes(previous2, V::bytes(0xE0)), V::bytes(0x0F)));
    const Reg weights = V::units(0x4001);
    const Reg zero = V::zero();
    low = V::either(V::multiplyAddPairs(V::interleaveLowBytes(last, middle), weights),
                    V::interleaveLowBytes(zero, first));
    high = V::either(V::multiplyAddPairs(V::interleaveHighBytes(last, middle), weights),
                     V::interleaveHighBytes(zero, first));
  }

  // Turns the units of third and fourth bytes of four into surrogates.
  void putSurrogates(Reg& low, Reg& high) const {
    const Reg isThird = V::greaterBytes(V::subtractBytes(previous2, V::bytes(0xEF)), V::zero());
    const Reg isFourth = V::greaterBytes(V::subtractBytes(previous3, V::bytes(0xEF)), V::zero());
    low = surrogates(low, V::interleaveLowBytes(isThird, isThird),
                     V::interleaveLowBytes(isFourth, isFourth));
    high = surrogates(high, V::interleaveHighBytes(isThird, isThird),
                      V::interleaveHighBytes(isFourth, isFourth));
  }
  static Reg surrogates(Reg units, Reg isThird, Reg isFourth) {
    const Reg upper = V::addUnits(V::template shiftRight<4>(units), V::units(0xD7C0));
    const Reg lower = V::either(V::both(units, V::units(0x03FF)), V::units(0xDC00));
    return V::choose(V::choose(units, upper, isThird), lower, isFourth);
  }

  // The bytes that end a character, or are the third of four: all but first bytes, and second bytes
  // of more than two.
  std::uint32_t kept() const {
    return ~V::topBits(V::either(V::subtractBytes(current, V::bytes(0x40)),
                                 V::subtractBytes(previous1, V::bytes(0x60))));
  }

  // Writes the units of the bytes in a mask of kept ones.
  void write(std::uint32_t mask, Byte*& out) const {
    Reg low, high;
    units(low, high);
    if (hasLong()) putSurrogates(low, high);
    keepUnits(V::template lane<0>(low), mask & 0xFF, out);
    keepUnits(V::template lane<0>(high), mask >> 8 & 0xFF, out);
    if constexpr (V::kLanes == 2) {
      keepUnits(V::template lane<1>(low), mask >> 16 & 0xFF, out);
      keepUnits(V::template lane<1>(high), mask >> 24, out);
    }
  }
};

inline bool isInsideCharacter(const Byte* in) {
  return in[-1] >= 0xC0 || in[-2] >= 0xE0 || in[-3] >= 0xF0;
}

// Goes back to the end of the last whole character of a well-formed text.
inline void dropCutShort(const Byte* begin, const Byte*& in, Byte*& out) {
  const auto size = in - begin;
  if (size >= 1 && in[-1] >= 0xC0) {
    in -= 1;
  } else if (size >= 2 && in[-2] >= 0xE0) {
    in -= 2;
  } else if (size >= 3 && in[-3] >= 0xF0) {
    in -= 3;
    out -= 2;  // the high surrogate
  }
}

// The bits below the first one of a mask, or all.
inline std::uint32_t below(std::uint32_t mask) { return ~mask & (mask - 1); }

// Converts what is not yet converted (from in) of the register at block, up to its end or to what
// is malformed.
template <class V>
[[gnu::noinline]] KernelResult utf8Part(const Byte* begin, const Byte* block, const Byte* in,
                                        Byte* out) {
  const auto part =
      block == begin ? Utf8Block<V>::atBeginning(V::load(block)) : Utf8Block<V>(block);
  const std::uint32_t left = V::kAllBits & (V::kAllBits << (in - block));
  const std::uint32_t malformed = part.malformed() & left;
  part.write(part.kept() & left & below(malformed), out);
  return {block + (malformed == 0 ? V::kSize : firstBit(malformed)), out};
}

// Converts by registers, the last of which goes over again what does not fill it. False when it
// stopped at something malformed.
template <class V>
inline bool utf8Blocks(const Byte* begin, const Byte*& in, const Byte* inEnd, Byte*& out,
                       Byte* outEnd) {
  constexpr auto kSize = static_cast<std::ptrdiff_t>(V::kSize);
  const auto treatPart = [&](const Byte* block) {
    const KernelResult r = utf8Part<V>(begin, block, in, out);
    in = r.in;
    out = r.out;
    return in == block + kSize;
  };
  if (inEnd - begin < kSize || outEnd - out < kRoom) return true;
  if (in == begin && !treatPart(in)) return false;
  while (inEnd - in >= kSize && outEnd - out >= kRoom) {
    if (inEnd - in >= 2 * kSize) {
      const auto first = V::load(in);
      const auto second = V::load(in + kSize);
      if (V::topBits(V::either(first, second)) == 0 && !isInsideCharacter(in)) {
        storeWidened<V>(out, first);
        storeWidened<V>(out + 2 * kSize, second);
        in += 2 * kSize;
        out += 4 * kSize;
        continue;
      }
    }
    const Utf8Block<V> block(in);
    const std::uint32_t malformed = block.malformed();
    if (malformed != 0) {
      block.write(block.kept() & below(malformed), out);
      in += firstBit(malformed);
      return false;
    }
    block.write(block.kept(), out);
    in += kSize;
  }
  const auto left = inEnd - in;
  if (left == 0 || left >= kSize || inEnd - begin < kSize + 3 || outEnd - out < kRoom) return true;
  return treatPart(inEnd - kSize);
}

// A text that fits one register; the zeros behind it are not written.
template <class V>
inline void utf8Short(const Byte*& in, const Byte* inEnd, Byte*& out) {
  const auto size = static_cast<unsigned int>(inEnd - in);
  const auto block = Utf8Block<V>::atBeginning(V::loadFront(in, size));
  const std::uint32_t all = (std::uint32_t{1} << size) - 1;
  const std::uint32_t malformed = block.malformed() & all;
  block.write(block.kept() & all & below(malformed), out);
  in += malformed == 0 ? size : firstBit(malformed);
}

template <class V>
[[gnu::noinline]] KernelResult utf8ToUtf16Long(const Byte* begin, const Byte* inEnd, Byte* out,
                                               Byte* outEnd) {
  const Byte* in = begin;
  bool isClean = utf8Blocks<V>(begin, in, inEnd, out, outEnd);
  if constexpr (V::kLanes > 1) {
    isClean = isClean && utf8Blocks<Vector16>(begin, in, inEnd, out, outEnd);
  }
  dropCutShort(begin, in, out);
  if (!isClean || outEnd - out < kRoom) return {in, out};
  return repeat<stepUtf8ToUtf16>(in, inEnd, out, outEnd);
}

template <class V>
KernelResult utf8ToUtf16(const Byte* begin, const Byte* inEnd, Byte* out, Byte* outEnd) {
  if constexpr (V::kLanes > 1) {
    if (fitsOneRegister<V>(begin, inEnd, out, outEnd)) {
      const Byte* in = begin;
      utf8Short<V>(in, inEnd, out);
      dropCutShort(begin, in, out);
      return {in, out};
    }
  }
  return utf8ToUtf16Long<V>(begin, inEnd, out, outEnd);
}

// ---- UTF-16 to UTF-8 ----
//
// Every unit is spread over a field of the most bytes it may need, its last byte at the field's
// end; a shuffle from a table then closes up the bytes that are in use. As in Lemire and Mula
// (above), but surrogates take the same way: each half of a pair makes two of the four bytes.

// The upper six bits of the last two bytes, as first byte C2 to DF or continuation, are made by the
// callers; this is the last byte: ASCII or a continuation.
template <class V>
inline typename V::Reg lastBytes(typename V::Reg units, typename V::Reg isAscii) {
  const auto continuation = V::either(V::both(units, V::units(0x3F)), V::units(0x80));
  return V::choose(continuation, units, isAscii);
}

inline void writeShort(__m128i fields, unsigned int mask, Byte*& out) {
  Vector16::store(out, Vector16::shuffle(fields, Vector16::load(kOneOrTwo.control[mask])));
  out += 16 - countBits(mask);
}

// Units below 800, none 0.
template <class V>
inline void encodeShort(typename V::Reg units, Byte*& out) {
  const auto isAscii = V::equalUnits(V::both(units, V::units(0xFF80)), V::zero());
  const auto fields = V::either(V::either(V::template shiftRight<6>(units), V::units(0xC0)),
                                V::template shiftLeft<8>(lastBytes<V>(units, isAscii)));
  const std::uint32_t mask = V::topBits(V::packSignedUnits(isAscii, V::zero()));
  writeShort(V::template lane<0>(fields), mask & 0xFF, out);
  if constexpr (V::kLanes == 2) writeShort(V::template lane<1>(fields), mask >> 16, out);
}

inline void writeLong(__m128i fields, unsigned int mask, Byte*& out) {
  Vector16::store(out, Vector16::shuffle(fields, Vector16::load(kOneToThree.control[mask])));
  out += 12 - countBits(mask);
}

// Writes fields of four bytes: two from firsts, one from lasts. Two bits of the mask for each:
// takes one byte, takes at most two.
template <class V>
inline void writeFields(typename V::Reg firsts, typename V::Reg lasts, std::uint32_t mask,
                        Byte*& out) {
  const auto low = V::interleaveLowUnits(firsts, lasts);
  const auto high = V::interleaveHighUnits(firsts, lasts);
  writeLong(V::template lane<0>(low), mask & 0xFF, out);
  writeLong(V::template lane<0>(high), mask >> 8 & 0xFF, out);
  if constexpr (V::kLanes == 2) {
    writeLong(V::template lane<1>(low), mask >> 16 & 0xFF, out);
    writeLong(V::template lane<1>(high), mask >> 24, out);
  }
}

template <class V>
inline std::uint32_t lengthBits(typename V::Reg isAscii, typename V::Reg isShort) {
  return V::topBits(V::choose(isAscii, isShort, V::units(0xFF00)));
}

// Any units but 0 and surrogates.
template <class V>
inline void encodeAny(typename V::Reg units, Byte*& out) {
  const auto isAscii = V::equalUnits(V::both(units, V::units(0xFF80)), V::zero());
  const auto isShort = V::equalUnits(V::both(units, V::units(0xF800)), V::zero());
  const auto middle = V::both(V::template shiftLeft<2>(units), V::units(0x3F00));
  const auto firsts = V::either(V::either(V::template shiftRight<12>(units), middle),
                                V::either(V::units(0x80E0), V::both(isShort, V::units(0x4000))));
  writeFields<V>(firsts, lastBytes<V>(units, isAscii), lengthBits<V>(isAscii, isShort), out);
}

// Any units but 0. The first half of a pair at the end is left for later. False, with all before it
// written, for a surrogate that is not of a pair.
template <class V>
inline bool encodeWithPairs(typename V::Reg units, const Byte*& in, Byte*& out) {
  typename V::Reg isUpper, isLower;
  const bool arePairs = findPairs<V>(units, isUpper, isLower);

  const auto isAscii = V::equalUnits(V::both(units, V::units(0xFF80)), V::zero());
  const auto isTwo = V::equalUnits(V::both(units, V::units(0xF800)), V::zero());
  const auto middle = V::both(V::template shiftLeft<2>(units), V::units(0x3F00));
  auto firsts = V::either(V::either(V::template shiftRight<12>(units), middle),
                          V::either(V::units(0x80E0), V::both(isTwo, V::units(0x4000))));
  auto lasts = lastBytes<V>(units, isAscii);
  // Upper half: bits 10 to 20 of the scalar value, five of them in each byte but the lowest two,
  // which belong to the first byte of the lower half.
  const auto bits = V::addUnits(V::both(units, V::units(0x03FF)), V::units(0x0040));
  firsts = V::choose(firsts, V::either(V::both(bits, V::units(0x0700)), V::units(0xF000)), isUpper);
  lasts = V::choose(
      lasts, V::either(V::both(V::template shiftRight<2>(bits), V::units(0x3F)), V::units(0x80)),
      isUpper);
  const auto carried = V::template shiftLeft<12>(V::both(V::previousUnits(units), V::units(3)));
  const auto own = V::both(V::template shiftLeft<2>(units), V::units(0x0F00));
  firsts = V::choose(firsts, V::either(V::either(carried, own), V::units(0x8000)), isLower);

  const auto isShort = V::either(isTwo, V::either(isUpper, isLower));
  Byte* const begin = out;
  writeFields<V>(firsts, lasts, lengthBits<V>(isAscii, isShort), out);
  if (!arePairs) {
    const std::uint32_t alone = V::topBits(V::differ(V::previousUnits(isUpper), isLower));
    unsigned int place = firstBit(alone);  // in bytes; of the unit behind, if it is an upper half
    if (place != 0 && (V::topBits(isUpper) >> (place - 1) & 1) != 0) place -= 2;
    const std::uint32_t before = (1u << place) - 1;
    in += place;
    out = begin + (3 * place - countBits(V::topBits(isShort) & before) -
                   countBits(V::topBits(isAscii) & before)) /
                      2;
    return false;
  }
  in += V::kSize;
  if (lastBitIsSet<V>(isUpper)) {
    in -= 2;
    out -= 2;
  }
  return true;
}

// Two registers at a time are of the same kind: the fewer the questions, the fewer the branches
// that are guessed wrong where kinds alternate.
template <class V, unsigned int kRegisters>
struct Utf16ToUtf8 {
  static constexpr std::ptrdiff_t kBlock = kRegisters * V::kSize;
  bool step(const Byte*& in, const Byte* inEnd, Byte*& out) const {
    return stepUtf16ToUtf8(in, inEnd, out);
  }
  bool treat(const Byte*& in, Byte*& out) const {
    const auto first = V::load(in);
    return treatRegisters(first, kRegisters > 1 ? V::load(in + V::kSize) : first, in, out);
  }
  bool treatRegister(typename V::Reg units, const Byte*& in, Byte*& out) const {
    return treatRegisters(units, units, in, out);
  }
  bool treatRegisters(typename V::Reg first, typename V::Reg second, const Byte*& in,
                      Byte*& out) const {
    const auto bits = V::either(first, second);
    if (!V::isZero(V::equalUnits(V::minUnits(first, second), V::zero()))) return false;
    if (V::areDisjoint(bits, V::units(0xFF80))) {
      V::store(out, V::narrow(first, second));
      out += kBlock / 2;
    } else if (V::areDisjoint(bits, V::units(0xF800))) {
      encodeShort<V>(first, out);
      if constexpr (kRegisters > 1) encodeShort<V>(second, out);
    } else if (V::isZero(V::either(surrogates<V>(first), surrogates<V>(second)))) {
      encodeAny<V>(first, out);
      if constexpr (kRegisters > 1) encodeAny<V>(second, out);
    } else {
      return encodeWithPairs<V>(first, in, out);
    }
    in += kBlock;
    return true;
  }
};

// Apart, like the other long ways, so that a short text does not pay for the registers that these
// loops fill with constants first.
template <class V>
[[gnu::noinline]] KernelResult utf16ToUtf8Long(const Byte* in, const Byte* inEnd, Byte* out,
                                               Byte* outEnd) {
  return treatAll<Utf16ToUtf8<V, 2>, Utf16ToUtf8<Vector16, 1>>(in, inEnd, out, outEnd);
}

template <class V>
KernelResult utf16ToUtf8(const Byte* in, const Byte* inEnd, Byte* out, Byte* outEnd) {
  if constexpr (V::kLanes > 1) {
    if (fitsOneRegister<V>(in, inEnd, out, outEnd) && (inEnd - in) % 2 == 0 &&
        treatFilled<2, V>(Utf16ToUtf8<V, 1>(), in, inEnd, out)) {
      return {in, out};
    }
  }
  return utf16ToUtf8Long<V>(in, inEnd, out, outEnd);
}

}  // namespace
}  // namespace fast

#endif  // ENCODING_KERNELS_VECTOR_UTF8_H_
