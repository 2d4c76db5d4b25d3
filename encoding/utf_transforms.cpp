// The reference converters of UTF-8 to UTF-16 and back.
#include <algorithm>
#include <climits>

#include "encoding/encoding_convert.h"
#include "encoding/staging.h"
#include "support/zv_base.h"
#include "support/zv_utf.h"

namespace {

constexpr unsigned int kPassThroughMark = 0xFDEF;  // as a unit in host order
constexpr unsigned int kMaxPassThroughBytes = 5;

using Utf8Staging = Staging<512>;

// A high surrogate and the unit behind it, whatever that is.
void putPair(Utf8Staging& staged, unsigned int high, unsigned int second, bool allowFourBytes) {
  if (allowFourBytes && isLowSurrogate(second)) {
    staged.putUtf8(joinSurrogates(high, second));
  } else {
    staged.putThreeByteForm(high);
    staged.putThreeByteForm(second);
  }
}

// Handles the pass-through escape at p, with left bytes (>= 4) from there on: copies the raw bytes
// that it carries. Returns the bytes of input to skip.
unsigned int passThrough(const unsigned char* p, unsigned int left, Utf8Staging& staged,
                         DataBuffer& out) {
  const unsigned int count = p[2];
  if (count > kMaxPassThroughBytes) return 2;  // not an escape after all: only the mark is dropped
  if (left - 3 < count) return 3;
  staged.flush();
  out.append(p + 3, count);
  return 3 + count;
}

}  // namespace

bool EncodingConvert::cv_utf16_to_utf8(const unsigned char* data, unsigned int length,
                                       DataBuffer& out, LogBase& log) {
  LogContextExitor context(log, "convertFromUnicode", log.m_verboseLogging != 0);
  const bool bigEndian = !zvIsLittleEndian();
  if (data == nullptr || length == 0) return true;
  const bool even = length % 2 == 0;

  Utf8Staging staged(out);
  const unsigned char* p = data;
  unsigned int left = length - (even ? 0 : 1);
  // After a pass-through escape the bytes left may be odd in number; a last single byte is no unit.
  while (left >= 2) {
    const unsigned int unit = zvLoadHostUnit(p, bigEndian);
    unsigned int used = 2;
    if (unit == 0) {
      // Dropped wherever it stands.
    } else if (unit == kPassThroughMark && left >= 4 && m_pivotFromUtf16) {
      used = passThrough(p, left, staged, out);
    } else if (isHighSurrogate(unit) && left >= 4) {
      putPair(staged, unit, zvLoadHostUnit(p + 2, bigEndian),
              g_allow_4byte_utf8 && m_allow4ByteUtf8);
      used = 4;
    } else {
      staged.putUtf8(unit);
    }
    p += used;
    left -= used;
  }
  return even;
}

bool EncodingConvert::cv_utf8_to_utf16(const unsigned char* data, unsigned int length,
                                       DataBuffer& out, LogBase& log) {
  LogContextExitor context(log, "cv_utf8_to_utf16", log.m_verboseLogging != 0);
  if (data == nullptr || length == 0) return true;
  const bool bigEndian = zvIsBigEndian();
  {
    Staging<512> staged(out);
    const unsigned char* p = data;
    unsigned int left = length;
    while (left != 0) {
      if (*p < 0x80) {
        staged.put(*p, 0);  // low byte first on every host
        ++p;
        --left;
        continue;
      }
      unsigned int used = 0;
      const unsigned int units = _zvUtf::utf16FromUtf8(p, left, used);
      if (units != 0) {
        staged.putUnit(units & 0xFFFF, bigEndian);
        if (units >> 16 != 0) staged.putUnit(units >> 16, bigEndian);
      } else {
        if (log.m_verboseLogging != 0) {
          log.LogError("Found invalid utf-8 when trying to convert to utf-16.");
          log.LogDataLong("m_errorAction", m_errorAction);
        }
        m_foundErrors = true;
        if (m_errorAction != 0) {
          staged.flush();
          const int leftAsInt = static_cast<int>(std::min<unsigned int>(left, INT_MAX));
          used = handleErrorFromUtf8(p, leftAsInt, out, log);
        }
        reportUnconvertible(ConversionStep::kDecode, data, p, used);
      }
      p += used;
      left -= used;
    }
  }
  if (log.m_verboseLogging != 0) log.LogDataBool("m_foundErrors", m_foundErrors);
  return true;
}
