// The kernels without vector instructions: the reference of all others, and what runs where no
// other form does.
#include "encoding/fast/kernels.h"
#include "encoding/fast/kernels_steps.h"

namespace fast {
namespace {

template <class T>
bool isAsciiIdentity(const T* values) {
  for (unsigned int i = 0; i < 0x80; ++i) {
    if (values[i] != i) return false;
  }
  return true;
}

}  // namespace

void SingleByteDecoder::prepare() {
  for (unsigned int i = 0; i < 256; ++i) {
    low[i] = static_cast<std::uint8_t>(units[i]);
    high[i] = static_cast<std::uint8_t>(units[i] >> 8);
  }
  isAscii = isAsciiIdentity(units);
}

void SingleByteEncoder::prepare() { isAscii = isAsciiIdentity(bytes); }

void DoubleByteEncoder::prepare() { isAscii = isAsciiIdentity(codes); }

const Kernels& scalarKernels() {
  static constexpr Kernels form = {
      "scalar",
      repeat<stepAsciiCopy>,
      repeat<stepAsciiToUtf16>,
      repeat<stepUtf16ToAscii>,
      repeat<stepUtf8ToUtf16>,
      repeat<stepUtf16ToUtf8>,
      repeat<stepSwapUtf16>,
      repeat<stepUtf32ToUtf16>,
      repeat<stepUtf16ToUtf32>,
      repeatWith<SingleByteDecoder, stepSingleByteToUtf16>,
      repeatWith<SingleByteDecoder, stepSingleByteToUtf8>,
      repeatWith<ByteMap, stepMapBytes>,
      repeatWith<SingleByteEncoder, stepUtf16ToSingleByte>,
      repeatWith<DoubleByteDecoder, stepDoubleByteToUtf16>,
      repeatWith<DoubleByteEncoder, stepUtf16ToDoubleByte>,
  };
  return form;
}

}  // namespace fast
