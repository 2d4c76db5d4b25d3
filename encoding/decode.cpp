// The reference decoders of table-driven code pages, to UTF-16.
#include "encoding/encoding_convert.h"
#include "encoding/staging.h"
#include "encoding/tables/table_registry.h"
#include "support/zv_base.h"

namespace {

using UnitStaging = Staging<200>;

// Stages the unit of a single byte; false when it has none.
bool putSingleByte(const HashConvert& table, unsigned char byte, UnitStaging& staged) {
  const auto* entry = reinterpret_cast<const unsigned char*>(&table.m_singleBytes[byte]);
  if (entry[0] == 0 && entry[1] == 0) return false;
  staged.put(entry[0], entry[1]);
  return true;
}

}  // namespace

bool EncodingConvert::convertToUnicodeHC(int fromCodePage, const unsigned char* data,
                                         unsigned int length, DataBuffer& out, LogBase& log) {
  if (data == nullptr || length == 0) return true;
  LogContextExitor context(log, "convertToUnicodeHC", log.m_verboseLogging != 0);
  if (log.m_verboseLogging != 0) {
    log.LogDataLong("fromCodePage", fromCodePage);
    log.LogDataLong("inDataLen", static_cast<int>(length));
  }
  if (!ensureHashToUnicode(fromCodePage, log)) {
    out.latchFailure();
    if (log.m_verboseLogging != 0) log.LogError("ensureHashToUnicode failed.");
    return false;
  }
  const EncodingRow* row = findEncodingRow(fromCodePage);
  if (row == nullptr || !hasTable(*row) || !row->inEngine) return false;
  const TableSlots& slots = tableSlots(*row);
  if (row->form == EncodingForm::kDoubleByte) {
    HashConvert* table = slots.multiToUnicode.load(std::memory_order_acquire);
    if (table == nullptr) out.latchFailure();
    return convertToUnicodeHCVar(table, data, length, out, log);
  }
  UnicodeLookup* lookup = slots.singleToUnicode.load(std::memory_order_acquire);
  if (lookup == nullptr) return false;
  convertToUnicodeByLookup(*lookup, data, length, out, log);
  return true;
}

bool EncodingConvert::convertToUnicodeByLookup(UnicodeLookup& lookup, const unsigned char* data,
                                               unsigned int length, DataBuffer& out, LogBase& log) {
  if (data == nullptr || length == 0) return true;
  LogContextExitor context(log, "convertToUnicodeByLookup", log.m_verboseLogging != 0);
  const bool bigEndian = zvIsBigEndian();
  Staging<512> staged(out);
  for (const unsigned char* p = data; p != data + length; ++p) {
    const std::uint16_t unit = lookup.m_units[*p];
    if (*p == 0 || unit != 0) {
      staged.putUnit(*p == 0 ? 0 : unit, bigEndian);
      continue;
    }
    if (m_errorAction != 0) staged.flush();
    handleUndecodable(p, true, out, log);
    reportUnconvertible(ConversionStep::kDecode, data, p, 1);
  }
  return true;
}

bool EncodingConvert::convertToUnicodeHCVar(HashConvert* table, const unsigned char* data,
                                            unsigned int length, DataBuffer& out, LogBase& log) {
  if (table == nullptr) {
    log.LogError("convertToUnicodeHCVar: missing hc");
    return false;
  }
  if (data == nullptr || length == 0) return true;
  const bool isLowerAscii = table->get_IsLowerAscii();
  bool perfect = true;
  {
    UnitStaging staged(out);
    unsigned int i = 0;
    while (i < length) {
      const unsigned char* p = data + i;
      if (isLowerAscii && *p < 0x80) {
        staged.put(*p, 0);
        ++i;
        continue;
      }
      const bool isLast = i + 1 == length;
      if (isLast && *p == 0) {
        staged.put(0, 0);
        ++i;
        continue;
      }
      unsigned char value[2] = {0, 0};
      const int valueLength = isLast ? 0 : table->probe(p, value);
      if (valueLength != 0) {  // negative: a known key without output
        if (valueLength > 0) staged.put(value[0]);
        if (valueLength > 1) staged.put(value[1]);
        i += 2;
        continue;
      }
      if (putSingleByte(*table, *p, staged)) {
        ++i;
        continue;
      }
      perfect = false;
      if (m_errorAction != 0) staged.flush();
      const unsigned int used = handleUndecodable(p, isLast, out, log);
      reportUnconvertible(ConversionStep::kDecode, data, p, used);
      i += used;
    }
  }
  if (!perfect && log.m_verboseLogging != 0) {
    log.LogError("imperfect conversion in convertToUnicodeHCVar");
  }
  return true;
}

unsigned int EncodingConvert::handleUndecodable(const unsigned char* p, bool isSingleByte,
                                                DataBuffer& out, LogBase& log) {
  m_foundErrors = true;
  if (m_errorAction == 0) return 1;
  if (!isSingleByte) return handleErrorFromUnknown(p, out, log);
  handleErrorFromSingleByte(p, out, log);
  return 1;
}
