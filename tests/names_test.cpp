// Charset names, the list of code pages, and the platform's code pages.
#include <gtest/gtest.h>

#include <cctype>
#include <cstdlib>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "apps/encconv/list_command.h"
#include "encoding/alike_encodings.h"
#include "encoding/code_page_list.h"
#include "encoding/stream/stream_converter.h"
#include "support/charset_naming.h"
#include "support/psdk.h"
#include "tests/test_support.h"

namespace {

std::vector<std::string_view> namesOf(const CharsetNames& row) {
  std::vector<std::string_view> names(row.aliases.begin(), row.aliases.end());
  names.push_back(row.preferredName);
  return names;
}

// Another spelling of the same name: the other case, zeros before each number, a separator between
// all characters.
std::string respelled(std::string_view name) {
  std::string out = "_";
  bool afterDigit = false;
  for (const char c : name) {
    const bool digit = std::isdigit(static_cast<unsigned char>(c)) != 0;
    if (digit && !afterDigit) out += "0-0";
    const auto u = static_cast<unsigned char>(c);
    out += static_cast<char>(std::isupper(u) != 0 ? std::tolower(u) : std::toupper(u));
    out += " ";
    if (std::isalnum(u) != 0) afterDigit = digit;
  }
  return out;
}

TEST(CharsetNamingTest, EveryNameMeansItsOwnRowInAnySpelling) {
  for (const CharsetNames& row : CharsetNaming::all()) {
    for (const std::string_view name : namesOf(row)) {
      EXPECT_FALSE(name.empty()) << row.codePage;
      EXPECT_EQ(CharsetNaming::codePageOf(name), row.codePage) << name;
      EXPECT_EQ(CharsetNaming::codePageOf(respelled(name)), row.codePage) << respelled(name);
    }
    const std::string number = std::to_string(row.codePage);
    for (const char* prefix : {"", "0", "cp", "CP0", "windows-", "Windows_"}) {
      EXPECT_EQ(CharsetNaming::codePageOf(prefix + number), row.codePage) << prefix + number;
    }
  }
}

TEST(CharsetNamingTest, HardNames) {
  const struct {
    const char* name;
    int codePage;
  } cases[] = {
      {"utf-8", 65001},
      {"u.t.f-008", 65001},
      {"utf-80", 0},
      {"ut8", 0},
      {"utf-16", 1200},
      {"utf-32", 12000},
      {"unicodeFFFE", 1201},
      {"iso-8859-1", 28591},
      {"ISO_8859-1:1987", 28591},
      {"ascii", 20127},
      {"euc-kr", 51949},
      {"ks_c_5601-1987", 949},
      {"iso-2022-jp", 50220},
      {"tis-620", 874},
      {"iso-8859-11", 874},
      {"ibm-1140", 1140},
      {"ibm01140", 1140},
      {"ibm037", 37},
      {"asmo-708", 708},
      {"gb2312", 936},
      {"iso-8859-8-i", 38598},
      {"gsm", 55000},
      // Digits are one number even across punctuation, so only its first zeros go.
      {"iso-8859-01", 0},
      {"cp 0-1252", 1252},
      // What the engine cannot convert is unknown under its numbers too.
      {"gb18030", 0},
      {"iso-2022-cn", 0},
      {"hz-gb-2312", 0},
      {"big5-hkscs", 0},
      {"euc-tw", 0},
      {"iso-8859-10", 0},
      {"koi8-ru", 21866},
      {"cp819", 28591},
      {"L1", 28591},
      {"819", 0},
      {"28600", 0},
      {"cp28601", 0},
      {"iso-8859-14", 0},
      {"windows-1259", 0},
      {"54936", 0},
      {"ibm-943", 0},
      {"SEN_850200_B", 0},
      {"T.61-8bit", 0},
      // Nothing to go by, and numbers of any length.
      {"", 0},
      {"-", 0},
      {"0", 0},
      {"cp", 0},
      {"windows-", 0},
      {"cpcp1252", 0},
      {"1252x", 0},
      {"-1252", 1252},
      {"4294968548", 0},
      {"99999", 0},
  };
  for (const auto& [name, codePage] : cases) {
    EXPECT_EQ(CharsetNaming::codePageOf(name), codePage) << name;
    StringBuffer buffer;
    buffer.append(name);
    EXPECT_EQ(CharsetNaming::GetCodePage(buffer, nullptr), codePage) << name;
  }
  EXPECT_EQ(CharsetNaming::codePageOf(std::string(100000, '-') + "utf8"), 65001);
  EXPECT_EQ(CharsetNaming::codePageOf("utf8" + std::string(100000, 'x')), 0);
}

// Names that EncConvert has always taken for something else than everybody.
TEST(CodePageListTest, ReadsNamesAsTheirStandardsDo) {
  const struct {
    const char* name;
    int codePage;
  } cases[] = {
      {"iso-8859-1", 819},    {"ISO_8859-1:1987", 819},
      {"latin1", 819},        {"l1", 819},
      {"cp819", 819},         {"ibm-819", 819},
      {"819", 819},           {"csISOLatin1", 819},
      {"cp28591", 28591},     {"28591", 28591},
      {"koi8-ru", 1167},      {"koi8-u", 21866},
      {"iso8859-11", 28601},  {"tis-620", 874},
      {"l6", 28600},          {"iso-8859-10", 28600},
      {"euc-jp", 200954},     {"ibm-eucjp", 200954},
      {"ujis", 200954},       {"200954", 200954},
      {"cp51932", 51932},     {"x-euc", 51932},
      {"51932", 51932},       {"1052936", 1052936},
      {"koi-8", 20866},       {"ibm-874", 9066},
      {"8859_7", 28597},      {"x-IBM737", 737},
      {"ibm-437", 437},       {"ibm-437_P100-1995", 100437},
      {"ibm-37,swaplfnl", 0}, {"ISO-IR-8-1", 200214},
      {"TURKISH8", 200506},   {"latin0", 0},
  };
  for (const auto& [name, codePage] : cases) EXPECT_EQ(streamCodePage(name), codePage) << name;
}

TEST(CodePageListTest, HoldsExactlyWhatConverts) {
  const auto listed = streamCodePages();
  ASSERT_EQ(listed.size(), encodingRows().size());
  for (std::size_t i = 0; i < listed.size(); ++i) {
    const EncodingRow& row = encodingRows()[i];
    const CharsetNames& page = listed[i];
    EXPECT_EQ(CharsetNaming::find(row.number) != nullptr, row.inEngine) << row.number;
    const ConversionResult written = convert(65001, row.number, "Aa1");
    EXPECT_EQ(row.inEngine, written.ok) << row.number;
    EXPECT_EQ(row.inEngine, convert(row.number, 65001, written.out).out == "Aa1") << row.number;
    EXPECT_EQ(page.codePage, row.number);
    EXPECT_EQ(findCodePage(row.number), &page);
    EXPECT_TRUE(page.canRead) << row.number;
    EXPECT_EQ(row.isWritten, page.canWrite) << row.number;
    EXPECT_FALSE(page.description.empty()) << row.number;
    if (hasTable(row)) {
      EXPECT_EQ(row.form == EncodingForm::kDoubleByte, page.kind == CharsetKind::kDoubleByte)
          << row.number;
    }
    for (const std::string_view name : namesOf(page)) {
      EXPECT_EQ(streamCodePage(name), row.number) << name;
    }
  }
  EXPECT_EQ(findCodePage(28602), nullptr);
}

TEST(CodePageListTest, PrintsWhatTheFilterSelects) {
  const auto printed = [](bool json, std::string_view filter, int status) {
    std::ostringstream out;
    EXPECT_EQ(printCodePageList(out, json, filter), status) << filter;
    return out.str();
  };
  EXPECT_EQ(
      printed(true, "10021", 0),
      "[\n {\"codePage\": 10021, \"name\": \"x-mac-thai\", \"aliases\": [\"MacThai\"], \"kind\": "
      "\"single-byte\", \"description\": \"Mac, Thai\", \"family\": \"Mac\", \"sameAs\": null, "
      "\"canRead\": true, \"canWrite\": true}\n]\n");
  EXPECT_EQ(printed(true, "klingon", 1), "[]\n");
  EXPECT_EQ(printed(false, "klingon", 1), "");
  const std::string all = printed(false, "", 0);
  const std::string hebrew = printed(false, "HEBREW", 0);
  for (const CharsetNames& row : streamCodePages()) {
    if (row.codePage == kCodePageHz) continue;  // stands there without its number
    std::string line = " ";
    line.append(std::to_string(row.codePage)).append("  ");
    EXPECT_NE(all.find(line), std::string::npos) << row.codePage;
    const bool isHebrew = row.description.find("Hebrew") != std::string_view::npos;
    EXPECT_EQ(hebrew.find(line) != std::string::npos, isHebrew) << row.codePage;
  }
  std::istringstream lines(all);
  for (std::string line; std::getline(lines, line);) EXPECT_LE(line.size(), 100U) << line;
}

// What an encoding makes of every byte and every pair of bytes, and of every character of the BMP;
// and of one beyond, and of its surrogates in the dress of UTF-8.
std::string behaviourOf(int codePage) {
  static const std::string bytes = [] {
    std::string all;
    for (int lead = 0; lead < 256; ++lead) {
      all += static_cast<char>(lead);
      for (int trail = 1; lead >= 0x80 && trail < 256; ++trail) {
        all += {'\n', '\n', static_cast<char>(lead), static_cast<char>(trail)};
      }
    }
    return all + "\n\xED\xA0\xBD\xED\xB8\x80\n";
  }();
  static const std::string characters = [] {
    std::string all;
    for (unsigned int c = 1; c < 0x10000; ++c) {
      if (c < 0xD800 || c > 0xDFFF) all += {static_cast<char>(c), static_cast<char>(c >> 8)};
    }
    return all + "\x3D\xD8\x01\xDE";
  }();
  const auto through = [](int from, int to, const std::string& text) {
    StreamSettings settings;
    settings.from = from;
    settings.to = to;
    EXPECT_TRUE(parseStreamTreatment("substitute=0x213F", settings));
    StreamConverter stream;
    DataBuffer out;
    EXPECT_EQ(stream.begin(settings), StreamStatus::kGood) << from << " to " << to;
    stream.push(bytesOf(text), text.size(), out);
    stream.finish(out);
    return textOf(out);
  };
  std::string behaviour = through(codePage, 65001, bytes);
  if (findEncodingRow(codePage)->isWritten) behaviour += through(1200, codePage, characters);
  return behaviour;
}

TEST(CodePageListTest, CallsAlikeWhatConvertsAlike) {
#ifdef ENCCONV_SANITIZED
  GTEST_SKIP() << "about tables, not memory: the other builds hold it in a tenth of the time";
#endif
  std::map<std::string, int> first;
  for (const CharsetNames& page : streamCodePages()) {
    const int alike = first.emplace(behaviourOf(page.codePage), page.codePage).first->second;
    EXPECT_EQ(firstAlikeCodePage(page.codePage), alike) << page.codePage;
  }
}

TEST(PsdkTest, CodePagesOfLocales) {
  const struct {
    const char* locale;
    int ansi;
    int oem;
  } cases[] = {
      {"", 1252, 437},
      {"C", 1252, 437},
      {"POSIX", 1252, 437},
      {"xx_YY", 1252, 437},
      {"C.UTF-8", 65001, 65001},
      {"en_US.utf8", 65001, 65001},
      {"de_DE.UTF-8@euro", 65001, 65001},
      {"ru_RU", 1251, 866},
      {"ru_RU.KOI8-R", 20866, 866},
      {"ru", 1251, 866},
      {"el_GR", 1253, 737},
      {"ja_JP.eucJP", 51932, 932},
      {"ja_JP.SJIS", 932, 932},
      {"ko_KR.EUC-KR", 51949, 949},
      {"en_US", 1252, 437},
      {"en_GB.ISO-8859-1", 28591, 850},
      {"C.ISO-8859-15", 28605, 437},
      {"de_DE@euro", 28605, 850},
      {"de_DE.CP1252@euro", 1252, 850},
      {"el_GR@euro", 1253, 737},
      {"sr_RS", 1251, 855},
      {"sr_RS@latin", 1250, 852},
      {"uz_UZ@cyrillic", 1251, 866},
      {"az_AZ", 1254, 857},
      {"az_IR", 1256, 720},
      {"cs_CZ", 1250, 852},
      {"he_IL", 1255, 862},
      {"lt_LT", 1257, 775},
      {"ko_KR", 949, 949},
      {"ca_ES@valencia", 1252, 850},
      {"zh_CN.gb18030", 936, 936},
      {"zh_TW", 950, 950},
      {"zh_HK.big5hkscs", 950, 950},
      {"zh_SG.GBK", 936, 936},
      {"th_TH.TIS-620", 874, 874},
      {"vi_VN.TCVN", 1258, 1258},
      {"hi_IN", 1252, 437},
      {"._@", 1252, 437},
  };
  for (const auto& [locale, ansi, oem] : cases) {
    EXPECT_EQ(localeCodePagesOf(locale).ansi, ansi) << locale;
    EXPECT_EQ(localeCodePagesOf(locale).oem, oem) << locale;
  }
}

}  // namespace
