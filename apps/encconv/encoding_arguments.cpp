#include "apps/encconv/encoding_arguments.h"

#include <algorithm>
#include <numeric>
#include <utility>
#include <vector>

#include "encoding/code_page_list.h"

namespace tool {
namespace {

// A name as it is compared: letters in lower case, and digits.
std::string fold(std::string_view name) {
  std::string folded;
  for (const char c : name) {
    if (c >= 'A' && c <= 'Z') folded += static_cast<char>(c - 'A' + 'a');
    if ((c >= 'a' && c <= 'z') || (c >= '0' && c <= '9')) folded += c;
  }
  return folded;
}

// Whether a suffix is a word in capitals, in whatever case.
bool isSuffix(std::string_view suffix, std::string_view word) {
  return std::equal(suffix.begin(), suffix.end(), word.begin(), word.end(),
                    [](char c, char capital) {
                      return c == capital || (c >= 'a' && c <= 'z' && c - 'a' + 'A' == capital);
                    });
}

// How many letters must be changed, left out, put in, or swapped with their neighbour.
std::size_t distanceBetween(const std::string& one, const std::string& other) {
  std::vector<std::size_t> before;
  std::vector<std::size_t> above;
  std::vector<std::size_t> row(other.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 1; i <= one.size(); ++i) {
    before = std::exchange(above, row);
    row[0] = i;
    for (std::size_t j = 1; j <= other.size(); ++j) {
      const bool isSame = one[i - 1] == other[j - 1];
      row[j] = std::min({above[j] + 1, row[j - 1] + 1, above[j - 1] + (isSame ? 0 : 1)});
      if (i > 1 && j > 1 && one[i - 1] == other[j - 2] && one[i - 2] == other[j - 1]) {
        row[j] = std::min(row[j], before[j - 2] + 1);
      }
    }
  }
  return row.back();
}

bool isNumber(const std::string& name) {
  return std::all_of(name.begin(), name.end(), [](char c) { return c >= '0' && c <= '9'; });
}

struct Suggestion {
  std::size_t distance;
  std::string_view name;
};

// The name of an encoding that comes nearest.
Suggestion nearestName(const CharsetNames& page, const std::string& wanted) {
  Suggestion nearest{distanceBetween(fold(page.preferredName), wanted), page.preferredName};
  for (const std::string_view alias : page.aliases) {
    const std::size_t distance = distanceBetween(fold(alias), wanted);
    if (distance < nearest.distance) nearest = {distance, alias};
  }
  return nearest;
}

}  // namespace

bool parseEncodingArgument(std::string_view text, EncodingArgument& argument,
                           std::string& wrongSuffix) {
  const std::size_t end = std::min(text.find("//"), text.size());
  argument = {std::string(text.substr(0, end)), false, false};
  text.remove_prefix(end);
  while (!text.empty()) {
    const std::size_t begin = text.find_first_not_of("/,");
    if (begin == std::string_view::npos) break;
    text.remove_prefix(begin);
    const std::string suffix(text.substr(0, text.find_first_of("/,")));
    text.remove_prefix(suffix.size());
    if (isSuffix(suffix, "IGNORE")) {
      argument.ignores = true;
    } else if (isSuffix(suffix, "TRANSLIT")) {
      argument.transliterates = true;
    } else {
      wrongSuffix = suffix;
      return false;
    }
  }
  return true;
}

void applySuffixes(bool ignores, bool transliterates, StreamSettings& settings) {
  settings.stopsAtMalformed = !ignores;
  parseStreamTreatment(ignores ? "drop" : "substitute=?", settings);
  settings.translit = transliterates;
}

std::string suggestionsFor(std::string_view name) {
  constexpr std::size_t kMost = 3;
  const std::string wanted = fold(name);
  // Every number is near to some other.
  if (wanted.size() < 3 || wanted.size() > 40 || isNumber(wanted)) return {};
  const std::size_t farthest =
      std::max<std::size_t>(1, std::min<std::size_t>(wanted.size() / 3, 3));
  std::vector<Suggestion> near;
  for (const CharsetNames& page : streamCodePages()) {
    const Suggestion suggestion = nearestName(page, wanted);
    if (suggestion.distance <= farthest) near.push_back(suggestion);
  }
  std::stable_sort(near.begin(), near.end(), [](const Suggestion& a, const Suggestion& b) {
    return a.distance < b.distance;
  });
  // Where one is much nearer than others, it is meant.
  if (near.empty()) return {};
  const std::size_t nearest = near[0].distance;
  std::erase_if(near, [&](const Suggestion& one) { return one.distance > nearest + 1; });
  if (near.size() > kMost) near.resize(kMost);
  std::string text;
  for (std::size_t i = 0; i < near.size(); ++i) {
    text += i == 0 ? "; did you mean " : i + 1 == near.size() ? " or " : ", ";
    text += near[i].name;
  }
  return text + "?";
}

}  // namespace tool
