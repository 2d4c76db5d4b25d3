#include "encoding/codecs/mapping_files.h"

#include <atomic>
#include <cstring>
#include <new>

#include "encoding/codecs/codec.h"
#include "encoding/codecs/encoding_row.h"

namespace {

constinit std::atomic<const char*> g_images[CodeTable::kMaxMappings];

std::uint32_t checksumOf(const unsigned char* bytes, std::size_t size) {
  std::uint32_t sum = 0x811C9DC5u;
  for (std::size_t i = 0; i < size; ++i) sum = (sum ^ bytes[i]) * 0x01000193u;
  return sum;
}

// Tells those, too, that each one changes.
class WithBases final : public MappingVisitor {
 public:
  explicit WithBases(MappingVisitor& visitor) : m_visitor(visitor) {}
  void visit(const Mapping& mapping) override {
    for (const Mapping* one = &mapping; one != nullptr; one = one->base) m_visitor.visit(*one);
  }

 private:
  MappingVisitor& m_visitor;
};

}  // namespace

void visitMappings(const EncodingRow& row, MappingVisitor& visitor) {
  WithBases all(visitor);
  if (row.mapping != nullptr) all.visit(*row.mapping);
  if (row.codec == nullptr) return;
  if (row.codec->mappings != nullptr) row.codec->mappings(row.codec->read.parameters(), all);
  const EncodingRow* const behind = findEncodingRow(row.codec->codePage);
  if (behind != nullptr && behind->mapping != nullptr) all.visit(*behind->mapping);
}

bool provideImage(const Mapping& mapping, const unsigned char* bytes, std::size_t size) {
  if (mapping.file == nullptr || mapping.file->size != size ||
      mapping.file->checksum != checksumOf(bytes, size)) {
    return false;
  }
  auto* const image = new (std::nothrow) char[size];
  if (image == nullptr) return false;
  std::memcpy(image, bytes, size);
  const char* before = nullptr;
  if (!g_images[mapping.index].compare_exchange_strong(before, image)) delete[] image;
  return true;
}

const char* imageOf(const Mapping& mapping) {
  return mapping.file == nullptr ? mapping.image
                                 : g_images[mapping.index].load(std::memory_order_acquire);
}

bool hasImages(const EncodingRow& row) {
  class Search final : public MappingVisitor {
   public:
    void visit(const Mapping& mapping) override {
      if (mapping.file != nullptr && imageOf(mapping) == nullptr) isMissing = true;
    }
    bool isMissing = false;
  };
  Search search;
  visitMappings(row, search);
  return !search.isMissing;
}
