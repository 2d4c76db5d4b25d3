// ScratchBuffer: holds what is on its way to an output buffer.
#ifndef ENCODING_SCRATCH_BUFFER_H_
#define ENCODING_SCRATCH_BUFFER_H_

#include <algorithm>

#include "support/data_buffer.h"
#include "support/zv_base.h"

// What the scratch lacks when memory is short, the output will lack: the failure is handed on when
// the scratch goes. So it reaches even a caller that does not look at results, as an error action
// that converts again, and is found where the outermost conversion tests its output.
class ScratchBuffer : public DataBuffer {
 public:
  explicit ScratchBuffer(DataBuffer& out) : m_out(out) {}
  ~ScratchBuffer() {
    if (hasFailed()) m_out.latchFailure();
  }
  ScratchBuffer(const ScratchBuffer&) = delete;
  ScratchBuffer& operator=(const ScratchBuffer&) = delete;

 private:
  DataBuffer& m_out;
};

// Makes swapped hold the length bytes at data (whole units: length is a multiple of unitSize) with
// the bytes of each unit in reverse order. False when memory is short.
inline bool swapUnits(const unsigned char* data, unsigned int length, DataBuffer& swapped,
                      unsigned int unitSize = 2) {
  unsigned char* const copy = length > 0xFFFFFFFFu - 4 ? nullptr : zvNewUnsignedChar(length + 4);
  if (copy == nullptr) {
    swapped.latchFailure();
    return false;
  }
  swapped.takeData(copy, length);
  for (unsigned int i = 0; i < length; i += unitSize) {
    std::reverse_copy(data + i, data + i + unitSize, copy + i);
  }
  return true;
}

#endif  // ENCODING_SCRATCH_BUFFER_H_
