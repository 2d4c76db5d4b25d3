#include "encoding/fast/conversion_side.h"

#include <algorithm>

#include "encoding/fast/fast_path.h"
#include "encoding/fast/short_path.h"
#include "encoding/special_code_pages.h"
#include "support/zv_base.h"

namespace fast {
namespace {

bool g_enabled = true;

constexpr std::size_t kSwapBytes = 4096;

// Copies count units of unitSize bytes with the bytes of each in reverse order.
template <std::size_t unitSize>
void copySwapped(const unsigned char* in, std::size_t count, unsigned char* out) {
  for (std::size_t i = 0; i < count * unitSize; i += unitSize) {
    for (std::size_t j = 0; j < unitSize; ++j) out[i + j] = in[i + unitSize - 1 - j];
  }
}

bool isOpen(const Decoder& decoder) {
  return decoder.singleByte != nullptr || decoder.doubleByte != nullptr;
}
bool isOpen(const Encoder& encoder) {
  return encoder.singleByte != nullptr || encoder.doubleByte != nullptr;
}

// The kind of an encoding that needs no table.
bool findUnicodeKind(const EncodingRow& row, Side::Kind& kind) {
  switch (row.form) {
    case EncodingForm::kUtf8:
      kind = Side::kUtf8;
      return true;
    case EncodingForm::kUtf16:
      kind = row.bigEndian ? Side::kUtf16Be : Side::kUtf16;
      return true;
    case EncodingForm::kUtf32:
      kind = row.bigEndian ? Side::kUtf32Be : Side::kUtf32Le;
      return true;
    default:
      return false;
  }
}

// A block must not end between the halves of a pair.
void dropTrailingHighSurrogate(KernelResult& r, const unsigned char* out) {
  if (r.out - out >= 2 && (r.out[-1] & 0xFC) == 0xD8) {
    r.in -= 2;
    r.out -= 2;
  }
}

}  // namespace

bool openSource(int codePage, LogBase& log, Side& side) {
  const EncodingRow* row = findEncodingRow(codePage);
  if (row == nullptr || !row->isDispatched) return false;
  if (!hasTable(*row)) return findUnicodeKind(*row, side.kind);
  side.kind = row->form == EncodingForm::kDoubleByte ? Side::kDoubleByte : Side::kSingleByte;
  side.decoder = decoderFor(*row);
  if (isOpen(side.decoder)) return true;
  if (!EncodingConvert::ensureHashToUnicode(codePage, log)) return false;
  side.decoder = decoderFor(*row);
  return isOpen(side.decoder);
}

bool openTarget(int codePage, const EncodingConvert& converter, LogBase& log, Side& side) {
  const EncodingRow* row = findEncodingRow(codePage);
  if (row == nullptr || !row->isDispatched) return false;
  if (findUnicodeKind(*row, side.kind)) {
    return side.kind != Side::kUtf8 || (g_allow_4byte_utf8 && converter.m_allow4ByteUtf8);
  }
  if (!hasTable(*row)) return false;
  // The decompositions belong to the destination of the whole conversion, not to the table.
  if (row->decomposesVietnamese != decomposesVietnamese(converter.m_toCodePage)) return false;
  side.encoder = encoderFor(*row);
  if (!isOpen(side.encoder)) {
    if (!EncodingConvert::ensureHashFromUnicode(codePage, log)) return false;
    side.encoder = encoderFor(*row);
  }
  side.kind = side.encoder.doubleByte != nullptr ? Side::kDoubleByte : Side::kSingleByte;
  return isOpen(side.encoder);
}

KernelResult decode(const Kernels& kernels, const Side& source, const unsigned char* in,
                    const unsigned char* inEnd, unsigned char* out, unsigned char* outEnd) {
  switch (source.kind) {
    case Side::kUtf8:
      return decodeAs<Side::kUtf8>(kernels, source, in, inEnd, out, outEnd);
    case Side::kSingleByte:
      return decodeAs<Side::kSingleByte>(kernels, source, in, inEnd, out, outEnd);
    case Side::kDoubleByte:
      return decodeAs<Side::kDoubleByte>(kernels, source, in, inEnd, out, outEnd);
    case Side::kUtf16:
    case Side::kUtf16Be: {
      KernelResult r{};
      const auto room = static_cast<std::size_t>(outEnd - out) - kKernelSlack;
      const std::size_t count = std::min(static_cast<std::size_t>(inEnd - in), room) & ~1u;
      if (source.kind == Side::kUtf16) {
        std::copy_n(in, count, out);
        r = {in + count, out + count};
      } else {
        r = kernels.swapUtf16(in, in + count, out, outEnd);
      }
      dropTrailingHighSurrogate(r, out);
      return r;
    }
    case Side::kUtf32Le:
      return kernels.utf32ToUtf16(in, inEnd, out, outEnd);
    case Side::kUtf32Be: {
      unsigned char swapped[kSwapBytes];
      const auto units = std::min(static_cast<std::size_t>(inEnd - in), kSwapBytes) / 4;
      copySwapped<4>(in, units, swapped);
      const KernelResult r = kernels.utf32ToUtf16(swapped, swapped + units * 4, out, outEnd);
      return {in + (r.in - swapped), r.out};
    }
  }
  return {in, out};
}

KernelResult encode(const Kernels& kernels, const Side& target, const unsigned char* in,
                    const unsigned char* inEnd, unsigned char* out, unsigned char* outEnd) {
  switch (target.kind) {
    case Side::kUtf8:
      return encodeAs<Side::kUtf8>(kernels, target, in, inEnd, out, outEnd);
    case Side::kSingleByte:
      return encodeAs<Side::kSingleByte>(kernels, target, in, inEnd, out, outEnd);
    case Side::kDoubleByte:
      return encodeAs<Side::kDoubleByte>(kernels, target, in, inEnd, out, outEnd);
    case Side::kUtf16:
      std::copy(in, inEnd, out);
      return {inEnd, out + (inEnd - in)};
    case Side::kUtf16Be:
      return kernels.swapUtf16(in, inEnd, out, outEnd);
    case Side::kUtf32Le:
      return kernels.utf16ToUtf32(in, inEnd, out, outEnd);
    case Side::kUtf32Be: {
      const KernelResult r = kernels.utf16ToUtf32(in, inEnd, out, outEnd);
      for (unsigned char* p = out; p != r.out; p += 4) std::reverse(p, p + 4);
      return r;
    }
  }
  return {in, out};
}

bool isFastPathOpen(const LogBase& log) {
  return g_enabled && log.m_verboseLogging == 0 && !zvIsBigEndian();
}

void setFastPathForTesting(bool enabled) {
  g_enabled = enabled;
  forgetRoutes();
}

}  // namespace fast
