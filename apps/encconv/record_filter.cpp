#include "apps/encconv/record_filter.h"

#include <algorithm>

namespace tool {
namespace {

// More than a stream ever holds back before it reports an error.
constexpr std::uint64_t kRemembered = 4u << 20;

}  // namespace

void RecordFilter::push(std::span<const unsigned char> input, std::vector<unsigned char>& out) {
  while (!input.empty()) {
    const std::size_t count =
        std::min<std::size_t>(input.size(), m_settings.recordLength - m_record.size());
    m_record.insert(m_record.end(), input.begin(),
                    input.begin() + static_cast<std::ptrdiff_t>(count));
    input = input.subspan(count);
    if (m_record.size() == m_settings.recordLength) endRecord(out);
  }
}

void RecordFilter::finish(std::vector<unsigned char>& out) {
  if (!m_record.empty()) endRecord(out);
}

void RecordFilter::endRecord(std::vector<unsigned char>& out) {
  std::string_view record(reinterpret_cast<const char*>(m_record.data()), m_record.size());
  if (m_settings.trim) {
    while (record.ends_with(m_settings.blank)) record.remove_suffix(m_settings.blank.size());
  }
  while (!m_starts.empty() && m_starts.front().line + kRemembered < m_lineBytes) {
    m_starts.pop_front();
  }
  m_starts.push_back({m_lineBytes, m_inputBytes});
  out.insert(out.end(), record.begin(), record.end());
  out.insert(out.end(), m_settings.newline.begin(), m_settings.newline.end());
  m_lineBytes += record.size() + m_settings.newline.size();
  m_inputBytes += m_record.size();
  m_record.clear();
}

std::uint64_t RecordFilter::inputOffset(std::uint64_t lineOffset) const {
  auto next = std::upper_bound(
      m_starts.begin(), m_starts.end(), lineOffset,
      [](std::uint64_t offset, const Start& start) { return offset < start.line; });
  if (next == m_starts.begin()) return lineOffset;
  --next;
  return next->input + (lineOffset - next->line);
}

}  // namespace tool
