#include "encoding/detect/tracer.h"

#include <algorithm>
#include <bit>
#include <functional>
#include <new>
#include <optional>

#include "encoding/code_page_list.h"
#include "encoding/detect/statistics.h"
#include "encoding/detect/text_score.h"
#include "encoding/stream/stream_converter.h"
#include "support/utf.h"

namespace detection {
namespace {

constexpr int kUtf8 = 65001;
constexpr int kUtf16Le = 1200;
constexpr int kUtf16Be = 1201;
constexpr int kHostUtf16 = std::endian::native == std::endian::little ? kUtf16Le : kUtf16Be;

// Stands for a character that was lost.
constexpr char16_t kLost = u'\uFFFD';

// Units that are judged, and those of them in front of the first that is not ASCII.
constexpr std::size_t kJudgedUnits = 700;
constexpr std::size_t kUnitsBefore = 200;
// Units that are written at once. More would be looked at again behind each that has no place.
constexpr std::size_t kPieceUnits = 4096;
// Misreadings in a row, and how many of the likeliest texts are traced further.
constexpr std::size_t kMaxDepth = 4;
constexpr std::size_t kBeam = 4;

// The natural logarithms of how likely it is that a text was garbled at all, that its encoding was
// one of those that are seldom met, and that a malformed place is in it.
constexpr double kGarbled = -5;
constexpr double kUnusual = -2;
constexpr double kRare = -5;
constexpr double kMalformed = -12;
constexpr double kRestoredSpace = -2;

constexpr double kLostPlace = -4;  // malformed beside a character that was lost

double likelihoodOf(int codePage) {
  switch (codePage) {
    case kUtf8:
    case 1252:
      return 0;
    case 819:
    case 28591:
    case 1250:
    case 1251:
    case 1253:
    case 1254:
    case 1255:
    case 1256:
    case 932:
    case 936:
    case 949:
    case 950:
    case 20866:
    case 437:
    case 850:
    case 866:
    case 10000:
      return kUnusual;
    default:
      return kRare;
  }
}

// Russian was garbled among these more often than anything else.
bool isRussian(int codePage) { return codePage == 1251 || codePage == 866 || codePage == 20866; }

double likelihoodOf(const Misreading& step) {
  if (isRussian(step.written) && isRussian(step.read)) return kGarbled;
  return kGarbled + likelihoodOf(step.written) + likelihoodOf(step.read);
}

std::vector<int> pagesOf(std::span<const std::string_view> names) {
  std::vector<int> pages;
  for (const std::string_view name : names) pages.push_back(streamCodePage(name));
  return pages;
}

// What a text may have been written in, and what it may have been taken for.
const std::vector<int>& writtenPages() {
  static const std::vector<int> pages = [] {
    std::vector<int> made = pagesOf(judgedEncodings());
    made.insert(made.begin(), kUtf8);
    for (const std::string_view name : {"GB18030", "IBM037", "IBM500", "IBM1047", "IBM273"}) {
      made.push_back(streamCodePage(name));
    }
    return made;
  }();
  return pages;
}
const std::vector<int>& readPages() {
  static const std::vector<int> pages = [] {
    std::vector<int> made = pagesOf(judgedEncodings());
    made.push_back(kUtf16Le);
    made.push_back(kUtf16Be);
    return made;
  }();
  return pages;
}

std::u16string unitsOf(const DataBuffer& buffer) {
  std::u16string units(buffer.getSize() / 2, u'\0');
  std::copy_n(buffer.getData2(), units.size() * 2, reinterpret_cast<unsigned char*>(units.data()));
  return units;
}

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

// Takes misreadings back. One object does so for any number of texts, with the same memory.
class Undoer {
 public:
  // The parts of text that can be written in a code page; nothing when hardly any can. U+FFFD is
  // no character of the misreading but stands for one that was lost in it.
  std::optional<std::vector<Run>> writeIn(std::u16string_view text, int codePage) {
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

  // The runs of text read in a code page; what does not belong to it stays as it was.
  Undone read(std::u16string_view text, const std::vector<Run>& runs, const Misreading& step) {
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

 private:
  std::size_t writeRun(std::u16string_view text, std::size_t begin, int codePage,
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
  std::uint64_t readRun(const std::vector<unsigned char>& bytes, const Misreading& step,
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

  // Copying text out of a page makes spaces of no-break spaces, which are the second byte of some
  // letters of UTF-8.
  static std::vector<unsigned char> withNoBreakSpaces(std::vector<unsigned char> bytes,
                                                      std::uint64_t& count) {
    for (std::size_t i = 0; i + 1 < bytes.size(); ++i) {
      if (bytes[i] < 0xC3 || bytes[i] > 0xDF || bytes[i + 1] != ' ') continue;
      bytes[i + 1] = 0xA0;
      ++count;
    }
    return bytes;
  }

  StreamStatus convert(const StreamSettings& settings, std::span<const unsigned char> bytes) {
    StreamStatus status = m_stream.begin(settings);
    if (status == StreamStatus::kGood) status = m_stream.push(bytes.data(), bytes.size(), m_out);
    if (status == StreamStatus::kGood) status = m_stream.finish(m_out);
    if (status != StreamStatus::kGood && status != StreamStatus::kStopped) throw std::bad_alloc();
    return status;
  }

  StreamConverter m_stream;
  StreamTreatment m_treatment = StreamTreatment::kAlternate;  // of malformed places
  DataBuffer m_out;
};

// A text on the way back.
struct Stage {
  std::u16string text;
  std::vector<Misreading> undone;  // the last misreading first
  double prior = 0;                // of the misreadings and of what they left malformed
  double score = 0;                // of prior and text
  std::size_t hash = 0;            // of text
};

class Tracer {
 public:
  // All texts that sample may come from, and sample itself, the likeliest first.
  std::vector<Stage> trace(std::u16string_view sample) {
    m_stages.push_back({std::u16string(sample), {}, 0, m_score.of(sample), hashOf(sample)});
    std::vector<Stage> beam = m_stages;
    for (std::size_t depth = 0; depth < kMaxDepth && !beam.empty(); ++depth) {
      const double best = m_stages.front().score;
      std::vector<Stage> next;
      for (const Stage& stage : beam) addBefore(stage, next);
      std::ranges::stable_sort(next, std::greater<>{}, &Stage::score);
      m_stages.insert(m_stages.end(), next.begin(), next.end());
      std::ranges::stable_sort(m_stages, std::greater<>{}, &Stage::score);
      if (m_stages.front().score <= best) break;
      next.resize(std::min(next.size(), kBeam));
      beam = std::move(next);
    }
    return std::move(m_stages);
  }

 private:
  static std::size_t hashOf(std::u16string_view text) {
    return std::hash<std::u16string_view>()(text);
  }

  // What stage's text may have been before one misreading more.
  void addBefore(const Stage& stage, std::vector<Stage>& found) {
    for (const int read : readPages()) {
      const std::optional<std::vector<Run>> runs = m_undoer.writeIn(stage.text, read);
      if (!runs || runs->empty()) continue;
      for (const int written : writtenPages()) {
        if (written == read) continue;
        const Misreading step = {written, read};
        Undone undone = m_undoer.read(stage.text, *runs, step);
        if (undone.isHopeless || undone.text == stage.text) continue;
        Stage before = {std::move(undone.text), stage.undone, stage.prior};
        before.hash = hashOf(before.text);
        before.undone.push_back(step);
        before.prior += likelihoodOf(step) + undone.penalty;
        before.score = before.prior + m_score.of(before.text);
        keep(std::move(before), found);
      }
    }
  }

  // Of the ways to one text, the likeliest.
  void keep(Stage stage, std::vector<Stage>& found) {
    const auto isSame = [&](const Stage& other) {
      return other.hash == stage.hash && other.text == stage.text;
    };
    if (std::ranges::any_of(m_stages, isSame)) return;
    const auto same = std::ranges::find_if(found, isSame);
    if (same == found.end()) {
      found.push_back(std::move(stage));
    } else if (same->score < stage.score) {
      *same = std::move(stage);
    }
  }

  Undoer m_undoer;
  TextScore m_score;
  std::vector<Stage> m_stages;
};

std::u16string_view sampleOf(std::u16string_view text) {
  const auto isHigh = [](char16_t unit) { return unit >= 0x80; };
  const auto first = static_cast<std::size_t>(std::ranges::find_if(text, isHigh) - text.begin());
  if (first == text.size()) return {};
  std::u16string_view sample = text.substr(first - std::min(first, kUnitsBefore), kJudgedUnits);
  if (sample.size() == kJudgedUnits && isHighSurrogate(sample.back())) sample.remove_suffix(1);
  return sample;
}

std::u16string undo(std::u16string_view garbled, std::span<const Misreading> lastFirst) {
  Undoer undoer;
  std::u16string text(garbled);
  for (const Misreading& step : lastFirst) {
    const std::optional<std::vector<Run>> runs = undoer.writeIn(text, step.read);
    if (runs) text = undoer.read(text, *runs, step).text;
  }
  return text;
}

}  // namespace

std::vector<Origin> traceBack(std::u16string_view garbled) {
  const std::u16string_view sample = sampleOf(garbled);
  if (sample.empty()) return {};
  const auto high = static_cast<std::uint64_t>(
      std::ranges::count_if(sample, [](char16_t unit) { return unit >= 0x80; }));
  const auto lost = static_cast<std::uint64_t>(std::ranges::count(sample, kLost));
  if (lost * 4 > high) return {};  // too little is left to judge by
  const std::vector<Stage> stages = Tracer().trace(sample);
  std::vector<Origin> origins;
  for (std::size_t i = 0; i < stages.size() && origins.size() < kMaxOrigins; ++i) {
    const Stage& stage = stages[i];
    if (stage.undone.empty()) break;  // the garbled text itself
    const double lead = i + 1 < stages.size() ? stage.score - stages[i + 1].score : 1e3;
    const double sure = confidenceOf(i == 0 ? lead : 0, high);
    const double left = origins.empty() ? 1 : 1 - origins.front().confidence;
    origins.push_back({undo(garbled, stage.undone),
                       {stage.undone.rbegin(), stage.undone.rend()},
                       i == 0 ? sure : std::min(sure, left / static_cast<double>(i + 1))});
  }
  return origins;
}

}  // namespace detection
