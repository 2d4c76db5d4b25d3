// What the sources of streams have in common.
#include "encoding/stream/source.h"

#include <algorithm>

bool hasUnpairedSurrogate(const std::uint16_t* units, std::uint32_t count) {
  // Text without any surrogate is the rule: blocks of it are passed without looking at pairs.
  constexpr std::uint32_t kChunk = 64;
  std::uint32_t i = 0;
  while (i < count) {
    const std::uint32_t end = std::min(count, i + kChunk);
    std::uint32_t found = 0;
    for (std::uint32_t j = i; j < end; ++j) found |= isSurrogate(units[j]) ? 1u : 0u;
    if (found == 0) {
      i = end;
      continue;
    }
    while (i < end) {
      if (!isSurrogate(units[i])) {
        ++i;
      } else if (isHighSurrogate(units[i]) && i + 1 < count && isLowSurrogate(units[i + 1])) {
        i += 2;
      } else {
        return true;
      }
    }
  }
  return false;
}

bool decodeAround(const Rows<BadPiece>& known, TextDecoder& decoder, const unsigned char* data,
                  std::uint32_t length, SourceBlock& block) {
  block.bytes = data;
  block.byteCount = length;
  std::uint32_t done = 0;
  for (std::uint32_t i = 0; i < known.size(); ++i) {
    BadPiece bad = known[i];
    if (!decoder.decode(data, done, bad.byte, block)) return false;
    bad.unit = block.units.size();
    block.bad.add(bad);
    done = bad.byte + bad.byteLength;
  }
  return decoder.decode(data, done, length, block) && !block.hasFailed();
}

// ---- Walking over the characters of a block. ----

void SteppingSource::startWalk(const unsigned char* data, std::uint32_t length,
                               const SourceBlock& block) {
  m_data = data;
  m_length = length;
  m_block = &block;
  m_offset = 0;
  m_unit = 0;
  m_nextBad = 0;
}

template <typename Arrived>
SourcePlace SteppingSource::walk(Arrived arrived) {
  const Rows<BadPiece>& bad = m_block->bad;
  while (m_offset < m_length) {
    if (m_nextBad < bad.size() && bad[m_nextBad].byte == m_offset) {
      m_offset += bad[m_nextBad++].byteLength;
      continue;
    }
    const Step one = step(m_data + m_offset, m_length - m_offset);
    if (arrived(one)) return {m_offset, one.bytes, m_unit};
    m_offset += one.bytes;
    m_unit += one.units;
  }
  return {m_offset, 0, m_unit};
}

SourcePlace SteppingSource::locateUnit(std::uint32_t unit) {
  return walk([&](const Step& one) { return m_unit + one.units > unit; });
}

SourcePlace SteppingSource::locateByte(std::uint32_t byte) {
  return walk([&](const Step& one) { return m_offset + one.bytes > byte; });
}
