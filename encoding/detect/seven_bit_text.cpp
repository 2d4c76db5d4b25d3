#include "encoding/detect/seven_bit_text.h"

#include "encoding/code_page_list.h"
#include "encoding/detect/characters.h"

namespace detection {
namespace {

std::string_view textOf(const Piece& piece) {
  return {reinterpret_cast<const char*>(piece.bytes.data()), piece.bytes.size()};
}

// What an escape sequence begins, as long as it is one of those that ISO 2022 text has.
struct Designation {
  std::string_view sequence;  // behind ESC
  std::string_view encoding;
};
// Those that several encodings share stand behind those that only one has.
constexpr Designation kDesignations[] = {
    {"$)C", "ISO-2022-KR"},   {"$)A", "ISO-2022-CN"},   {"$)G", "ISO-2022-CN"},
    {"$*H", "ISO-2022-CN"},   {"$)E", "ISO-2022-CN"},   {"$A", "ISO-2022-JP-2"},
    {"$(C", "ISO-2022-JP-2"}, {".A", "ISO-2022-JP-2"},  {".F", "ISO-2022-JP-2"},
    {"$(D", "ISO-2022-JP-1"}, {"$(O", "ISO-2022-JP-3"}, {"$(Q", "ISO-2022-JP-2004"},
    {"$(P", "ISO-2022-JP-3"}, {"$@", "ISO-2022-JP"},    {"$B", "ISO-2022-JP"},
    {"(I", "ISO-2022-JP"},    {"(J", "ISO-2022-JP"},
};

std::string_view iso2022Of(const Sample& sample) {
  std::size_t best = std::size(kDesignations);
  for (const Piece& piece : sample.pieces) {
    const std::string_view text = textOf(piece);
    for (std::size_t at = text.find('\x1B'); at != std::string_view::npos;
         at = text.find('\x1B', at + 1)) {
      for (std::size_t i = 0; i < best; ++i) {
        if (text.substr(at + 1).starts_with(kDesignations[i].sequence)) best = i;
      }
    }
  }
  return best == std::size(kDesignations) ? std::string_view() : kDesignations[best].encoding;
}

// Runs of pairs between ~{ and ~}, none of them broken.
bool hasRunsOfHz(const Sample& sample) {
  bool isFound = false;
  for (const Piece& piece : sample.pieces) {
    const std::string_view text = textOf(piece);
    std::size_t at = text.find("~{");
    while (at != std::string_view::npos) {
      const std::size_t begin = at + 2;
      std::size_t end = begin;
      while (end + 1 < text.size() && text[end] >= 0x21 && text[end] <= 0x77 &&
             text[end + 1] >= 0x21 && text[end + 1] <= 0x7E) {
        end += 2;
      }
      // A run may also end with its line.
      const bool isClosed =
          text.substr(end).starts_with("~}") || text.substr(end).starts_with("\n");
      if (!isClosed && !(piece.isCut && end + 2 >= text.size())) return false;
      isFound = isFound || (isClosed && end > begin);
      at = text.find("~{", end);
    }
  }
  return isFound;
}

int base64Value(char c) {
  constexpr std::string_view kDigits =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  const std::size_t found = kDigits.find(c);
  return found == std::string_view::npos ? -1 : static_cast<int>(found);
}

// What the runs of base64 that a + begins hold, if they are UTF-7.
struct Utf7Runs {
  std::size_t runs = 0;
  std::size_t closed = 0;  // by a minus sign
  std::size_t letters = 0;
  std::size_t changes = 0;  // of script
  bool areGood = true;
};

// Looks at one run, and returns where it ends.
std::size_t lookAtRun(std::string_view text, std::size_t begin, Utf7Runs& runs) {
  std::uint32_t bits = 0;
  unsigned int bitCount = 0;
  std::size_t at = begin;
  Script before = Script::kNone;
  for (; at < text.size() && base64Value(text[at]) >= 0; ++at) {
    bits = bits << 6 | static_cast<std::uint32_t>(base64Value(text[at]));
    bitCount += 6;
    if (bitCount < 16) continue;
    bitCount -= 16;
    const auto unit = static_cast<char16_t>(bits >> bitCount);
    bits &= (1u << bitCount) - 1;
    const Script script = scriptOf(unit);
    if (script == Script::kControl || script == Script::kOdd) runs.areGood = false;
    if (!isLetterScript(script)) continue;
    ++runs.letters;
    if (before != Script::kNone && before != script) ++runs.changes;
    before = script;
  }
  // What is left of the last digit is zero, and less than a digit.
  if (bits != 0 || bitCount >= 6 || at == begin) runs.areGood = false;
  ++runs.runs;
  if (at < text.size() && text[at] == '-') ++runs.closed;
  return at;
}

bool isUtf7(const Sample& sample) {
  Utf7Runs runs;
  for (const Piece& piece : sample.pieces) {
    const std::string_view text = textOf(piece);
    std::size_t at = text.find('+');
    while (at != std::string_view::npos && runs.areGood) {
      if (text.substr(at + 1).starts_with("-")) {
        ++at;
      } else {
        const Utf7Runs before = runs;
        at = lookAtRun(text, at + 1, runs);
        if (at == text.size() && piece.isCut) runs = before;
      }
      at = text.find('+', at);
    }
  }
  // Few letters may be chance, unless their runs are closed as they should be.
  const bool isClear = runs.letters >= 6 || runs.closed * 2 >= runs.runs;
  return runs.areGood && runs.runs != 0 && isClear && runs.letters != 0 &&
         runs.changes * 4 <= runs.letters;
}

}  // namespace

SevenBitLook lookForSevenBitText(const Sample& sample, Trial& trial) {
  const auto reads = [&](std::string_view name) {
    const int codePage = streamCodePage(name);
    return codePage != 0 && trial.read(sample.forStatistics(), codePage) &&
           trial.malformed() * 100 <= trial.unitCount();
  };
  std::string_view name = iso2022Of(sample);
  if (!name.empty()) {
    // Many a text has codes of an extension in it that the plain form has a place for.
    const std::string_view plain = name.starts_with("ISO-2022-JP") ? "ISO-2022-JP" : name;
    if (reads(plain)) return {plain, true, "its escape sequences", trial.malformed()};
    return {name, false, "its escape sequences", trial.malformed()};
  }
  if (hasRunsOfHz(sample) && reads("hz-gb-2312")) {
    return {"hz-gb-2312", true, "runs of pairs between ~{ and ~}", trial.malformed()};
  }
  if (isUtf7(sample) && reads("UTF-7")) {
    return {"UTF-7", true, "runs of base64 behind +", trial.malformed()};
  }
  return {};
}

}  // namespace detection
