// Single legs of the engine for streams.
#include "encoding/stream/engine_legs.h"

#include "encoding/fast/cpu_dispatch.h"
#include "encoding/fast/fast_path.h"
#include "encoding/special_code_pages.h"
#include "encoding/stream/source.h"
#include "encoding/stream/target.h"

// ---- The plain legs. ----

void EngineLegs::onUnconvertible(const UnconvertibleInput& /*piece*/) { m_isBad = true; }

EngineLegs::Outcome EngineLegs::outcome(bool ok, const DataBuffer& out) const {
  if (out.hasFailed()) return Outcome::kNoMemory;
  if (m_isBad) return Outcome::kBad;  // encoding is false for these, decoding true
  return ok ? Outcome::kGood : Outcome::kNoMemory;
}

EngineLegs::Outcome EngineLegs::decode(int codePage, const unsigned char* data,
                                       std::uint32_t length, Rows<std::uint16_t>& units) {
  m_isBad = false;
  DataBuffer& out = units.bytes();
  const bool ok = codePage == kUtf8
                      ? m_converter.cv_utf8_to_utf16(data, length, out, m_log)
                      : m_converter.convertToUnicodeHC(codePage, data, length, out, m_log);
  return outcome(ok, out);
}

EngineLegs::Outcome EngineLegs::encode(int codePage, const std::uint16_t* units,
                                       std::uint32_t count, DataBuffer& out) {
  m_isBad = false;
  const auto* bytes = reinterpret_cast<const unsigned char*>(units);
  m_converter.m_toCodePage = codePage;
  const bool ok = codePage == kUtf8
                      ? m_converter.cv_utf16_to_utf8(bytes, count * 2, out, m_log)
                      : m_converter.convertFromUnicodeHC(codePage, bytes, count * 2, out, m_log);
  return outcome(ok, out);
}

bool EngineLegs::convertWhole(int from, int to, const unsigned char* data, std::uint32_t length,
                              DataBuffer& out) {
  m_isBad = false;
  const bool ok = m_converter.EncConvert(from, to, data, length, out, m_log);
  m_converter.m_pivotToUtf16 = false;
  m_converter.m_pivotFromUtf16 = false;
  return ok && !m_converter.m_foundErrors && !m_isBad;
}

bool EngineLegs::openSource(int codePage, fast::Side& side) {
  return fast::isFastPathOpen(m_log) && fast::openSource(codePage, m_log, side);
}

bool EngineLegs::openTarget(int codePage, fast::Side& side) {
  m_converter.m_toCodePage = codePage;
  return fast::isFastPathOpen(m_log) && fast::openTarget(codePage, m_converter, m_log, side);
}

// ---- Decoding. ----

TextDecoder::TextDecoder(int codePage, EngineLegs& legs)
    : m_codePage(codePage),
      m_legs(legs),
      m_characters(codePage),
      m_hasKernel(legs.openSource(codePage, m_side)) {}

bool TextDecoder::decode(const unsigned char* data, std::uint32_t begin, std::uint32_t end,
                         SourceBlock& block) {
  const fast::Kernels& kernels = fast::kernels();
  std::uint32_t offset = begin;
  while (offset < end) {
    if (m_hasKernel) {
      DataBuffer& out = block.units.bytes();
      // No character has fewer bytes than units.
      unsigned char* tail = out.reserveTail((end - offset) * 2 + fast::kKernelSlack);
      if (tail == nullptr) return false;
      const fast::KernelResult r =
          fast::decode(kernels, m_side, data + offset, data + end, tail, tail + out.getTailRoom());
      out.commitTail(static_cast<unsigned int>(r.out - tail));
      offset = static_cast<std::uint32_t>(r.in - data);
      if (offset == end) break;
    }
    offset += decodePiece(data, offset, end, block);
    if (block.hasFailed()) return false;
  }
  return true;
}

// What a kernel stopped at. Returns its length.
std::uint32_t TextDecoder::decodePiece(const unsigned char* data, std::uint32_t offset,
                                       std::uint32_t end, SourceBlock& block) {
  if (m_codePage == kUtf8) return decodeUtf8Piece(data, offset, end, block);
  const std::uint32_t length = m_characters.length(data + offset, end - offset);
  switch (m_legs.decode(m_codePage, data + offset, length, block.units)) {
    case EngineLegs::Outcome::kGood:
      return length;
    case EngineLegs::Outcome::kBad:
      block.bad.add({offset, 1, block.units.size(), offset, 1, -1});
      return 1;
    default:
      block.bad.latchFailure();
      return length;
  }
}

std::uint32_t TextDecoder::decodeUtf8Piece(const unsigned char* data, std::uint32_t offset,
                                           std::uint32_t end, SourceBlock& block) {
  const unsigned char* p = data + offset;
  const Utf8Sequence first = decodeUtf8(p, end - offset);
  const Utf8Sequence whole = decodeScalar(p, end - offset);
  if (!whole.valid) {
    const bool isSurrogateForm = first.valid;
    block.bad.add({offset, first.length, block.units.size(), offset, first.length,
                   isSurrogateForm ? static_cast<std::int32_t>(first.value) : -1});
    return first.length;
  }
  appendScalar(whole.value, block.units);
  return whole.length;
}

// ---- Encoding. ----

TextEncoder::TextEncoder(int codePage, EngineLegs& legs)
    : m_codePage(codePage), m_legs(legs), m_hasKernel(legs.openTarget(codePage, m_side)) {}

bool TextEncoder::encode(const std::uint16_t* units, std::uint32_t count, DataBuffer& out,
                         EncodeResult& result) {
  const fast::Kernels& kernels = fast::kernels();
  const unsigned int sizeBefore = out.getSize();
  std::uint32_t i = 0;
  while (i < count) {
    if (m_hasKernel) {
      const auto* in = reinterpret_cast<const unsigned char*>(units + i);
      // No unit has more than three bytes.
      unsigned char* tail = out.reserveTail((count - i) * 3 + fast::kKernelSlack);
      if (tail == nullptr) return false;
      const fast::KernelResult r =
          fast::encode(kernels, m_side, in, in + (count - i) * 2, tail, tail + out.getTailRoom());
      out.commitTail(static_cast<unsigned int>(r.out - tail));
      i += static_cast<std::uint32_t>(r.in - in) / 2;
      if (i == count) break;
    }
    const std::uint32_t length = isHighSurrogate(units[i]) ? 2 : 1;
    if (m_codePage == kUtf8 && units[i] == 0) {
      out.appendChar(0);
    } else {
      const EngineLegs::Outcome outcome = m_legs.encode(m_codePage, units + i, length, out);
      if (outcome == EngineLegs::Outcome::kNoMemory) return false;
      if (outcome == EngineLegs::Outcome::kBad) result.misfits.add({i, length});
    }
    i += length;
  }
  result.used = count;
  if (!result.misfits.isEmpty()) {
    out.truncate(sizeBefore);
    result.used = 0;
  }
  return !out.hasFailed() && !result.misfits.hasFailed();
}
