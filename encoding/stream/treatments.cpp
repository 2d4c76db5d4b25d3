// The treatments of input that a stream could not convert.
#include "encoding/stream/treatments.h"

#include <algorithm>
#include <iterator>

#include "encoding/special_code_pages.h"
#include "encoding/stream/source.h"

// ---- Reading them from text. ----

namespace {

int hexValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

// The bytes that pairs of hexadecimal digits stand for; false when digits is anything else.
bool readHexBytes(std::string_view digits, std::string& bytes) {
  if (digits.empty() || digits.size() % 2 != 0) return false;
  std::string read;
  for (std::size_t i = 0; i < digits.size(); i += 2) {
    const int high = hexValue(digits[i]);
    const int low = hexValue(digits[i + 1]);
    if (high < 0 || low < 0) return false;
    read.push_back(static_cast<char>(high * 16 + low));
  }
  bytes = read;
  return true;
}

bool readSubstitute(std::string_view text, StreamSettings& settings) {
  const bool isRaw = text.substr(0, 2) == "0x";
  // A slip in the digits is no text that anybody wants.
  if (isRaw && !readHexBytes(text.substr(2), settings.substitute)) return false;
  if (!isRaw) settings.substitute = text;
  settings.treatment = StreamTreatment::kSubstitute;
  settings.hasSubstitute = true;
  settings.substituteIsRaw = isRaw;
  return true;
}

bool readAlternate(std::string_view name, StreamSettings& settings) {
  const int codePage = streamCodePage(name);
  if (codePage == 0) return false;
  settings.treatment = StreamTreatment::kAlternate;
  settings.alternate = codePage;
  return true;
}

struct TreatmentName {
  std::string_view name;
  StreamTreatment treatment;
};
constexpr TreatmentName kNames[] = {
    {"stop", StreamTreatment::kStop},
    {"drop", StreamTreatment::kDrop},
    {"substitute", StreamTreatment::kSubstitute},
    {"hex", StreamTreatment::kHex},
    {"raw", StreamTreatment::kRaw},
};

}  // namespace

bool parseStreamTreatment(std::string_view text, StreamSettings& settings) {
  for (const TreatmentName& known : kNames) {
    if (text != known.name) continue;
    settings.treatment = known.treatment;
    settings.hasSubstitute = false;
    return true;
  }
  const std::size_t equals = text.find('=');
  if (equals == std::string_view::npos) return false;
  const std::string_view value = text.substr(equals + 1);
  if (text.substr(0, equals) == "alternate") return readAlternate(value, settings);
  return text.substr(0, equals) == "substitute" && readSubstitute(value, settings);
}

// ---- Serving them. ----

namespace {

constexpr std::uint16_t kQuestionMark = '?';
constexpr std::uint16_t kNothing = 0;

void appendAscii(std::string_view text, Rows<std::uint16_t>& units) {
  for (const char c : text) units.add(static_cast<std::uint16_t>(static_cast<unsigned char>(c)));
}

constexpr std::string_view kHexDigits = "0123456789ABCDEF";

// Writes the digits of a value, width of them at least, and returns their end.
std::uint16_t* writeHex(std::uint16_t* dest, std::uint32_t value, int width) {
  while (width < 8 && (value >> (4 * width)) != 0) ++width;
  while (--width >= 0) {
    *dest++ = static_cast<unsigned char>(kHexDigits[(value >> (4 * width)) & 0xF]);
  }
  return dest;
}

Treatment::Replacement asText(const Rows<std::uint16_t>& units) {
  return {false, units.data(), nullptr, units.size()};
}
Treatment::Replacement asBytes(const unsigned char* bytes, std::uint32_t count) {
  return {true, nullptr, bytes, count};
}

}  // namespace

StreamStatus Treatment::prepare(const StreamSettings& settings) {
  m_kind = settings.treatment;
  chooseDefault();
  const StreamStatus status = prepareKind(settings);
  return hasFailed() ? StreamStatus::kNoMemory : status;
}

StreamStatus Treatment::prepareKind(const StreamSettings& settings) {
  switch (m_kind) {
    case StreamTreatment::kSubstitute:
      return prepareSubstitute(settings);
    case StreamTreatment::kAlternate:
      return prepareAlternate(settings.alternate);
    case StreamTreatment::kHex:
      appendAscii("&#x0123456789ABCDEF;", m_text);
      m_holdsHex = holds(m_text.data(), m_text.size());
      break;
    default:
      break;
  }
  return StreamStatus::kGood;
}

bool Treatment::holds(const std::uint16_t* units, std::uint32_t count) {
  bool fits = false;
  if (!m_target.holds(units, count, fits)) m_failed = true;
  return fits;
}

void Treatment::chooseDefault() {
  for (const std::uint16_t unit :
       {static_cast<std::uint16_t>(kReplacementCharacter), kQuestionMark}) {
    m_default = unit;
    if (holds(&unit, 1)) return;
  }
  m_default = kNothing;
}

StreamStatus Treatment::prepareSubstitute(const StreamSettings& settings) {
  m_isDefault = !settings.hasSubstitute;
  m_isRaw = settings.substituteIsRaw;
  if (m_isDefault) return StreamStatus::kGood;
  if (settings.substitute.size() > 0xFFFF) return StreamStatus::kBadSubstitute;
  const auto* bytes = reinterpret_cast<const unsigned char*>(settings.substitute.data());
  const auto length = static_cast<std::uint32_t>(settings.substitute.size());
  if (m_isRaw) {
    m_bytes.append(bytes, length);
    return StreamStatus::kGood;
  }
  const EngineLegs::Outcome outcome = m_legs.decode(kUtf8, bytes, length, m_text);
  const bool isText =
      outcome == EngineLegs::Outcome::kGood && !hasUnpairedSurrogate(m_text.data(), m_text.size());
  return isText && holds(m_text.data(), m_text.size()) ? StreamStatus::kGood
                                                       : StreamStatus::kBadSubstitute;
}

StreamStatus Treatment::prepareAlternate(int codePage) {
  m_alternate = codePage;
  constexpr unsigned char kProbe[] = {'A', 0};
  DataBuffer probe;
  const bool isKnown = codePage != 0 && codePage != kCodePageHz &&
                       m_legs.convertWhole(kUtf16Le, codePage, kProbe, sizeof kProbe, probe);
  return isKnown ? StreamStatus::kGood : StreamStatus::kNoAlternate;
}

Treatment::Replacement Treatment::replace(const StreamError& error, const unsigned char* piece,
                                          std::uint32_t length) {
  switch (m_kind) {
    case StreamTreatment::kSubstitute:
      if (m_isDefault) return defaultSubstitute();
      return m_isRaw ? asBytes(m_bytes.getData2(), m_bytes.getSize()) : asText(m_text);
    case StreamTreatment::kHex:
      return m_holdsHex ? hexReference(error) : defaultSubstitute();
    case StreamTreatment::kAlternate:
      return alternate(error, piece, length);
    case StreamTreatment::kRaw:
      return asBytes(piece, length);
    default:
      return asBytes(nullptr, 0);
  }
}

Treatment::Replacement Treatment::defaultSubstitute() const {
  return {false, &m_default, nullptr, m_default == kNothing ? 0u : 1u};
}

Treatment::Replacement Treatment::textOrDefault() {
  const bool isGood = !m_text.isEmpty() && !hasUnpairedSurrogate(m_text.data(), m_text.size()) &&
                      holds(m_text.data(), m_text.size());
  return isGood ? asText(m_text) : defaultSubstitute();
}

Treatment::Replacement Treatment::hexReference(const StreamError& error) {
  constexpr std::uint16_t kBegin[] = {'&', '#', 'x'};
  std::uint16_t text[std::size(kBegin) + 2 * StreamError::kMaxBytes + 1];
  std::uint16_t* end = std::copy(std::begin(kBegin), std::end(kBegin), text);
  if (error.codePoint >= 0) {
    end = writeHex(end, static_cast<std::uint32_t>(error.codePoint), 4);
  } else {
    for (unsigned int i = 0; i < error.byteCount; ++i) end = writeHex(end, error.bytes[i], 2);
  }
  *end++ = ';';
  m_text.clear();
  m_text.add(text, static_cast<std::uint32_t>(end - text));
  return asText(m_text);
}

Treatment::Replacement Treatment::alternate(const StreamError& error, const unsigned char* piece,
                                            std::uint32_t length) {
  m_text.clear();
  m_bytes.clear();
  if (error.kind == StreamErrorKind::kMalformed) {
    const bool isText = m_legs.convertWhole(m_alternate, kUtf16Le, piece, length, m_text.bytes());
    return isText ? textOrDefault() : defaultSubstitute();
  }
  appendScalar(static_cast<std::uint32_t>(error.codePoint), m_text);
  const bool isWritten = m_legs.convertWhole(kUtf16Le, m_alternate,
                                             reinterpret_cast<const unsigned char*>(m_text.data()),
                                             m_text.size() * 2, m_bytes) &&
                         m_bytes.getSize() != 0;
  return isWritten ? asBytes(m_bytes.getData2(), m_bytes.getSize()) : defaultSubstitute();
}
