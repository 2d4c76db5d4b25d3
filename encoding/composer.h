// Composer: puts base letters and marks together where a target has the composed character only, as
// most do: file names of Macs are text of that kind.
#ifndef ENCODING_COMPOSER_H_
#define ENCODING_COMPOSER_H_

#include <bitset>
#include <cstddef>
#include <cstdint>

#include "encoding/plan.h"
#include "encoding/pump_block.h"
#include "encoding/repertoire.h"

namespace fast {

// The canonical composition of two characters, or 0.
std::uint16_t compose(std::uint32_t first, std::uint32_t second);
// Whether a character may be the second of a composition: a combining mark, or a vowel or final
// consonant of Hangul.
bool mayCompose(std::uint32_t unit);
// The same, or the first consonant of a syllable of Hangul: a part of text that is taken apart.
bool isTakenApart(std::uint32_t unit);

// Works on the blocks of a pump, for one target. Units are two bytes each, low byte first.
class Composer {
 public:
  // A unit that was composed, and where its parts were.
  struct Anchor {
    std::uint16_t unit;    // bytes from the beginning of the block
    std::uint16_t length;  // of the parts in the source
    std::uint32_t offset;  // in the source, from where the block begins there
  };

  // Begins a stream. target stays while the object is used.
  void open(Repertoire& target);
  // Begins a text. last: nothing follows the text of the blocks.
  void start(const Plan& plan, bool last) {
    m_plan = &plan;
    m_isLast = last;
  }
  bool isLast() const { return m_isLast; }

  // Composes the units of a block, which came from source, in place; what the target has as it is
  // stays. holdsLast: what follows the block is not known, and may belong to the character that the
  // block ends with, which then is left out. size is the bytes of the units, before and after.
  // True when something was left out; sourceUsed() tells how much of the source was not.
  bool run(unsigned char* block, std::size_t& size, const unsigned char* source, bool holdsLast);
  std::size_t sourceUsed() const { return m_sourceUsed; }

  // Of the block at hand, in order.
  const Anchor* anchors() const { return m_anchors; }
  std::size_t anchorCount() const { return m_count; }

 private:
  // Marks behind a letter that are looked at together with it.
  static constexpr std::size_t kMaxMarks = 15;

  bool isLacking(std::uint32_t unit) {
    return m_target->codec() == nullptr ? !m_target->isInTable(unit) : isLackingInCodec(unit);
  }
  bool isLackingInCodec(std::uint32_t unit);
  std::size_t composable(const unsigned char* units, std::size_t count, std::uint16_t& composed);

  Repertoire* m_target = nullptr;
  // By unit: whether the codec was asked, and what it said.
  std::bitset<0x10000> m_isKnown;
  std::bitset<0x10000> m_isLacking;
  const Plan* m_plan = nullptr;
  bool m_isLast = false;
  std::size_t m_sourceUsed = 0;
  std::size_t m_count = 0;
  Anchor m_anchors[sizeof(PumpBlock::bytes) / 4];
};

}  // namespace fast

#endif  // ENCODING_COMPOSER_H_
