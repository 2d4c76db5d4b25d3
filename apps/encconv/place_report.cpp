#include "apps/encconv/place_report.h"

#include <utility>

#include "apps/encconv/console.h"
#include "apps/encconv/error_report.h"
#include "support/json.h"

namespace tool {
namespace {

using encconv::jsonString;

constexpr std::size_t kBuffered = 64u << 10;

std::string textLine(const std::string& name, const StreamError& place,
                     const StreamSettings& settings) {
  return (name == "-" ? "standard input" : printable(name)) + ": " +
         describeError(place, settings) + "\n";
}

std::string jsonLine(const std::string& name, const StreamError& place,
                     const StreamSettings& settings) {
  const auto codePoint = static_cast<char32_t>(place.codePoint);
  return "{\"file\": " + jsonString(name) + ", \"offset\": " + std::to_string(place.offset) +
         ", \"line\": " + std::to_string(place.line) +
         ", \"length\": " + std::to_string(place.length) +
         ", \"kind\": " + jsonString(kindOf(place)) + ", \"bytes\": " + jsonString(bytesOf(place)) +
         ", \"character\": " +
         (place.codePoint < 0 ? "null" : jsonString(describeCharacter(codePoint))) +
         ", \"from\": " + jsonString(nameOfCodePage(settings.from)) +
         ", \"to\": " + jsonString(nameOfCodePage(settings.to)) + "}\n";
}

}  // namespace

void PlaceReport::add(const std::string& name, const StreamError& place,
                      const StreamSettings& settings) {
  const std::string line =
      m_asJson ? jsonLine(name, place, settings) : textLine(name, place, settings);
  const std::lock_guard<std::mutex> lock(m_mutex);
  m_lines += line;
  if (m_lines.size() < kBuffered) return;
  m_hasFailed = m_hasFailed || !m_file.write(m_lines);
  m_lines.clear();
}

bool PlaceReport::commit() {
  return !m_hasFailed && m_file.write(std::exchange(m_lines, {})) && m_file.commit();
}

}  // namespace tool
