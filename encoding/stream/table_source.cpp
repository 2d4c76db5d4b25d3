// Sources with a mapping table: single-byte and double-byte code pages.
#include <new>

#include "encoding/stream/double_byte.h"
#include "encoding/stream/source.h"

namespace {

class SingleByteSource final : public SteppingSource {
 public:
  SingleByteSource(int codePage, EngineLegs& legs)
      : m_codePage(codePage), m_decoder(codePage, legs) {}

  std::uint32_t take(const unsigned char* data, std::uint32_t length, bool /*last*/,
                     SourceBlock& block) override {
    if (!decodeAround({}, m_decoder, data, length, block)) block.bad.latchFailure();
    startWalk(data, length, block);
    return length;
  }
  int bytesCodePage() const override { return m_codePage; }

 private:
  Step step(const unsigned char* /*p*/, std::uint32_t /*left*/) const override { return {1, 1}; }

  int m_codePage;
  TextDecoder m_decoder;
};

class DoubleByteSource final : public SteppingSource {
 public:
  DoubleByteSource(int codePage, EngineLegs& legs)
      : m_codePage(codePage), m_decoder(codePage, legs), m_characters(codePage) {}

  std::uint32_t take(const unsigned char* data, std::uint32_t length, bool last,
                     SourceBlock& block) override {
    const std::uint32_t whole = last ? length : m_characters.wholeLength(data, length);
    if (!decodeAround({}, m_decoder, data, whole, block)) block.bad.latchFailure();
    startWalk(data, whole, block);
    return whole;
  }
  int bytesCodePage() const override { return m_codePage; }

 private:
  Step step(const unsigned char* p, std::uint32_t left) const override {
    return {m_characters.length(p, left), 1};
  }

  int m_codePage;
  TextDecoder m_decoder;
  DoubleByteCharacters m_characters;
};

}  // namespace

std::unique_ptr<StreamSource> makeTableSource(int codePage, EngineLegs& legs) {
  const EncodingRow* row = findEncodingRow(codePage);
  if (row == nullptr || !hasTable(*row)) return nullptr;
  StreamSource* source = nullptr;
  if (row->form == EncodingForm::kSingleByte) {
    source = new (std::nothrow) SingleByteSource(codePage, legs);
  } else {
    source = new (std::nothrow) DoubleByteSource(codePage, legs);
  }
  return std::unique_ptr<StreamSource>(source);
}
