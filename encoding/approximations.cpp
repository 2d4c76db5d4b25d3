#include "encoding/approximations.h"

#include "encoding/tables/table_registry.h"
#include "support/utf.h"

namespace fast {
namespace {

// The best fits of a row, made if need be; null when it has none. False when memory is short.
bool openBestFits(const EncodingRow& row, const HashConvert*& fits) {
  LogBase silent;
  if (!ensureBestFit(row, silent)) return false;
  fits = row.bestFit == nullptr ? nullptr : tableSlots(row).bestFit.load(std::memory_order_acquire);
  return true;
}

}  // namespace

bool Approximations::prepare(Repertoire& target, Attempts attempts) {
  m_target = &target;
  m_bestFits = nullptr;
  m_transliterates = attempts.translit;
  if (!attempts.bestFit) return true;
  // An encoding with a codec has its own, or those of the code page behind the codec.
  const EncodingRow* const row =
      target.target().bestFit != nullptr ? &target.target() : target.encoding().tableRow;
  return row == nullptr || openBestFits(*row, m_bestFits);
}

std::optional<std::u32string_view> Approximations::find(std::uint32_t scalar) {
  if (const std::uint32_t other = findCharacter(scalar)) {
    m_text[0] = other;
    return std::u32string_view(m_text, 1);
  }
  return m_transliterates ? findTransliteration(scalar) : std::nullopt;
}

// What one character is written for; 0 for none.
std::uint32_t Approximations::findCharacter(std::uint32_t scalar) {
  const Codec* const codec = m_target->codec();
  if (const std::uint32_t other = findInTable(scalar)) {
    if (codec == nullptr || m_target->has(other)) return other;
  }
  if (codec != nullptr && codec->approximate != nullptr) {
    const std::uint32_t other = codec->approximate(codec->write.parameters(), scalar);
    if (other != 0 && m_target->has(other)) return other;
  }
  const std::uint32_t other = m_bestFits == nullptr ? 0 : findBestFit(scalar);
  return other != 0 && m_target->has(other) ? other : 0;
}

std::uint32_t Approximations::findInTable(std::uint32_t scalar) const {
  const Encoding& encoding = m_target->encoding();
  const std::uint16_t code = scalar > 0xFFFF ? 0 : codeOf(encoding.approximating, scalar);
  // What the table has as it is may be lacking in the codec.
  if (code == 0 || codeOf(encoding.table, scalar) != 0) return 0;
  return readUnit(encoding.reading, code);
}

std::uint32_t Approximations::findBestFit(std::uint32_t scalar) const {
  if (scalar > 0xFFFF) return 0;
  const unsigned char key[2] = {static_cast<unsigned char>(scalar),
                                static_cast<unsigned char>(scalar >> 8)};
  unsigned char value[2];
  if (m_bestFits->probe(key, value) != 2) return 0;
  return value[0] | value[1] * 256u;
}

// The first transliteration that the target holds as a whole.
std::optional<std::u32string_view> Approximations::findTransliteration(std::uint32_t scalar) {
  Transliterations candidates(scalar);
  for (std::string_view candidate; candidates.next(candidate);) {
    const auto* next = reinterpret_cast<const unsigned char*>(candidate.data());
    const unsigned char* const end = next + candidate.size();
    std::size_t count = 0;
    bool isHeld = true;
    while (isHeld && next != end) {
      const Utf8Sequence sequence = decodeUtf8(next, static_cast<std::size_t>(end - next));
      next += sequence.length;
      m_text[count++] = sequence.value;
      isHeld = m_target->has(sequence.value);
    }
    if (isHeld) return std::u32string_view(m_text, count);
  }
  return std::nullopt;
}

bool hasApproximation(int to, char32_t character, Approximations::Attempts attempts) {
  constexpr int kUtf16Le = 1200;
  const Plan* const plan = openPlan(kUtf16Le, to, Reader::kStream);
  Repertoire target;
  Approximations approximations;
  return plan != nullptr && target.open(*plan) && approximations.prepare(target, attempts) &&
         approximations.find(character).has_value();
}

}  // namespace fast
