// The reference encoder of table-driven code pages, from UTF-16 little endian.
#include <climits>

#include "encoding/codecs/vietnamese.h"
#include "encoding/encoding_convert.h"
#include "encoding/error_action.h"
#include "encoding/scratch_buffer.h"
#include "encoding/special_code_pages.h"
#include "encoding/staging.h"
#include "encoding/tables/table_registry.h"
#include "support/zv_base.h"

namespace {

constexpr unsigned int kMaxPassThroughBytes = 5;

void foldArabicDigits(unsigned char* utf16, unsigned int length) {
  for (unsigned int i = 0; i + 1 < length; i += 2) {
    const unsigned char low = utf16[i];
    if (utf16[i + 1] != 0x06) continue;
    const bool arabicIndic = low >= 0x60 && low <= 0x69;
    const bool extended = low >= 0xF0 && low <= 0xF9;
    if (!arabicIndic && !extended) continue;
    utf16[i] = static_cast<unsigned char>(0x30 + (low & 0x0F));
    utf16[i + 1] = 0;
  }
}

}  // namespace

bool EncodingConvert::convertFromUnicodeHC(int toCodePage, const unsigned char* data,
                                           unsigned int inDataLen, DataBuffer& out, LogBase& log) {
  if (data == nullptr || inDataLen == 0) return true;
  LogContextExitor context(log, "convertFromUnicodeHC", log.m_verboseLogging != 0);
  if (log.m_verboseLogging != 0) {
    log.LogDataLong("toCodePage", toCodePage);
    log.LogDataLong("inDataLen", static_cast<int>(inDataLen));
    log.LogDataLong("isLittleEndian", zvIsLittleEndian() ? 1 : 0);
  }
  // A table that could not be made leaves the slot null.
  if (!ensureHashFromUnicode(toCodePage, log)) out.latchFailure();
  const EncodingRow* row = findEncodingRow(toCodePage);
  if (row == nullptr || !hasTable(*row) || !row->inEngine) return false;
  HashConvert* table = tableSlots(*row).fromUnicode.load(std::memory_order_acquire);
  if (!row->foldsArabicDigits) {
    return convertFromUnicodeHC2(table, data, inDataLen, out, log);
  }
  unsigned char* copy = zvNewUnsignedChar(inDataLen);
  if (copy == nullptr) {
    out.latchFailure();
    return false;
  }
  DataBuffer folded;
  folded.takeData(copy, inDataLen);
  std::memcpy(copy, data, inDataLen);
  foldArabicDigits(copy, inDataLen);
  return convertFromUnicodeHC2(table, copy, inDataLen, out, log);
}

bool EncodingConvert::convertFromUnicodeHC2(HashConvert* table, const unsigned char* data,
                                            unsigned int len, DataBuffer& out, LogBase& log) {
  if (table == nullptr) return false;
  if (data == nullptr || len == 0) return true;
  const unsigned int evenLength = len & ~1u;
  if (evenLength == 0) return false;
  const bool isLowerAscii = table->get_IsLowerAscii();
  const bool decomposes = decomposesVietnamese(m_toCodePage);
  bool result = true;
  Staging<512> staged(out);
  unsigned int i = 0;
  // A pass-through escape that carries an even number of bytes makes i odd. From there on the last
  // unit lies across the end of the even length; a single byte behind it is no unit.
  while (i < evenLength && len - i >= 2) {
    const unsigned char* p = data + i;
    if (m_pivotFromUtf16 && evenLength - i >= 3 && p[0] == 0xFD && p[1] == 0xEF) {
      const unsigned int count = p[2];
      if (count > kMaxPassThroughBytes) {
        i += 2;
        continue;
      }
      i += 3;
      if (evenLength - i >= count) {
        staged.flush();
        out.append(data + i, count);
        i += count;
      }
      continue;
    }
    i += 2;
    const unsigned int unit = zvLoadHostUnit(p, false);
    if (isLowerAscii && unit < 0x80) {
      staged.put(p[0]);
      continue;
    }
    unsigned char bytes[2];
    const int length = table->probe(p, bytes);
    if (length == 1) {
      staged.put(bytes[0]);
    } else if (length == 2) {
      staged.put(bytes[0], bytes[1]);
    } else if (unit == 0) {
      staged.put(0);
    } else if (const VietnameseDecomposition* letter =
                   decomposes ? findVietnameseDecomposition(unit) : nullptr) {
      staged.put(letter->base, letter->mark);
    } else {
      m_foundErrors = true;
      result = false;
      if (m_errorAction != 0) {
        staged.flush();
        handleUnmappableUnit(p, out, log);
      }
      reportUnconvertible(ConversionStep::kEncode, data, p, 2);
    }
  }
  return result;
}

void EncodingConvert::handleUnmappableUnit(const unsigned char* unit, DataBuffer& out,
                                           LogBase& log) {
  if (m_errorAction == 0) return;
  if (m_pivotFromUtf16 && m_errorAction == kSubstitute) {
    if (m_defBytesLen > 0) out.append(m_defBytes, static_cast<unsigned int>(m_defBytesLen));
  } else if (m_pivotFromUtf16 && m_errorAction == kHexReference) {
    ScratchBuffer bytes(out);
    reencodeUnit(unit, bytes, log);
    if (bytes.getSize() == 0) return;
    out.append("&#x", 3);
    appendHexData(bytes.getData2(), static_cast<int>(bytes.getSize()), out);
    out.appendChar(';');
  } else if (m_pivotFromUtf16 && m_errorAction == kRawBytes) {
    reencodeUnit(unit, out, log);
  } else {
    handleErrorFromUnicode(unit, out, log);
  }
}

void EncodingConvert::reencodeUnit(const unsigned char* unit, DataBuffer& target, LogBase& log) {
  const std::int32_t action = m_errorAction;
  const std::int32_t from = m_fromCodePage;
  const std::int32_t to = m_toCodePage;
  ConversionObserver* const observer = m_observer;
  m_errorAction = 0;  // a unit that has no place in the source either is dropped
  m_observer = nullptr;
  convert_a(kUtf16Le, m_fromCodePage, unit, 2, target, log);
  // The pivot flags stay as the nested conversion left them.
  m_errorAction = action;
  m_fromCodePage = from;
  m_toCodePage = to;
  m_observer = observer;
}
