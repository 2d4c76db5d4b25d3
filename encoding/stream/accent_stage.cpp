// The source stage of code pages whose accents stand before their letters (20261): makes UTF-16, in
// which an accent and its letter are one character.
#include <algorithm>
#include <new>

#include "encoding/accent_pairs.h"
#include "encoding/stream/source_stage.h"
#include "support/utf.h"

namespace {

class AccentStage final : public SourceStage {
 public:
  bool fill(const EncodingRow& row) { return m_table.fill(row); }

  std::uint32_t read(const unsigned char* data, std::uint32_t length, bool last) override {
    m_data = data;
    m_length = length;
    m_walkedByte = m_walkedIn = 0;
    m_text.clear();
    m_marks.clear();
    std::uint32_t in = 0;
    while (in < length && in < kBlock) {
      // What follows an accent decides.
      if (in + 1 == length && !last && m_table.isAccent(data[in])) break;
      const bool isPair = pairAt(in) != 0;
      std::uint16_t unit = isPair ? pairAt(in) : m_table.singles[data[in]];
      if (unit == 0 && data[in] != 0) {
        unit = kReplacementCharacter;
        m_marks.add({in, 1, m_text.getSize()});
      }
      m_text.appendChar(static_cast<unsigned char>(unit & 0xFF));
      m_text.appendChar(static_cast<unsigned char>(unit >> 8));
      in += isPair ? 2 : 1;
    }
    return in;
  }

  SourcePlace locate(std::uint32_t byte, std::uint32_t /*length*/) override {
    const std::uint32_t in = walkTo(byte);
    return {in, pairAt(in) != 0 ? 2u : 1u};
  }
  TakenBack giveBack(std::uint32_t byte) override { return {walkTo(byte), 0}; }

 private:
  std::uint16_t pairAt(std::uint32_t in) const {
    if (in + 1 >= m_length || !m_table.isAccent(m_data[in])) return 0;
    return m_table.pairs[m_data[in] - fast::AccentPairs::kFirstAccent][m_data[in + 1]];
  }
  // Where the unit at a byte of the text came from.
  std::uint32_t walkTo(std::uint32_t byte) {
    for (; m_walkedByte < byte; m_walkedByte += 2) m_walkedIn += pairAt(m_walkedIn) != 0 ? 2 : 1;
    return m_walkedIn;
  }

  fast::AccentPairs m_table;
  const unsigned char* m_data = nullptr;  // of the last read()
  std::uint32_t m_length = 0;
  std::uint32_t m_walkedByte = 0;
  std::uint32_t m_walkedIn = 0;
};

}  // namespace

std::unique_ptr<SourceStage> makeAccentStage(const EncodingRow& row) {
  std::unique_ptr<AccentStage> stage(new (std::nothrow) AccentStage());
  if (stage != nullptr && !stage->fill(row)) stage.reset();
  return stage;
}
