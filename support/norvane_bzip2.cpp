#include "support/norvane_bzip2.h"

#include <bzlib.h>

#include <cstdint>

#include "support/zv_base.h"

namespace {

constexpr unsigned int kMagic = 0xB394A7E1u;
constexpr unsigned int kHeaderSize = 8;
// Far above any table image. A damaged header cannot make us ask for gigabytes.
constexpr unsigned int kMaxLength = 16u << 20;

unsigned int loadU32(const unsigned char* p) {
  return p[0] | p[1] * 0x100u | p[2] * 0x10000u | p[3] * 0x1000000u;
}

// bzlib never writes through next_in, but declares it so.
char* bzInput(const unsigned char* data) {
  return const_cast<char*>(reinterpret_cast<const char*>(data));
}

// The library's working memory comes from where the engine's own does, so that a program that
// replaces operator new sees all of it.
void* allocate(void* /*opaque*/, int count, int size) {
  if (count < 0 || size < 0) return nullptr;
  const std::uint64_t bytes = static_cast<std::uint64_t>(count) * static_cast<std::uint64_t>(size);
  return bytes > 0xFFFFFFFFu ? nullptr : zvNewUnsignedChar(static_cast<unsigned int>(bytes));
}

void release(void* /*opaque*/, void* memory) { delete[] static_cast<unsigned char*>(memory); }

// Runs one whole stream into room for length + 1 bytes: the spare byte lets the stream reach its
// end mark, and shows a stream that is longer than it should be.
int decompressStream(const unsigned char* data, unsigned int count, unsigned char* room,
                     unsigned int length) {
  bz_stream stream{};
  stream.bzalloc = allocate;
  stream.bzfree = release;
  int status = BZ2_bzDecompressInit(&stream, 0, 0);
  if (status != BZ_OK) return status;
  stream.next_in = bzInput(data);
  stream.avail_in = count;
  stream.next_out = reinterpret_cast<char*>(room);
  stream.avail_out = length + 1;
  // The whole input is there from the start, so one call either ends the stream or fails: BZ_OK
  // means that input ended early or that the output does not fit.
  status = BZ2_bzDecompress(&stream);
  if (status == BZ_STREAM_END && (stream.avail_in != 0 || stream.avail_out != 1)) {
    status = BZ_DATA_ERROR;
  }
  BZ2_bzDecompressEnd(&stream);
  return status;
}

}  // namespace

bool NorvaneBzip2::unBzipWithHeader(const DataBuffer& in, DataBuffer& out, LogBase* log) const {
  out.clear();
  const unsigned char* data = in.getData2();
  const unsigned int size = in.getSize();
  if (size <= kHeaderSize || loadU32(data) != kMagic || loadU32(data + 4) > kMaxLength) {
    if (log != nullptr) log->LogError("not a bzip2 container");
    return false;
  }
  const unsigned int length = loadU32(data + 4);
  unsigned char* room = out.reserveTail(length + 1);
  if (room == nullptr) return false;
  const int status = decompressStream(data + kHeaderSize, size - kHeaderSize, room, length);
  if (status != BZ_STREAM_END) {
    if (status == BZ_MEM_ERROR) out.latchFailure();
    if (log != nullptr) log->LogError("bad bzip2 stream");
    return false;
  }
  out.commitTail(length);
  return true;
}
