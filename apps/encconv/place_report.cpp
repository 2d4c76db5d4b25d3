#include "apps/encconv/place_report.h"

#include <utility>

#include "apps/encconv/console.h"
#include "apps/encconv/error_report.h"
#include "support/json.h"

namespace tool {
namespace {

using encconv::jsonString;

constexpr std::size_t kBuffered = 64u << 10;

std::string textLine(const std::string& name, const std::string& description) {
  return (name == "-" ? "standard input" : printable(name)) + ": " + description + "\n";
}

// counted: the members that say which line or record it is.
template <typename Place>
std::string jsonLine(const std::string& name, const Place& place, std::int32_t codePoint,
                     const std::string& counted, const StreamSettings& settings) {
  return "{\"file\": " + jsonString(name) + ", \"offset\": " + std::to_string(place.offset) +
         counted + ", \"length\": " + std::to_string(place.length) +
         ", \"kind\": " + jsonString(kindOf(place)) + ", \"bytes\": " + jsonString(bytesOf(place)) +
         ", \"character\": " +
         (codePoint < 0 ? "null"
                        : jsonString(describeCharacter(static_cast<char32_t>(codePoint)))) +
         ", \"from\": " + jsonString(nameOfCodePage(settings.from)) +
         ", \"to\": " + jsonString(nameOfCodePage(settings.to)) + "}\n";
}

std::string lineMember(std::uint64_t line) { return ", \"line\": " + std::to_string(line); }

std::string recordMembers(const encconv::RecordProblem& place) {
  if (place.record == 0 && place.text) return lineMember(place.text->line);
  return ", \"record\": " + std::to_string(place.record) +
         ", \"field\": " + (place.field.empty() ? "null" : jsonString(place.field)) +
         ", \"reason\": " + (place.reason.empty() ? "null" : jsonString(place.reason));
}

}  // namespace

void PlaceReport::add(const std::string& name, const StreamError& place,
                      const StreamSettings& settings) {
  addLine(m_asJson ? jsonLine(name, place, place.codePoint, lineMember(place.line), settings)
                   : textLine(name, describeError(place, settings)));
}

void PlaceReport::add(const std::string& name, const encconv::RecordProblem& place,
                      const StreamSettings& settings) {
  const std::int32_t codePoint = place.text ? place.text->code_point : -1;
  addLine(m_asJson ? jsonLine(name, place, codePoint, recordMembers(place), settings)
                   : textLine(name, describeProblem(place, settings)));
}

void PlaceReport::addLine(const std::string& line) {
  const std::lock_guard<std::mutex> lock(m_mutex);
  m_lines += line;
  if (m_lines.size() < kBuffered) return;
  m_hasFailed = m_hasFailed || !m_file.writeText(m_lines);
  m_lines.clear();
}

bool PlaceReport::commit() {
  return !m_hasFailed && m_file.writeText(std::exchange(m_lines, {})) && m_file.commit();
}

}  // namespace tool
