// pack_mappings: makes sources of mapping files (encoding/tables/mappings/README.md), for the
// build.
//
//   pack_mappings SOURCE HEADER [--apart FOLDER SIZE] [--keep NAME,...] FILE.map...
//
// Each mapping becomes a packed image, laid out as encoding/codecs/code_table.h says. With --apart,
// images of SIZE bytes and more become files of FOLDER, NAME.table, and the source has the rest and
// what a file must be (encoding/codecs/mapping_files.h); --keep names those that it has in any
// case. Runs on the host, and uses nothing of the library.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <map>
#include <optional>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

using Scalars = std::vector<std::uint32_t>;
// A code by its length and value, which is the order that images have.
using Code = std::pair<unsigned int, std::uint32_t>;

constexpr std::size_t kMaxScalars = 4;

enum Kind : std::uint8_t { kBoth, kRead, kWrite, kRemove, kKinds };

struct MappingFile {
  std::string name;
  std::string over;
  bool hasGb18030Rest = false;
  std::multimap<Code, Scalars> entries[kKinds];
};

struct Fault {
  std::string what;
};

std::uint32_t parseHex(std::string_view digits, const char* what) {
  std::uint32_t value = 0;
  if (digits.empty() || digits.size() > 8) throw Fault{std::string("bad ") + what};
  for (const char c : digits) {
    const bool isDigit = (c >= '0' && c <= '9') || (c >= 'A' && c <= 'F');
    if (!isDigit) throw Fault{std::string("bad ") + what};
    value = value << 4 | static_cast<std::uint32_t>(c <= '9' ? c - '0' : c - 'A' + 10);
  }
  return value;
}

Code parseCode(const std::string& word) {
  if (word.size() % 2 != 0) throw Fault{"a code has two digits a byte"};
  return {static_cast<unsigned int>(word.size() / 2), parseHex(word, "code")};
}

Scalars parseScalars(const std::string& word) {
  Scalars scalars;
  std::istringstream parts(word);
  for (std::string part; std::getline(parts, part, '+');) {
    const std::uint32_t scalar = parseHex(part, "scalar value");
    if (scalar > 0x10FFFF || (scalar >= 0xD800 && scalar < 0xE000)) throw Fault{"no scalar value"};
    scalars.push_back(scalar);
  }
  if (scalars.empty() || scalars.size() > kMaxScalars) throw Fault{"too many scalar values"};
  return scalars;
}

void parseCodes(std::istringstream& words, Kind kind, const std::string& first,
                MappingFile& mapping) {
  auto& entries = mapping.entries[kind];
  Code code = parseCode(first);
  if (kind == kRemove) {
    entries.emplace(code, Scalars{});
    for (std::string word; words >> word;) entries.emplace(parseCode(word), Scalars{});
    return;
  }
  bool hasPassedLast = false;
  for (std::string word; words >> word;) {
    if (hasPassedLast) throw Fault{"the last byte of the code passes FF"};
    if (word != "-") entries.emplace(code, parseScalars(word));
    hasPassedLast = (code.second++ & 0xFF) == 0xFF;
  }
}

void parseLine(const std::string& line, MappingFile& mapping) {
  std::istringstream words(line);
  std::string word;
  if (!(words >> word) || word[0] == '#') return;
  if (word == "over") {
    if (!(words >> mapping.over)) throw Fault{"over what?"};
  } else if (word == "gb18030-rest") {
    mapping.hasGb18030Rest = true;
  } else if (word == ">" || word == "<" || word == "remove") {
    const Kind kind = word == ">" ? kRead : word == "<" ? kWrite : kRemove;
    if (kind == kRemove && mapping.over.empty()) throw Fault{"nothing to remove from"};
    if (!(words >> word)) throw Fault{"no code"};
    parseCodes(words, kind, word, mapping);
  } else {
    parseCodes(words, kBoth, word, mapping);
  }
}

// Each code is read as one thing, and each value written as one.
void check(const MappingFile& mapping) {
  std::set<Code> isRead;
  std::set<Scalars> isWritten;
  for (const Kind kind : {kBoth, kRead, kRemove}) {
    for (const auto& [code, scalars] : mapping.entries[kind]) {
      if (!isRead.insert(code).second) {
        std::ostringstream what;
        what << "code " << std::hex << std::uppercase << code.second << " stands there twice";
        throw Fault{what.str()};
      }
    }
  }
  for (const Kind kind : {kBoth, kWrite}) {
    for (const auto& [code, scalars] : mapping.entries[kind]) {
      if (!isWritten.insert(scalars).second) {
        std::ostringstream what;
        what << "value " << std::hex << std::uppercase << scalars[0] << " is written twice";
        throw Fault{what.str()};
      }
    }
  }
}

MappingFile load(const std::string& path) {
  MappingFile mapping;
  const std::size_t begin = path.find_last_of('/') + 1;
  mapping.name = path.substr(begin, path.rfind('.') - begin);
  std::ifstream file(path);
  if (!file) throw Fault{path + ": cannot be read"};
  unsigned int number = 0;
  try {
    for (std::string line; std::getline(file, line);) {
      ++number;
      parseLine(line, mapping);
    }
    check(mapping);
  } catch (const Fault& fault) {
    throw Fault{path + ":" + std::to_string(number) + ": " + fault.what};
  }
  return mapping;
}

// ---- Packing ----

void putNumber(std::uint32_t number, std::string& image) {
  for (; number >= 0x80; number >>= 7) image += static_cast<char>((number & 0x7F) | 0x80);
  image += static_cast<char>(number);
}

// Small numbers of either sign as small ones without.
std::uint32_t folded(std::uint32_t difference) {
  return difference << 1 ^ ((difference >> 31) != 0 ? 0xFFFFFFFFu : 0);
}

// Codes of one kind and length, and values of one count.
using Section = std::vector<std::pair<std::uint32_t, Scalars>>;

void putSection(Kind kind, unsigned int length, std::size_t count, const Section& section,
                std::string& image) {
  std::size_t runs = 0;
  std::string body;
  std::uint32_t following = 0, expected = 0;
  for (std::size_t i = 0; i < section.size();) {
    std::size_t end = i + 1;
    while (end < section.size() && section[end].first == section[end - 1].first + 1) ++end;
    putNumber(section[i].first - following, body);
    putNumber(static_cast<std::uint32_t>(end - i), body);
    following = section[end - 1].first;
    for (; i < end; ++i) {
      for (const std::uint32_t scalar : section[i].second) {
        putNumber(folded(scalar - expected), body);
        expected = scalar + 1;
      }
    }
    ++runs;
  }
  image += static_cast<char>(kind | length << 2 | count << 5);
  putNumber(static_cast<std::uint32_t>(runs), image);
  image += body;
}

std::string pack(const MappingFile& mapping) {
  std::string image;
  // A byte that was a code may begin codes now, once it is removed.
  for (const Kind kind : {kRemove, kBoth, kRead, kWrite}) {
    std::map<std::pair<unsigned int, std::size_t>, Section> sections;
    for (const auto& [code, scalars] : mapping.entries[kind]) {
      sections[{code.first, scalars.size()}].emplace_back(code.second, scalars);
    }
    for (const auto& [key, section] : sections) {
      putSection(kind, key.first, key.second, section, image);
    }
  }
  return image += '\xFF';
}

// ---- Sources ----

std::string identifier(std::string name) {
  std::replace_if(
      name.begin(), name.end(), [](char c) { return c == '-' || c == '.'; }, '_');
  return "kMap_" + name;
}

// The base is a table text in pieces, which a function appends.
bool isText(const std::string& base) { return base.compare(0, 3, "Get") == 0; }

bool isNumber(const std::string& text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string::npos;
}

std::string octal(char c) {
  char text[5];
  std::snprintf(text, sizeof text, "\\%03o", static_cast<unsigned char>(c));
  return text;
}

void writeImage(const std::string& image, std::ostream& out) {
  constexpr std::size_t kPerLine = 96;
  for (std::size_t i = 0; i < image.size(); ++i) {
    if (i % kPerLine == 0) out << (i == 0 ? "\n    \"" : "\"\n    \"");
    out << octal(image[i]);
  }
  out << '"';
}

// A literal above 65,536 bytes is more than every compiler takes: such an image is an array.
bool isLiteral(const std::string& image) { return image.size() < 65536; }

void writeArray(const MappingFile& mapping, const std::string& image, std::ostream& out) {
  constexpr std::size_t kPerLine = 24;
  out << "static constexpr char kImage_" << identifier(mapping.name) << "[] = {";
  for (std::size_t i = 0; i < image.size(); ++i) {
    if (i % kPerLine == 0) out << "\n    ";
    out << '\'' << octal(image[i]) << "',";
  }
  out << "};\n";
}

// Which images are files, and where.
struct Apart {
  std::string folder;
  std::size_t size = SIZE_MAX;
  std::set<std::string> kept;

  bool isFile(const MappingFile& mapping, const std::string& image) const {
    return image.size() >= size && kept.count(mapping.name) == 0;
  }
};

// As encoding/codecs/mapping_files.cpp computes it: FNV-1a.
std::uint32_t checksumOf(const std::string& image) {
  std::uint32_t sum = 0x811C9DC5u;
  for (const char c : image) sum = (sum ^ static_cast<unsigned char>(c)) * 0x01000193u;
  return sum;
}

void writeFile(const MappingFile& mapping, const std::string& image, const Apart& apart,
               std::ostream& out) {
  const std::string path = apart.folder + '/' + mapping.name + ".table";
  std::ofstream file(path, std::ios::binary);
  if (!file.write(image.data(), static_cast<std::streamsize>(image.size())).flush()) {
    throw Fault{path + ": cannot be written"};
  }
  out << "static constexpr MappingFile kFile_" << identifier(mapping.name) << " = {\""
      << mapping.name << ".table\", " << image.size() << ", " << checksumOf(image) << "u};\n";
}

void writeSource(const std::vector<MappingFile>& mappings, const Apart& apart, std::ostream& out) {
  out << "// Made by pack_mappings.\n#include \"encoding/codecs/mapping_list.h\"\n\n"
         "#include \"encoding/codecs/mapping_files.h\"\n"
         "#include \"encoding/tables/texts/table_texts.h\"\n\n";
  for (std::size_t i = 0; i < mappings.size(); ++i) {
    const MappingFile& mapping = mappings[i];
    const bool isOverPage = isNumber(mapping.over), isOverText = isText(mapping.over);
    const std::string image = pack(mapping);
    const bool isFile = apart.isFile(mapping, image);
    if (isFile) writeFile(mapping, image, apart, out);
    if (!isFile && !isLiteral(image)) writeArray(mapping, image, out);
    out << "const Mapping " << identifier(mapping.name) << " = {";
    if (isFile) {
      out << "nullptr";
    } else if (isLiteral(image)) {
      writeImage(image, out);
    } else {
      out << "kImage_" << identifier(mapping.name);
    }
    out << ", " << i << ", "
        << (mapping.over.empty() || isOverPage || isOverText ? "nullptr"
                                                             : '&' + identifier(mapping.over))
        << ", " << (isOverPage ? mapping.over : "0") << ", "
        << (mapping.hasGb18030Rest ? "true" : "false") << ", "
        << (isOverText ? mapping.over : "nullptr");
    if (isFile) out << ", &kFile_" << identifier(mapping.name);
    out << "};\n";
  }
}

void writeHeader(const std::vector<MappingFile>& mappings, std::ostream& out) {
  out << "// Made by pack_mappings: all mappings.\n"
         "#ifndef ENCODING_CODECS_MAPPING_LIST_H_\n#define ENCODING_CODECS_MAPPING_LIST_H_\n\n"
         "#include \"encoding/codecs/code_table.h\"\n\n";
  for (const MappingFile& mapping : mappings) {
    out << "extern const Mapping " << identifier(mapping.name) << ";\n";
  }
  out << "\n#endif  // ENCODING_CODECS_MAPPING_LIST_H_\n";
}

int run(int count, char** arguments) {
  if (count < 3) {
    throw Fault{
        "usage: pack_mappings SOURCE HEADER [--apart FOLDER SIZE] [--keep NAME,...] FILE.map..."};
  }
  Apart apart;
  std::vector<MappingFile> mappings;
  for (int i = 3; i < count; ++i) {
    const std::string argument = arguments[i];
    if (argument == "--apart" && i + 2 < count) {
      apart.folder = arguments[++i];
      apart.size = std::stoul(arguments[++i]);
    } else if (argument == "--keep" && i + 1 < count) {
      std::istringstream names(arguments[++i]);
      for (std::string name; std::getline(names, name, ',');) apart.kept.insert(name);
    } else {
      mappings.push_back(load(argument));
    }
  }
  for (const MappingFile& mapping : mappings) {
    const bool isKnown =
        mapping.over.empty() || isNumber(mapping.over) || isText(mapping.over) ||
        std::any_of(mappings.begin(), mappings.end(), [&](const MappingFile& other) {
          return other.name == mapping.over && &other != &mapping;
        });
    if (!isKnown) throw Fault{mapping.name + ": over " + mapping.over + ", which is not there"};
  }
  std::ofstream source(arguments[1]), header(arguments[2]);
  writeSource(mappings, apart, source);
  writeHeader(mappings, header);
  if (!source.flush() || !header.flush()) throw Fault{"the output cannot be written"};
  return 0;
}

}  // namespace

int main(int count, char** arguments) {
  try {
    return run(count, arguments);
  } catch (const Fault& fault) {
    std::cerr << "pack_mappings: " << fault.what << '\n';
    return 1;
  }
}
