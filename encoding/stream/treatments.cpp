// The treatments of input that a stream could not convert.
#include "encoding/stream/treatments.h"

#include <algorithm>
#include <new>
#include <string_view>

#include "encoding/pump.h"
#include "encoding/special_units.h"
#include "support/utf.h"
#include "support/zv_base.h"

namespace {

constexpr int kUtf16Le = 1200;

// What references are made of: digits at the places of their values, and the rest.
constexpr std::string_view kHexAlphabet = "0123456789ABCDEF&#x;<>";
constexpr std::uint32_t placeInAlphabet(char c) {
  return static_cast<std::uint32_t>(kHexAlphabet.find(c));
}

void appendScalar(std::uint32_t scalar, Rows<std::uint16_t>& units) {
  if (scalar < 0x10000) {
    units.add(static_cast<std::uint16_t>(scalar));
    return;
  }
  units.add(static_cast<std::uint16_t>(highSurrogateOf(scalar)));
  units.add(static_cast<std::uint16_t>(lowSurrogateOf(scalar)));
}

// What a replacement is made of, as a number but 0: a character, or a few bytes; 0 for more.
std::uint64_t keyOf(std::uint32_t character) { return std::uint64_t{1} << 56 | character; }
std::uint64_t keyOf(const unsigned char* piece, std::uint32_t length) {
  if (length > 4) return 0;
  std::uint64_t key = length + 2;
  for (std::uint32_t i = 0; i < length; ++i) key = key << 8 | piece[i];
  return key;
}

int hostUtf16() { return zvIsBigEndian() ? 1201 : kUtf16Le; }

}  // namespace

// Whole conversions between any two code pages.
class AlternateConverter {
 public:
  // False when anything could not be converted; a failure for want of memory is latched in out.
  bool convert(int from, int to, const unsigned char* data, std::uint32_t length, DataBuffer& out) {
    StreamSettings settings;
    settings.from = from;
    settings.to = to;
    settings.dropMark = true;  // what is converted stands within a text
    StreamStatus status = m_stream.begin(settings);
    if (status == StreamStatus::kGood) status = m_stream.push(data, length, out);
    if (status == StreamStatus::kGood) status = m_stream.finish(out);
    if (status == StreamStatus::kNoMemory) out.latchFailure();
    return status == StreamStatus::kGood;
  }

 private:
  StreamConverter m_stream;
};

Treatment::Treatment() = default;
Treatment::~Treatment() = default;

// ---- Text of the target. ----

bool Treatment::encodeText(const std::uint16_t* units, std::uint32_t count) {
  m_bytes.clear();
  if (m_plan == nullptr) m_plan = fast::openPlan(kUtf16Le, m_to);
  if (m_plan == nullptr) {
    m_failed = true;
    return false;
  }
  DataBuffer text;
  for (std::uint32_t i = 0; i < count; ++i) {
    text.appendChar(static_cast<unsigned char>(units[i] & 0xFF));
    text.appendChar(static_cast<unsigned char>(units[i] >> 8));
  }
  if (text.hasFailed()) {
    m_failed = true;
    return false;
  }
  fast::Pump pump;
  fast::PumpBlock block;
  pump.start(*m_plan, block, text.getData2(), text.getData2() + text.getSize());
  {
    DataBufferOutput out(m_bytes);
    while (true) {
      const fast::Pump::Stop stop = pump.run(out);
      if (stop == fast::Pump::Stop::kEnd) break;
      const bool isWritten = stop == fast::Pump::Stop::kUnmappable &&
                             fast::writeSpecialUnit(*m_plan, pump.unit(), out);
      if (!isWritten) {
        m_failed = m_failed || stop == fast::Pump::Stop::kFull;
        return false;
      }
      pump.skipUnits(2);
    }
  }
  if (m_bytes.hasFailed()) m_failed = true;
  bool fits = true;
  if (m_target != nullptr && !m_target->holds(m_bytes.getData2(), m_bytes.getSize(), fits)) {
    m_failed = true;
  }
  return fits && !m_failed;
}

// ---- Settings. ----

StreamStatus Treatment::prepare(const StreamSettings& settings, const CodecTarget* target) {
  m_target = target;
  m_to = settings.to;
  m_plan = nullptr;
  m_kind = settings.treatment;
  m_isGiven = m_hasDefault = m_failed = false;
  m_hexWidth = -1;
  m_text.clear();
  m_bytes.clear();
  if (m_known != nullptr) std::fill_n(m_known.get(), 1u << kKnownBits, Known{});
  StreamStatus status = StreamStatus::kGood;
  if (m_kind == StreamTreatment::kSubstitute) status = prepareSubstitute(settings);
  if (m_kind == StreamTreatment::kAlternate) status = prepareAlternate(settings.alternate);
  return hasFailed() || m_given.hasFailed() ? StreamStatus::kNoMemory : status;
}

StreamStatus Treatment::prepareSubstitute(const StreamSettings& settings) {
  m_isGiven = settings.hasSubstitute;
  m_isRaw = settings.substituteIsRaw;
  m_given.clear();
  if (!m_isGiven) return StreamStatus::kGood;
  if (settings.substitute.size() > 0xFFFF) return StreamStatus::kBadSubstitute;
  const auto* bytes = reinterpret_cast<const unsigned char*>(settings.substitute.data());
  const auto length = static_cast<std::uint32_t>(settings.substitute.size());
  if (m_isRaw) {
    m_given.append(bytes, length);
    return StreamStatus::kGood;
  }
  for (std::uint32_t i = 0; i < length;) {
    const Utf8Sequence sequence = decodeScalar(bytes + i, length - i);
    if (!sequence.valid) return StreamStatus::kBadSubstitute;
    appendScalar(sequence.value, m_text);
    i += sequence.length;
  }
  if (!encodeText(m_text.data(), m_text.size())) return StreamStatus::kBadSubstitute;
  m_given.append(m_bytes);
  return StreamStatus::kGood;
}

StreamStatus Treatment::prepareAlternate(int codePage) {
  m_alternate = codePage;
  if (m_converter == nullptr) m_converter.reset(new (std::nothrow) AlternateConverter());
  if (m_converter == nullptr) return StreamStatus::kNoMemory;
  constexpr unsigned char kProbe[] = {'A', 0};
  DataBuffer probe;
  const bool isKnown =
      codePage != 0 && m_converter->convert(kUtf16Le, codePage, kProbe, sizeof kProbe, probe);
  return isKnown ? StreamStatus::kGood : StreamStatus::kNoAlternate;
}

// ---- Replacements. ----

Treatment::Replacement Treatment::replace(const StreamError& error, const unsigned char* piece,
                                          std::uint32_t length) {
  switch (m_kind) {
    case StreamTreatment::kSubstitute:
      if (!m_isGiven) return defaultSubstitute();
      return {m_given.getData2(), m_given.getSize(), m_isRaw};
    case StreamTreatment::kHex:
    case StreamTreatment::kAlternate:
      return rememberedOrMade(error, piece, length);
    case StreamTreatment::kRaw:
      return {piece, length, true};
    default:
      return {nullptr, 0, true};
  }
}

// A place for a replacement made of a key: with that key, or to be filled. Null for no key, and
// where memory is short, which costs no more than time.
Treatment::Known* Treatment::knownFor(std::uint64_t key) {
  if (key == 0) return nullptr;
  if (m_known == nullptr) m_known.reset(new (std::nothrow) Known[1u << kKnownBits]);
  const std::uint64_t place = key * 0x9E3779B97F4A7C15u >> (64 - kKnownBits);
  return m_known == nullptr ? nullptr : &m_known[static_cast<std::size_t>(place)];
}

Treatment::Replacement Treatment::rememberedOrMade(const StreamError& error,
                                                   const unsigned char* piece,
                                                   std::uint32_t length) {
  const bool isHex = m_kind == StreamTreatment::kHex;
  const bool isOfCharacter = error.kind == StreamErrorKind::kNoPlace && error.codePoint >= 0;
  const std::uint64_t key =
      isOfCharacter ? keyOf(static_cast<std::uint32_t>(error.codePoint)) : keyOf(piece, length);
  Known* const known = knownFor(key);
  if (known != nullptr && known->key == key) return {known->bytes, known->count, known->isRaw};
  const Replacement made = isHex ? hexReference(error) : alternate(error, piece, length);
  if (known != nullptr && made.count <= sizeof known->bytes && !hasFailed()) {
    known->key = key;
    known->count = static_cast<std::uint8_t>(made.count);
    known->isRaw = made.isRaw;
    std::copy_n(made.bytes, made.count, known->bytes);
  }
  return made;
}

const Treatment::Replacement& Treatment::defaultSubstitute() {
  if (m_hasDefault) return m_default;
  m_defaultBytes.clear();
  for (const std::uint16_t unit :
       {static_cast<std::uint16_t>(kReplacementCharacter), static_cast<std::uint16_t>('?')}) {
    if (!encodeText(&unit, 1)) continue;
    m_defaultBytes.append(m_bytes);
    break;
  }
  m_hasDefault = true;
  m_failed = m_failed || m_defaultBytes.hasFailed();
  m_default = {m_defaultBytes.getData2(), m_defaultBytes.getSize(), false};
  return m_default;
}

Treatment::Replacement Treatment::textOrDefault(const std::uint16_t* units, std::uint32_t count) {
  if (!encodeText(units, count)) return defaultSubstitute();
  return {m_bytes.getData2(), m_bytes.getSize(), false};
}

// The forms of all that references are made of, each as long as the others; false where the target
// lacks them.
bool Treatment::prepareHex() {
  if (m_hexWidth >= 0) return m_hexWidth != 0;
  std::uint16_t units[kHexAlphabet.size()];
  std::copy(kHexAlphabet.begin(), kHexAlphabet.end(), units);
  const bool isHeld = encodeText(units, static_cast<std::uint32_t>(kHexAlphabet.size()));
  m_hexForms.clear();
  if (isHeld) m_hexForms.append(m_bytes);
  m_failed = m_failed || m_hexForms.hasFailed();
  m_hexWidth = static_cast<int>(m_hexForms.getSize() / kHexAlphabet.size());
  return isHeld;
}

Treatment::Replacement Treatment::hexReference(const StreamError& error) {
  if (!prepareHex()) return defaultSubstitute();
  // "&#x" or "<0x", two digits for each byte or eight for a code point, and ";" or ">".
  constexpr unsigned int kMaxPlaces = 4 + 2 * StreamError::kMaxBytes;
  m_bytes.clear();
  const auto width = static_cast<unsigned int>(m_hexWidth);
  unsigned char* const begin = m_bytes.reserveTail(kMaxPlaces * width);
  if (begin == nullptr) return defaultSubstitute();  // the failure is latched
  unsigned char* out = begin;
  const auto put = [&](std::uint32_t place) {
    const unsigned char* const form = m_hexForms.getData2() + place * width;
    for (unsigned int i = 0; i < width; ++i) *out++ = form[i];
  };
  // The digits of a value, count of them at least.
  const auto putDigits = [&](std::uint32_t value, int count) {
    while (count < 8 && (value >> (4 * count)) != 0) ++count;
    while (--count >= 0) put(value >> (4 * count) & 0xF);
  };
  const auto putText = [&](std::string_view text) {
    for (const char c : text) put(placeInAlphabet(c));
  };
  if (error.kind == StreamErrorKind::kMalformed || error.codePoint < 0) {
    // No reference: that would be read as a character, which nobody wrote.
    putText("<0x");
    for (unsigned int i = 0; i < error.byteCount; ++i) putDigits(error.bytes[i], 2);
    putText(">");
  } else {
    putText("&#x");
    putDigits(static_cast<std::uint32_t>(error.codePoint), 4);
    putText(";");
  }
  m_bytes.commitTail(static_cast<unsigned int>(out - begin));
  return {m_bytes.getData2(), m_bytes.getSize(), false};
}

Treatment::Replacement Treatment::alternate(const StreamError& error, const unsigned char* piece,
                                            std::uint32_t length) {
  m_text.clear();
  if (error.kind == StreamErrorKind::kMalformed) {
    const bool isText =
        m_converter->convert(m_alternate, hostUtf16(), piece, length, m_text.bytes());
    m_failed = m_failed || m_text.hasFailed();
    const bool isEmpty = m_text.bytes().getSize() == 0;
    return isText && !isEmpty ? textOrDefault(m_text.data(), m_text.size()) : defaultSubstitute();
  }
  m_bytes.clear();
  appendScalar(static_cast<std::uint32_t>(error.codePoint), m_text);
  const bool isWritten = m_converter->convert(hostUtf16(), m_alternate,
                                              reinterpret_cast<const unsigned char*>(m_text.data()),
                                              m_text.size() * 2, m_bytes) &&
                         m_bytes.getSize() != 0;
  m_failed = m_failed || m_text.hasFailed() || m_bytes.hasFailed();
  if (!isWritten) return defaultSubstitute();
  return {m_bytes.getData2(), m_bytes.getSize(), true};
}
