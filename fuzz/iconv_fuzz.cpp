// The calls of iconv: however a text is cut, and however little room there is, what comes of it is
// what one call makes of the whole text.
#include <cerrno>
#include <cstring>
#include <vector>

#include "encconv/iconv.h"
#include "fuzz/fuzz_support.h"

namespace {

constexpr const char* kNames[] = {
    "UTF-8",    "UTF-16",      "UTF-16BE",    "UTF-32",       "WCHAR_T",      "UCS-2",
    "UTF-7",    "ISO-8859-1",  "CP1252",      "KOI8-R",       "IBM037",       "SHIFT_JIS",
    "CP932",    "EUC-JP",      "ISO-2022-JP", "EUC-JISX0213", "GB2312",       "GBK",
    "GB18030",  "BIG5",        "BIG5-HKSCS",  "EUC-TW",       "EUC-KR",       "CP949",
    "JOHAB",    "ISO-2022-KR", "ISO-2022-CN", "HZ",           "TCVN",         "CP1258",
    "IBM939",   "SCSU",        "BOCU-1",      "CESU-8",       "ISO_6937",     "MARC-8",
    "UTF-16LE", "GSM03.38",    "UTF-7-IMAP",  "x-mac-arabic", "ISO-2022-JP-3"};
constexpr const char* kSuffixes[] = {
    "", "", "//TRANSLIT", "//IGNORE", "//TRANSLIT//IGNORE", "//NON_IDENTICAL_DISCARD"};
constexpr auto kFailed = static_cast<std::size_t>(-1);

struct Result {
  std::string out;
  int error = 0;         // that ended it, or 0
  std::size_t read = 0;  // how much of the text
};

// Calls with as much of the text and as much room as next() says, until an error that is none of
// the text's size or the room's.
template <class Next>
Result convert(iconv_t cd, std::string_view text, Next next) {
  Result result;
  std::size_t given = 0, stuck = 0;
  while (true) {
    const auto [more, room] = next();
    given = std::min(text.size(), given + more);
    std::vector<char> bytes(room);  // so that a sanitizer sees its ends
    const std::vector<char> piece(text.begin() + static_cast<std::ptrdiff_t>(result.read),
                                  text.begin() + static_cast<std::ptrdiff_t>(given));
    char none = 0;
    char* in = piece.empty() ? &none : const_cast<char*>(piece.data());
    char* out = bytes.empty() ? &none : bytes.data();
    char* const outBegin = out;
    std::size_t left = piece.size(), roomLeft = room;
    errno = 0;
    const std::size_t count = iconv(cd, &in, &left, &out, &roomLeft);
    const int error = count == kFailed ? errno : 0;
    check(count != kFailed || error != 0, "a failure has an error");
    check(left <= piece.size() && roomLeft <= room, "counts go down");
    result.out.append(outBegin, out);
    result.read += piece.size() - left;
    const bool isIgnored = error == EILSEQ && left == 0;
    if (error == E2BIG || (error == EINVAL && given < text.size())) {
      stuck = left == piece.size() && out == outBegin ? stuck + 1 : 0;
      check(stuck < 2000, "some room is enough");
      continue;
    }
    if (error != 0 && !isIgnored) {
      result.error = error;
      return result;
    }
    if (given == text.size()) break;
  }
  char end[64];
  char* out = end;
  std::size_t room = sizeof end;
  check(iconv(cd, nullptr, nullptr, &out, &room) != kFailed, "the end of a text fits");
  result.out.append(end, out);
  return result;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzInput input(data, size);
  const char* const from = input.choice(kNames);
  const std::string to = std::string(input.choice(kNames)) + input.choice(kSuffixes);
  const unsigned int steps = input.byte();
  const auto schedule = input.bytes(8);
  const std::string text = textOf(input.rest());
  const iconv_t cd = iconv_open(to.c_str(), from);
  check(cd != reinterpret_cast<iconv_t>(-1), "the names are known");  // NOLINT
  const auto atOnce = [&] { return std::pair{text.size(), text.size() * 16 + 256}; };
  const Result whole = convert(cd, text, atOnce);
  iconv(cd, nullptr, nullptr, nullptr, nullptr);
  unsigned int call = 0;
  const Result pieces = convert(cd, text, [&] {
    const unsigned int at = schedule.empty() ? steps : schedule[call % schedule.size()];
    // Now and then there is room for anything.
    const std::size_t room = ++call % 32 == 0 ? 64 : (at >> 3) % 24;
    return std::pair<std::size_t, std::size_t>{at % 7 + (call % 4 == 0 ? 1 : 0), room};
  });
  iconv_close(cd);
  // An error in text that was kept to see what follows it is told where that is.
  if (whole.error == 0) {
    check(pieces.error == 0 && pieces.read == whole.read, "the text is as good in pieces");
    check(pieces.out == whole.out, "and becomes the same");
  } else {
    check(pieces.error != 0, "the text is as bad in pieces");
    check(pieces.out.size() >= whole.out.size()
              ? pieces.out.starts_with(whole.out)
              : std::string_view(whole.out).starts_with(pieces.out),
          "up to there it becomes the same");
  }
  return 0;
}
