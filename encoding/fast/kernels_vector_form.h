// The table of the vector kernels for one kind of register.
#ifndef ENCODING_FAST_KERNELS_VECTOR_FORM_H_
#define ENCODING_FAST_KERNELS_VECTOR_FORM_H_

#include "encoding/fast/kernels_vector_tables.h"
#include "encoding/fast/kernels_vector_utf32.h"

namespace fast {
namespace {

template <class V>
constexpr Kernels vectorForm(const char* name) {
  return {
      name,
      asciiCopy<V>,
      asciiToUtf16<V>,
      utf16ToAscii<V>,
      utf8ToUtf16<V>,
      utf16ToUtf8<V>,
      swapUtf16<V>,
      utf32ToUtf16<V>,
      utf16ToUtf32<V>,
      singleByteToUtf16<V>,
      singleByteToUtf8<V>,
      mapBytes<V>,
      utf16ToSingleByte<V>,
      doubleByteToUtf16<V>,
      utf16ToDoubleByte<V>,
  };
}

}  // namespace
}  // namespace fast

#endif  // ENCODING_FAST_KERNELS_VECTOR_FORM_H_
