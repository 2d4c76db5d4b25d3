// The calls of libencconv_iconv: what conformance with the C library (tests/iconv) does not show.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "encconv/iconv.h"

namespace {

std::atomic<std::size_t> g_allocations{0};
std::atomic<std::size_t> g_largest{0};

}  // namespace

// The linker sends the calls of malloc here.
extern "C" {
void* __real_malloc(std::size_t size);   // NOLINT(bugprone-reserved-identifier)
void* __wrap_malloc(std::size_t size) {  // NOLINT(bugprone-reserved-identifier)
  ++g_allocations;
  if (size > g_largest) g_largest = size;
  return __real_malloc(size);
}
}

namespace {

using Random = std::minstd_rand0;

const auto kNone = reinterpret_cast<iconv_t>(-1);  // NOLINT: as iconv_open says

// A text in another encoding, with what ends it; "failed" where that is refused.
std::string convert(const char* to, const char* from, const std::string& text) {
  const iconv_t cd = iconv_open(to, from);
  if (cd == kNone) return "failed";
  char out[400];
  char* in = const_cast<char*>(text.data());
  char* next = out;
  std::size_t left = text.size(), room = sizeof out;
  const bool good = iconv(cd, &in, &left, &next, &room) != static_cast<std::size_t>(-1) &&
                    iconv(cd, nullptr, nullptr, &next, &room) != static_cast<std::size_t>(-1);
  iconv_close(cd);
  return good ? std::string(out, next) : "failed";
}

struct Sample {
  const char* encoding;
  const char* text;
  const char* bytes;
};
constexpr Sample kSamples[] = {
    {"ISO-8859-15", "\u20AC 5", "\xA4 5"},
    {"KOI8-R", "\u041F\u0440\u0438", "\xF0\xD2\xC9"},
    {"SHIFT_JIS", "\u65E5\u672C", "\x93\xFA\x96\x7B"},
    {"EUC-JP", "\u65E5\u672C", "\xC6\xFC\xCB\xDC"},
    {"ISO-2022-JP", "\u65E5a", "\x1B$BF|\x1B(Ba"},
    {"GB18030", "\u4E2D\U0001F600", "\xD6\xD0\x94\x39\xFC\x36"},
    {"BIG5-HKSCS", "\u4E2D\u00CA\u0304", "\xA4\xA4\x88\x62"},
    {"EUC-KR", "\uD55C", "\xC7\xD1"},
    {"UTF-16BE", "\u00E9", "\0\xE9"},
    {"IBM037", "A", "\xC1"},
    {"SCSU", "\u00E9", "\xE9"},
};

std::string bytesOf(const Sample& sample) {
  return std::string(sample.encoding) == "UTF-16BE" ? std::string("\0\xE9", 2) : sample.bytes;
}

bool convertsAll() {
  for (const Sample& sample : kSamples) {
    if (convert(sample.encoding, "UTF-8", sample.text) != bytesOf(sample)) return false;
    if (convert("UTF-8", sample.encoding, bytesOf(sample)) != sample.text) return false;
  }
  return true;
}

// Runs first of all tests: the tables are not there yet.
TEST(Iconv, ThreadsBuildTablesAtOnceAndAChildOfForkFindsThemUsable) {
  std::atomic<bool> isOver{false};
  std::atomic<int> failures{0};
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&] {
      do {
        if (!convertsAll()) ++failures;
      } while (!isOver);
    });
  }
#ifdef ENCCONV_SANITIZED
  constexpr int kChildren = 0;  // the sanitizers' allocators may be locked in a child of threads
#else
  constexpr int kChildren = 20;
#endif
  for (int i = 0; i < kChildren; ++i) {
    const pid_t child = fork();
    if (child == 0) {
      alarm(60);
      _exit(convertsAll() ? 0 : 1);
    }
    int status = -1;
    waitpid(child, &status, 0);
    if (status != 0) ++failures;
  }
  isOver = true;
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(failures, 0);
}

// Gives the text up to its first bytes, as they come, one more for each call.
void convertMore(iconv_t cd, const std::string& source, std::size_t end, std::size_t& used,
                 std::string& out) {
  if (end > source.size()) return;
  char room[32];
  char* in = const_cast<char*>(source.data()) + used;
  char* next = room;
  std::size_t left = end - used, space = sizeof room;
  iconv(cd, &in, &left, &next, &space);
  used = static_cast<std::size_t>(in - source.data());
  out.append(room, next);
}

TEST(Iconv, TwoDescriptorsInTurnsKeepTheirOwnStates) {
  const iconv_t one = iconv_open("UTF-8", "ISO-2022-JP");
  const iconv_t two = iconv_open("ISO-2022-JP", "UTF-8");
  const std::string read = "\x1B$BF|F|\x1B(B", written = "\u65E5\u65E5a";
  std::string text, bytes;
  std::size_t usedOfOne = 0, usedOfTwo = 0;
  for (std::size_t end = 1; end <= read.size(); ++end) {
    convertMore(one, read, end, usedOfOne, text);
    convertMore(two, written, end, usedOfTwo, bytes);
  }
  EXPECT_EQ(text, "\u65E5\u65E5");
  EXPECT_EQ(bytes, "\x1B$BF|F|\x1B(Ba");
  EXPECT_EQ(iconv_close(one), 0);
  EXPECT_EQ(iconv_close(two), 0);
}

// The same in pieces and into room of any size.
std::string convertInPieces(const char* to, const char* from, const std::string& text,
                            Random& random) {
  const iconv_t cd = iconv_open(to, from);
  std::string out;
  std::size_t used = 0, known = 0;
  int result = 0;
  for (int calls = 0; calls < 10000; ++calls) {
    if (result != E2BIG) known = std::min(known + 1 + random() % 24, text.size());
    char room[400];
    char* in = const_cast<char*>(text.data()) + used;
    char* next = room;
    std::size_t left = known - used, space = random() % 2 == 0 ? sizeof room : random() % 24;
    const bool isOver = left == 0 && known == text.size();
    const bool isGood =
        iconv(cd, isOver ? nullptr : &in, &left, &next, &space) != static_cast<std::size_t>(-1);
    result = isGood || (errno == EILSEQ && left == 0) ? 0 : errno;  // left out
    out.append(room, next);
    if (!isOver) used = static_cast<std::size_t>(in - text.data());
    if (result == EILSEQ || (isOver && isGood)) break;
  }
  iconv_close(cd);
  return result == 0 ? out : "failed";
}

TEST(Iconv, GoesTheSameInPieces) {
  const struct {
    const char* encoding;
    std::string text;
  } kCases[] = {
      {"TCVN", "Ti\u1EBFng Vi\u1EC7t E \u00EAa\u1EBF"},
      {"ISO_6937", "d\u00E9j\u00E0 vu, \u0141\u00F3d\u017A"},
      {"CP1258", "Ti\u1EBFng Vi\u1EC7t"},
      {"TSCII",
       "\u0BA4\u0BAE\u0BBF\u0BB4\u0BCD a \u0B95\u0BCA \u0B95\u0BC1 \u0BB8\u0BCD\u0BB0\u0BC0"},
      {"BIG5-HKSCS", "\u4E2D\u00CA \u00CA\u0304\u00EA\u030C a"},
      {"EUC-JISX0213", "\u304B\u309A\u304B \u02E9\u02E5 \u65E5"},
      {"ISO-2022-JP-3", "\u304B\u309A\u304B a\u65E5\u672C \u02E9\u02E5"},
      {"ISO-2022-KR", "\uD55C\uAE00 a\uD55C b"},
      {"ISO-2022-CN", "\u4E2D\u6587 a\u4E2D\n\u6587"},
      {"UTF-7", "a+b \u65E5\u672C\u8A9E- \u00E9+"},
      {"IBM939", "\u65E5\u672C ab\u65E5"},
      {"GB18030", "\u4E2D\U0001F600a\u00E4"},
      {"gsm-packed", "abcdefg {\u20AC} h"},
      {"SCSU", "\u0416\u0443\u043A \u65E5\u672C"},
      {"UTF-16", "\u0416\U0001F600a"},
      {"UTF-8-BOM", "\u0416a"},
  };
  Random random(5);
  for (const auto& c : kCases) {
    const std::string bytes = convert(c.encoding, "UTF-8", c.text);
    const std::string text = convert("UTF-8", c.encoding, bytes);
    ASSERT_TRUE(bytes != "failed" && text != "failed") << c.encoding;
    for (int i = 0; i < 500; ++i) {
      ASSERT_EQ(convertInPieces(c.encoding, "UTF-8", c.text, random), bytes) << c.encoding;
      ASSERT_EQ(convertInPieces("UTF-8", c.encoding, bytes, random), text) << c.encoding;
    }
  }
}

TEST(Iconv, AllocatesOneSmallDescriptorAndNothingForACall) {
  for (const Sample& sample : kSamples) {
    for (const bool isWritten : {false, true}) {
      const char* const to = isWritten ? sample.encoding : "UTF-8";
      const char* const from = isWritten ? "UTF-8" : sample.encoding;
      std::string text;
      for (int i = 0; i < 300; ++i) text += isWritten ? sample.text : bytesOf(sample);
      std::string out(text.size() * 4 + 100, 0);
      iconv_close(iconv_open(to, from));  // what is looked up once
      convert(to, from, text.substr(0, 100));
      g_allocations = g_largest = 0;
      const iconv_t cd = iconv_open(to, from);
      EXPECT_EQ(g_allocations, 1U);
      EXPECT_LT(g_largest, 1024U);
      char* in = text.data();
      char* next = out.data();
      std::size_t left = text.size(), room = out.size();
      g_allocations = 0;
      EXPECT_EQ(iconv(cd, &in, &left, &next, &room), 0U) << sample.encoding;
      EXPECT_EQ(g_allocations, 0U) << sample.encoding;
      iconv_close(cd);
    }
  }
}

TEST(Iconv, LeavesOutHalfAPairAndNothingBehindIt) {
  std::string text;
  for (int i = 0; i < 40; ++i) text += std::string("A\0", 2);
  text += std::string("\x3D\xD8z\0\xE9\0\0\xDEz\0", 10);
  const iconv_t cd = iconv_open("ASCII//IGNORE", "UTF-16LE");
  char out[100];
  char* in = text.data();
  char* next = out;
  std::size_t left = text.size(), room = sizeof out;
  EXPECT_EQ(iconv(cd, &in, &left, &next, &room), static_cast<std::size_t>(-1));
  EXPECT_EQ(errno, EILSEQ);
  EXPECT_EQ(left, 0U);
  EXPECT_EQ(std::string(out, next), std::string(40, 'A') + "zz");
  iconv_close(cd);
  EXPECT_EQ(convert("ASCII//TRANSLIT", "UTF-16LE", text), "failed");
}

TEST(Iconv, LeavesOutWhatIsMalformedAndNothingBehindIt) {
  const struct {
    const char* from;
    std::string bytes, text;
  } kCases[] = {
      {"EUC-JP", "a\x8F/\xA6\"", "a/\""},
      {"EUC-TW", "a\x8E\xA2/\xA6\"", "a/\""},
      {"GB18030", "a\xA6/\x81\x30\"", "a/0\""},
      {"BIG5-HKSCS", "a\xA6/", "a/"},
      {"JOHAB", "a\x8F/", "a/"},
      {"SHIFT_JIS", "a\x81\"b", "a\"b"},
      {"ISO-2022-KR", "\033$)Ca\x0E\x30\x0F/b", "a/b"},
      {"ISO-2022-JP-3", "\033$Ba\033(B/b", "/b"},
      {"UTF-7", "a+2D0-b", "ab"},
      {"UTF-7", "a+AGHYPQ-b", "aab"},
      {"UTF-7", "a+2D0b!c", "a!c"},
      {"UTF-7", "+2D3YPd4A-c", "\U0001F600c"},
      {"UTF-7", "+2D3nLA-c", "\uE72Cc"},
      // What waits in front of it is text.
      {"TSCII", "a\xA6\xFF/", "a\u0BC6/"},
  };
  Random random(7);
  for (const auto& c : kCases) {
    for (int i = 0; i < 100; ++i) {
      ASSERT_EQ(convertInPieces("UTF-8//IGNORE", c.from, c.bytes, random), c.text) << c.from;
    }
    const iconv_t cd = iconv_open("UTF-8//IGNORE", c.from);
    std::string bytes = c.bytes;
    char out[100];
    char* in = bytes.data();
    char* next = out;
    std::size_t left = bytes.size(), room = sizeof out;
    EXPECT_EQ(iconv(cd, &in, &left, &next, &room), static_cast<std::size_t>(-1)) << c.from;
    EXPECT_EQ(std::string(out, next), c.text) << c.from;
    EXPECT_EQ(left, 0U) << c.from;
    iconv_close(cd);
  }
}

TEST(Iconv, LeavesErrnoAloneAndTellsOfWhatIsNoDescriptor) {
  errno = 1234;
  EXPECT_EQ(convert("CP1251", "UTF-8", "\u0416"), "\xC6");
  EXPECT_EQ(errno, 1234);
  // Windows gives it to the user, the C library to nobody.
  EXPECT_EQ(convert("UTF-8", "BIG5", "\xFA\x40"), "failed");
  // What is left over of the last digit at the end of a text is no character.
  EXPECT_EQ(convert("UTF-8", "UTF-7", "+a02"), "\u6B4D");
  // Accents that are characters, and what stands twice, for both directions, go one by one.
  EXPECT_EQ(convert("UTF-8", "x-cp20261",
                    "f\xC2"
                    "e 0"),
            "f\u00B4e 0");
  EXPECT_EQ(convert("UTF-8", "MacArabic", "\xD3\xE4\xA6\xB1"), "\u0633\u0644&1");
  // UCS-2 has no pairs, whatever the target has.
  EXPECT_EQ(convert("GB18030", "UCS-2LE", std::string("\x3D\xD8\0\xDE", 4)), "failed");
  errno = 0;
  EXPECT_EQ(iconv_open("no such", "UTF-8"), kNone);
  EXPECT_EQ(errno, EINVAL);
  EXPECT_EQ(iconv_close(kNone), -1);
  EXPECT_EQ(errno, EBADF);
}

TEST(Iconv, NamesAndSuffixesMeanWhatTheyMeanToPrograms) {
  struct Row {
    const char* to;
    const char* from;
    std::string text;
    std::string expected;
  };
  const Row rows[] = {
      {"", "UTF-8", "plain", "plain"},
      {"char", "UTF-8", "plain", "plain"},
      {"utf16", "UTF-8", "a", std::string(reinterpret_cast<const char*>(u"\uFEFFa"), 4)},
      {"UTF-8", "UTF-16", std::string("\xFE\xFF\0a", 4), "a"},
      {"UTF-8", "UTF-16LE", std::string("\xFF\xFE", 2), "\uFEFF"},
      {"ascii//translit", "utf8", "\u201Cfi\u201D \uFB01 \u20AC", "\"fi\" fi EUR"},
      {"ASCII//TRANSLIT", "UTF-8", "\u5B57", "?"},
      {"ASCII//NON_IDENTICAL_DISCARD", "UTF-8", "a\u5B57z", "az"},
      {"ASCII//NON_IDENTICAL_DISCARD", "UTF-8", "a\xFFz", "failed"},
      {"ASCII//Translit,Ignore//", "UTF-8", "\u00E6", "ae"},
      {"SHIFT_JIS", "UTF-8", "\u2460", "failed"},
      {"CP932", "UTF-8", "\u2460", "\x87\x40"},
      {"UTF-8", "CP1252", "\x81", "failed"},
      {"UTF-8", "GB2312", "\xA8\xBC", "failed"},
      {"UTF-8", "BIG5", "\xC6\xA1", "\uF6B1"},
      {"IBM874", "UTF-8", "\u20AC\u0E01", "\x80\xA1"},
      {"IBM4517", "UTF-8", "\u0621\u0628", "\x46\x58"},  // as the shapes that the page has
      {"UCS-2LE", "UTF-8", "\U0001F600", "failed"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(convert(row.to, row.from, row.text), row.expected) << row.from << " " << row.to;
  }
  EXPECT_STREQ(iconv_canonicalize("latin1"), "ISO-8859-1");
  EXPECT_STREQ(iconv_canonicalize("windows-31j"), "CP932");
  EXPECT_STREQ(iconv_canonicalize("no such"), "no such");
}

TEST(Iconv, TheOtherNamesCountWhatIsLeftOutAndTakeRequests) {
  const iconv_t cd = libiconv_open("ASCII//IGNORE", "UTF-8");
  const auto run = [cd](std::string text, std::size_t& result) {
    char out[32];
    char* in = text.data();
    char* next = out;
    std::size_t left = text.size(), room = sizeof out;
    result = libiconv(cd, &in, &left, &next, &room);
    return std::string(out, next);
  };
  std::size_t result = 0;
  EXPECT_EQ(run("a\xFF\u5B57z", result), "az");
  EXPECT_EQ(result, 2U);
  int value = 0;
  EXPECT_EQ(iconvctl(cd, ICONV_SET_DISCARD_ILSEQ, &value), 0);
  EXPECT_EQ(run("a\u5B57", result), "a");
  EXPECT_EQ(result, static_cast<std::size_t>(-1));
  value = 1;
  EXPECT_EQ(iconvctl(cd, ICONV_SET_TRANSLITERATE, &value), 0);
  EXPECT_EQ(run("\u00E6", result), "ae");
  EXPECT_EQ(iconvctl(cd, ICONV_TRIVIALP, &value), 0);
  EXPECT_EQ(value, 0);
  EXPECT_EQ(iconvctl(cd, 99, &value), -1);
  libiconv_close(cd);
}

// A word comes back from wherever it can be written.
int opensAndConverts(unsigned int count, const char* const* names, void* data) {
  static_cast<std::set<std::string>*>(data)->insert(names[0]);
  for (unsigned int i = 0; i < count; ++i) {
    const iconv_t cd = iconv_open("UTF-8", names[i]);
    EXPECT_NE(cd, kNone) << names[i];
    if (cd != kNone) iconv_close(cd);
  }
  const std::string word = "AB c", bytes = convert(names[0], "UTF-8", word);
  if (bytes != "failed") {
    EXPECT_EQ(convert("UTF-8", names[0], bytes), word) << names[0];
  }
  return 0;
}

TEST(Iconv, ListsEveryEncodingByNamesThatOpen) {
  std::set<std::string> firsts;
  iconvlist(opensAndConverts, &firsts);
  EXPECT_GT(firsts.size(), 400U);
}

// Converts when the program is torn down, behind everything that was made later.
const struct AtEnd {
  ~AtEnd() {
    if (convertsAll()) return;
    std::fputs("no conversion at the end of the program\n", stderr);
    std::abort();
  }
} g_atEnd;

}  // namespace
