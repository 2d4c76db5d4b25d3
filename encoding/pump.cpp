#include "encoding/pump.h"

#include <algorithm>

#include "support/utf.h"

namespace fast {
namespace {

std::size_t bytesBetween(const unsigned char* begin, const unsigned char* end) {
  return static_cast<std::size_t>(end - begin);
}

unsigned int loadUnit(const unsigned char* p) { return p[0] | p[1] * 256u; }

// Of a pair, for each of its units half of them.
std::size_t utf8Bytes(unsigned int unit) {
  return 1u + (unit >= 0x80 ? 1u : 0u) + (unit >= 0x800 && !isSurrogate(unit) ? 1u : 0u);
}

}  // namespace

std::size_t sourceBytes(const Plan& plan, unsigned int unit, const unsigned char* in) {
  switch (plan.decoding.form) {
    case EncodingForm::kUtf8:
      return utf8Bytes(unit);
    case EncodingForm::kUtf16:
      return 2;
    case EncodingForm::kUtf32:
      return isLowSurrogate(unit) ? 0 : 4;
    case EncodingForm::kDoubleByte: {
      const DoubleByteDecoder& table = *plan.decoding.table.doubleByte;
      const bool isPair = in[0] >= 0x80 && table.isLead(in[0]) && table.units[loadUnit(in)] == unit;
      return isPair ? 2 : 1;
    }
    default:
      return 1;
  }
}

// The first piece of a long text tells how much the rest will take.
std::uint64_t Pump::expected() const {
  constexpr std::uint64_t kFirst = 16 * 1024;
  const std::uint64_t waiting = bytesBetween(m_unit, m_unitEnd);
  const std::uint64_t left = m_isPivot ? waiting : bytesBetween(m_in, m_end) + waiting / 2;
  const std::uint64_t done = bytesBetween(m_begin, m_isPivot ? m_unit : m_in);
  if (done > 1024 && m_written != 0) return left * m_written / done + left / 16 + 256;
  return std::min(left + left / 8, kFirst);
}

inline bool Pump::makeRoom(Output& out) {
  return out.room() >= kKernelSlack || out.require(kKernelSlack, expected());
}

inline KernelResult Pump::encodeUnits(Output& out) const {
  // Where both steps are of UTF-16, neither looks for surrogates without their other half. What is
  // written lies in front of a codec then, low byte first, and copied as long as there is room.
  const bool isCopy = m_composer != nullptr && m_plan->decoding.form == EncodingForm::kUtf16 &&
                      m_plan->encoding.form == EncodingForm::kUtf16;
  if (!isCopy) return encode(*m_plan, m_unit, m_unitEnd, out.next, out.end);
  const unsigned char* const end = m_plan->kernels->pairedUtf16(m_unit, m_unitEnd);
  KernelResult r = encode(*m_plan, m_unit, end, out.next, out.end);
  if (r.in != end && isLowSurrogate(loadUnit(r.in))) {  // between the halves of a pair
    r.in -= 2;
    r.out -= 2;
  }
  return r;
}

Pump::Stop Pump::run(Output& out) {
  while (true) {
    while (m_unit != m_unitEnd) {
      if (!makeRoom(out)) return Stop::kFull;
      const KernelResult r = encodeUnits(out);
      m_written += bytesBetween(out.next, r.out);
      m_unit = r.in;
      out.next = r.out;
      if (m_unit != m_unitEnd && out.room() >= kKernelSlack) return Stop::kUnmappable;
    }
    if (m_plan->direct != nullptr && m_composer == nullptr) return runDirect(out);
    if (m_tellsBlocks && m_hasBlock) {
      m_hasBlock = false;
      return Stop::kBlock;
    }
    if (m_isStopped) {
      m_isStopped = false;
      return Stop::kMalformed;
    }
    if (m_isHeld) return Stop::kEnd;
    if (m_in == m_end) return Stop::kEnd;
    decodeBlock();
  }
}

void Pump::decodeBlock() {
  unsigned char* const blockEnd = m_block + sizeof(PumpBlock::bytes);
  const KernelResult r = decode(*m_plan, m_in, m_end, m_block, blockEnd);
  m_walkedIn = m_in;
  m_walkedUnit = m_unit = m_block;
  m_in = r.in;
  m_unitEnd = r.out;
  m_pivotBytes += bytesBetween(m_block, r.out);
  m_hasBlock = m_unit != m_unitEnd;
  // UTF-16 fills a block to the slack, and is left in front of half a pair as well, which may be
  // whole in the next one.
  const bool isUtf16 = m_plan->decoding.form == EncodingForm::kUtf16;
  const bool mayBeCut = isUtf16 && m_hasBlock;
  const bool isFull = bytesBetween(r.out, blockEnd) < kKernelSlack + (isUtf16 ? 4 : 0);
  m_isStopped = m_in != m_end && !isFull && !mayBeCut;
  if (m_composer != nullptr) composeBlock(isFull);
}

// Composes the block. The character that it ends with is decoded again where more may belong to it:
// with the next block, or with the next text.
void Pump::composeBlock(bool isFull) {
  constexpr std::size_t kMaxCut = 8;  // of a character that the end of the text cuts
  const std::size_t left = bytesBetween(m_in, m_end);
  const bool isEnd = left == 0 || (left < kMaxCut && !isFull);
  const bool waits = isEnd && !m_composer->isLast();
  m_blockIn = m_walkedIn;
  m_anchor = 0;
  std::size_t size = bytesBetween(m_block, m_unitEnd);
  const bool isHeld = m_composer->run(m_block, size, m_blockIn, waits || (isFull && left != 0));
  m_unitEnd = m_block + size;
  if (!isHeld) return;
  m_in = m_blockIn + m_composer->sourceUsed();
  m_isStopped = false;
  m_isHeld = waits;
}

Pump::Stop Pump::runDirect(Output& out) {
  while (m_in != m_end) {
    if (!makeRoom(out)) return Stop::kFull;
    const KernelResult r = m_plan->direct(*m_plan, m_in, m_end, out.next, out.end);
    m_written += bytesBetween(out.next, r.out);
    m_in = r.in;
    out.next = r.out;
    if (m_in != m_end && out.room() >= kKernelSlack) return stopDirect();
  }
  return Stop::kEnd;
}

// A kernel for both steps does not say which of them it stopped for.
Pump::Stop Pump::stopDirect() {
  const SingleByteDecoder* const table = m_plan->decoding.table.singleByte;
  if (table == nullptr || m_plan->encoding.form == EncodingForm::kUtf16) return Stop::kMalformed;
  const std::uint16_t unit = table->units[*m_in];
  if (m_plan->isCopy || (unit == 0 && *m_in != 0)) return Stop::kMalformed;
  m_walkedIn = m_in++;
  m_walkedUnit = m_unit = m_block;
  m_unitEnd = m_block + 2;
  m_block[0] = static_cast<unsigned char>(unit & 0xFF);
  m_block[1] = static_cast<unsigned char>(unit >> 8);
  return Stop::kUnmappable;
}

std::size_t Pump::pivotOffset() const {
  if (m_plan->direct != nullptr)
    return 2 * (bytesBetween(m_begin, m_in)) - bytesBetween(m_unit, m_unitEnd);
  return m_pivotBytes - bytesBetween(m_unit, m_unitEnd);
}

// Goes on to behind the composed units in front of one.
void Pump::passAnchors(const unsigned char* unit) {
  for (; m_anchor < m_composer->anchorCount(); ++m_anchor) {
    const Composer::Anchor& anchor = m_composer->anchors()[m_anchor];
    if (m_block + anchor.unit >= unit) return;
    m_walkedUnit = m_block + anchor.unit + 2;
    m_walkedIn = m_blockIn + anchor.offset + anchor.length;
  }
}

const unsigned char* Pump::sourceOf(const unsigned char* unit) {
  if (m_composer != nullptr) passAnchors(unit);
  if (unit <= m_walkedUnit) return m_walkedIn;
  const unsigned char* walked = m_walkedUnit;
  const unsigned char* in = m_walkedIn;
  m_walkedUnit = unit;
  switch (m_plan->decoding.form) {
    case EncodingForm::kUtf16:
      in += bytesBetween(walked, unit);
      break;
    case EncodingForm::kSingleByte:
      in += bytesBetween(walked, unit) / 2;
      break;
    case EncodingForm::kUtf8:
      in += m_plan->kernels->utf8Length(walked, unit);
      break;
    default:
      for (; walked != unit; walked += 2) in += sourceBytes(*m_plan, loadUnit(walked), in);
  }
  return m_walkedIn = in;
}

std::size_t Pump::sourceLength(const unsigned char* unit, std::size_t bytes) const {
  if (m_composer != nullptr && m_anchor < m_composer->anchorCount() &&
      m_block + m_composer->anchors()[m_anchor].unit == unit) {
    return m_composer->anchors()[m_anchor].length;
  }
  std::size_t length = 0;
  for (std::size_t i = 0; i < bytes; i += 2) {
    length += sourceBytes(*m_plan, loadUnit(unit + i), m_walkedIn + length);
  }
  return length;
}

}  // namespace fast
