// NorvaneBzip2: the bzip2 container of the table texts.
#ifndef SUPPORT_NORVANE_BZIP2_H_
#define SUPPORT_NORVANE_BZIP2_H_

#include "support/data_buffer.h"
#include "support/log_base.h"

// An 8-byte header (u32 little-endian magic 0xB394A7E1, u32 little-endian length of the original)
// in front of one bzip2 stream.
class NorvaneBzip2 {
 public:
  // Checks the header and decompresses the stream into out, whose content it replaces. False, with
  // out empty, for a wrong magic, a length that the stream does not have, a truncated or corrupt
  // stream, bytes behind it, or short memory. log may be null.
  bool unBzipWithHeader(const DataBuffer& in, DataBuffer& out, LogBase* log) const;
};

#endif  // SUPPORT_NORVANE_BZIP2_H_
