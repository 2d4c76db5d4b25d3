// The encodings and their tables.
#include <string>

#include "encconv/encconv.h"
#include "encoding/code_page_list.h"
#include "encoding/codecs/mapping_files.h"
#include "npm/native/exports.h"
#include "support/json.h"

namespace {

// The files of mappings, each once; all of them, or those that were not provided yet.
class FileList final : public MappingVisitor {
 public:
  explicit FileList(bool areAll) : m_areAll(areAll) {}

  void visit(const Mapping& mapping) override {
    if (mapping.file == nullptr || (!m_areAll && imageOf(mapping) != nullptr)) return;
    const std::string name = encconv::jsonString(mapping.file->name);
    if (text.find(name) != std::string::npos) return;
    if (!text.empty()) text += ',';
    text += name;
  }

  std::string text;  // as JSON, without brackets

 private:
  bool m_areAll;
};

class FileSearch final : public MappingVisitor {
 public:
  explicit FileSearch(std::string_view name) : m_name(name) {}

  void visit(const Mapping& mapping) override {
    if (mapping.file != nullptr && mapping.file->name == m_name) found = &mapping;
  }

  const Mapping* found = nullptr;

 private:
  std::string_view m_name;
};

std::string describe(const CharsetNames& page) {
  std::string text = "{\"number\":" + std::to_string(page.codePage) +
                     ",\"name\":" + encconv::jsonString(page.preferredName) + ",\"aliases\":[";
  bool isFirst = true;
  for (const std::string_view alias : page.aliases) {
    if (!isFirst) text += ',';
    isFirst = false;
    text += encconv::jsonString(alias);
  }
  FileList files(true);
  visitMappings(*findEncodingRow(page.codePage), files);
  text += "],\"kind\":" + encconv::jsonString(kindName(page.kind)) +
          ",\"title\":" + encconv::jsonString(page.description) +
          ",\"canDecode\":" + (page.canRead ? "true" : "false") +
          ",\"canEncode\":" + (page.canWrite ? "true" : "false") + ",\"tables\":[" + files.text +
          "]}";
  return text;
}

}  // namespace

// A JSON array of all encodings.
ENCCONV_EXPORT(encodings) void encodings() {
  std::string text = "[";
  for (const CharsetNames& page : streamCodePages()) {
    if (text.size() > 1) text += ',';
    text += describe(page);
  }
  reply(text + "]");
}

// The number of a name, or 0.
ENCCONV_EXPORT(findEncoding) int findByName(const char* name, unsigned int length) {
  return streamCodePage(textAt(name, length));
}

// A JSON array of the table files that an encoding needs and that were not provided yet.
ENCCONV_EXPORT(missingTables) void missingTables(int codePage) {
  FileList files(false);
  if (const EncodingRow* const row = findEncodingRow(codePage)) visitMappings(*row, files);
  reply("[" + files.text + "]");
}

// Takes a table file. False when the bytes are not that file.
ENCCONV_EXPORT(provideTable)
bool provideTable(const char* name, unsigned int length, const unsigned char* bytes,
                  unsigned int size) {
  FileSearch search(textAt(name, length));
  for (const EncodingRow& row : encodingRows()) {
    if (search.found == nullptr) visitMappings(row, search);
  }
  return search.found != nullptr && provideImage(*search.found, bytes, size);
}

// The version of the library.
ENCCONV_EXPORT(version) void version() { reply(encconv::version()); }
