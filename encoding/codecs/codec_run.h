// CodecRun: what the codecs are built on.
#ifndef ENCODING_CODECS_CODEC_RUN_H_
#define ENCODING_CODECS_CODEC_RUN_H_

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>

#include "encoding/codecs/codec.h"
#include "encoding/kernels/lanes.h"

// One pass over one piece of text: the input that is still to be read, and space behind the output
// that is being written. Each direction of a codec derives from it, converts runs of one kind in
// loops that keep the pointers in registers, and everything between the runs a unit at a time.
struct CodecRun {
  // Room that makeRoom() promises: more than any unit writes, or a vector, shifts included.
  static constexpr std::ptrdiff_t kMinRoom = 32;
  // And what it asks for where more is to be expected.
  static constexpr std::ptrdiff_t kUsualRoom = 4096;
  // How many eighths of the input the output usually is.
  static constexpr unsigned int kGrowth = 9;

  CodecRun(const unsigned char* data, unsigned int length, bool isLast, CodecState& carried,
           DataBuffer& output, ReplacementSink* replacementSink)
      : begin(data),
        p(data),
        end(data + length),
        last(isLast),
        state(carried),
        out(output),
        sink(replacementSink) {}

  std::ptrdiff_t left() const { return end - p; }
  std::ptrdiff_t room() const { return destEnd - dest; }
  // How many units of unitSize bytes can be copied before input or room ends.
  std::ptrdiff_t copyable(std::ptrdiff_t unitSize) const {
    return std::min(left(), room()) / unitSize;
  }

  // False, latched, when memory is short.
  bool makeRoom() {
    if (room() >= kMinRoom) return true;
    commit();
    const auto wanted = static_cast<unsigned int>(std::min(left(), kUsualRoom) + kMinRoom);
    dest = out.reserveTail(wanted);
    destStart = dest;
    destEnd = dest == nullptr ? nullptr : dest + out.getTailRoom();
    return dest != nullptr;
  }
  void commit() {
    out.commitTail(static_cast<unsigned int>(dest - destStart));
    destStart = dest;
  }

  void put(unsigned char byte) { *dest++ = byte; }
  void put(unsigned char first, unsigned char second) {
    put(first);
    put(second);
  }
  // Copies the next count bytes as they are. Returns true, for step(), as mark() does.
  bool pass(unsigned int count) {
    for (; count != 0; --count) put(*p++);
    return true;
  }
  // Says that a mark, which is to be written next, stands for length bytes from `from` on.
  void report(const unsigned char* from, unsigned int length) {
    state.replaced = true;
    if (sink == nullptr) return;
    sink->onReplaced({static_cast<unsigned int>(from - begin), length,
                      out.getSize() + static_cast<unsigned int>(dest - destStart)});
  }
  // Writes a mark of two bytes in place of the next length bytes.
  bool mark(unsigned int length, unsigned char first, unsigned char second) {
    report(p, length);
    p += length;
    put(first, second);
    return true;
  }

  const unsigned char* const begin;
  const unsigned char* p;
  const unsigned char* const end;
  const bool last;  // nothing follows the piece
  CodecState& state;
  DataBuffer& out;
  ReplacementSink* const sink;
  unsigned char* dest = nullptr;
  unsigned char* destStart = nullptr;  // where the bytes begin that are not yet content of out
  unsigned char* destEnd = nullptr;
};

// Drives one direction of a codec; the function that Codec has pointers to. step() converts
// something, with at least kMinRoom bytes of room, and returns false when it cannot go on without
// what follows the piece (never when the piece is the last); finish() ends the text.
template <typename Direction>
unsigned int runCodec(const unsigned char* data, unsigned int length, bool last, CodecState& state,
                      DataBuffer& out, ReplacementSink* sink) {
  Direction run(data, length, last, state, out, sink);
  out.expect(std::uint64_t{length} * Direction::kGrowth / 8 + CodecRun::kMinRoom);
  while (run.p != run.end) {
    if (!run.makeRoom()) return length;
    if (!run.step()) break;
  }
  if (last) {
    if (!run.makeRoom()) return length;
    run.finish();
  }
  run.commit();
  return static_cast<unsigned int>(run.p - data);
}

// Several bytes as one number, the first in its low byte on every host. Loops also write more bytes
// than they keep, where that saves a decision.
template <typename Number>
Number loadLow(const unsigned char* p) {
  Number number = 0;
  if constexpr (std::endian::native == std::endian::little) {
    std::memcpy(&number, p, sizeof number);  // the loop below means the same, and compiles worse
  } else {
    for (unsigned int i = 0; i < sizeof number; ++i) number |= Number{p[i]} << (8 * i);
  }
  return number;
}
template <typename Number>
void storeLow(unsigned char* dest, Number number) {
  if constexpr (std::endian::native == std::endian::little) {
    std::memcpy(dest, &number, sizeof number);
  } else {
    for (unsigned int i = 0; i < sizeof number; ++i) {
      dest[i] = static_cast<unsigned char>(number >> (8 * i));
    }
  }
}

// Sixteen bytes, or eight pairs of bytes, at a time. The vector types are the compilers' own, so
// that they serve every processor; a processor that keeps words the other way round takes the loops
// of one unit, which are there for what is left in any case.
namespace codec_vectors {

constexpr bool kUsed = std::endian::native == std::endian::little;
using Bytes = fast::Bytes16::Native;
typedef signed char SignedBytes __attribute__((vector_size(16)));
using Words = fast::Units16::Native;  // first byte of a pair lowest
typedef short SignedWords __attribute__((vector_size(16)));

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
  std::ptrdiff_t count = std::min<std::ptrdiff_t>(run.copyable(2), 8);
  for (; count > 0 && Map::one(run.p, run.dest); --count) {
    run.p += 2;
    run.dest += 2;
  }
  return count > 0 || run.copyable(2) == 0;
}

// The usual course of a text, sixteen bytes at a time: runs of bytes that copyPlain takes in turns
// with runs of pairs. A vector is stored before it is known how much of it counts; what follows
// overwrites the rest. Stops early, wherever it likes, and returns whether pairs are in front then.
// Map offers
//   static Words eight(Words pairs, SignedWords& known): the pairs converted; known gets the lanes
//     that hold a pair which this function knows, which need not be all;
//   static bool one(const unsigned char* pair, unsigned char* dest): converts any, false for none;
//   static bool turn(const unsigned char*& p, unsigned char*& dest, bool inPairs): reads, or
//   writes,
//     the shift to the other kind of run at p, where this kind ends; false when it is not so.
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

#endif  // ENCODING_CODECS_CODEC_RUN_H_
