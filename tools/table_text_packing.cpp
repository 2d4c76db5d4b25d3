#include "tools/table_text_packing.h"

#include <bzlib.h>

#include <cstdint>
#include <limits>

namespace {

constexpr unsigned int kMagic = 0xB394A7E1u;
constexpr unsigned int kMaxLength = 16u << 20;  // what NorvaneBzip2 reads
constexpr int kBlockSize = 3;
constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

void appendU32(DataBuffer& out, unsigned int value) {
  for (int shift = 0; shift < 32; shift += 8) {
    out.appendChar(static_cast<unsigned char>(value >> shift));
  }
}

}  // namespace

bool packBzip2(const DataBuffer& in, DataBuffer& out) {
  out.clear();
  const unsigned int size = in.getSize();
  if (size > kMaxLength) return false;
  appendU32(out, kMagic);
  appendU32(out, size);
  // The most that the library says a stream can take.
  unsigned int streamSize = size + size / 100 + 600;
  unsigned char* room = out.reserveTail(streamSize);
  char none = 0;
  if (room == nullptr ||
      BZ2_bzBuffToBuffCompress(
          reinterpret_cast<char*>(room), &streamSize,
          size == 0 ? &none : const_cast<char*>(reinterpret_cast<const char*>(in.getData2())), size,
          kBlockSize, 0, 0) != BZ_OK) {
    out.truncate(0);
    return false;
  }
  out.commitTail(streamSize);
  return true;
}

bool encodeBase64(const unsigned char* data, unsigned int count, DataBuffer& out) {
  if (count == 0) return true;
  const std::uint64_t size = (std::uint64_t{count} + 2) / 3 * 4;
  if (size > std::numeric_limits<unsigned int>::max()) {
    out.latchFailure();
    return false;
  }
  unsigned char* dest = out.reserveTail(static_cast<unsigned int>(size));
  if (dest == nullptr) return false;
  const auto letter = [](unsigned int value) {
    return static_cast<unsigned char>(kAlphabet[value & 0x3F]);
  };
  unsigned int left = count;
  for (; left >= 3; left -= 3, data += 3, dest += 4) {
    const unsigned int group = static_cast<unsigned int>(data[0] << 16 | data[1] << 8 | data[2]);
    dest[0] = letter(group >> 18);
    dest[1] = letter(group >> 12);
    dest[2] = letter(group >> 6);
    dest[3] = letter(group);
  }
  if (left != 0) {
    const unsigned int group =
        static_cast<unsigned int>(data[0] << 16 | (left == 2 ? data[1] << 8 : 0));
    dest[0] = letter(group >> 18);
    dest[1] = letter(group >> 12);
    dest[2] = left == 2 ? letter(group >> 6) : static_cast<unsigned char>('=');
    dest[3] = static_cast<unsigned char>('=');
  }
  out.commitTail(static_cast<unsigned int>(size));
  return true;
}
