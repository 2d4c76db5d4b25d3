#include "encoding/special_units.h"

#include "encoding/tables/table_registry.h"
#include "support/zv_base.h"

namespace fast {

bool writeSpecialUnit(const Plan& plan, const unsigned char* unit, Output& out) {
  const unsigned int value = unit[0] | unit[1] * 256u;
  constexpr unsigned char kZero = 0;
  if (plan.encoding.form == EncodingForm::kUtf8) return value == 0 && out.append(&kZero, 1);
  if (value != kEscapeUnit || plan.encoding.tableRow == nullptr) return false;
  const HashConvert* const table =
      tableSlots(*plan.encoding.tableRow).fromUnicode.load(std::memory_order_acquire);
  unsigned char key[2];
  zvStoreHostUnit(key, kEscapeUnit, zvIsBigEndian());
  unsigned char bytes[2];
  const int length = table == nullptr ? 0 : table->probe(key, bytes);
  return length != 0 && out.append(bytes, static_cast<std::size_t>(length));
}

}  // namespace fast
