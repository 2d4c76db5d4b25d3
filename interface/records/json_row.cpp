// A line of JSON: an object of texts, numbers and nulls.
#include <algorithm>

#include "interface/records/table_rows.h"
#include "support/utf.h"

namespace encconv {
namespace {

class JsonRow {
 public:
  JsonRow(std::string_view text, RowFault& fault) : m_text(text), m_fault(fault) {}

  bool parse(std::vector<std::pair<std::string, Value>>& members) {
    members.clear();
    if (!expect('{', "a line is no JSON object")) return false;
    if (next() == '}') {
      ++m_at;
    } else {
      do {
        auto& [name, value] = members.emplace_back();
        if (next() != '"') return refuse("there is no name of a member");
        if (!parseString(name) || !expect(':', "there is no colon behind a name")) return false;
        if (!parseValue(value)) return false;
      } while (takeComma());
      if (!expect('}', "there is neither a comma nor the end of the object")) return false;
    }
    return next() == 0 || refuse("something follows the end of the object");
  }

 private:
  bool refuse(const char* reason) {
    m_fault = {m_at, reason};
    return false;
  }

  // The next character that is no blank; 0 at the end.
  char next() {
    m_at = std::min(m_text.find_first_not_of(" \t\r\n", m_at), m_text.size());
    return m_at == m_text.size() ? '\0' : m_text[m_at];
  }
  bool expect(char c, const char* reason) {
    if (next() != c) return refuse(reason);
    ++m_at;
    return true;
  }
  bool takeComma() {
    if (next() != ',') return false;
    ++m_at;
    return true;
  }

  bool parseValue(Value& value) {
    const char first = next();
    if (first == '"') return parseString(value.emplace<std::string>());
    constexpr std::string_view kNull = "null";
    if (m_text.substr(m_at, kNull.size()) == kNull) {
      m_at += kNull.size();
      return true;
    }
    const std::size_t end =
        std::min(m_text.find_first_not_of("+-.0123456789eE", m_at), m_text.size());
    const std::string_view number = m_text.substr(m_at, end - m_at);
    if (!parse_decimal(number)) return refuse("a value is neither a text nor a number nor null");
    value = std::string(number);
    m_at = end;
    return true;
  }

  bool parseString(std::string& text) {
    for (++m_at; m_at < m_text.size(); ++m_at) {
      const char c = m_text[m_at];
      if (c == '"') {
        ++m_at;
        return true;
      }
      if (c == '\\') {
        if (!parseEscape(text)) return false;
      } else if (static_cast<unsigned char>(c) < 0x20) {
        return refuse("a control character within a text");
      } else {
        text += c;
      }
    }
    return refuse("a text has no end");
  }

  // Stops at the last character of the escape.
  bool parseEscape(std::string& text) {
    constexpr std::string_view kNames = "\"\\/bfnrt", kMeanings = "\"\\/\b\f\n\r\t";
    ++m_at;
    const char name = m_at < m_text.size() ? m_text[m_at] : '\0';
    const std::size_t found = kNames.find(name);
    if (name != '\0' && found != std::string_view::npos) {
      text += kMeanings[found];
      return true;
    }
    std::uint32_t scalar = 0;
    if (name != 'u' || !parseUnit(scalar)) return refuse("no escape of a text");
    if (isHighSurrogate(scalar) && m_text.substr(m_at + 1, 2) == "\\u") {
      m_at += 2;
      std::uint32_t low = 0;
      if (!parseUnit(low) || !isLowSurrogate(low)) return refuse("half a pair of surrogates");
      scalar = joinSurrogates(scalar, low);
    }
    if (isSurrogate(scalar)) return refuse("half a pair of surrogates");
    unsigned char bytes[4];
    text.append(reinterpret_cast<const char*>(bytes),
                static_cast<std::size_t>(writeUtf8(bytes, scalar) - bytes));
    return true;
  }
  bool parseUnit(std::uint32_t& unit) {
    constexpr std::string_view kDigits = "0123456789abcdefABCDEF";
    for (int i = 0; i < 4; ++i) {
      ++m_at;
      const std::size_t digit = m_at < m_text.size() ? kDigits.find(m_text[m_at]) : kDigits.npos;
      if (digit == kDigits.npos) return false;
      unit = unit << 4 | static_cast<std::uint32_t>(digit < 16 ? digit : digit - 6);
    }
    return true;
  }

  std::string_view m_text;
  RowFault& m_fault;
  std::size_t m_at = 0;
};

}  // namespace

bool parseJsonRow(std::string_view text, std::vector<std::pair<std::string, Value>>& members,
                  RowFault& fault) {
  return JsonRow(text, fault).parse(members);
}

}  // namespace encconv
