// The table of the vector kernels for one kind of register.
#ifndef ENCODING_KERNELS_VECTOR_FORM_H_
#define ENCODING_KERNELS_VECTOR_FORM_H_

#include "encoding/kernels/vector_shifts.h"
#include "encoding/kernels/vector_utf32.h"
#include "encoding/kernels/vector_utf8.h"

namespace fast {
namespace {  // NOLINT(cert-dcl59-cpp): internal linkage, see lanes.h

template <class V>
constexpr Kernels vectorForm(const char* name) {
  return {
      .name = name,
      .utf8ToUtf16 = fromUtf8<ToUtf16, V>,
      .utf16ToUtf8 = utf16ToUtf8<V>,
      .swapUtf16 = kernel<V, SwapUtf16>,
      .utf32ToUtf16 = kernel<V, Utf32ToUtf16>,
      .utf16ToUtf32 = kernel<V, Utf16ToUtf32>,
      .utf8ToUtf32 = fromUtf8<ToUtf32, V>,
      .utf32ToUtf8 = kernel<V, Utf32ToUtf8>,
      .singleByteToUtf16 = kernel<V, SingleByteToUtf16, SingleByteDecoder>,
      .singleByteToUtf8 = singleByteToUtf8<V>,
      .mapBytes = kernel<V, MapBytes, ByteMap>,
      .utf16ToSingleByte = kernel<V, Utf16ToSingleByte, SingleByteEncoder>,
      .doubleByteToUtf16 = doubleByteToUtf16<V>,
      .utf16ToDoubleByte = kernel<V, Utf16ToDoubleByte, DoubleByteEncoder>,
      .unshiftPairs = unshiftPairs<V>,
      .pairedUtf16 = pairedUtf16<V>,
      .wellFormedUtf8 = wellFormedUtf8<V>,
      .countByte = count<V, std::uint8_t, countByteSteps>,
      .countUnit = count<V, std::uint16_t, countUnitSteps>,
      .countScalar = count<V, std::uint32_t, countScalarSteps>,
      .utf8Length = utf8Length<V>,
  };
}

}  // namespace
}  // namespace fast

#endif  // ENCODING_KERNELS_VECTOR_FORM_H_
