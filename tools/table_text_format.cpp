#include "tools/table_text_format.h"

#include <algorithm>
#include <cstdio>
#include <sstream>

#include "support/content_coding.h"
#include "support/data_buffer.h"
#include "support/norvane_bzip2.h"
#include "tools/table_text_packing.h"

namespace {

// A text of several pieces: the first has the format character and this many characters, each
// other this many.
constexpr std::size_t kPieceSize = 400;
constexpr std::size_t kSourceLineSize = 80;

// "code page 932, GetEncShiftJis; ascii yes; ...": the words of a comment line that describe the
// table, the same in a file of pairs and in a source file.
std::string describe(const PairTable& table) {
  std::string line = "code page " + std::to_string(table.codePage) + ", " + table.name;
  if (table.baseCodePage != 0) line += ", applied over " + std::to_string(table.baseCodePage);
  if (table.isBestFit) {
    line += "; best fit";
  } else {
    line += table.isAscii ? "; ascii yes" : "; ascii no";
  }
  if (table.isOnlyRead) line += "; only read";
  if (table.isStored) line += "; stored";
  return line;
}

// The text behind a phrase, up to the next of ",;. ", or an empty string.
std::string wordBehind(const std::string& line, const std::string& phrase) {
  const std::size_t at = line.find(phrase);
  if (at == std::string::npos) return "";
  const std::size_t begin = at + phrase.size();
  return line.substr(begin, std::min(line.find_first_of(",;. ", begin), line.size()) - begin);
}

int numberBehind(const std::string& line, const std::string& phrase) {
  return static_cast<int>(std::strtol(wordBehind(line, phrase).c_str(), nullptr, 10));
}

std::string parseDescription(const std::string& line, PairTable& table) {
  table.codePage = numberBehind(line, "code page ");
  table.baseCodePage = numberBehind(line, "applied over ");
  table.name = wordBehind(line, "code page " + std::to_string(table.codePage) + ", ");
  const std::string ascii = wordBehind(line, "; ascii ");
  table.isAscii = ascii == "yes";
  table.isStored = line.find("; stored") != std::string::npos;
  table.isOnlyRead = line.find("; only read") != std::string::npos;
  table.isBestFit = line.find("; best fit") != std::string::npos;
  const bool isKind = table.isBestFit || ascii == "yes" || ascii == "no";
  if (table.codePage <= 0 || table.name.empty() || !isKind) {
    return "the first line must be like \"# code page 1252, _Enc_windows_1252; ascii yes\"";
  }
  return "";
}

// Exactly digits hexadecimal digits.
bool parseHex(const std::string& word, std::size_t digits, std::uint16_t& value) {
  if (word.size() != digits ||
      word.find_first_not_of("0123456789ABCDEFabcdef") != std::string::npos) {
    return false;
  }
  value = static_cast<std::uint16_t>(std::stoul(word, nullptr, 16));
  return true;
}

std::string parseRecord(const std::string& line, PairTable& table) {
  std::istringstream words(line);
  std::string bytes, unitWord, rest;
  words >> bytes >> unitWord;
  std::uint16_t unit = 0, code = 0;
  if (!parseHex(unitWord, 4, unit) || words >> rest) return "expected BYTES UNIT";
  if (table.isBestFit) {
    if (!parseHex(bytes, 4, code)) return "expected UNIT UNIT";
    table.replacements.push_back({code, unit});
  } else if (bytes == "-") {
    if (table.baseCodePage == 0) return "only a table of differences has removals";
    table.removals.push_back(unit);
  } else if (parseHex(bytes, 2, code)) {
    table.singles.push_back({code, unit});
  } else if (parseHex(bytes, 4, code)) {
    table.doubles.push_back({code, unit});
  } else {
    return "bad code";
  }
  return "";
}

std::string hex(unsigned int value, int digits) {
  char text[9];
  std::snprintf(text, sizeof text, "%0*X", digits, value);
  return text;
}

void appendU16(std::string& image, unsigned int value) {
  image += static_cast<char>(value & 0xFF);
  image += static_cast<char>(value >> 8 & 0xFF);
}

// The records of one section with codes of codeSize bytes, and the terminator. isListed: units
// met so far, which must not be met again unless they may repeat.
std::string packSection(std::vector<CodePair> pairs, unsigned int codeSize, bool mayRepeat,
                        std::vector<bool>& isListed, std::string& image) {
  std::stable_sort(pairs.begin(), pairs.end(),
                   [](const CodePair& a, const CodePair& b) { return a.unit < b.unit; });
  CodePair previous{0, 0};
  for (const CodePair& pair : pairs) {
    if (isListed[pair.unit] && !mayRepeat) return "unit " + hex(pair.unit, 4) + " listed twice";
    isListed[pair.unit] = true;
    // A difference of zero would end the section.
    if (pair.code == previous.code) {
      return "code " + hex(pair.code, static_cast<int>(2 * codeSize)) + " cannot stand at unit " +
             hex(pair.unit, 4);
    }
    const unsigned int codeDelta = static_cast<unsigned int>(pair.code - previous.code);
    image += static_cast<char>(codeDelta & 0xFF);
    if (codeSize == 2) image += static_cast<char>(codeDelta >> 8 & 0xFF);
    appendU16(image, static_cast<unsigned int>(pair.unit - previous.unit));
    previous = pair;
  }
  image.append(codeSize, '\0');
  return "";
}

std::string packDifferences(const PairTable& table, std::string& image) {
  for (const std::uint16_t unit : table.removals) {
    if (unit == 0) return "unit 0000 cannot be removed";
    appendU16(image, unit);
  }
  appendU16(image, 0);
  for (const CodePair& pair : table.singles) {
    if (pair.code == 0) return "code 00 cannot be a replacement";
    image += static_cast<char>(pair.code);
    appendU16(image, pair.unit);
  }
  image += '\0';
  for (const CodePair& pair : table.doubles) {
    if (pair.code == 0) return "code 0000 cannot be a replacement";
    image += static_cast<char>(pair.code >> 8);  // lead byte first
    image += static_cast<char>(pair.code & 0xFF);
    appendU16(image, pair.unit);
  }
  appendU16(image, 0);
  return "";
}

std::string packReplacements(std::vector<UnitPair> pairs, std::string& image) {
  std::ranges::stable_sort(pairs, {}, &UnitPair::unit);
  UnitPair previous{0, 0};
  for (const UnitPair& pair : pairs) {
    if (pair.unit == previous.unit) return "unit " + hex(pair.unit, 4) + " listed twice, or 0000";
    appendU16(image, static_cast<unsigned int>(pair.unit - previous.unit));
    appendU16(image, static_cast<unsigned int>(pair.replacement - previous.replacement));
    previous = pair;
  }
  appendU16(image, 0);
  return "";
}

// Reads an image front to back; behind its end there are zero bytes, as for the engine.
class ImageReader {
 public:
  explicit ImageReader(const std::string& image) : m_image(image) {}
  unsigned int u8() {
    const std::size_t at = m_at++;
    return at < m_image.size() ? static_cast<unsigned char>(m_image[at]) : 0;
  }
  unsigned int u16() {
    const unsigned int low = u8();
    return low | u8() << 8;
  }
  bool isAtEnd() const { return m_at == m_image.size(); }

 private:
  const std::string& m_image;
  std::size_t m_at = 0;
};

void unpackSection(ImageReader& reader, unsigned int codeSize, std::vector<CodePair>& pairs) {
  unsigned int code = 0, unit = 0;
  while (const unsigned int delta = codeSize == 1 ? reader.u8() : reader.u16()) {
    code = (code + delta) & (codeSize == 1 ? 0xFFu : 0xFFFFu);
    unit = (unit + reader.u16()) & 0xFFFFu;
    pairs.push_back({static_cast<std::uint16_t>(code), static_cast<std::uint16_t>(unit)});
  }
}

void unpackDifferences(ImageReader& reader, PairTable& table) {
  while (const unsigned int unit = reader.u16()) {
    table.removals.push_back(static_cast<std::uint16_t>(unit));
  }
  while (const unsigned int code = reader.u8()) {
    table.singles.push_back(
        {static_cast<std::uint16_t>(code), static_cast<std::uint16_t>(reader.u16())});
  }
  while (const unsigned int stored = reader.u16()) {
    table.doubles.push_back({static_cast<std::uint16_t>((stored << 8 & 0xFF00) | stored >> 8),
                             static_cast<std::uint16_t>(reader.u16())});
  }
}

void unpackReplacements(ImageReader& reader, PairTable& table) {
  UnitPair pair{0, 0};
  while (const unsigned int delta = reader.u16()) {
    pair.unit = static_cast<std::uint16_t>(pair.unit + delta);
    pair.replacement = static_cast<std::uint16_t>(pair.replacement + reader.u16());
    table.replacements.push_back(pair);
  }
}

std::string toString(const DataBuffer& bytes) {
  return bytes.getSize() == 0
             ? ""
             : std::string(reinterpret_cast<const char*>(bytes.getData2()), bytes.getSize());
}

// The characters of the string literals of a source file, in order.
std::string literalsOf(const std::string& source) {
  std::string text, line;
  for (std::istringstream lines(source); std::getline(lines, line);) {
    const std::size_t begin = line.find('"');
    if (begin == std::string::npos || line[0] == '#') continue;
    text += line.substr(begin + 1, line.rfind('"') - begin - 1);
  }
  return text;
}

// Characters as adjacent literals, one a line; lines after the first are as long as they may be.
std::string literalLines(const std::string& text, std::size_t firstLineSize,
                         const std::string& indent) {
  std::string lines;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t size = at == 0 ? firstLineSize : kSourceLineSize;
    lines += (at == 0 ? "" : "\n") + indent + '"' + text.substr(at, size) + '"';
    at += size;
  }
  return lines;
}

}  // namespace

std::string parsePairs(const std::string& pairs, PairTable& table) {
  table = PairTable{};
  std::istringstream lines(pairs);
  std::string line;
  std::getline(lines, line);
  std::string problem = parseDescription(line, table);
  for (int number = 2; problem.empty() && std::getline(lines, line); ++number) {
    if (line.empty() || line[0] == '#') continue;
    problem = parseRecord(line, table);
    if (!problem.empty()) problem.insert(0, "line " + std::to_string(number) + ": ");
  }
  return problem;
}

std::string packImage(const PairTable& table, std::string& image) {
  image.assign(1, table.isAscii ? 'a' : 'x');
  if (table.isBestFit) return packReplacements(table.replacements, image += 'f');
  image += table.baseCodePage != 0 ? 'd' : table.isOnlyRead ? 'r' : 'u';
  if (table.baseCodePage != 0) return packDifferences(table, image);
  std::vector<bool> isListed(0x10000);
  const std::string problem = packSection(table.singles, 1, table.isOnlyRead, isListed, image);
  if (!problem.empty()) return problem;
  return packSection(table.doubles, 2, table.isOnlyRead, isListed, image);
}

std::string unpackImage(const std::string& image, PairTable& table) {
  ImageReader reader(image);
  table.isAscii = reader.u8() == 'a';
  const unsigned int kind = reader.u8();
  table.isBestFit = kind == 'f';
  if (table.isBestFit) {
    unpackReplacements(reader, table);
  } else if (kind == 'd') {
    unpackDifferences(reader, table);
  } else {
    unpackSection(reader, 1, table.singles);
    unpackSection(reader, 2, table.doubles);
  }
  return reader.isAtEnd() ? "" : "the records do not end where the image ends";
}

std::string packText(const std::string& image, bool isStored, std::string& text) {
  DataBuffer bytes, packed, base64;
  bytes.append(image.data(), static_cast<unsigned int>(image.size()));
  if (!isStored && !packBzip2(bytes, packed)) return "cannot compress";
  const DataBuffer& payload = isStored ? bytes : packed;
  if (!encodeBase64(payload.getData2(), payload.getSize(), base64)) {
    return "out of memory";
  }
  text = (isStored ? 'x' : 'c') + toString(base64);
  return "";
}

std::string unpackText(const std::string& text, std::string& image) {
  DataBuffer decoded, bytes;
  if (text.size() < 2 ||
      !ContentCoding().decodeBase64ToDb(text.c_str() + 1,
                                        static_cast<unsigned int>(text.size() - 1), decoded)) {
    return "the text is not base64";
  }
  if (text[0] == 'x') {
    bytes.append(decoded);
  } else if (!NorvaneBzip2().unBzipWithHeader(decoded, bytes, nullptr)) {
    return "the compressed image is damaged";
  }
  image = toString(bytes);
  return "";
}

std::string parseSource(const std::string& source, PairTable& table) {
  table = PairTable{};
  std::string problem = parseDescription(source.substr(0, source.find('\n')), table);
  const std::string text = literalsOf(source);
  std::string image;
  if (problem.empty()) problem = unpackText(text, image);
  if (problem.empty()) problem = unpackImage(image, table);
  return problem;
}

std::string printPairs(const PairTable& table) {
  std::string out = "# " + describe(table) + "; ";
  if (table.isBestFit) {
    out += std::to_string(table.replacements.size()) + " pairs\n";
    for (const UnitPair& pair : table.replacements) {
      out += hex(pair.unit, 4) + " " + hex(pair.replacement, 4) + "\n";
    }
    return out;
  }
  if (table.baseCodePage != 0) out += std::to_string(table.removals.size()) + " removals (-), ";
  out += std::to_string(table.singles.size()) + " single-byte and " +
         std::to_string(table.doubles.size()) + " double-byte pairs\n";
  for (const std::uint16_t unit : table.removals) out += "- " + hex(unit, 4) + "\n";
  for (const CodePair& pair : table.singles) {
    out += hex(pair.code, 2) + " " + hex(pair.unit, 4) + "\n";
  }
  for (const CodePair& pair : table.doubles) {
    out += hex(pair.code, 4) + " " + hex(pair.unit, 4) + "\n";
  }
  return out;
}

std::string printSource(const PairTable& table, const std::string& text) {
  std::string out = "// Table text of " + describe(table) +
                    ". Packed by table_text; see docs/code-pages.md.\n"
                    "#include \"encoding/tables/texts/table_texts.h\"\n\n";
  if (table.name.rfind("Get", 0) != 0) {
    return out + "const char " + table.name + "[] =\n" +
           literalLines(text, kSourceLineSize, "    ") + ";\n";
  }
  out += "namespace {\nconst char* const kPieces[] = {\n";
  for (std::size_t at = 0; at < text.size();) {
    // The format character rides in front of the first piece.
    const std::size_t extra = at == 0 ? 1 : 0;
    // In parentheses, which say that no comma is missing.
    out += "    (\n";
    out += literalLines(text.substr(at, kPieceSize + extra), kSourceLineSize + extra, "    ");
    out += "),\n";
    at += kPieceSize + extra;
  }
  return out + "};\n}  // namespace\n\nvoid " + table.name +
         "(StringBuffer& out) {\n"
         "  for (const char* piece : kPieces) out.append(piece);\n}\n";
}
