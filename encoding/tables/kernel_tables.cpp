#include "encoding/tables/kernel_tables.h"

#include <algorithm>
#include <array>

#include "support/utf.h"

namespace fast {
namespace {

template <class T>
bool isIdentity(const T* values, unsigned int first, unsigned int last) {
  for (unsigned int i = first; i <= last; ++i) {
    if (values[i] != i) return false;
  }
  return true;
}

template <class T>
bool isAsciiIdentity(const T* values) {
  return isIdentity(values, 0, 0x7F);
}

}  // namespace

void SingleByteDecoder::prepare() {
  isAscii = isAsciiIdentity(units);
  for (unsigned int i = 0; i < 256; ++i) {
    low[i] = static_cast<std::uint8_t>(units[i]);
    high[i] = static_cast<std::uint8_t>(units[i] >> 8);
    ascii[i] = units[i] < 0x80 ? low[i] : 0xFF;
    std::uint8_t sequence[4] = {};
    const std::uint8_t* end = units[i] != 0 ? writeUtf8(sequence, units[i]) : sequence;
    utf8[i] = static_cast<std::uint32_t>(sequence[0] | sequence[1] << 8 | sequence[2] << 16 |
                                         (end - sequence) << 24);
    for (unsigned int place = 3; place != 0; --place) {
      utf8Bytes[place - 1][i] = end != sequence ? *--end : std::uint8_t{0};
    }
  }
}

void SingleByteEncoder::prepare() {
  isAscii = isAsciiIdentity(bytes);
  isLatin1 = isAscii && isIdentity(bytes, 0xA0, 0xFF);
  std::array<unsigned int, 0x10000 / kRangeUnits> counts{};  // mapped units of each range
  for (unsigned int i = kRangeUnits; i < 0x10000; ++i) {
    counts[i / kRangeUnits] += bytes[i] != 0 ? 1 : 0;
  }
  const auto most = std::max_element(counts.begin(), counts.end());
  mainRange = static_cast<std::uint16_t>((most - counts.begin()) * std::ptrdiff_t{kRangeUnits});
}

void DoubleByteDecoder::prepare() {
  unsigned int firstLead = 0x100, lastLead = 0, firstTrail = 0x100, lastTrail = 0;
  for (unsigned int i = 0; i < 0x10000; ++i) {
    const unsigned int lead = i & 0xFF, trail = i >> 8;
    if (lead < 0x80 || units[i] == 0) continue;
    leads[lead & 0x0F] = static_cast<std::uint8_t>(leads[lead & 0x0F] | 1u << (lead >> 4 & 7));
    firstLead = std::min(firstLead, lead);
    lastLead = std::max(lastLead, lead);
    if (trail < 0x80) continue;
    firstTrail = std::min(firstTrail, trail);
    lastTrail = std::max(lastTrail, trail);
  }
  for (unsigned int byte = 0x80; byte < 0x100; ++byte) {
    mayBegin[byte] = byte >= firstLead && byte <= lastLead && (isLead(byte) || singles[byte] == 0);
    mayEnd[byte] = byte >= firstTrail && byte <= lastTrail;
  }
  for (unsigned int i = 0; i < 0x10000; ++i) {
    const unsigned int byte = i & 0xFF;
    if (byte < 0x80) {
      units[i] = static_cast<std::uint16_t>(byte);
    } else if (!isLead(byte)) {
      units[i] = singles[byte];
    }
  }
}

void DoubleByteEncoder::prepare() { isAscii = isAsciiIdentity(codes); }

}  // namespace fast
