// NorvaneBzip2 without libbz2: for a library that may need nothing but the C library, and where
// there is no libbz2. It reads the images of our own tables, one stream each, which are part of the
// library, so their checksums are not looked at.
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>

#include "support/norvane_bzip2.h"

namespace {

constexpr unsigned int kHeaderSize = 8;
constexpr unsigned int kMaxCodeLength = 20;
constexpr unsigned int kMaxSymbols = 258;
constexpr unsigned int kMaxTables = 6;
constexpr unsigned int kGroupSize = 50;
constexpr unsigned int kMaxSelectors = 18002;
constexpr unsigned int kBlockUnit = 100000;

std::uint32_t loadU32(const unsigned char* p) {
  return p[0] | p[1] * 0x100u | p[2] * 0x10000u | p[3] * 0x1000000u;
}

// The bits of the stream, highest first; zeros behind its end, and hasEnded().
class BitReader {
 public:
  BitReader(const unsigned char* begin, const unsigned char* end) : m_next(begin), m_end(end) {}

  std::uint32_t bits(unsigned int count) {  // 1 to 24
    while (m_count < count) {
      m_hasEnded = m_hasEnded || m_next == m_end;
      m_bits = m_bits << 8 | (m_next == m_end ? 0u : *m_next++);
      m_count += 8;
    }
    m_count -= count;
    return m_bits >> m_count & ((1u << count) - 1);
  }
  bool bit() { return bits(1) != 0; }
  bool hasEnded() const { return m_hasEnded; }

 private:
  const unsigned char* m_next;
  const unsigned char* m_end;
  std::uint32_t m_bits = 0;
  unsigned int m_count = 0;
  bool m_hasEnded = false;
};

// A canonical Huffman code.
struct CodeTable {
  std::uint32_t limit[kMaxCodeLength + 2];   // behind the last code of a length
  std::uint32_t offset[kMaxCodeLength + 2];  // from codes of a length to places in symbols
  std::uint16_t symbols[kMaxSymbols];
  unsigned int shortest;

  bool read(BitReader& in, unsigned int count) {
    std::uint8_t lengths[kMaxSymbols] = {};
    unsigned int length = in.bits(5);
    for (unsigned int i = 0; i < count; ++i) {
      while (in.bit()) length += in.bit() ? -1u : 1u;
      if (length - 1 >= kMaxCodeLength || in.hasEnded()) return false;
      lengths[i] = static_cast<std::uint8_t>(length);
    }
    shortest = *std::min_element(lengths, lengths + count);
    std::uint32_t code = 0, place = 0;
    for (unsigned int l = 1; l <= kMaxCodeLength; ++l) {
      offset[l] = place - code;
      for (unsigned int i = 0; i < count; ++i) {
        if (lengths[i] == l) symbols[place++] = static_cast<std::uint16_t>(i);
      }
      code += place - (offset[l] + code);
      limit[l] = code;
      code <<= 1;
    }
    m_count = count;
    return true;
  }

  // The next symbol; kMaxSymbols for bits that are no code.
  unsigned int next(BitReader& in) const {
    std::uint32_t code = in.bits(shortest);
    for (unsigned int length = shortest; length <= kMaxCodeLength; ++length) {
      if (code < limit[length]) {
        const std::uint32_t place = code + offset[length];
        return place < m_count ? symbols[place] : kMaxSymbols;
      }
      code = code << 1 | in.bits(1);
    }
    return kMaxSymbols;
  }

 private:
  unsigned int m_count;
};

// The state of one stream: too large for a stack.
class Decompressor {
 public:
  Decompressor(const unsigned char* data, unsigned int size, unsigned char* out,
               unsigned int length)
      : m_in(data, data + size), m_out(out), m_outEnd(out + length) {}

  // Whether the stream is whole and fills the output.
  bool run() {
    if (m_in.bits(24) != 0x425A68) return false;  // "BZh"
    const std::uint32_t level = m_in.bits(8) - '0';
    if (level < 1 || level > 9) return false;
    m_blockSize = level * kBlockUnit;
    m_links.reset(new (std::nothrow) std::uint32_t[m_blockSize]);
    if (m_links == nullptr) return m_isShort = true, false;
    while (true) {
      const std::uint32_t first = m_in.bits(24), second = m_in.bits(24);
      m_in.bits(16);
      m_in.bits(16);  // the checksum
      if (first == 0x177245 && second == 0x385090) return m_out == m_outEnd && !m_in.hasEnded();
      if (first != 0x314159 || second != 0x265359 || !readBlock() || !writeBlock()) return false;
    }
  }
  bool isMemoryShort() const { return m_isShort; }

 private:
  bool readBlock() {
    if (m_in.bit()) return false;  // scrambled, as no program has written it for long
    m_origin = m_in.bits(24);
    readBytesInUse();
    return readTables() && readText();
  }

  void readBytesInUse() {
    m_inUse = 0;
    const std::uint32_t rows = m_in.bits(16);
    for (unsigned int row = 0; row < 16; ++row) {
      if ((rows >> (15 - row) & 1) == 0) continue;
      const std::uint32_t columns = m_in.bits(16);
      for (unsigned int column = 0; column < 16; ++column) {
        if ((columns >> (15 - column) & 1) != 0) {
          m_bytes[m_inUse++] = static_cast<std::uint8_t>(row * 16 + column);
        }
      }
    }
  }

  bool readTables() {
    const unsigned int tables = m_in.bits(3);
    m_selectorCount = m_in.bits(15);
    if (m_inUse == 0 || tables < 2 || tables > kMaxTables || m_selectorCount == 0 ||
        m_selectorCount > kMaxSelectors) {
      return false;
    }
    std::uint8_t order[kMaxTables] = {0, 1, 2, 3, 4, 5};
    for (unsigned int i = 0; i < m_selectorCount; ++i) {
      unsigned int place = 0;
      while (m_in.bit()) {
        if (++place >= tables) return false;
      }
      const std::uint8_t table = order[place];
      std::memmove(order + 1, order, place);
      m_selectors[i] = order[0] = table;
    }
    for (unsigned int i = 0; i < tables; ++i) {
      if (!m_tables[i].read(m_in, m_inUse + 2)) return false;
    }
    return true;
  }

  // Runs of the first byte in bijective base 2, and places in the list of bytes used last.
  bool readText() {
    const unsigned int endOfBlock = m_inUse + 1;
    std::uint32_t count = 0, run = 0, weight = 1;
    for (unsigned int symbols = 0;; ++symbols) {
      if (symbols / kGroupSize >= m_selectorCount || m_in.hasEnded()) return false;
      const unsigned int symbol = m_tables[m_selectors[symbols / kGroupSize]].next(m_in);
      if (symbol < 2) {
        run += weight << symbol;
        weight <<= 1;
        if (run > m_blockSize) return false;
        continue;
      }
      if (run > m_blockSize - count) return false;
      std::fill_n(m_links.get() + count, run, std::uint32_t{m_bytes[0]});
      count += run;
      run = 0;
      weight = 1;
      if (symbol == endOfBlock) break;
      if (symbol > endOfBlock || count == m_blockSize) return false;
      std::rotate(m_bytes, m_bytes + symbol - 1, m_bytes + symbol);
      m_links[count++] = m_bytes[0];
    }
    m_count = count;
    return count != 0 && m_origin < count;
  }

  // Undoes the sorting: behind the byte in the low bits of each link stands where the next one is.
  bool writeBlock() {
    std::uint32_t places[256] = {};
    for (std::uint32_t i = 0; i < m_count; ++i) ++places[m_links[i]];
    std::uint32_t sum = 0;
    for (std::uint32_t& place : places) {
      const std::uint32_t bytes = place;
      place = sum;
      sum += bytes;
    }
    for (std::uint32_t i = 0; i < m_count; ++i) {
      m_links[places[m_links[i] & 0xFF]++] |= i << 8;
    }
    std::uint32_t link = m_links[m_origin];
    unsigned int same = 0;
    std::uint32_t last = 0x100;
    for (std::uint32_t i = 0; i < m_count; ++i) {
      link = m_links[link >> 8];
      const std::uint32_t byte = link & 0xFF;
      // Behind four of the same byte stands how many more there are.
      const std::uint32_t copies = same == 4 ? byte : 1;
      if (copies > static_cast<std::uint32_t>(m_outEnd - m_out)) return false;
      if (same == 4) {
        m_out = std::fill_n(m_out, copies, static_cast<unsigned char>(last));
        same = 0;
        last = 0x100;
        continue;
      }
      *m_out++ = static_cast<unsigned char>(byte);
      same = byte == last ? same + 1 : 1;
      last = byte;
    }
    return true;
  }

  BitReader m_in;
  unsigned char* m_out;
  unsigned char* const m_outEnd;
  std::uint32_t m_blockSize = 0;
  std::unique_ptr<std::uint32_t[]> m_links;
  std::uint32_t m_count = 0;
  std::uint32_t m_origin = 0;
  unsigned int m_inUse = 0;
  std::uint8_t m_bytes[256] = {};
  unsigned int m_selectorCount = 0;
  std::uint8_t m_selectors[kMaxSelectors];
  CodeTable m_tables[kMaxTables];
  bool m_isShort = false;
};

}  // namespace

bool NorvaneBzip2::unBzipWithHeader(const DataBuffer& in, DataBuffer& out, LogBase* /*log*/) const {
  out.clear();
  if (in.getSize() <= kHeaderSize) return false;
  const unsigned int length = loadU32(in.getData2() + 4);
  unsigned char* const room = out.reserveTail(length);
  if (room == nullptr) return false;
  const std::unique_ptr<Decompressor> decompressor(new (std::nothrow) Decompressor(
      in.getData2() + kHeaderSize, in.getSize() - kHeaderSize, room, length));
  if (decompressor == nullptr) {
    out.latchFailure();
    return false;
  }
  if (!decompressor->run()) {
    if (decompressor->isMemoryShort()) out.latchFailure();
    return false;
  }
  out.commitTail(length);
  return true;
}
