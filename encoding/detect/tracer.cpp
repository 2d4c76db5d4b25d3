#include "encoding/detect/tracer.h"

#include <algorithm>
#include <functional>
#include <optional>

#include "encoding/code_page_list.h"
#include "encoding/detect/lost_escapes.h"
#include "encoding/detect/statistics.h"
#include "encoding/detect/text_score.h"
#include "encoding/detect/undoer.h"
#include "support/utf.h"

namespace detection {
namespace {

constexpr int kUtf8 = 65001;
constexpr int kUtf16Le = 1200;
constexpr int kUtf16Be = 1201;
constexpr int kUsAscii = 20127;
constexpr int kIso2022Jp = 50220;

// Units that are judged, and those of them in front of the first that is not ASCII.
constexpr std::size_t kJudgedUnits = 700;
constexpr std::size_t kUnitsBefore = 200;
// Misreadings in a row, and how many of the likeliest texts are traced further.
constexpr std::size_t kMaxDepth = 4;
constexpr std::size_t kBeam = 4;

// The natural logarithms of how likely it is that a text was garbled at all, and that its encoding
// was one of those that are seldom met.
constexpr double kGarbled = -5;
constexpr double kUnusual = -2;
constexpr double kRare = -5;

// How much likelier a text must be than ASCII that happens to look like runs of ISO-2022-JP.
constexpr double kClearLead = 10;

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

bool isHigh(char16_t unit) { return unit >= 0x80; }

std::u16string_view sampleFrom(std::u16string_view text, std::size_t first) {
  std::u16string_view sample = text.substr(first - std::min(first, kUnitsBefore), kJudgedUnits);
  if (sample.size() == kJudgedUnits && isHighSurrogate(sample.back())) sample.remove_suffix(1);
  return sample;
}
std::u16string_view sampleOf(std::u16string_view text) {
  const auto first = static_cast<std::size_t>(std::ranges::find_if(text, isHigh) - text.begin());
  return first == text.size() ? std::u16string_view() : sampleFrom(text, first);
}

// ISO-2022-JP that was read as ASCII.
std::optional<Origin> traceEscapes(std::u16string_view garbled) {
  const std::size_t first = std::min(garbled.find(u"$B"), garbled.find(u"$@"));
  if (first == std::u16string_view::npos) return std::nullopt;
  const std::u16string_view sample = sampleFrom(garbled, first);
  const std::optional<std::u16string> read = readWithoutEscapes(sample);
  if (!read) return std::nullopt;
  TextScore score;
  const Misreading step = {kIso2022Jp, kUsAscii};
  const double lead = score.of(*read) + likelihoodOf(step) - score.of(sample);
  if (lead < kClearLead) return std::nullopt;
  const auto high = static_cast<std::uint64_t>(std::ranges::count_if(*read, isHigh));
  return Origin{*readWithoutEscapes(garbled), {step}, confidenceOf(lead, high)};
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
  if (std::optional<Origin> origin = traceEscapes(garbled)) return {std::move(*origin)};
  const std::u16string_view sample = sampleOf(garbled);
  if (sample.empty()) return {};
  const auto high = static_cast<std::uint64_t>(std::ranges::count_if(sample, isHigh));
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
