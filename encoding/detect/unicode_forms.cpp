#include "encoding/detect/unicode_forms.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "encoding/code_page_list.h"
#include "encoding/detect/characters.h"
#include "support/utf.h"

namespace detection {
namespace {

constexpr std::size_t kWideBytes = 64u << 10;

// What a text in UTF-16 consists of.
struct Look {
  std::size_t units = 0;
  std::size_t odd = 0;   // control characters, unassigned and private ones
  std::size_t rare = 0;  // symbols
  std::size_t letters = 0;
  std::size_t blanks = 0;   // blanks, line ends, and the punctuation of East Asia
  std::size_t changes = 0;  // of script from one letter to the next
  std::size_t zeros = 0;    // U+0000
  std::size_t ascii = 0;
};

Look lookAt(const Trial& trial) {
  Look look;
  look.units = trial.unitCount();
  Script before = Script::kNone;
  for (std::size_t i = 0; i < look.units; ++i) {
    const char16_t unit = trial.unit(i);
    const Script script = scriptOf(unit);
    if (unit == 0) ++look.zeros;
    if (unit < 0x80) ++look.ascii;
    if (script == Script::kControl || script == Script::kOdd) ++look.odd;
    if (script == Script::kRare && !isSurrogate(unit)) ++look.rare;
    if (unit == ' ' || unit == '\n' || (unit >= 0x3000 && unit <= 0x3002) || unit == 0xFF0C) {
      ++look.blanks;
    }
    if (!isLetterScript(script)) continue;
    ++look.letters;
    const auto isEastAsian = [](Script s) { return s == Script::kHan || s == Script::kKana; };
    if (before != Script::kNone && script != before &&
        !(isEastAsian(script) && isEastAsian(before))) {
      ++look.changes;
    }
    before = script;
  }
  return look;
}

// Text is mostly letters of one script at a time, and has something between its words.
bool isText(const Look& look, std::uint64_t malformed) {
  return look.units != 0 && look.zeros == 0 && malformed * 500 <= look.units &&
         look.odd * 200 <= look.units && look.rare * 5 <= look.units &&
         look.letters * 3 >= look.units && look.changes * 8 <= look.letters + 4;
}

Bytes beginningOf(const Sample& sample, std::size_t width, bool& isCut) {
  const std::size_t count = std::min(sample.head.size(), kWideBytes);
  isCut = count < sample.head.size() || sample.isHeadCut;
  return sample.head.first(isCut ? count / width * width : count);
}

// Whether the beginning is text in a form of UTF-16 or UTF-32.
bool readsAs(const Sample& sample, Trial& trial, int codePage, std::size_t width, Look& look) {
  bool isCut = false;
  const Piece piece{beginningOf(sample, width, isCut), isCut};
  if (!trial.read(std::span(&piece, 1), codePage)) return false;
  look = lookAt(trial);
  return isText(look, trial.malformed());
}

}  // namespace

int pageOfMark(const Sample& sample, Trial& trial) {
  const std::string_view text(reinterpret_cast<const char*>(sample.head.data()),
                              sample.head.size());
  // UTF-32 first: its little-endian mark begins with that of UTF-16.
  for (const int codePage : {12000, 12001, 65001, 1200, 1201}) {
    const std::string_view mark = markOf(*findEncodingRow(codePage));
    if (!text.starts_with(mark)) continue;
    bool isCut = false;
    const Piece piece{beginningOf(sample, 4, isCut), isCut};
    if (!trial.read(std::span(&piece, 1), codePage)) continue;
    // Two bytes begin many a binary file. What follows must be able to be text.
    const Look look = lookAt(trial);
    if (look.zeros * 100 <= look.units && look.odd * 10 <= look.units &&
        trial.malformed() * 20 <= look.units + 20) {
      return codePage;
    }
  }
  return 0;
}

int pageOfWideForm(const Sample& sample, Trial& trial, bool& isByZeros) {
  Look look;
  isByZeros = true;
  if (sample.counts[0] != 0) {
    // Of four bytes of UTF-32 at least one is zero, nearly always two.
    for (const int codePage : {12000, 12001}) {
      if (sample.counts[0] * 4 >= sample.size && sample.head.size() >= 4 &&
          readsAs(sample, trial, codePage, 4, look)) {
        return codePage;
      }
    }
  }
  int best = 0;
  Look bestLook;
  for (const int codePage : {1200, 1201}) {
    if (sample.head.size() < 2 || !readsAs(sample, trial, codePage, 2, look)) continue;
    const auto merit = [](const Look& l) {
      return static_cast<double>(l.blanks * 2 + l.ascii) -
             static_cast<double>(l.odd + l.rare + l.changes);
    };
    if (best == 0 || merit(look) > merit(bestLook)) {
      best = codePage;
      bestLook = look;
    }
  }
  if (best == 0) return 0;
  const std::size_t zeros = sample.counts[0];
  isByZeros = zeros != 0;
  // Without NUL bytes there is neither a blank nor a line end of ASCII. Then the text must be long
  // enough for its own punctuation to show, and nothing but letters.
  if (!isByZeros) {
    return bestLook.units >= 16 && bestLook.blanks * 100 >= bestLook.units * 2 &&
                   bestLook.changes * 20 <= bestLook.letters
               ? best
               : 0;
  }
  return bestLook.blanks != 0 || bestLook.units < 40 ? best : 0;
}

Utf8Look lookForUtf8(const Sample& sample) {
  Utf8Look look;
  for (const Piece& piece : sample.pieces) {
    const unsigned char* at = piece.bytes.data();
    const unsigned char* const end = at + piece.bytes.size();
    while (at < end) {
      std::uint64_t eight = 0;
      if (end - at >= 8) {
        std::memcpy(&eight, at, 8);
        if ((eight & 0x8080808080808080u) == 0) {
          at += 8;
          continue;
        }
      }
      if (*at < 0x80) {
        ++at;
        continue;
      }
      const Utf8Sequence sequence = decodeScalar(at, static_cast<std::size_t>(end - at));
      // What the end of a sample cuts off is no fault.
      const bool isCutOff = !sequence.valid && piece.isCut && end - at < 4 &&
                            std::all_of(at + 1, end, isContinuation) && *at >= 0xC2 && *at < 0xF5;
      if (isCutOff) break;
      if (sequence.valid) {
        ++look.sequences;
      } else {
        ++look.malformed;
      }
      at += sequence.length;
    }
  }
  return look;
}

}  // namespace detection
