// The table of the vector kernels for one kind of register.
#ifndef ENCODING_FAST_KERNELS_VECTOR_FORM_H_
#define ENCODING_FAST_KERNELS_VECTOR_FORM_H_

#include "encoding/fast/kernels_vector_tables.h"
#include "encoding/fast/kernels_vector_utf32.h"

namespace fast {
namespace {  // NOLINT(cert-dcl59-cpp): internal linkage, see kernels_steps.h

template <class V>
constexpr Kernels vectorForm(const char* name) {
  return {
      name,
      kernel<V, AsciiCopy>,
      kernel<V, AsciiToUtf16>,
      kernel<V, Utf16ToAscii>,
      utf8ToUtf16<V>,
      utf16ToUtf8<V>,
      kernel<V, SwapUtf16>,
      kernel<V, Utf32ToUtf16>,
      kernel<V, Utf16ToUtf32>,
      tableKernel<V, SingleByteToUtf16>,
      singleByteToUtf8<V>,
      tableKernel<V, MapBytes>,
      tableKernel<V, Utf16ToSingleByte>,
      doubleByteToUtf16<V>,
      tableKernel<V, Utf16ToDoubleByte>,
  };
}

}  // namespace
}  // namespace fast

#endif  // ENCODING_FAST_KERNELS_VECTOR_FORM_H_
