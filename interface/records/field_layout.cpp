// FieldLayout: reading it from text.
#include <algorithm>
#include <charconv>
#include <set>

#include "encconv/records.h"
#include "interface/records/numbers.h"

namespace encconv {
namespace {

constexpr std::uint32_t kMostPosition = 16u << 20;
constexpr std::uint32_t kMostDigits = 63;
constexpr std::uint32_t kMostBinaryBytes = 8;
constexpr std::string_view kBlanks = " \t\r";

struct TypeName {
  std::string_view name;
  FieldType type;
};
constexpr TypeName kTypes[] = {{"text", FieldType::text},
                               {"packed", FieldType::packed},
                               {"zoned", FieldType::zoned},
                               {"binary", FieldType::binary}};

bool parseNumber(std::string_view text, std::uint32_t lowest, std::uint32_t highest,
                 std::uint32_t& number) {
  const char* const end = text.data() + text.size();
  std::uint32_t value = 0;
  const auto [rest, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc() || rest != end || value < lowest || value > highest) return false;
  number = value;
  return true;
}

std::string_view takeWord(std::string_view& text) {
  text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
  const std::string_view word = text.substr(0, text.find_first_of(kBlanks));
  text.remove_prefix(word.size());
  return word;
}

std::string quoted(std::string_view text) {
  std::string quoted(1, '\'');
  quoted += text;
  quoted += '\'';
  return quoted;
}

// Reads one field behind another.
class FieldText {
 public:
  FieldText(Field& field, std::string& why) : m_field(field), m_why(why) {}

  bool read(std::string_view text, std::uint64_t endOfBefore) {
    const std::string_view name = takeWord(text), position = takeWord(text);
    const std::string_view length = takeWord(text), type = takeWord(text);
    m_field.name = name;
    if (type.empty() || !takeWord(text).empty()) {
      return refuse("is not NAME POSITION LENGTH TYPE");
    }
    if (position == "+" && endOfBefore < kMostPosition) {
      m_field.position = static_cast<std::uint32_t>(endOfBefore) + 1;
    } else if (!parseNumber(position, 1, kMostPosition, m_field.position)) {
      return refuse(quoted(position) + " is no position; positions count from 1");
    }
    if (!parseNumber(length, 1, kMostPosition, m_field.length)) {
      return refuse(quoted(length) + " is no length");
    }
    return readType(type) && checkSizes();
  }

 private:
  bool refuse(const std::string& reason) {
    m_why = "field " + quoted(m_field.name) + ": " + reason;
    return false;
  }

  bool readType(std::string_view text) {
    const std::string_view name = text.substr(0, text.find(':'));
    const auto* const known = std::find_if(std::begin(kTypes), std::end(kTypes),
                                           [&](const TypeName& type) { return type.name == name; });
    if (known == std::end(kTypes)) {
      return refuse(quoted(name) + " is none of text, packed, zoned and binary");
    }
    m_field.type = known->type;
    text.remove_prefix(name.size());
    while (!text.empty()) {
      text.remove_prefix(1);
      constexpr std::string_view kEncoding = "encoding=";
      // A name may hold a colon.
      const std::size_t end = text.starts_with(kEncoding) ? text.size() : text.find(':');
      const std::string_view option = text.substr(0, end);
      if (!readOption(option)) {
        return m_why.empty() ? refuse(quoted(option) + " is no option of " + std::string(name))
                             : false;
      }
      text.remove_prefix(option.size());
    }
    return true;
  }

  bool readOption(std::string_view option) {
    const bool isText = m_field.type == FieldType::text;
    const bool isZoned = m_field.type == FieldType::zoned;
    const std::string_view name = option.substr(0, option.find('='));
    const bool hasValue = name.size() < option.size();
    const std::string_view value = hasValue ? option.substr(name.size() + 1) : std::string_view();
    if (isText) {
      if (name != "encoding" || !hasValue) return false;
      m_field.code_page = find_code_page(value);
      return m_field.code_page.has_value() || refuse(quoted(value) + " is no known encoding");
    }
    std::uint32_t number = 0;
    if (name == "scale" && parseNumber(value, 0, kMostDigits, number)) {
      m_field.scale = static_cast<int>(number);
      return true;
    }
    if (name == "digits") return parseNumber(value, 1, kMostDigits, m_field.digits);
    if (hasValue) return false;
    if (name == "signed" || name == "unsigned") {
      m_field.is_signed = name == "signed";
      return true;
    }
    if (isZoned && (name == "leading" || name == "trailing")) {
      m_field.leading = name == "leading";
      return true;
    }
    if (isZoned && (name == "ascii" || name == "ebcdic")) {
      m_field.ascii = name == "ascii";
      return true;
    }
    if (isZoned && name == "separate") return m_field.separate = true;
    if (m_field.type == FieldType::binary && name == "little") return m_field.little_endian = true;
    return false;
  }

  bool checkSizes() {
    if (m_field.type == FieldType::text) return true;
    if (m_field.separate && !m_field.is_signed) return refuse("is separate and unsigned");
    if (m_field.separate && m_field.length == 1) return refuse("has no room for a digit");
    if (m_field.type == FieldType::binary) {
      if (m_field.length <= kMostBinaryBytes) return true;
      return refuse("has more than 8 bytes, which binary numbers have at most");
    }
    const std::size_t room = digitRoom(m_field);
    if (room > kMostDigits) return refuse("has more than 63 digits");
    return m_field.digits <= room || refuse("has no room for so many digits");
  }

  Field& m_field;
  std::string& m_why;
};

// Takes the text of the next field; empty for an empty line.
std::string_view takeField(std::string_view& text) {
  constexpr std::size_t kNone = std::string_view::npos;
  std::size_t end = text.find_first_of(",\n#");
  // Within a word the sign of comments is a character like others.
  while (end != kNone && end != 0 && text[end] == '#' && kBlanks.find(text[end - 1]) == kNone) {
    end = text.find_first_of(",\n#", end + 1);
  }
  const std::string_view field = text.substr(0, end);
  // A comment goes to the end of its line.
  if (end != kNone && text[end] == '#') end = text.find('\n', end);
  text.remove_prefix(end == kNone ? text.size() : end + 1);
  return field;
}

}  // namespace

std::size_t FieldLayout::length() const {
  std::size_t length = 0;
  for (const Field& field : fields) {
    length = std::max<std::size_t>(length, std::size_t{field.position} - 1 + field.length);
  }
  return length;
}

bool parse_field_layout(std::string_view text, FieldLayout& layout, std::string& why) {
  FieldLayout read;
  std::set<std::string> names;
  std::uint64_t end = 0;
  why.clear();
  while (!text.empty()) {
    const std::string_view fieldText = takeField(text);
    if (fieldText.find_first_not_of(kBlanks) == std::string_view::npos) continue;
    Field field;
    if (!FieldText(field, why).read(fieldText, end)) return false;
    if (!names.insert(field.name).second) {
      why = "field " + quoted(field.name) + ": is there twice";
      return false;
    }
    end = std::uint64_t{field.position} - 1 + field.length;
    read.fields.push_back(std::move(field));
  }
  if (read.fields.empty()) {
    why = "no fields";
    return false;
  }
  layout = std::move(read);
  return true;
}

}  // namespace encconv
