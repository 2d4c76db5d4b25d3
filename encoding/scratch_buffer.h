// ScratchBuffer: holds what is on its way to an output buffer.
#ifndef ENCODING_SCRATCH_BUFFER_H_
#define ENCODING_SCRATCH_BUFFER_H_

#include "support/data_buffer.h"

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

#endif  // ENCODING_SCRATCH_BUFFER_H_
