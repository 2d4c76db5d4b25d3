#include "apps/encconv/newline_filter.h"

#include <algorithm>

namespace tool {
namespace {

void append(std::string_view text, std::vector<unsigned char>& out) {
  out.insert(out.end(), text.begin(), text.end());
}

}  // namespace

// The bytes up to the first unit that matters; whole units.
std::size_t NewlineFilter::plainLength(std::string_view text) const {
  const std::size_t width = m_settings.lineFeed.size();
  std::size_t length = 0;
  if (width == 1) {
    // In steps, because a search for what is rare would go to the end each time.
    constexpr std::size_t kStep = 512;
    for (; length < text.size(); length += kStep) {
      const std::string_view step = text.substr(length, kStep);
      std::size_t found = step.find(m_settings.lineFeed[0]);
      found = std::min(found, step.substr(0, found).find(m_settings.carriageReturn[0]));
      if (m_settings.escape >= 0) {
        found = std::min(found, step.substr(0, found).find(static_cast<char>(m_settings.escape)));
      }
      if (found != std::string_view::npos) return length + found;
    }
    return text.size();
  }
  for (; length + width <= text.size(); length += width) {
    const std::string_view unit = text.substr(length, width);
    if (unit == m_settings.lineFeed || unit == m_settings.carriageReturn) break;
  }
  return length;
}

void NewlineFilter::pushUnit(std::string_view unit, std::vector<unsigned char>& out) {
  const bool isLineFeed = unit == m_settings.lineFeed;
  const bool isReturn = unit == m_settings.carriageReturn;
  if (m_isEscaped || (!isLineFeed && !isReturn)) {
    m_isEscaped = !m_isEscaped && static_cast<unsigned char>(unit[0]) == m_settings.escape;
    m_isAfterReturn = false;
    append(unit, out);
    return;
  }
  if (!isLineFeed || !m_isAfterReturn) append(m_settings.newline, out);
  m_isAfterReturn = isReturn;
}

void NewlineFilter::push(std::string_view text, std::vector<unsigned char>& out) {
  const std::size_t width = m_settings.lineFeed.size();
  out.clear();
  if (!m_part.empty()) {
    const std::size_t missing = std::min(width - m_part.size(), text.size());
    m_part += text.substr(0, missing);
    text.remove_prefix(missing);
    if (m_part.size() < width) return;
    pushUnit(m_part, out);
    m_part.clear();
  }
  while (text.size() >= width) {
    const std::size_t plain = m_isEscaped ? 0 : plainLength(text);
    if (plain != 0) m_isAfterReturn = false;
    append(text.substr(0, plain), out);
    text.remove_prefix(plain);
    if (text.size() < width) break;
    pushUnit(text.substr(0, width), out);
    text.remove_prefix(width);
  }
  m_part = text;
}

void NewlineFilter::finish(std::vector<unsigned char>& out) {
  out.assign(m_part.begin(), m_part.end());
  m_part.clear();
}

}  // namespace tool
