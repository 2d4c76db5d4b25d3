// The values of EncodingConvert::m_errorAction that write something.
#ifndef ENCODING_ERROR_ACTION_H_
#define ENCODING_ERROR_ACTION_H_

#include <cstdint>

// Any other value drops what cannot be converted.
enum ErrorAction : std::int32_t {
  kSubstitute = 1,        // the substitution bytes
  kHexReference = 2,      // "&#x" with the bytes in hexadecimal
  kConvertAlternate = 6,  // what the alternate code page makes of it
  kRawBytes = 7,          // the bytes as they are
  kByteAndZero = 8,       // of a single byte, itself and a zero
};

#endif  // ENCODING_ERROR_ACTION_H_
