// The kernels without vector instructions: the reference of all others, and what runs where no
// other form does.
#include "encoding/kernels/kernels.h"
#include "encoding/kernels/steps.h"

namespace fast {
const Kernels& scalarKernels() {
  static constexpr Kernels form = {
      .name = "scalar",
      .utf8ToUtf16 = repeat<stepUtf8ToUtf16>,
      .utf16ToUtf8 = repeat<stepUtf16ToUtf8>,
      .swapUtf16 = repeat<stepSwapUtf16>,
      .utf32ToUtf16 = repeat<stepUtf32ToUtf16>,
      .utf16ToUtf32 = repeat<stepUtf16ToUtf32>,
      .utf8ToUtf32 = repeat<stepUtf8ToUtf32>,
      .utf32ToUtf8 = repeat<stepUtf32ToUtf8>,
      .singleByteToUtf16 = repeat<stepSingleByteToUtf16, SingleByteDecoder>,
      .singleByteToUtf8 = repeat<stepSingleByteToUtf8, SingleByteDecoder>,
      .mapBytes = repeat<stepMapBytes, ByteMap>,
      .utf16ToSingleByte = repeat<stepUtf16ToSingleByte, SingleByteEncoder>,
      .doubleByteToUtf16 = repeat<stepDoubleByteToUtf16, DoubleByteDecoder>,
      .utf16ToDoubleByte = repeat<stepUtf16ToDoubleByte, DoubleByteEncoder>,
      .unshiftPairs = unshiftPairsSteps,
      .pairedUtf16 = scan<readUtf16>,
      .wellFormedUtf8 = scan<readUtf8>,
      .countByte = countByteSteps,
      .countUnit = countUnitSteps,
      .countScalar = countScalarSteps,
      .utf8Length = utf8LengthSteps,
  };
  return form;
}

}  // namespace fast
