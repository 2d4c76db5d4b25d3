#include "list_command.h"

#include <algorithm>
#include <iomanip>
#include <string>
#include <vector>

#include "encoding/alike_encodings.h"
#include "encoding/code_page_list.h"

namespace {

constexpr std::size_t kLineWidth = 100;
constexpr int kNumberWidth = 7;
constexpr int kNameWidth = 16;
constexpr int kKindWidth = 13;
constexpr int kUseWidth = 4;
constexpr std::size_t kAliasIndent = 8;

// What an encoding belongs to, told by what its description begins with, or has in it, and which of
// a family to choose. The first that fits counts.
struct Family {
  std::string_view heading;
  std::string_view advice;
  std::string_view beginnings;  // separated by '|'; empty: any
  std::string_view word;        // in the description; empty: none needed
};
constexpr Family kFamilies[] = {
    {"Unicode", "For anything new: UTF-8.", "Unicode", ""},
    {"The web", "What browsers do with each label, errors included.", "Web", ""},
    {"EBCDIC",
     "Mainframes. US and Canada: 37, with euro 1140; Unix services and C: 1047; Germany: 273, "
     "1141;\n"
     "international: 500, 1148; Japan: 930 (katakana) or 939 (Latin), newer 1390 and 1399.",
     "EBCDIC", ""},
    {"Japanese", "Files: 932, Unix EUC-JP, mail ISO-2022-JP. JIS X 0213 for names and rare kanji.",
     "", "Japanese"},
    {"Chinese",
     "Mainland China: GB18030, which holds GBK (936) and GB2312. Taiwan: 950; Hong Kong: "
     "Big5-HKSCS.",
     "", "Chinese"},
    {"Korean", "949, which holds EUC-KR.", "", "Korean"},
    {"Windows", "Western 1252, Central European 1250, Cyrillic 1251, and so on.", "Windows", ""},
    {"DOS and PC", "Western 850, with euro 858; United States 437; Russian 866.", "DOS|IBM PC|PC",
     ""},
    {"Mac", "Files and disks of Macs before OS X.", "Mac", ""},
    {"ISO 8859",
     "Mail and Unix before Unicode. Text that says ISO-8859-1 is nearly always windows-1252.",
     "ISO 8859|ISO-8859", ""},
    {"Seven bits", "National variants of ASCII: brackets and braces are letters there.", "7-bit",
     ""},
    {"Others", "National standards, makers of computers, telephones, libraries.", "", ""},
};

bool belongsTo(const CharsetNames& page, const Family& family) {
  if (page.description.find(family.word) == std::string_view::npos) return false;
  std::string_view rest = family.beginnings;
  if (rest.empty()) return true;
  while (true) {
    const std::size_t end = std::min(rest.find('|'), rest.size());
    if (page.description.starts_with(rest.substr(0, end))) return true;
    if (end == rest.size()) return false;
    rest.remove_prefix(end + 1);
  }
}

const Family& familyOf(const CharsetNames& page) {
  return *std::ranges::find_if(kFamilies,
                               [&](const Family& family) { return belongsTo(page, family); });
}

// The families in the order in which they are shown: those that the filter names come first.
std::vector<const Family*> familiesFor(std::string_view filter) {
  std::vector<const Family*> families;
  for (const Family& family : kFamilies) families.push_back(&family);
  std::stable_partition(families.begin(), families.end(), [&](const Family* family) {
    return !filter.empty() && containsName(family->heading, filter);
  });
  return families;
}

// What no row of the list says, because it holds for all.
constexpr std::string_view kNotes =
    "Every code page is also known by its number alone and behind cp or windows- (1252, cp1252,\n"
    "windows-1252). Upper and lower case, punctuation and leading zeros make no difference.\n"
    "Use: r can be read, w can be written. Further names are indented. \"as 936\": it is "
    "converted\n"
    "just as that one. HZ has no number of its own elsewhere: 52936, which some give it, is GBK "
    "here.\n"
    "\n";

void printHeader(std::ostream& out, const Family& family, bool isFirst) {
  if (!isFirst) out << '\n';
  out << "== " << family.heading << " ==\n" << family.advice << "\n\n";
  out << std::setw(kNumberWidth) << "Number"
      << "  " << std::left << std::setw(kNameWidth) << "Name" << std::setw(kKindWidth) << "Kind"
      << std::setw(kUseWidth) << "Use"
      << "Description\n"
      << std::right;
}

void printAliases(std::ostream& out, std::span<const std::string_view> aliases) {
  std::size_t column = 0;
  for (const std::string_view alias : aliases) {
    if (column != 0 && column + 1 + alias.size() > kLineWidth) {
      out << '\n';
      column = 0;
    }
    if (column == 0) {
      out << std::string(kAliasIndent, ' ');
      column = kAliasIndent;
    } else {
      out << ' ';
      ++column;
    }
    out << alias;
    column += alias.size();
  }
  if (column != 0) out << '\n';
}

void printText(std::ostream& out, const CharsetNames& page) {
  out << std::setw(kNumberWidth) << page.codePage << "  " << std::left << std::setw(kNameWidth)
      << page.preferredName;
  // A long name has a line of its own.
  if (page.preferredName.size() >= std::size_t{kNameWidth}) {
    out << '\n' << std::string(kNumberWidth + 2 + kNameWidth, ' ');
  }
  out << std::setw(kKindWidth) << kindName(page.kind) << std::setw(kUseWidth)
      << (page.canRead ? (page.canWrite ? "rw" : "r") : (page.canWrite ? "w" : "-"))
      << page.description;
  const int alike = firstAlikeCodePage(page.codePage);
  const std::string asOther = "as " + std::to_string(alike);
  if (alike != page.codePage && !page.description.ends_with(asOther)) out << ", " << asOther;
  out << '\n' << std::right;
  printAliases(out, page.aliases);
}

// A JSON string. The texts of the list are printable ASCII.
void printString(std::ostream& out, std::string_view text) {
  out << '"';
  for (const char c : text) {
    if (c == '"' || c == '\\') out << '\\';
    out << c;
  }
  out << '"';
}

void printJson(std::ostream& out, const CharsetNames& page) {
  out << "{\"codePage\": " << page.codePage << ", \"name\": ";
  printString(out, page.preferredName);
  out << ", \"aliases\": [";
  const char* separator = "";
  for (const std::string_view alias : page.aliases) {
    out << separator;
    printString(out, alias);
    separator = ", ";
  }
  out << "], \"kind\": ";
  printString(out, kindName(page.kind));
  out << ", \"description\": ";
  printString(out, page.description);
  out << ", \"family\": ";
  printString(out, familyOf(page).heading);
  out << ", \"sameAs\": ";
  const int alike = firstAlikeCodePage(page.codePage);
  if (alike == page.codePage) {
    out << "null";
  } else {
    out << alike;
  }
  out << std::boolalpha << ", \"canRead\": " << page.canRead << ", \"canWrite\": " << page.canWrite
      << std::noboolalpha << '}';
}

}  // namespace

int printCodePageList(std::ostream& out, bool json, std::string_view filter) {
  std::size_t numbers = 0;
  std::size_t encodings = 0;  // not counting those that are converted as another one
  if (json) {
    out << '[';
  } else if (filter.empty()) {
    out << kNotes;
  }
  for (const Family* const family : familiesFor(filter)) {
    bool isFirst = true;
    for (const CharsetNames& page : streamCodePages()) {
      if (&familyOf(page) != family || !codePageMatches(page, filter)) continue;
      if (json) {
        out << (numbers != 0 ? ",\n " : "\n ");
        printJson(out, page);
      } else {
        if (isFirst) printHeader(out, *family, numbers == 0);
        printText(out, page);
      }
      isFirst = false;
      ++numbers;
      if (firstAlikeCodePage(page.codePage) == page.codePage) ++encodings;
    }
  }
  if (json) {
    out << (numbers != 0 ? "\n]\n" : "]\n");
  } else if (filter.empty()) {
    out << "\nTogether " << encodings << " encodings under " << numbers << " numbers.\n";
  }
  return numbers != 0 ? 0 : 1;
}
