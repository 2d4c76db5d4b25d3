// RecordWriter: filling, descriptor words and blocks.
#include "encconv/records.h"

namespace encconv {
namespace {

constexpr std::size_t kWord = 4;

// A descriptor word: its own length and that of what follows it.
void appendWord(std::size_t length, std::string& output) {
  output += static_cast<char>(length >> 8 & 0xFFu);
  output += static_cast<char>(length & 0xFFu);
  output.append(2, '\0');
}

}  // namespace

RecordWriter::RecordWriter(const RecordFormat& format, std::string_view blank)
    : m_format(format), m_blank(blank) {}

bool RecordWriter::write(std::string_view record, std::string& output) {
  if (record.size() > m_format.max_length()) return false;
  if (m_format.form == RecordForm::fixed) {
    const std::size_t missing = m_format.length - record.size();
    if (missing != 0 && (m_blank.empty() || missing % m_blank.size() != 0)) return false;
    output += record;
    for (std::size_t i = 0; i < missing; i += m_blank.size()) output += m_blank;
    return true;
  }
  std::string& destination = m_format.form == RecordForm::rdw ? output : m_block;
  if (kWord + m_block.size() + kWord + record.size() > m_format.block_size) finish(output);
  appendWord(kWord + record.size(), destination);
  destination += record;
  return true;
}

void RecordWriter::finish(std::string& output) {
  if (m_block.empty()) return;
  appendWord(kWord + m_block.size(), output);
  output += m_block;
  m_block.clear();
}

}  // namespace encconv
