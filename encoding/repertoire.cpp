#include "encoding/repertoire.h"

#include "support/utf.h"

namespace fast {

bool Repertoire::open(const Plan& plan) {
  constexpr int kUtf16Le = 1200;
  // More than a codec asks for to write one character.
  constexpr unsigned int kScratch = 256;
  m_plan = &plan;
  m_codec = plan.target->codec;
  m_scratch.clear();
  if (m_codec == nullptr) return true;
  // A source in the codec's own code page has a plan that only copies.
  if (plan.isCopy) m_plan = openPlan(kUtf16Le, plan.to, Reader::kStream);
  return m_plan != nullptr && m_scratch.ensureBuffer(kScratch);
}

bool Repertoire::has(std::uint32_t scalar) {
  if (!isInTable(scalar)) return false;
  if (m_codec == nullptr) return true;
  unsigned char bytes[kMaxBytes];
  return codecHolds(*m_codec, bytes, write(scalar, bytes), m_scratch);
}

std::uint32_t Repertoire::write(std::uint32_t scalar, unsigned char (&bytes)[kMaxBytes]) const {
  const bool isPair = scalar > 0xFFFF;
  const std::uint32_t first = isPair ? highSurrogateOf(scalar) : scalar;
  const std::uint32_t second = isPair ? lowSurrogateOf(scalar) : 0;
  const unsigned char units[4] = {
      static_cast<unsigned char>(first), static_cast<unsigned char>(first >> 8),
      static_cast<unsigned char>(second), static_cast<unsigned char>(second >> 8)};
  const KernelResult r =
      encode(*m_plan, units, units + (isPair ? 4 : 2), bytes, bytes + sizeof bytes);
  return static_cast<std::uint32_t>(r.out - bytes);
}

}  // namespace fast
