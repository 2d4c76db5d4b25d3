// What the vector kernels have in common: the loop over blocks, the way of short texts, and parts.
#ifndef ENCODING_KERNELS_VECTOR_H_
#define ENCODING_KERNELS_VECTOR_H_

#include "encoding/kernels/kernels.h"
#include "encoding/kernels/registers.h"
#include "encoding/kernels/shuffle_tables.h"
#include "encoding/kernels/steps.h"
#include "support/compiler.h"

namespace fast {
namespace {  // NOLINT(cert-dcl59-cpp): internal linkage, see lanes.h

constexpr auto kRoom = static_cast<std::ptrdiff_t>(kKernelSlack);

// Single units, where the processor's own byte order is known.
inline void storeUnit(Byte* out, std::uint16_t unit) { std::memcpy(out, &unit, 2); }
inline std::uint16_t loadUnit(const Byte* in) {
  std::uint16_t unit;
  std::memcpy(&unit, in, 2);
  return unit;
}

// ---- The loop over blocks ----
//
// Work<V> does the work of one kernel with registers V; a work with a table is made of it. Its
// treat() looks at kBlock bytes of input and moves both pointers over as much as it likes. If it
// returns false, it has moved them by less than a block, and its step treats the next few
// characters instead. Together they write at most kKernelSlack bytes.

// Goes on while there are blocks; false when a step says stop.
template <class Work, class... Table>
inline bool treatBlocks(const Byte*& in, const Byte* inEnd, Byte*& out, Byte* outEnd,
                        const Table&... table) {
  constexpr std::ptrdiff_t kSteps = 16;  // bytes of input to step over; at most a block
  const Work work{table...};
  while (inEnd - in >= Work::kBlock && outEnd - out >= kRoom) {
    if (work.treat(in, out)) continue;
    const Byte* stepsEnd = in + kSteps;
    do {
      if (!Work::kStep(table..., in, inEnd, out)) return false;
    } while (in < stepsEnd && in < inEnd);
  }
  return true;
}

// Big blocks, then small ones, then steps.
template <class Big, class Small, class... Table>
inline KernelResult treatAll(const Byte* in, const Byte* inEnd, Byte* out, Byte* outEnd,
                             const Table&... table) {
  if (!treatBlocks<Big>(in, inEnd, out, outEnd, table...)) return {in, out};
  if constexpr (Small::kBlock < Big::kBlock) {
    if (!treatBlocks<Small>(in, inEnd, out, outEnd, table...)) return {in, out};
  }
  if (outEnd - out < kRoom) return {in, out};
  return repeat<Small::kStep, Table...>(table..., in, inEnd, out, outEnd);
}

// The kernel of a work. Kernels with loops are flattened, so that pointers and constants stay in
// registers through all parts of the loop.
template <class V, template <class> class Work, class... Table>
COMPILER_FLATTEN KernelResult kernel(const Table&... table, const Byte* in, const Byte* inEnd,
                                     Byte* out, Byte* outEnd) {
  return treatAll<Work<V>, Work<Vector16>>(in, inEnd, out, outEnd, table...);
}

// ---- Short texts ----
//
// With 32-byte registers a text that fills a quarter of one or more goes through one register,
// filled up with something harmless, and not through a smaller register and up to fifteen steps.
constexpr std::ptrdiff_t kLeastFilled = 8;

template <class V>
inline bool fitsOneRegister(const Byte* in, const Byte* inEnd, const Byte* out,
                            const Byte* outEnd) {
  const auto size = inEnd - in;
  return V::kParts > 1 && size >= kLeastFilled && size < static_cast<std::ptrdiff_t>(V::kSize) &&
         outEnd - out >= kRoom;
}

// The 8 to 16 bytes at p, and zeros behind them: two loads that overlap, the second moved down.
template <class V>
inline Bytes16 loadHalves(const Byte* p, unsigned int size) {
  std::uint64_t first = 0, last = 0;
  std::memcpy(&first, p, sizeof first);
  std::memcpy(&last, p + size - sizeof last, sizeof last);
  const unsigned int half = 4 * (16 - size);  // of the bits to move by, which may be all
  return Bytes16(CompilerVector<std::uint64_t, 16>::Type{first, last >> half >> half});
}
// The same for kLeastFilled to 31 bytes.
template <class V>
inline typename V::Bytes loadFront(const Byte* p, unsigned int size) {
  if (size < 16) return joinParts(loadHalves<V>(p, size), Bytes16(0));
  const Bytes16 last = Bytes16::load(p + size - 16);
  return joinParts(Bytes16::load(p),
                   lookup16(last, Bytes16::load(kMoveDown.control + V::kSize - size)));
}

// Letters from the places of a register that a text of size bytes leaves, zeros before them. They
// have width bytes each, a divisor of the size.
template <class V, unsigned int width>
inline typename V::Bytes filling(unsigned int size) {
  static constexpr auto kLetters = [] {
    struct {
      Byte bytes[2 * V::kSize];
    } table = {};
    for (unsigned int i = V::kSize; i < 2 * V::kSize; i += width) table.bytes[i] = 'a';
    return table;
  }();
  return V::Bytes::load(kLetters.bytes + V::kSize - size);
}

// Whole text by one register, by work.treatRegister(register, in, out); true when it was clean.
// Otherwise what lies before the character in question is converted.
template <unsigned int width, class V, class Work>
inline bool treatFilled(const Work& work, const Byte*& in, const Byte* inEnd, Byte*& out) {
  const auto size = static_cast<unsigned int>(inEnd - in);
  if (!work.treatRegister(loadFront<V>(in, size) | filling<V, width>(size), in, out)) return false;
  in = inEnd;
  out -= (V::kSize - size) / width;  // the letters
  return true;
}

// ---- Parts ----

// Has the memory fetched that will be written soon, of as many bytes as are being written at out.
// For kernels that write more than they compute: the processor foresees reads better than writes.
template <unsigned int kBytes>
inline void expectOutput(const Byte* out) {
  constexpr unsigned int kAhead = 2048;
  constexpr unsigned int kCacheLine = 64;
  for (unsigned int i = 0; i < kBytes; i += kCacheLine) COMPILER_EXPECT_WRITE(out + kAhead + i);
}

// Calls a function with the number of each 16 bytes of a register, as a constant.
template <class V, class Function>
COMPILER_INLINE inline void forEachPart(Function function) {
  function(std::integral_constant<int, 0>());
  if constexpr (V::kParts == 2) function(std::integral_constant<int, 1>());
}

// Those of eight units whose bits are set, closed up.
inline Units16 keepUnits(Units16 units, std::uint32_t mask) {
  return as<Units16>(lookup16(as<Bytes16>(units), Bytes16::load(kKeepUnits.control[mask])));
}

inline void writeKept(Units16 units, std::uint32_t mask, Byte*& out) {
  keepUnits(units, mask).store(out);
  out += 2 * countBits(mask);
}

// The same for eight scalar values, by their lower and upper 16 bits.
inline void writeScalars(Units16 lows, Units16 highs, std::uint32_t mask, Byte*& out) {
  const Units16 low = keepUnits(lows, mask);
  const Units16 high = keepUnits(highs, mask);
  interleaveLow(low, high).store(out);
  interleaveHigh(low, high).store(out + 16);
  out += 4 * countBits(mask);
}

template <class Units>
inline Mask<Units> surrogates(Units units) {
  return equal(units & 0xF800, 0xD800);
}

// The units before each of a register's own; 0 before the first.
template <class Units>
inline Units previousUnits(Units units) {
  return as<Units>(moveUp<2>(as<Lanes<std::uint8_t, sizeof units>>(units)));
}

// The upper and lower halves of pairs.
template <class V>
struct Pairs {
  using Units = typename V::Units;
  Mask<Units> isUpper, isLower;

  explicit Pairs(Units units)
      : isUpper(equal(units & 0xFC00, 0xD800)), isLower(equal(units & 0xFC00, 0xDC00)) {}
  // Surrogates that are not of a pair, by bytes: of a lone upper half, those of the unit behind it.
  // An upper half at the end is none.
  typename V::Bytes wrong() const {
    return as<typename V::Bytes>(previousUnits(Units(isUpper)) ^ isLower);
  }
  bool endsWithUpper() const {
    return topBits(as<typename V::Bytes>(isUpper)) >> (V::kSize - 1) != 0;
  }
};

// ---- Runs of ASCII, the other byte order, and what only reads ----

// The V::kSize bytes at in as units, or as scalars.
template <class Lanes, class V>
inline void storeWidened(Byte* out, const Byte* in) {
  constexpr unsigned int kWidth = sizeof(typename Lanes::Lane);
  expectOutput<kWidth * V::kSize>(out);
  for (unsigned int i = 0; i < kWidth; ++i) {
    Lanes lanes;
    loadWidened(in + i * V::kSize / kWidth, lanes);
    lanes.store(out + i * V::kSize);
  }
}

// Two registers of units below 80, as bytes.
template <class V>
inline bool narrowAscii(const Byte* in, typename V::Bytes& bytes) {
  const auto first = V::Units::load(in);
  const auto second = V::Units::load(in + V::kSize);
  if (!areDisjoint(first | second, 0xFF80)) return false;
  bytes = narrow(first, second);
  return true;
}

template <class Lanes>
inline bool hasZero(Lanes lanes) {
  return equal(lanes, 0).any();
}

template <class V>
struct SwapUtf16 {
  static constexpr std::ptrdiff_t kBlock = V::kSize;
  static constexpr auto kStep = stepSwapUtf16;
  bool treat(const Byte*& in, Byte*& out) const {
    const auto units = V::Units::load(in);
    (units << 8 | units >> 8).store(out);
    in += V::kSize;
    out += V::kSize;
    return true;
  }
};

template <class V>
const Byte* pairedUtf16(const Byte* in, const Byte* inEnd) {
  constexpr std::ptrdiff_t kBlock = 2 * V::kSize;
  while (inEnd - in >= kBlock) {
    const auto first = V::Units::load(in);
    const auto second = V::Units::load(in + V::kSize);
    if ((surrogates(first) | surrogates(second)).none()) {
      in += kBlock;
      continue;
    }
    const Pairs<V> pairs(first);
    if (!isZero(pairs.wrong())) return scan<readUtf16>(in, inEnd);
    in += V::kSize - (pairs.endsWithUpper() ? 2 : 0);
  }
  return scan<readUtf16>(in, inEnd);
}

template <class V, class Value, auto countRest>
std::uint64_t count(const Byte* in, const Byte* inEnd, Value value) {
  std::uint64_t bits = 0;
  for (; inEnd - in >= static_cast<std::ptrdiff_t>(V::kSize); in += V::kSize) {
    const auto found = equal(Lanes<Value, V::kSize>::load(in), value);
    bits += countBits(topBits(as<typename V::Bytes>(found)));
  }
  if (inEnd - in >= 16) {
    const auto found = equal(Lanes<Value, 16>::load(in), value);
    bits += countBits(topBits(as<Bytes16>(found)));
    in += 16;
  }
  return bits / sizeof(Value) + countRest(in, inEnd, value);
}

// Three bytes a unit, but for those that have less.
template <class V>
std::uint64_t utf8Length(const Byte* in, const Byte* inEnd) {
  std::uint64_t length = 0;
  for (; inEnd - in >= static_cast<std::ptrdiff_t>(V::kSize); in += V::kSize) {
    const auto units = V::Units::load(in);
    const auto isOne = isAtMost(units, 0x7F);
    const auto isTwo = isAtMost(units, 0x7FF) | surrogates(units);
    const unsigned int bits = countBits(topBits(as<typename V::Bytes>(isOne))) +
                              countBits(topBits(as<typename V::Bytes>(isTwo)));
    length += (3 * V::kSize - bits) / 2;
  }
  return length + utf8LengthSteps(in, inEnd);
}

}  // namespace
}  // namespace fast

#endif  // ENCODING_KERNELS_VECTOR_H_
