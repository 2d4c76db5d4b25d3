// Runs of single bytes and of pairs in turns: the usual course of text in ISO-2022 and HZ, both
// ways.
#ifndef ENCODING_CODECS_PAIR_RUNS_H_
#define ENCODING_CODECS_PAIR_RUNS_H_

#include <bit>
#include <cstring>

#include "encoding/codecs/codec_run.h"
#include "encoding/kernels/registers.h"
#include "support/compiler.h"

// Sixteen bytes, or eight pairs of bytes, at a time, with the compiler's own operators. A processor
// that keeps words the other way round takes the loops of one unit, which are there for what is
// left in any case.
namespace codec_vectors {

constexpr bool kUsed = std::endian::native == std::endian::little;
using Bytes = fast::Bytes16::Native;
using SignedBytes = CompilerVector<signed char, 16>::Type;
using Words = fast::Units16::Native;  // first byte of a pair lowest
using SignedWords = CompilerVector<short, 16>::Type;

// How many bytes come before the first lane that is set.
template <typename Lanes>
unsigned int bytesBefore(Lanes lanes) {
  const std::uint32_t mask = topBits(fast::Bytes16(lanes));
  // A branch of its own for the full vector, so that a long run does not wait for the count.
  if (mask == 0) return 16;
  return static_cast<unsigned int>(std::countr_zero(mask));
}

// A vector that repeats two bytes.
constexpr Bytes repeat(unsigned char first, unsigned char second) {
  return Bytes{first, second, first, second, first, second, first, second,
               first, second, first, second, first, second, first, second};
}

// A set of pairs: first bytes firstLow to firstHigh, each with all second bytes secondLow to
// secondHigh.
struct PairBox {
  unsigned char firstLow, firstHigh, secondLow, secondHigh;
};
// The lanes that hold a pair of the box.
inline SignedWords inBox(Bytes pairs, PairBox box) {
  const Bytes distance = pairs - repeat(box.firstLow, box.secondLow);
  const auto bytesInside =
      distance <= repeat(static_cast<unsigned char>(box.firstHigh - box.firstLow),
                         static_cast<unsigned char>(box.secondHigh - box.secondLow));
  return reinterpret_cast<SignedWords>(bytesInside) == -1;
}

}  // namespace codec_vectors

// Copies what is below 0x80 and none of Stops.
template <unsigned char... Stops>
void copyPlain(CodecRun& run) {
  const unsigned char* p = run.p;
  unsigned char* dest = run.dest;
  std::ptrdiff_t count = run.copyable(1);
  for (; count > 0 && *p < 0x80 && ((*p != Stops) && ...); --count) *dest++ = *p++;
  run.p = p;
  run.dest = dest;
}

// Converts pairs of bytes up to the first that the codec does not map, and returns true; or, since
// what copyTurns leaves comes in small groups, only a few, and returns false.
template <typename Map>
bool copyPairs(CodecRun& run) {
  const unsigned char* p = run.p;
  unsigned char* dest = run.dest;
  std::ptrdiff_t count = std::min<std::ptrdiff_t>(run.copyable(2), 8);
  for (; count > 0 && Map::one(p, dest); --count) {
    p += 2;
    dest += 2;
  }
  run.p = p;
  run.dest = dest;
  return count > 0 || run.copyable(2) == 0;
}

// The usual course of a text, sixteen bytes at a time: runs of bytes that copyPlain takes in turns
// with runs of pairs. A vector is stored before it is known how much of it counts; what follows
// overwrites the rest. Stops early, wherever it likes, and returns whether pairs are in front then.
// Map offers
//   static Words eight(Words pairs, SignedWords& known): the pairs converted; known gets the lanes
//     that hold a pair which this function knows, which need not be all;
//   static bool one(const unsigned char* pair, unsigned char* dest): converts any, false for none;
//   static bool turn(const unsigned char*& p, unsigned char*& dest, bool& inPairs):
//     reads, or writes, the shift to the other kind of run at p, where this kind ends; false when
//     it is not so.
// The stops of the plain runs are those of copyPlain.
template <typename Map, unsigned char... Stops>
bool copyTurns(CodecRun& run, bool inPairs) {
  using namespace codec_vectors;
  const unsigned char* p = run.p;
  unsigned char* dest = run.dest;
  // Both return how many bytes of the vector count.
  const auto storePairs = [&](Bytes bytes) {
    SignedWords known;
    const Words pairs = Map::eight(reinterpret_cast<Words>(bytes), known);
    std::memcpy(dest, &pairs, sizeof pairs);
    return bytesBefore(~known);
  };
  const auto storePlain = [&](Bytes bytes) {
    std::memcpy(dest, &bytes, sizeof bytes);
    SignedBytes stop = reinterpret_cast<SignedBytes>(bytes) < 0;
    ((stop |= reinterpret_cast<SignedBytes>(bytes == Stops)), ...);
    return bytesBefore(stop);
  };
  // False when input or room ends.
  const auto copyRun = [&](auto store) {
    while (run.end - p >= CodecRun::kMinRoom && run.destEnd - dest >= CodecRun::kMinRoom) {
      Bytes bytes;
      std::memcpy(&bytes, p, sizeof bytes);
      const unsigned int done = store(bytes);
      p += done;
      dest += done;
      if (done != 16) return true;
    }
    return false;
  };
  while (kUsed && (inPairs ? copyRun(storePairs) : copyRun(storePlain)) &&
         Map::turn(p, dest, inPairs)) {
  }
  run.p = p;
  run.dest = dest;
  return inPairs;
}

// Pairs that differ in their high bits only, which the text on one side has and the one on the
// other has not: one() and eight() of a Map. isPair(first, second) tells which pairs there are;
// eight() knows those of the box.
template <auto isPair, codec_vectors::PairBox box, bool setsHighBits>
struct HighBitPairs {
  static bool one(const unsigned char* pair, unsigned char* dest) {
    const unsigned char first = pair[0], second = pair[1];
    dest[0] = setsHighBits ? first | 0x80 : first & 0x7F;
    dest[1] = setsHighBits ? second | 0x80 : second & 0x7F;
    return isPair(first, second);
  }
  static codec_vectors::Words eight(codec_vectors::Words pairs, codec_vectors::SignedWords& known) {
    known = codec_vectors::inBox(reinterpret_cast<codec_vectors::Bytes>(pairs), box);
    return setsHighBits ? pairs | 0x8080 : pairs & 0x7F7F;
  }
};

#endif  // ENCODING_CODECS_PAIR_RUNS_H_
