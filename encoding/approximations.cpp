#include "encoding/approximations.h"

#include "encoding/tables/table_registry.h"

namespace fast {
namespace {

// The best fits of a row, made if need be; null when it has none. False when memory is short.
bool openBestFits(const EncodingRow& row, const HashConvert*& fits) {
  LogBase silent;
  if (!ensureBestFit(row, silent)) return false;
  fits = row.bestFit == nullptr ? nullptr : tableSlots(row).bestFit.load(std::memory_order_acquire);
  return true;
}

}  // namespace

bool Approximations::prepare(Repertoire& target, bool withBestFit) {
  m_target = &target;
  m_bestFits = nullptr;
  if (!withBestFit) return true;
  // An encoding with a codec has its own, or those of the code page behind the codec.
  const EncodingRow* const row =
      target.target().bestFit != nullptr ? &target.target() : target.encoding().tableRow;
  return row == nullptr || openBestFits(*row, m_bestFits);
}

std::uint32_t Approximations::find(std::uint32_t scalar) {
  const Codec* const codec = m_target->codec();
  if (const std::uint32_t other = findInTable(scalar)) {
    if (codec == nullptr || m_target->has(other)) return other;
  }
  if (codec != nullptr && codec->approximate != nullptr) {
    const std::uint32_t other = codec->approximate(codec->write.parameters(), scalar);
    if (other != 0 && m_target->has(other)) return other;
  }
  const std::uint32_t other = m_bestFits == nullptr ? 0 : findBestFit(scalar);
  return other != 0 && m_target->has(other) ? other : 0;
}

std::uint32_t Approximations::findInTable(std::uint32_t scalar) const {
  const Encoding& encoding = m_target->encoding();
  const std::uint16_t code = scalar > 0xFFFF ? 0 : codeOf(encoding.approximating, scalar);
  // What the table has as it is may be lacking in the codec.
  if (code == 0 || codeOf(encoding.table, scalar) != 0) return 0;
  return readUnit(encoding.reading, code);
}

std::uint32_t Approximations::findBestFit(std::uint32_t scalar) const {
  if (scalar > 0xFFFF) return 0;
  const unsigned char key[2] = {static_cast<unsigned char>(scalar),
                                static_cast<unsigned char>(scalar >> 8)};
  unsigned char value[2];
  if (m_bestFits->probe(key, value) != 2) return 0;
  return value[0] | value[1] * 256u;
}

bool hasBestFit(int to, char32_t character) {
  constexpr int kUtf16Le = 1200;
  const Plan* const plan = openPlan(kUtf16Le, to, Reader::kStream);
  Repertoire target;
  Approximations approximations;
  return plan != nullptr && target.open(*plan) && approximations.prepare(target, true) &&
         approximations.find(character) != 0;
}

}  // namespace fast
