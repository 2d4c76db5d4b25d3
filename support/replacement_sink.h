// ReplacementSink: is told where a codec wrote a replacement mark.
#ifndef SUPPORT_REPLACEMENT_SINK_H_
#define SUPPORT_REPLACEMENT_SINK_H_

// A piece of input that had no form in the output, so that a mark was written in its place.
struct ReplacedInput {
  unsigned int offset;      // bytes, from the beginning of the input of the call
  unsigned int length;      // bytes, at least 1
  unsigned int markOffset;  // where the mark begins in the output buffer
};

// Called in the order of the input, on the converting thread. What stands in the output buffer is
// not up to date during the call, and the buffer must not be touched.
class ReplacementSink {
 public:
  virtual void onReplaced(const ReplacedInput& piece) = 0;

 protected:
  ~ReplacementSink() = default;
};

#endif  // SUPPORT_REPLACEMENT_SINK_H_
