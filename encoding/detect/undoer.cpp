#include "encoding/detect/undoer.h"

#include <algorithm>
#include <bit>
#include <new>

#include "support/utf.h"

namespace detection {
namespace {

constexpr int kUtf8 = 65001;
constexpr int kHostUtf16 = std::endian::native == std::endian::little ? 1200 : 1201;

// Units that are written at once. More would be looked at again behind each that has no place.
constexpr std::size_t kPieceUnits = 4096;

// The natural logarithms of how likely it is that a place is malformed, that it is so beside a
// character that was lost, and that a space was a no-break space.
constexpr double kMalformed = -12;
constexpr double kLostPlace = -4;
constexpr double kRestoredSpace = -2;

std::u16string unitsOf(const DataBuffer& buffer) {
  std::u16string units(buffer.getSize() / 2, u'\0');
  std::copy_n(buffer.getData2(), units.size() * 2, reinterpret_cast<unsigned char*>(units.data()));
  return units;
}

// Copying text out of a page makes spaces of no-break spaces, which are the second byte of some
// letters of UTF-8.
std::vector<unsigned char> withNoBreakSpaces(std::vector<unsigned char> bytes,
                                             std::uint64_t& count) {
  for (std::size_t i = 0; i + 1 < bytes.size(); ++i) {
    if (bytes[i] < 0xC3 || bytes[i] > 0xDF || bytes[i + 1] != ' ') continue;
    bytes[i + 1] = 0xA0;
    ++count;
  }
  return bytes;
}

}  // namespace

std::optional<std::vector<Run>> Undoer::writeIn(std::u16string_view text, int codePage) {
  std::vector<Run> runs;
  std::size_t misses = 0;
  for (std::size_t at = 0; at < text.size();) {
    if (text[at] == kLost) {
      ++at;
      continue;
    }
    const std::u16string_view ahead = text.substr(at, kPieceUnits);
    std::u16string_view piece = ahead.substr(0, ahead.find(kLost));
    if (piece.size() == kPieceUnits && isHighSurrogate(piece.back())) piece.remove_suffix(1);
    const std::size_t count = writeRun(piece, at, codePage, runs);
    at += count;
    if (count == piece.size()) continue;
    if (++misses * 8 > text.size() + 8) return std::nullopt;
    at += isHighSurrogate(text[at]) && at + 1 < text.size() ? 2 : 1;
  }
  return runs;
}

Undone Undoer::read(std::u16string_view text, const std::vector<Run>& runs,
                    const Misreading& step) {
  Undone undone;
  // Beside a lost character, what is malformed is the rest of one that was lost with it.
  const auto lost = static_cast<std::uint64_t>(std::ranges::count(text, kLost));
  m_treatment = lost != 0 ? StreamTreatment::kSubstitute : StreamTreatment::kAlternate;
  std::uint64_t spaces = 0;
  std::uint64_t malformed = 0;
  std::uint64_t high = 0;  // bytes that are not ASCII
  std::size_t end = 0;
  for (const Run& run : runs) {
    undone.text += text.substr(end, run.begin - end);
    malformed += step.written == kUtf8
                     ? readRun(withNoBreakSpaces(run.bytes, spaces), step, undone.text)
                     : readRun(run.bytes, step, undone.text);
    end = run.end;
    high += static_cast<std::uint64_t>(
        std::ranges::count_if(run.bytes, [](unsigned char c) { return c >= 0x80; }));
    if (malformed * 8 > end + 16 * lost + 8) {
      undone.isHopeless = true;
      return undone;
    }
  }
  undone.text += text.substr(std::min(end, text.size()));
  undone.isHopeless = malformed * 2 > high + 4 * lost;
  const auto isRepeated = [](char16_t a, char16_t b) { return a == kLost && b == kLost; };
  undone.text.erase(std::unique(undone.text.begin(), undone.text.end(), isRepeated),
                    undone.text.end());
  // A lost character leaves a malformed place on each side.
  const std::uint64_t expected = std::min(malformed, 2 * lost);
  undone.penalty = kMalformed * static_cast<double>(malformed - expected) +
                   kLostPlace * static_cast<double>(expected) +
                   kRestoredSpace * static_cast<double>(spaces);
  return undone;
}

// Returns how many units of text have a place; they are added to the last run, or begin one.
std::size_t Undoer::writeRun(std::u16string_view text, std::size_t begin, int codePage,
                             std::vector<Run>& runs) {
  StreamSettings settings;
  settings.from = kHostUtf16;
  settings.to = codePage;
  m_out.clear();
  const StreamStatus status = convert(
      settings,
      {reinterpret_cast<const unsigned char*>(text.data()), text.size() * sizeof(char16_t)});
  // What another character would be written for has no place either.
  if (m_stream.approximationCount() != 0) {
    const std::uint64_t offset = m_stream.firstApproximation().offset;
    return writeRun(text.substr(0, static_cast<std::size_t>(offset) / 2), begin, codePage, runs);
  }
  const std::size_t count = status == StreamStatus::kStopped
                                ? static_cast<std::size_t>(m_stream.firstError().offset) / 2
                                : text.size();
  if (count == 0) return 0;
  if (runs.empty() || runs.back().end != begin) runs.push_back({begin, begin, {}});
  Run& run = runs.back();
  run.end += count;
  run.bytes.insert(run.bytes.end(), m_out.getData2(), m_out.getData2() + m_out.getSize());
  return count;
}

// Appends to text; returns the places that are malformed.
std::uint64_t Undoer::readRun(const std::vector<unsigned char>& bytes, const Misreading& step,
                              std::u16string& text) {
  StreamSettings settings;
  settings.from = step.written;
  settings.to = kHostUtf16;
  settings.treatment = StreamTreatment::kDrop;
  m_out.clear();
  convert(settings, bytes);
  const std::uint64_t malformed = m_stream.errorCount();
  if (malformed != 0) {
    settings.treatment = m_treatment;
    settings.alternate = step.read;
    m_out.clear();
    convert(settings, bytes);
  }
  text += unitsOf(m_out);
  return malformed;
}

StreamStatus Undoer::convert(const StreamSettings& settings, std::span<const unsigned char> bytes) {
  StreamStatus status = m_stream.begin(settings);
  if (status == StreamStatus::kGood) status = m_stream.push(bytes.data(), bytes.size(), m_out);
  if (status == StreamStatus::kGood) status = m_stream.finish(m_out);
  if (status != StreamStatus::kGood && status != StreamStatus::kStopped) throw std::bad_alloc();
  return status;
}

}  // namespace detection
