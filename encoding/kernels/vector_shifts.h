// Pairs between shifts, a block at a time.
#ifndef ENCODING_KERNELS_VECTOR_SHIFTS_H_
#define ENCODING_KERNELS_VECTOR_SHIFTS_H_

#include "encoding/kernels/vector_tables.h"

namespace fast {
namespace {  // NOLINT(cert-dcl59-cpp): internal linkage, see lanes.h

// A bit says for each byte of a block what it is. The bytes between shifts follow from prefix sums
// of their bits, and what is the first of a pair from its place in a run; so nothing waits for the
// end of the run before, and the work is the same for words of any length.
template <class V>
struct ShiftedBlock {
  using Bytes = typename V::Bytes;
  static constexpr std::ptrdiff_t kBlock = 64;

  std::uint64_t outs = 0, ins = 0;      // the shifts
  std::uint64_t leads = 0, trails = 0;  // what may be in pairs
  std::uint64_t others = 0;             // what may not be outside of them
  std::uint64_t pairs = 0;              // bytes of them
  std::uint64_t firsts = 0;

  // inPairs has all bits set where the block begins in pairs; isSecond is 1 where it begins with
  // the second byte of one.
  ShiftedBlock(const Byte* in, std::uint64_t inPairs, std::uint64_t isSecond) {
    for (unsigned int i = 0; i < kBlock; i += V::kSize) look(Bytes::load(in + i), i);
    std::uint64_t after = outs | ins;
    for (unsigned int i = 1; i < 64; i *= 2) after ^= after << i;
    after ^= inPairs;
    isUsual = ((outs & ~after) | (ins & after)) == 0;
    pairs = after & ~outs;
    firsts = pairStarts(pairs & ~isSecond);
    const std::uint64_t seconds = firsts << 1 | isSecond;
    const std::uint64_t wrong =
        (firsts & ~leads) | (pairs & ~trails) | ((pairs & ~firsts) ^ seconds) | (others & ~pairs);
    isUsual = isUsual && wrong == 0;
    endsInPairs = 0 - (after >> 63);
    endsInHalf = firsts >> 63;
  }

  void look(Bytes bytes, unsigned int place) {
    const auto note = [place](std::uint64_t& bits, Bytes test) {
      bits |= std::uint64_t{topBits(test)} << place;
    };
    note(outs, equal(bytes, kShiftOut));
    note(ins, equal(bytes, kShiftIn));
    note(others, bytes | equal(bytes, kEscape));
    note(leads, greaterSigned(bytes, 0x2F) | equal(bytes, 0x21));
    note(trails, greaterSigned(bytes, 0x20) & ~equal(bytes, 0x7F));
  }

  void write(const Byte* in, Byte*& out) const {
    const std::uint64_t kept = ~(outs | ins);
    for (unsigned int i = 0; i < kBlock; i += V::kSize) {
      const Bytes bytes = Bytes::load(in + i) | (ofPairs(i) & 0x80);
      unsigned int place = i;
      forEachPart<V>([&](auto n) {
        keep(part<n>(bytes), kept >> place & 0xFF, out);
        keep(moveDown<8>(part<n>(bytes)), kept >> (place + 8) & 0xFF, out);
        place += 16;
      });
    }
  }
  // Which bytes of the register at a place are those of pairs: each looks at a bit of its own.
  Bytes ofPairs(unsigned int place) const {
    using Numbers = typename CompilerVector<std::uint64_t, V::kSize>::Type;
    static constexpr auto kPlaces = [] {
      struct {
        alignas(32) Byte bytes[kBlock];
      } places = {};
      for (unsigned int i = 0; i < kBlock; ++i) places.bytes[i] = static_cast<Byte>(i / 8);
      return places;
    }();
    const Bytes bits = lookup16(Bytes(Numbers{} + pairs), Bytes::load(kPlaces.bytes + place));
    const Bytes own(Numbers{} + 0x8040201008040201u);
    return equal(bits & own, own);
  }
  static void keep(Bytes16 bytes, std::uint64_t mask, Byte*& out) {
    lookup16(bytes, Bytes16::load(kKeepBytes.control[mask])).store(out);
    out += countBits(static_cast<std::uint32_t>(mask));
  }

  bool isUsual;
  std::uint64_t endsInPairs, endsInHalf;
};

template <class V>
COMPILER_FLATTEN KernelResult unshiftPairs(bool& inPairs, const Byte* in, const Byte* inEnd,
                                           Byte* out, Byte* outEnd) {
  constexpr std::ptrdiff_t kBlock = ShiftedBlock<V>::kBlock;
  std::uint64_t areSet = inPairs ? ~std::uint64_t{0} : 0, isSecond = 0;
  while (inEnd - in >= kBlock && outEnd - out >= kRoom) {
    const ShiftedBlock<V> block(in, areSet, isSecond);
    if (block.isUsual) {
      block.write(in, out);
      in += kBlock;
      areSet = block.endsInPairs;
      isSecond = block.endsInHalf;
      continue;
    }
    in -= isSecond;
    out -= isSecond;
    isSecond = 0;
    inPairs = areSet != 0;
    const Byte* const stepsEnd = in + 16;
    while (in < stepsEnd) {
      if (!stepUnshiftPairs(inPairs, in, inEnd, out)) return {in, out};
    }
    areSet = inPairs ? ~std::uint64_t{0} : 0;
  }
  inPairs = areSet != 0;
  return unshiftPairsSteps(inPairs, in - isSecond, inEnd, out - isSecond, outEnd);
}

}  // namespace
}  // namespace fast

#endif  // ENCODING_KERNELS_VECTOR_SHIFTS_H_
