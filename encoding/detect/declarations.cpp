#include "encoding/detect/declarations.h"

#include <algorithm>

namespace detection {
namespace {

constexpr std::size_t kBeginning = 4096;
constexpr std::size_t kEnd = 1024;
constexpr std::size_t kNpos = std::string_view::npos;

char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; }

bool isNameCharacter(char c) {
  c = lower(c);
  return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-' || c == '_' || c == '.' ||
         c == ':' || c == '+';
}

// Where a word stands, whatever its case.
std::size_t find(std::string_view text, std::string_view word, std::size_t from = 0) {
  if (from > text.size()) return kNpos;
  const auto found =
      std::search(text.begin() + static_cast<std::ptrdiff_t>(from), text.end(), word.begin(),
                  word.end(), [](char a, char b) { return lower(a) == lower(b); });
  return found == text.end() ? kNpos : static_cast<std::size_t>(found - text.begin());
}

// The name behind a word, blanks, one of the separators, and a quotation mark if there is one.
std::string_view nameBehind(std::string_view text, std::size_t at, std::string_view separators) {
  const auto skip = [&](std::string_view set) {
    while (at < text.size() && set.find(text[at]) != kNpos) ++at;
  };
  skip(" \t");
  if (!separators.empty()) {
    if (at >= text.size() || separators.find(text[at]) == kNpos) return {};
    ++at;
    skip(" \t");
  }
  if (at < text.size() && (text[at] == '"' || text[at] == '\'')) ++at;
  std::size_t end = at;
  while (end < text.size() && isNameCharacter(text[end])) ++end;
  return text.substr(at, end - at);
}

std::string_view lineAt(std::string_view text, std::size_t begin) {
  return text.substr(begin, std::min(text.find_first_of("\r\n", begin), text.size()) - begin);
}

Declaration inXml(std::string_view text) {
  if (!text.starts_with("<?xml")) return {};
  const std::string_view head = text.substr(0, text.find("?>"));
  const std::size_t at = find(head, "encoding");
  return at == kNpos ? Declaration() : Declaration{nameBehind(head, at + 8, "="), "XML"};
}

Declaration inCss(std::string_view text) {
  if (!text.starts_with("@charset \"")) return {};
  return {nameBehind(text, 8, ""), "CSS"};
}

Declaration inHtml(std::string_view text) {
  for (std::size_t at = find(text, "<meta"); at != kNpos; at = find(text, "<meta", at + 5)) {
    const std::string_view tag = text.substr(at, text.find('>', at) - at);
    const std::size_t word = find(tag, "charset");
    if (word == kNpos) continue;
    const std::string_view name = nameBehind(tag, word + 7, "=");
    if (!name.empty()) return {name, "HTML"};
  }
  return {};
}

// The header of a mail, or that of a message catalogue, which is made like one.
Declaration inHeader(std::string_view text) {
  constexpr std::string_view kField = "content-type:";
  for (std::size_t at = find(text, kField); at != kNpos; at = find(text, kField, at + 1)) {
    const bool isQuoted = at > 0 && text[at - 1] == '"';
    if (at > 0 && !isQuoted && text[at - 1] != '\n') continue;
    // A folded line goes on behind its end.
    const std::string_view field = text.substr(at, 200);
    const std::size_t word = find(field, "charset");
    const std::string_view name =
        word == kNpos ? std::string_view() : nameBehind(field, word + 7, "=");
    if (!name.empty()) {
      return {name.substr(0, name.find("\\n")), isQuoted ? "message catalogue" : "MIME header"};
    }
  }
  return {};
}

// "coding: NAME" or "coding=NAME" in a line; of editors and of PEP 263.
std::string_view codingIn(std::string_view line) {
  for (std::size_t at = find(line, "coding"); at != kNpos; at = find(line, "coding", at + 1)) {
    const std::string_view name = nameBehind(line, at + 6, ":=");
    if (name.empty() || (line[at + 6] != ':' && line[at + 6] != '=')) continue;
    // Emacs says how lines end, too.
    for (const std::string_view lineEnd : {"-unix", "-dos", "-mac"}) {
      if (name.ends_with(lineEnd)) return name.substr(0, name.size() - lineEnd.size());
    }
    return name;
  }
  return {};
}

Declaration inFirstLines(std::string_view text) {
  std::size_t begin = 0;
  for (int i = 0; i < 2 && begin < text.size(); ++i) {
    const std::string_view line = lineAt(text, begin);
    // Emacs between its marks; Python in any comment of the first two lines.
    const bool isEmacs = line.find("-*-") != kNpos;
    const bool isComment = line.substr(0, line.find_first_not_of(" \t\f") + 1).ends_with('#');
    if (isEmacs || isComment) {
      const std::string_view name = codingIn(line);
      if (!name.empty()) return {name, isEmacs ? "Emacs modeline" : "PEP 263"};
    }
    begin = std::min(text.find('\n', begin), text.size() - 1) + 1;
  }
  return {};
}

Declaration inVimModeline(std::string_view text) {
  for (const std::string_view mark : {"vim:", "vi:", "ex:"}) {
    for (std::size_t at = find(text, mark); at != kNpos; at = find(text, mark, at + 1)) {
      if (at > 0 && text[at - 1] != ' ' && text[at - 1] != '\t' && text[at - 1] != '\n') continue;
      const std::string_view line = lineAt(text, at);
      for (const std::string_view option : {"fileencoding", "fenc"}) {
        const std::size_t found = line.find(option);
        const std::string_view name =
            found == kNpos ? std::string_view() : nameBehind(line, found + option.size(), "=");
        if (!name.empty()) return {name.substr(0, name.find(':')), "Vim modeline"};
      }
    }
  }
  return {};
}

// The list of variables that Emacs reads at the end of a file.
Declaration inLocalVariables(std::string_view end) {
  const std::size_t list = end.rfind("Local Variables:");
  if (list == kNpos) return {};
  const std::string_view name = codingIn(end.substr(list));
  return name.empty() ? Declaration() : Declaration{name, "Emacs variables"};
}

}  // namespace

Declaration findDeclaration(Bytes head, bool isWhole) {
  const std::string_view text(reinterpret_cast<const char*>(head.data()), head.size());
  const std::string_view beginning = text.substr(0, kBeginning);
  for (const auto find : {inXml, inCss, inFirstLines, inHtml, inHeader, inVimModeline}) {
    const Declaration found = find(beginning);
    if (!found.name.empty()) return found;
  }
  if (!isWhole) return {};
  const std::string_view end = text.substr(text.size() - std::min(text.size(), kEnd));
  for (const auto find : {inVimModeline, inLocalVariables}) {
    const Declaration found = find(end);
    if (!found.name.empty()) return found;
  }
  return {};
}

}  // namespace detection
