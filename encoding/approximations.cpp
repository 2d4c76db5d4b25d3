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

bool Approximations::prepare(const Plan& plan, bool withBestFit) {
  m_encoding = &plan.encoding;
  m_bestFits = nullptr;
  if (!withBestFit || plan.encoding.tableRow == nullptr) return true;
  return openBestFits(*plan.encoding.tableRow, m_bestFits);
}

std::uint16_t Approximations::find(std::uint32_t unit) const {
  if (const std::uint16_t code = codeOf(m_encoding->approximating, unit); code != 0) {
    return readUnit(m_encoding->reading, code);
  }
  if (m_bestFits == nullptr) return 0;
  const unsigned char key[2] = {static_cast<unsigned char>(unit),
                                static_cast<unsigned char>(unit >> 8)};
  unsigned char value[2];
  if (m_bestFits->probe(key, value) != 2) return 0;
  const auto other = static_cast<std::uint16_t>(value[0] | value[1] << 8);
  return codeOf(m_encoding->table, other) != 0 ? other : std::uint16_t{0};
}

bool hasBestFit(int to, char32_t character) {
  if (character > 0xFFFF) return false;
  const Plan* const plan = openPlan(1200, to, Reader::kStream);
  Approximations approximations;
  return plan != nullptr && approximations.prepare(*plan, true) &&
         approximations.find(character) != 0;
}

}  // namespace fast
