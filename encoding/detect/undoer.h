// Taking a misreading back: the bytes that a garbled text was, read as what they are.
#ifndef ENCODING_DETECT_UNDOER_H_
#define ENCODING_DETECT_UNDOER_H_

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "encoding/detect/misreading.h"
#include "encoding/stream/stream_converter.h"
#include "support/data_buffer.h"

namespace detection {

// Stands in a garbled text for a character that was lost.
inline constexpr char16_t kLost = u'\uFFFD';

// A part of a text that was bytes of the encoding which it was read in.
struct Run {
  std::size_t begin, end;  // in units
  std::vector<unsigned char> bytes;
};

// A text, taken back to what it was before a misreading.
struct Undone {
  std::u16string text;
  double penalty = 0;       // of what is not as it would be then; a natural logarithm
  bool isHopeless = false;  // hardly anything is
};

// Takes misreadings back. One object does so for any number of texts, with the same memory. Throws
// std::bad_alloc only.
class Undoer {
 public:
  // The parts of text that can be written in a code page; nothing when hardly any can. kLost is no
  // character of the misreading.
  std::optional<std::vector<Run>> writeIn(std::u16string_view text, int codePage);

  // The runs of text read in the code page of step that they were written in; what does not belong
  // to it stays as it was.
  Undone read(std::u16string_view text, const std::vector<Run>& runs, const Misreading& step);

 private:
  std::size_t writeRun(std::u16string_view text, std::size_t begin, int codePage,
                       std::vector<Run>& runs);
  std::uint64_t readRun(const std::vector<unsigned char>& bytes, const Misreading& step,
                        std::u16string& text);
  StreamStatus convert(const StreamSettings& settings, std::span<const unsigned char> bytes);

  StreamConverter m_stream;
  StreamTreatment m_treatment = StreamTreatment::kAlternate;  // of malformed places
  DataBuffer m_out;
};

}  // namespace detection

#endif  // ENCODING_DETECT_UNDOER_H_
