#include "apps/encconv/console.h"

#include <array>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <system_error>

#include "apps/encconv/options.h"
#include "apps/encconv/system/files.h"
#include "support/zv_utf.h"

namespace tool {
namespace {

// Short work ends before anyone wonders how long it takes.
constexpr auto kBeforeFirst = std::chrono::milliseconds(1000);
constexpr auto kBetween = std::chrono::milliseconds(200);

std::string formatTime(double seconds) {
  std::array<char, 32> text{};
  const long whole = std::lround(seconds);
  if (whole >= 3600) {
    std::snprintf(text.data(), text.size(), "%ld h %02ld min", whole / 3600, whole / 60 % 60);
  } else if (whole >= 60) {
    std::snprintf(text.data(), text.size(), "%ld min %02ld s", whole / 60, whole % 60);
  } else {
    std::snprintf(text.data(), text.size(), "%ld s", whole);
  }
  return text.data();
}

// The length of the UTF-8 character that text begins with, 1 for a byte that begins none.
std::size_t characterLength(std::string_view text, char32_t& character) {
  unsigned int used = 0;
  const auto* bytes = reinterpret_cast<const unsigned char*>(text.data());
  character = bytes[0];
  if (bytes[0] < 0x80) return 1;
  const unsigned int units =
      _zvUtf::utf16FromUtf8(bytes, static_cast<unsigned int>(text.size()), used);
  if (units == 0 || used == 0) return 1;
  character = units;  // a pair of surrogates is no control character
  return used;
}

bool isControl(char32_t c) {
  return c < 0x20 || (c >= 0x7F && c < 0xA0) || c == 0x061C || (c >= 0x200E && c <= 0x200F) ||
         (c >= 0x2028 && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069);
}

}  // namespace

std::string printable(std::string_view text) {
  static constexpr char kDigits[] = "0123456789ABCDEF";
  std::string shown;
  while (!text.empty()) {
    char32_t character = 0;
    const std::size_t length = characterLength(text, character);
    if (!isControl(character)) {
      shown += text.substr(0, length);
    } else if (character == '\n' || character == '\t' || character == '\r') {
      shown += character == '\n' ? "\\n" : character == '\t' ? "\\t" : "\\r";
    } else {
      for (const char c : text.substr(0, length)) {
        const auto byte = static_cast<unsigned char>(c);
        shown += std::string("\\x") + kDigits[byte >> 4] + kDigits[byte & 15];
      }
    }
    text.remove_prefix(length);
  }
  return shown;
}

std::string formatBytes(std::uint64_t bytes) {
  if (bytes == 1) return "1 byte";
  static constexpr const char* kUnits[] = {"bytes", "KiB", "MiB", "GiB", "TiB", "PiB", "EiB"};
  auto value = static_cast<double>(bytes);
  std::size_t unit = 0;
  while (value >= 1023.95 && unit + 1 < std::size(kUnits)) {
    value /= 1024;
    ++unit;
  }
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), unit == 0 || value >= 99.95 ? "%.0f %s" : "%.1f %s",
                value, kUnits[unit]);
  return text.data();
}

std::string formatDuration(double seconds) {
  if (seconds >= 60) return formatTime(seconds);
  std::array<char, 32> text{};
  if (seconds >= 1) {
    std::snprintf(text.data(), text.size(), "%.2f s", seconds);
  } else {
    std::snprintf(text.data(), text.size(), seconds < 0.01 ? "%.2f ms" : "%.0f ms", seconds * 1000);
  }
  return text.data();
}

Console::Console(bool wantsProgress)
    : m_showsProgress(wantsProgress && files::isTerminal(files::kStandardError)),
      m_nextDraw((m_start + kBeforeFirst).time_since_epoch().count()) {}

Console::~Console() { erase(); }

void Console::report(const std::string& message) { write("encconv: " + printable(message) + "\n"); }

int Console::print(std::string_view text) {
  if (files::writeText(files::kStandardOutput, text)) return kDone;
  report("standard output: " + std::generic_category().message(errno));
  return kUsage;
}

void Console::write(const std::string& text) {
  const std::lock_guard<std::mutex> lock(m_mutex);
  erase();
  files::writeText(files::kStandardError, text);
}

void Console::expectInput(std::int64_t bytes) {
  const std::lock_guard<std::mutex> lock(m_mutex);
  if (bytes < 0) {
    m_totalKnown = false;
  } else {
    m_total += static_cast<std::uint64_t>(bytes);
  }
}

void Console::advance(std::uint64_t bytes) {
  m_done += bytes;
  if (!m_showsProgress) return;
  const Clock::time_point now = Clock::now();
  Clock::rep next = m_nextDraw;
  if (now.time_since_epoch().count() < next) return;
  // One of the threads that find the time come draws.
  if (m_nextDraw.compare_exchange_strong(next, (now + kBetween).time_since_epoch().count())) {
    draw(now);
  }
}

void Console::draw(Clock::time_point now) {
  const std::lock_guard<std::mutex> lock(m_mutex);
  const std::uint64_t done = m_done;
  const double seconds = std::chrono::duration<double>(now - m_start).count();
  const double rate = static_cast<double>(done) / seconds;
  std::string line = formatBytes(done);
  if (m_totalKnown) line += " of " + formatBytes(m_total);
  line += ", " + formatBytes(static_cast<std::uint64_t>(rate)) + "/s";
  if (m_totalKnown && rate > 0 && done <= m_total) {
    line += ", " + formatTime(static_cast<double>(m_total - done) / rate) + " left";
  }
  // Blank what sticks out of the old line, and stay in the first column.
  const std::size_t length = line.size();
  if (length < m_drawn) line.append(m_drawn - length, ' ');
  line += '\r';
  files::writeText(files::kStandardError, line);
  m_drawn = length;
}

void Console::erase() {
  if (m_drawn == 0) return;
  std::string blank(m_drawn, ' ');
  blank += '\r';
  files::writeText(files::kStandardError, blank);
  m_drawn = 0;
}

}  // namespace tool
