// The source stage of Mac Arabic (10004), whose right-to-left runs are read from their end.
#include <algorithm>
#include <new>

#include "encoding/codecs/mac_arabic.h"
#include "encoding/stream/source_stage.h"

namespace {

// A run is reversed as a whole, so it waits until its end is known; one that is longer than this
// is taken for several.
constexpr std::uint32_t kMaxRun = 1024 * 1024;

class MacArabicStage final : public SourceStage {
 public:
  MacArabicStage() {
    StringBuffer scratch;
    for (unsigned int byte = 0; byte < 256; ++byte) {
      m_folded[byte] = static_cast<unsigned char>(byte);
      rewriteMacArabic(&m_folded[byte], 1, scratch);  // a run of one byte is only folded
    }
  }

  std::uint32_t read(const unsigned char* data, std::uint32_t length, bool last) override {
    m_data = data;
    m_run = {0, 0};
    m_blockEnd = 0;
    m_text.clear();
    return m_longRun != 0 ? readOfLongRun() : readRuns(length, last);
  }

  SourcePlace locate(std::uint32_t byte, std::uint32_t length) override {
    return {sourceOf(byte), length};
  }
  TakenBack giveBack(std::uint32_t byte) override { return {sourceOf(byte), 0}; }
  std::uint32_t reach() const override { return kMaxRun; }

 private:
  struct Run {
    std::uint32_t begin;
    std::uint32_t end;
  };

  std::uint32_t endOfRun(std::uint32_t begin, std::uint32_t from, std::uint32_t length) const {
    const std::uint32_t stop = length - begin > kMaxRun ? begin + kMaxRun : length;
    std::uint32_t end = from;
    while (end < stop && isMacArabicRightToLeft(m_data[end])) ++end;
    return end;
  }

  // Appends the bytes from begin on, count of them, in reverse order.
  void addReversed(std::uint32_t begin, std::uint32_t count) {
    for (std::uint32_t i = begin + count; i > begin; --i) {
      m_text.appendChar(m_folded[m_data[i - 1]]);
    }
  }

  // Rewrites what fits into a block.
  std::uint32_t readRuns(std::uint32_t length, bool last) {
    std::uint32_t i = 0;
    while (i < length && i < kBlock) {
      if (!isMacArabicRightToLeft(m_data[i])) {
        m_text.appendChar(m_folded[m_data[i++]]);
        continue;
      }
      const std::uint32_t seen = i == 0 ? m_seen : 0;
      const std::uint32_t end = endOfRun(i, i + seen, length);
      if (end == length && end - i < kMaxRun && !last) {
        m_seen = i == 0 ? end : 0;
        return i;  // the run is still open
      }
      m_seen = 0;
      if (end > kBlock) {
        if (i != 0) return i;
        m_longRun = end;
        return readOfLongRun();
      }
      addReversed(i, end - i);
      i = end;
    }
    return i;
  }

  // The next block of a run that does not fit into one. It is done with when all of it is out.
  std::uint32_t readOfLongRun() {
    m_blockEnd = m_longRun - m_longRunDone;
    const std::uint32_t count = std::min(kBlock, m_blockEnd);
    addReversed(m_blockEnd - count, count);
    m_longRunDone += count;
    if (m_longRunDone < m_longRun) return 0;
    const std::uint32_t used = m_longRun;
    m_longRun = m_longRunDone = 0;
    return used;
  }

  // The place in the source of a byte of the rewritten text.
  std::uint32_t sourceOf(std::uint32_t index) {
    if (m_blockEnd != 0) return m_blockEnd - 1 - index;
    if (!isMacArabicRightToLeft(m_data[index])) return index;
    if (index < m_run.begin || index >= m_run.end) {
      m_run = {index, index + 1};
      while (m_run.begin > 0 && isMacArabicRightToLeft(m_data[m_run.begin - 1])) --m_run.begin;
      const std::uint32_t length = m_text.getSize();
      while (m_run.end < length && isMacArabicRightToLeft(m_data[m_run.end])) ++m_run.end;
    }
    return m_run.begin + m_run.end - 1 - index;
  }

  unsigned char m_folded[256];
  const unsigned char* m_data = nullptr;  // of the last read()
  std::uint32_t m_seen = 0;               // bytes at the front known to be of one open run
  std::uint32_t m_longRun = 0;            // length of the run that is being read in blocks
  std::uint32_t m_longRunDone = 0;        // bytes of it that are out
  std::uint32_t m_blockEnd = 0;           // of a block of a long run: where it ends in the source
  Run m_run = {0, 0};                     // the run last looked into by sourceOf()
};

}  // namespace

std::unique_ptr<SourceStage> makeMacArabicStage() {
  return std::unique_ptr<SourceStage>(new (std::nothrow) MacArabicStage());
}
