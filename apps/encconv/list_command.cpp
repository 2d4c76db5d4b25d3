#include "list_command.h"

#include <iomanip>
#include <string>

#include "encoding/alike_encodings.h"
#include "encoding/code_page_list.h"

namespace {

constexpr std::size_t kLineWidth = 100;
constexpr int kNumberWidth = 7;
constexpr int kNameWidth = 16;
constexpr int kKindWidth = 13;
constexpr int kUseWidth = 4;
constexpr std::size_t kAliasIndent = 8;

// What no row of the list says, because it holds for all.
constexpr std::string_view kNotes =
    "Every code page is also known by its number alone and behind cp or windows- (1252, cp1252,\n"
    "windows-1252). Upper and lower case, punctuation and leading zeros make no difference.\n"
    "Use: r can be read, w can be written. Further names are indented. \"as 936\": it is "
    "converted\n"
    "just as that one. HZ has no number of its own elsewhere: 52936, which some give it, is GBK "
    "here.\n"
    "\n";

void printHeader(std::ostream& out) {
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
      << page.preferredName << std::setw(kKindWidth) << kindName(page.kind) << std::setw(kUseWidth)
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
  for (const CharsetNames& page : streamCodePages()) {
    if (!codePageMatches(page, filter)) continue;
    if (json) {
      out << (numbers != 0 ? ",\n " : "\n ");
      printJson(out, page);
    } else {
      if (numbers == 0) printHeader(out);
      printText(out, page);
    }
    ++numbers;
    if (firstAlikeCodePage(page.codePage) == page.codePage) ++encodings;
  }
  if (json) {
    out << (numbers != 0 ? "\n]\n" : "]\n");
  } else if (filter.empty()) {
    out << "\nTogether " << encodings << " encodings under " << numbers << " numbers.\n";
  }
  return numbers != 0 ? 0 : 1;
}
