// Pump: runs clean text through the steps of a plan, and stops where something is not clean, for a
// policy to decide about.
#ifndef ENCODING_PUMP_H_
#define ENCODING_PUMP_H_

#include <cstddef>
#include <cstdint>

#include "encoding/composer.h"
#include "encoding/output.h"
#include "encoding/plan.h"
#include "encoding/pump_block.h"

namespace fast {

// One text, or one part of a text. The source and the block must stay where they are.
class Pump {
 public:
  enum class Stop : unsigned char {
    kEnd,         // all of the text is written
    kMalformed,   // the decoder cannot go on at in(); everything before it is written
    kUnmappable,  // the encoder cannot go on at unit(); everything before it is written
    kBlock,       // a block is written, and the caller asked to be told
    kFull,        // there is no room for output
  };

  // Begins a text. tellsBlocks: run() returns for each block, while the units of it can be seen.
  // With a composer, which was started, characters are put together; at the end in() may then be in
  // front of a character that what follows may change.
  void start(const Plan& plan, PumpBlock& block, const unsigned char* in,
             const unsigned char* inEnd, bool tellsBlocks = false, Composer* composer = nullptr) {
    m_plan = &plan;
    m_composer = composer;
    m_block = block.bytes;
    m_begin = m_in = m_walkedIn = in;
    m_end = inEnd;
    m_unit = m_unitEnd = m_walkedUnit = m_block;
    m_pivotBytes = 0;
    m_written = 0;
    m_isStopped = m_isHeld = m_hasBlock = false;
    m_tellsBlocks = tellsBlocks;
    m_isPivot = plan.decoding.form == EncodingForm::kUtf16 && plan.direct == nullptr &&
                !plan.decoding.bigEndian && composer == nullptr;
    if (!m_isPivot) return;
    m_unit = m_walkedUnit = in;
    m_in = m_unitEnd = inEnd;
    m_hasBlock = true;
  }

  // Goes on until something stops it. What stopped it stays where it is until the caller skips it.
  Stop run(Output& out);

  // ---- The source. ----

  // The first byte that is not decoded.
  const unsigned char* in() const { return m_in; }
  const unsigned char* inEnd() const { return m_end; }
  void skip(std::size_t bytes) { m_in += bytes; }

  // ---- The units that are decoded and not yet written; two bytes each, low byte first. ----

  const unsigned char* unit() const { return m_unit; }
  const unsigned char* unitEnd() const { return m_unitEnd; }
  void skipUnits(std::size_t bytes) { m_unit += bytes; }
  // The first of the units of the block at hand.
  const unsigned char* blockBegin() const { return m_isPivot ? m_begin : m_block; }
  // How many bytes of UTF-16 lie before unit(), or before in() where no units are in sight.
  std::size_t pivotOffset() const;

  // Where the source of a unit in sight begins; to be asked in ascending order within a block. And,
  // for the unit last asked for, how many bytes of the source it and those behind it have.
  const unsigned char* sourceOf(const unsigned char* unit);
  std::size_t sourceLength(const unsigned char* unit, std::size_t bytes) const;

 private:
  bool makeRoom(Output& out);
  void decodeBlock();
  void composeBlock(bool isFull);
  void passAnchors(const unsigned char* unit);
  KernelResult encodeUnits(Output& out) const;
  Stop runDirect(Output& out);
  Stop stopDirect();
  std::uint64_t expected() const;

  const Plan* m_plan = nullptr;
  unsigned char* m_block = nullptr;
  const unsigned char* m_begin = nullptr;
  const unsigned char* m_in = nullptr;
  const unsigned char* m_end = nullptr;
  const unsigned char* m_unit = nullptr;
  const unsigned char* m_unitEnd = nullptr;
  const unsigned char* m_walkedUnit = nullptr;  // up to which sourceOf() has come,
  const unsigned char* m_walkedIn = nullptr;    // and where that is in the source
  std::size_t m_pivotBytes = 0;                 // of the blocks decoded so far
  std::uint64_t m_written = 0;
  bool m_isPivot = false;    // the source is UTF-16, and is read where it is
  bool m_isStopped = false;  // the decoder stopped behind the block at hand
  bool m_hasBlock = false;   // which was not told yet
  bool m_tellsBlocks = false;
  Composer* m_composer = nullptr;
  const unsigned char* m_blockIn =
      nullptr;               // with a composer: where the block begins in the source
  std::size_t m_anchor = 0;  // the first anchor that sourceOf() has not come past
  bool m_isHeld = false;     // the text behind the block at hand waits for more
};

}  // namespace fast

#endif  // ENCODING_PUMP_H_
