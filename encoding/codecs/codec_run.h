// CodecRun: what the codecs are built on.
#ifndef ENCODING_CODECS_CODEC_RUN_H_
#define ENCODING_CODECS_CODEC_RUN_H_

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "encoding/codecs/codec.h"

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

  CodecRun(const void* drivenBy, const unsigned char* data, unsigned int length, bool isLast,
           CodecState& carried, DataBuffer& output, ReplacementSink* replacementSink)
      : parameters(drivenBy),
        begin(data),
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
    const unsigned int possible = 0xFFFFFFFFu - out.getSize();
    if (possible < kMinRoom) {
      dest = destStart = lastBytes;
      destEnd = lastBytes + sizeof lastBytes;
      return !out.hasFailed();
    }
    const auto wanted = static_cast<unsigned int>(std::min(left(), kUsualRoom) + kMinRoom);
    takeRoom(out.reserveTail(std::min(wanted, possible)));
    return dest != nullptr;
  }
  // Makes the room behind the content of the output that of the run.
  void takeRoom(unsigned char* tail) {
    dest = destStart = tail;
    destEnd = tail == nullptr ? nullptr : tail + out.getTailRoom();
  }
  void commit() {
    const auto count = static_cast<unsigned int>(dest - destStart);
    if (destEnd == lastBytes + sizeof lastBytes) {
      out.append(destStart, count);
    } else {
      out.commitTail(count);
    }
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

  const void* const parameters;  // of the codec
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
  unsigned char lastBytes[2 * kMinRoom];  // written to where a full buffer is nearer than kMinRoom
};

// Drives one direction of a codec; the function that Codec has pointers to. step() converts
// something, with at least kMinRoom bytes of room, and returns false when it cannot go on without
// what follows the piece (never when the piece is the last); finish() ends the text.
template <typename Direction>
unsigned int runCodec(const void* parameters, const unsigned char* data, unsigned int length,
                      bool last, CodecState& state, DataBuffer& out, ReplacementSink* sink) {
  Direction run(parameters, data, length, last, state, out, sink);
  out.expect(std::uint64_t{length} * Direction::kGrowth / 8 + CodecRun::kMinRoom);
  run.takeRoom(out.reserveTail(0));
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

#endif  // ENCODING_CODECS_CODEC_RUN_H_
