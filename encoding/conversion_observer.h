// ConversionObserver: is told of each piece of input that could not be converted, as it is met.
#ifndef ENCODING_CONVERSION_OBSERVER_H_
#define ENCODING_CONVERSION_OBSERVER_H_

// The step of a conversion that met the piece.
enum class ConversionStep : unsigned char {
  kDecode,  // source bytes to UTF-16: offsets count bytes of the source, behind a byte order mark
  kEncode,  // UTF-16 to target bytes: offsets count bytes of the UTF-16 that the step was given
};

struct UnconvertibleInput {
  ConversionStep step;
  unsigned int offset;         // bytes, from the first byte that the step was given
  unsigned int length;         // bytes
  const unsigned char* bytes;  // the piece itself; valid during the call only
};

// Changes no output, flag or result of the conversion. Nested conversions that an error action
// makes are not reported. Called on the converting thread; must not use the converter.
class ConversionObserver {
 public:
  virtual ~ConversionObserver() = default;
  virtual void onUnconvertible(const UnconvertibleInput& piece) = 0;
};

#endif  // ENCODING_CONVERSION_OBSERVER_H_
