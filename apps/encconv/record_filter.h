// Fixed-length records into lines, on the bytes of the input.
#ifndef APPS_ENCCONV_RECORD_FILTER_H_
#define APPS_ENCCONV_RECORD_FILTER_H_

#include <cstdint>
#include <deque>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tool {

// Puts a line end behind every record, and behind a shorter rest at the end of the input.
class RecordFilter {
 public:
  struct Settings {
    unsigned int recordLength = 0;  // bytes
    bool trim = false;              // drop the blanks at the end of each record
    std::string newline;            // in the encoding of the input
    std::string blank;              // likewise
  };
  explicit RecordFilter(Settings settings) : m_settings(std::move(settings)) {}

  // Append the lines of the next bytes of the input, and the rest at its end, to out.
  void push(std::span<const unsigned char> input, std::vector<unsigned char>& out);
  void finish(std::vector<unsigned char>& out);

  // The place in the input, in bytes, of a byte of the lines; for one appended within the last few
  // MiB.
  std::uint64_t inputOffset(std::uint64_t lineOffset) const;

 private:
  struct Start {
    std::uint64_t line;
    std::uint64_t input;
  };
  void endRecord(std::vector<unsigned char>& out);

  Settings m_settings;
  std::vector<unsigned char> m_record;  // the part of the present record that has come
  std::uint64_t m_inputBytes = 0;       // up to the present record
  std::uint64_t m_lineBytes = 0;
  std::deque<Start> m_starts;  // where records begin
};

}  // namespace tool

#endif  // APPS_ENCCONV_RECORD_FILTER_H_
