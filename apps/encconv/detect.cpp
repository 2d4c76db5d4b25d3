#include "apps/encconv/detect.h"

#include <algorithm>
#include <cstdio>
#include <string_view>
#include <vector>

#include "apps/encconv/error_report.h"
#include "apps/encconv/file_io.h"
#include "encoding/stream/stream_converter.h"
#include "support/zv_utf.h"
#ifdef ENCCONV_HAVE_UCHARDET
#include <uchardet/uchardet.h>
#endif

namespace tool {
namespace {

struct Utf8Look {
  bool isValid = true;
  bool hasBeyondAscii = false;
};

// A sequence that the end of a sample cuts off is no fault.
Utf8Look lookForUtf8(std::span<const unsigned char> sample, bool isWhole) {
  Utf8Look look;
  std::size_t at = 0;
  while (at < sample.size()) {
    if (sample[at] < 0x80) {
      ++at;
      continue;
    }
    look.hasBeyondAscii = true;
    const auto left = static_cast<unsigned int>(sample.size() - at);
    unsigned int used = 0;
    const bool isSurrogate = sample[at] == 0xED && left > 1 && sample[at + 1] >= 0xA0;
    if (isSurrogate || _zvUtf::utf16FromUtf8(&sample[at], left, used) == 0) {
      look.isValid = !isWhole && used == left;
      return look;
    }
    at += used;
  }
  return look;
}

// UTF-16 text without a mark gives itself away when it has ASCII in it: zero bytes at every other
// place and nowhere else.
int looksLikeUtf16(std::span<const unsigned char> sample) {
  std::size_t zeros[2] = {0, 0};
  for (std::size_t i = 0; i < sample.size(); ++i) {
    if (sample[i] == 0) ++zeros[i % 2];
  }
  const std::size_t enough = sample.size() / 20 + 1;
  if (zeros[1] >= enough && zeros[0] == 0) return 1200;
  if (zeros[0] >= enough && zeros[1] == 0) return 1201;
  return 0;
}

// Letters, digits, blanks and line ends of all EBCDIC code pages; which of them it is, the bytes do
// not tell.
bool looksLikeEbcdic(std::span<const unsigned char> sample) {
  std::size_t counts[256] = {};
  for (const unsigned char byte : sample) ++counts[byte];
  constexpr unsigned char kRanges[][2] = {{0x15, 0x15}, {0x25, 0x25}, {0x40, 0x40}, {0x81, 0x89},
                                          {0x91, 0x99}, {0xA2, 0xA9}, {0xC1, 0xC9}, {0xD1, 0xD9},
                                          {0xE2, 0xE9}, {0xF0, 0xF9}};
  std::size_t usual = 0;
  for (const auto& range : kRanges) {
    for (unsigned int byte = range[0]; byte <= range[1]; ++byte) usual += counts[byte];
  }
  return counts[0x40] * 20 > sample.size() && counts[0x20] * 50 < counts[0x40] &&
         usual * 4 > sample.size() * 3;
}

// Control characters that text files do not have.
bool hasOddControls(std::string_view text) {
  constexpr std::string_view kUsual = "\t\n\v\f\r\b\x1A\x1B\x0E\x0F";
  return std::any_of(text.begin(), text.end(), [&](char c) {
    return static_cast<unsigned char>(c) < 0x20 && kUsual.find(c) == std::string_view::npos;
  });
}

bool hasShiftSequences(std::string_view text) {
  return text.find('\x1B') != std::string_view::npos ||
         text.find('\x0E') != std::string_view::npos || text.find("~{") != std::string_view::npos;
}

#ifdef ENCCONV_HAVE_UCHARDET
// A guess that does not even fit is worth little.
std::string countMisfits(std::span<const unsigned char> sample, int codePage) {
  StreamSettings settings;
  settings.from = codePage;
  settings.to = 65001;
  settings.treatment = StreamTreatment::kDrop;
  StreamConverter stream;
  DataBuffer out;
  if (stream.begin(settings) != StreamStatus::kGood ||
      stream.push(sample.data(), sample.size(), out) != StreamStatus::kGood ||
      stream.errorCount() == 0) {
    return {};
  }
  const std::uint64_t count = stream.errorCount();
  return ", but " + std::to_string(count) + (count == 1 ? " place does" : " places do") +
         " not fit";
}

Detection guess(std::span<const unsigned char> sample) {
  const uchardet_t detector = uchardet_new();
  const bool isFed = uchardet_handle_data(detector, reinterpret_cast<const char*>(sample.data()),
                                          sample.size()) == 0;
  uchardet_data_end(detector);
  std::string name = isFed ? uchardet_get_charset(detector) : "";
  uchardet_delete(detector);

  Detection detection;
  if (name.empty()) {
    detection.reason = "the bytes suggest nothing";
    return detection;
  }
  // What is called GB18030 there is nearly always its older part.
  detection.codePage = streamCodePage(name == "GB18030" ? "GBK" : name);
  if (detection.codePage == 0) {
    detection.reason = "looks like " + name + ", which cannot be converted";
    return detection;
  }
  detection.sureness = Sureness::kGuess;
  detection.reason = "by the statistics of the bytes" + countMisfits(sample, detection.codePage);
  return detection;
}
#else
Detection guess(std::span<const unsigned char>) {
  Detection detection;
  detection.reason = "built without uchardet, which could guess";
  return detection;
}
#endif

const char* wordFor(Sureness sureness) {
  static constexpr const char* kWords[] = {"unknown", "guess", "likely", "certain"};
  return kWords[static_cast<int>(sureness)];
}

}  // namespace

Detection detectEncoding(std::span<const unsigned char> sample, bool isWhole) {
  const std::string_view text(reinterpret_cast<const char*>(sample.data()), sample.size());
  // UTF-32 first: its little-endian mark begins with that of UTF-16.
  for (const int codePage : {12000, 12001, 65001, 1200, 1201}) {
    if (text.starts_with(markOf(*findEncodingRow(codePage)))) {
      return {codePage, Sureness::kCertain, "byte order mark"};
    }
  }
  const int utf16 = looksLikeUtf16(sample);
  if (utf16 != 0) return {utf16, Sureness::kLikely, "zero bytes of UTF-16"};
  if (looksLikeEbcdic(sample)) {
    return {37, Sureness::kGuess, "letters and blanks of EBCDIC, in one of its code pages"};
  }
  const Utf8Look look = lookForUtf8(sample, isWhole);
  if (look.isValid && look.hasBeyondAscii) {
    return {65001, Sureness::kLikely, "valid UTF-8 with characters beyond ASCII"};
  }
  if (look.isValid) {
    if (hasShiftSequences(text)) {
      Detection shifted = guess(sample);
      if (shifted.codePage != 0 && shifted.codePage != 20127) return shifted;
    }
    if (hasOddControls(text)) {
      return {65001, Sureness::kGuess, "only ASCII, but with control characters"};
    }
    if (sample.empty()) return {65001, Sureness::kCertain, "empty"};
    return {65001, Sureness::kCertain, isWhole ? "only ASCII" : "only ASCII at the beginning"};
  }
  return guess(sample);
}

int runDetection(const Options& options, Console& console) {
  int status = kDone;
  std::vector<unsigned char> sample(kDetectionSample);
  for (const std::string& name : options.inputs) {
    InputFile input;
    std::size_t count = 0;
    if (!input.open(name) || !input.readFully(sample, count)) {
      console.report(input.error());
      status = kUsage;
      continue;
    }
    const Detection detection =
        detectEncoding(std::span(sample).first(count), count < sample.size());
    const std::string encoding = detection.codePage == 0 ? std::string(wordFor(Sureness::kUnknown))
                                                         : describeCodePage(detection.codePage) +
                                                               ", " + wordFor(detection.sureness);
    if (detection.codePage == 0) status = std::max<int>(status, kNotConverted);
    std::printf("%s: %s: %s\n", input.label().c_str(), encoding.c_str(), detection.reason.c_str());
  }
  return std::fflush(stdout) == 0 ? status : console.reportStandardOutput();
}

}  // namespace tool
