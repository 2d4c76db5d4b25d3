// Conversions from and to UTF-32 and UTF-16 big endian, a clean block at a time.
#include <algorithm>
#include <initializer_list>

#include "encoding/fast/conversion_side.h"
#include "encoding/fast/fast_path.h"
#include "encoding/kernels/cpu_dispatch.h"

namespace fast {
namespace {

constexpr std::size_t kBlockBytes = 8192;  // of UTF-16

// Lengths whose double is no 32-bit number are refused by the plain way.
constexpr unsigned int kMaxLength = 0x7FFFFFFD;

// On the way to UTF-32 everything but UTF-8 and UTF-32 itself passes through a UTF-8 that has lost
// its zeros.
bool dropsZero(const Side& source, const Side& target) {
  const bool toUtf32 = target.kind == Side::kUtf32Le || target.kind == Side::kUtf32Be;
  return toUtf32 && source.kind != Side::kUtf8 && source.kind != Side::kUtf32Le &&
         source.kind != Side::kUtf32Be;
}

bool hasZeroUnit(const unsigned char* in, const unsigned char* inEnd) {
  unsigned int zeros = 0;
  for (; in != inEnd; in += 2) zeros += (in[0] | in[1]) == 0 ? 1u : 0u;
  return zeros != 0;
}

// A byte order mark at the beginning of what is left would be read as one, and not as text.
bool beginsWithMark(const Side& source, const unsigned char* in, const unsigned char* inEnd) {
  const auto is = [&](std::initializer_list<unsigned char> mark) {
    return static_cast<std::size_t>(inEnd - in) >= mark.size() &&
           std::equal(mark.begin(), mark.end(), in);
  };
  switch (source.kind) {
    case Side::kUtf8:
      return is({0xEF, 0xBB, 0xBF});
    case Side::kUtf16:
    case Side::kUtf16Be:
      return is({0xFF, 0xFE}) || is({0xFE, 0xFF});
    case Side::kUtf32Le:
    case Side::kUtf32Be:
      return is({0xFF, 0xFE, 0, 0}) || is({0, 0, 0xFE, 0xFF});
    default:
      return false;
  }
}

}  // namespace

unsigned int convertPrefix(EncodingConvert& converter, int from, int to, const unsigned char* data,
                           unsigned int length, DataBuffer& out, LogBase& log) {
  Side source, target;
  // The observer is told of the pieces leg by leg, with the offsets of whole legs.
  if (!isFastPathOpen(log) || converter.m_observer != nullptr || length > kMaxLength) return 0;
  if (!openSource(from, log, source) || !openTarget(to, converter, log, target)) return 0;
  // A UTF-16 of odd length makes the whole conversion fail, with nothing written.
  if (source.kind == Side::kUtf16 && length % 2 != 0) return 0;
  const unsigned char* const end = data + length;
  if (beginsWithMark(source, data, end)) return 0;

  const Kernels& best = kernels();
  const bool losesZero = dropsZero(source, target);
  const unsigned int sizeBefore = out.getSize();
  alignas(32) unsigned char block[kBlockBytes + kKernelSlack];
  const unsigned char* in = data;
  while (in != end) {
    const KernelResult decoded = decode(best, source, in, end, block, block + sizeof block);
    if (decoded.in == in || (losesZero && hasZeroUnit(block, decoded.out))) break;
    const auto bytes = static_cast<unsigned int>(decoded.out - block);
    unsigned char* tail = out.reserveTail(2 * bytes + kKernelSlack);
    if (tail == nullptr) return static_cast<unsigned int>(in - data);
    const KernelResult encoded =
        encode(best, target, block, decoded.out, tail, tail + out.getTailRoom());
    if (encoded.in != decoded.out) break;
    out.commitTail(static_cast<unsigned int>(encoded.out - tail));
    in = decoded.in;
  }
  if (in != end && beginsWithMark(source, in, end)) {
    out.truncate(sizeBefore);
    return 0;
  }
  return static_cast<unsigned int>(in - data);
}

}  // namespace fast
