// What is written in place of input that cannot be converted.
#include <algorithm>

#include "encoding/codecs/encoding_row.h"
#include "encoding/encoding_convert.h"
#include "encoding/error_action.h"
#include "support/zv_utf.h"

namespace {

constexpr int kMaxDefBytes = static_cast<int>(sizeof(EncodingConvert::m_defBytes));

}  // namespace

void EncodingConvert::setDefBytes(const unsigned char* bytes, int count) {
  count = std::clamp(count, 0, kMaxDefBytes);
  if (bytes != nullptr) std::copy_n(bytes, count, m_defBytes);
  m_defBytesLen = count;
}

void EncodingConvert::appendHexData(const unsigned char* bytes, int count, DataBuffer& out) {
  if (bytes == nullptr) return;
  static constexpr char kDigits[] = "0123456789ABCDEF";
  for (int i = 0; i < count; ++i) {
    const char digits[2] = {kDigits[bytes[i] >> 4], kDigits[bytes[i] & 0x0F]};
    out.append(digits, 2);
  }
}

void EncodingConvert::appendEscape(int count, DataBuffer& out) const {
  if (!m_pivotToUtf16) return;
  const unsigned char escape[3] = {0xFD, 0xEF, static_cast<unsigned char>(count & 0xFF)};
  out.append(escape, 3);
}

// The count that action 2 announces is part of the format and differs between callers; it is not
// the number of bytes written.
void EncodingConvert::appendSubstitution(const unsigned char* bytes, int count, int hexEscapeCount,
                                         DataBuffer& out) const {
  if (m_errorAction == kSubstitute && m_defBytesLen > 0) {
    appendEscape(m_defBytesLen, out);
    out.append(m_defBytes, static_cast<unsigned int>(m_defBytesLen));
  } else if (m_errorAction == kHexReference) {
    appendEscape(hexEscapeCount, out);
    out.append("&#x", 3);
    appendHexData(bytes, count, out);
    out.appendChar(';');
  } else if (m_errorAction == kRawBytes && bytes != nullptr) {
    appendEscape(count, out);
    out.append(bytes, static_cast<unsigned int>(count));
  }
}

void EncodingConvert::convertAlternate(int fromCodePage, const unsigned char* bytes,
                                       unsigned int count, DataBuffer& out, LogBase& log) {
  const std::int32_t from = m_fromCodePage;
  const std::int32_t to = m_toCodePage;
  ConversionObserver* const observer = m_observer;
  m_errorAction = 0;  // what is bad there too produces nothing and cannot recurse
  m_observer = nullptr;
  EncConvert(fromCodePage, m_altDestCodepage != 0 ? m_altDestCodepage : to, bytes, count, out, log);
  m_errorAction = kConvertAlternate;
  m_fromCodePage = from;
  m_toCodePage = to;
  m_observer = observer;
}

void EncodingConvert::handleErrorFromSingleByte(const unsigned char* byte, DataBuffer& out,
                                                LogBase& log) {
  m_foundErrors = true;
  if (m_errorAction == kConvertAlternate) {
    if (!m_pivotFromUtf16) convertAlternate(m_fromCodePage, byte, 1, out, log);
  } else if (m_errorAction == kByteAndZero && byte != nullptr) {
    out.appendChar(*byte);
    out.appendChar(0);
  } else {
    appendSubstitution(byte, 1, 5, out);
  }
}

void EncodingConvert::handleErrorFromUnicode(const unsigned char* unit, DataBuffer& out,
                                             LogBase& log) {
  m_foundErrors = true;
  if (m_errorAction == kConvertAlternate) {
    convertAlternate(1200, unit, 2, out, log);
  } else {
    appendSubstitution(unit, 2, 6, out);
  }
}

unsigned int EncodingConvert::handleErrorFromUtf8(const unsigned char* sequence, int bytesLeft,
                                                  DataBuffer& out, LogBase& log) {
  if (sequence == nullptr || bytesLeft <= 0) return 0;
  m_foundErrors = true;
  const int length = _zvUtf::NumUtf8Bytes(sequence, bytesLeft);
  const auto used = static_cast<unsigned int>(length);
  if (m_errorAction == kConvertAlternate) {
    if (!m_pivotFromUtf16) convertAlternate(65001, sequence, used, out, log);
  } else {
    appendSubstitution(sequence, length, length + 4, out);
  }
  return used;
}

unsigned int EncodingConvert::handleErrorFromUnknown(const unsigned char* character,
                                                     DataBuffer& out, LogBase& log) {
  m_foundErrors = true;
  const EncodingRow* const source = findEncodingRow(m_fromCodePage);
  if (source == nullptr || source->malformedWidth != 2) {
    handleErrorFromSingleByte(character, out, log);
    return 1;
  }
  if (m_errorAction == kConvertAlternate) {
    if (!m_pivotFromUtf16) convertAlternate(m_fromCodePage, character, 2, out, log);
  } else {
    appendSubstitution(character, 2, 6, out);
  }
  return 2;
}
