// Reading a text in an encoding, to see whether it fits.
#ifndef ENCODING_DETECT_TRIAL_H_
#define ENCODING_DETECT_TRIAL_H_

#include <cstdint>
#include <span>
#include <vector>

#include "encoding/detect/sample.h"
#include "encoding/stream/stream_converter.h"
#include "support/data_buffer.h"

namespace detection {

// One object reads any number of texts, with the same memory.
class Trial {
 public:
  // Reads pieces from a code page; what is malformed is left out and counted. False when the code
  // page cannot be read, or its tables are files that are not there. units() is the text, as UTF-16
  // in little endian bytes.
  bool read(std::span<const Piece> pieces, int codePage);
  bool read(Bytes bytes, int codePage) {
    const Piece piece{bytes, false};
    return read(std::span(&piece, 1), codePage);
  }

  std::uint64_t malformed() const { return m_malformed; }
  std::size_t unitCount() const { return m_out.getSize() / 2; }
  char16_t unit(std::size_t index) const {
    const unsigned char* const bytes = m_out.getData2() + index * 2;
    return static_cast<char16_t>(bytes[0] | bytes[1] << 8);
  }
  Bytes text() const { return {m_out.getData2(), m_out.getSize()}; }

 private:
  StreamConverter m_stream;
  DataBuffer m_out;
  std::uint64_t m_malformed = 0;
};

}  // namespace detection

#endif  // ENCODING_DETECT_TRIAL_H_
