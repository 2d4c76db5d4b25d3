#include "encoding/detect/statistics.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <new>

#include "encoding/code_page_list.h"
#include "encoding/detect/neighbours.h"

namespace detection {
namespace {

// Western first, and the pages of Windows before those of which they are extensions.
constexpr std::string_view kJudged[] = {
    "windows-1252", "windows-1251",   "windows-1250", "windows-1253", "windows-1254",
    "windows-1255", "windows-1256",   "windows-1257", "windows-1258", "windows-874",
    "Shift_JIS",    "EUC-JP",         "GBK",          "Big5",         "KS_C_5601-1987",
    "KOI8-R",       "KOI8-U",         "ISO-8859-1",   "ISO-8859-2",   "ISO-8859-3",
    "ISO-8859-4",   "ISO-8859-5",     "ISO-8859-6",   "ISO-8859-7",   "ISO-8859-8-I",
    "ISO-8859-9",   "ISO-8859-13",    "ISO-8859-15",  "IBM866",       "IBM850",
    "IBM437",       "IBM852",         "IBM855",       "IBM857",       "IBM862",
    "IBM737",       "IBM775",         "IBM865",       "IBM860",       "IBM861",
    "macintosh",    "x-mac-cyrillic", "x-mac-ce",     "x-mac-greek",  "x-mac-turkish",
    "Johab",
};
constexpr std::string_view kJudgedEbcdic[] = {
    "IBM037",   "IBM1047",  "IBM500",   "IBM273",   "IBM277",   "IBM278",   "IBM280",   "IBM284",
    "IBM285",   "IBM297",   "IBM871",   "IBM870",   "IBM1026",  "IBM01140", "IBM01141", "IBM01142",
    "IBM01143", "IBM01144", "IBM01145", "IBM01146", "IBM01147", "IBM01148", "IBM01149", "IBM00924",
    "cp875",    "cp1025",   "IBM880",   "IBM424",   "IBM420",   "IBM-Thai", "IBM290",
};

// How much less likely a text is to be in an encoding before a byte of it was seen: those of DOS
// and of Macs are seldom met.
double priorOf(std::string_view name) {
  if (name.starts_with("windows-125") && name != "windows-1258") return 0;
  // Of EBCDIC.
  if (name == "IBM037" || name == "IBM500" || name == "IBM1047" || name == "IBM01140") return 3;
  if (name.starts_with("IBM0") || name.starts_with("IBM2")) return 0;
  if (name.starts_with("IBM") || name.starts_with("mac") || name.starts_with("x-mac") ||
      name == "Johab" || name == "windows-1258") {
    return name == "IBM866" || name == "IBM850" ? -3 : -6;
  }
  if (name == "ISO-8859-3" || name == "ISO-8859-4" || name == "ISO-8859-6") return -5;
  return -0.5;
}

constexpr double kMalformed = -15;
constexpr double kFourBytes = -10;
constexpr double kBehindCapital = -0.2;  // a capital there, besides the letter as a small one

// Whether a character stands at different places in the national pages of EBCDIC.
bool isNational(char16_t unit) {
  return std::u16string_view(u"#@[\\]^`{|}~!$").find(unit) != std::u16string_view::npos;
}

// Of two bytes in an encoding, where isEbcdic of EBCDIC: there, signs within words are letters of
// another national page.
class BytePairs {
 public:
  void set(std::size_t byte, char16_t unit) {
    m_kinds[byte] = {letterKindOf(unit), isNational(unit)};
  }
  double logOf(std::size_t first, std::size_t second, bool isEbcdic) const {
    const auto& [a, isNationalA] = m_kinds[first];
    const auto& [b, isNationalB] = m_kinds[second];
    const double log = logOfNeighbours(a, b);
    return isEbcdic && ((a.isLetter && isNationalB) || (isNationalA && b.isLetter)) ? log - 1.5
                                                                                    : log;
  }
  bool areCapitals(std::size_t first, std::size_t second) const {
    return m_kinds[first].letter.isCapital && m_kinds[second].letter.isCapital;
  }

 private:
  struct Kind {
    LetterKind letter;
    bool isNational = false;
  };
  std::array<Kind, 256> m_kinds{};
};

void mix(std::uint64_t& fingerprint, std::uint64_t value) {
  fingerprint = (fingerprint ^ value) * 0x100000001B3u;
}

// What each byte of a single-byte code page is; U+FFFD where it is nothing.
bool decodeBytes(int codePage, std::array<char16_t, 256>& units) {
  StreamSettings settings;
  settings.from = codePage;
  settings.to = 1200;
  settings.treatment = StreamTreatment::kSubstitute;
  unsigned char bytes[256];
  for (unsigned int i = 0; i < 256; ++i) bytes[i] = static_cast<unsigned char>(i);
  StreamConverter stream;
  DataBuffer out;
  StreamStatus status = stream.begin(settings);
  if (status == StreamStatus::kGood) status = stream.push(bytes, sizeof bytes, out);
  if (status == StreamStatus::kGood) status = stream.finish(out);
  if (status == StreamStatus::kNoMemory) throw std::bad_alloc();
  if (status != StreamStatus::kGood || out.getSize() != 2 * units.size()) return false;
  for (unsigned int i = 0; i < 256; ++i) {
    units[i] = static_cast<char16_t>(out.getData2()[2 * i] | out.getData2()[2 * i + 1] << 8);
  }
  return true;
}

}  // namespace

double confidenceOf(double lead, std::uint64_t characters) {
  const double perCharacter = lead / static_cast<double>(std::max<std::uint64_t>(characters, 1));
  const double ofLead =
      0.2 + 0.4 * (1 - std::exp(-lead / 10)) + 0.3 * (1 - std::exp(-perCharacter * 4));
  return ofLead * (1 - std::exp(-static_cast<double>(characters) / 2));
}

std::span<const std::string_view> judgedEncodings() { return kJudged; }
std::span<const std::string_view> judgedEbcdic() { return kJudgedEbcdic; }

Statistics::Statistics(std::span<const Piece> pieces, Trial& trial)
    : m_pieces(pieces), m_trial(trial) {
  std::vector<std::uint32_t> counts(1u << 16);
  for (const Piece& piece : pieces) {
    unsigned int before = '\n';
    for (const unsigned char byte : piece.bytes) {
      ++m_counts[byte];
      ++counts[before << 8 | byte];
      before = byte;
    }
  }
  for (unsigned int pair = 0; pair < counts.size(); ++pair) {
    if (counts[pair] == 0) continue;
    m_pairs.push_back(
        {static_cast<unsigned char>(pair >> 8), static_cast<unsigned char>(pair), counts[pair]});
  }
  for (unsigned int byte = 0x80; byte < 0x100; ++byte) m_beyondAscii += m_counts[byte];
}

bool Statistics::readSingleByte(int codePage, Reading& reading) {
  std::array<char16_t, 256> units{};
  if (!decodeBytes(codePage, units)) return false;
  BytePairs neighbours;
  double common = 0;
  std::uint64_t ascii = 0;
  std::vector<unsigned char> high;
  const bool isEbcdic = units[0x40] == u' ';
  for (unsigned int byte = 0; byte < 256; ++byte) {
    // Files of EBCDIC end lines with NL.
    if (isEbcdic && units[byte] == 0x85) units[byte] = u'\n';
    neighbours.set(byte, units[byte]);
    if (m_counts[byte] == 0) continue;
    mix(reading.fingerprint, byte << 16 | units[byte]);
    // Text has no C1 controls; where they are, it is in the page of Windows beside.
    const bool isC1 = !isEbcdic && units[byte] >= 0x80 && units[byte] < 0xA0 && units[byte] != 0x85;
    if (units[byte] == 0xFFFD || isC1) {
      reading.malformed += m_counts[byte];
      common += kMalformed * m_counts[byte];
    } else if (units[byte] < 0x80) {
      ascii += m_counts[byte];
      common += static_cast<double>(logOfAscii(units[byte])) * m_counts[byte];
    } else {
      reading.characters += m_counts[byte];
      high.push_back(static_cast<unsigned char>(byte));
    }
  }
  double ofNeighbours = 0;
  std::array<std::uint32_t, 256> behindCapitals{};
  for (const Pair& pair : m_pairs) {
    ofNeighbours += neighbours.logOf(pair.first, pair.second, isEbcdic) * pair.count;
    if (neighbours.areCapitals(pair.first, pair.second)) behindCapitals[pair.second] += pair.count;
  }
  common += logOfShares(ascii, reading.characters);
  ProfileSums sums(m_letterLogs);
  for (const unsigned char byte : high) {
    // Words in capitals have the letters of others.
    const std::uint32_t behind = behindCapitals[byte];
    sums.add(units[byte], m_counts[byte] - behind);
    sums.add(lowerOf(units[byte]), behind);
    common += kBehindCapital * behind;
  }
  const ProfileSums::Best best = sums.best();
  reading.score = common + ofNeighbours + best.log;
  reading.fit = (ofNeighbours + best.log) /
                static_cast<double>(std::max<std::uint64_t>(1, reading.characters));
  reading.language = best.language;
  return true;
}

// Whether the beginning already is malformed throughout.
bool Statistics::isHopeless(int codePage) {
  constexpr std::size_t kBeginning = 2048;
  Bytes beginning = m_pieces[0].bytes;
  if (beginning.size() <= 2 * kBeginning) return false;
  const Piece piece{beginning.first(kBeginning), true};
  return m_trial.read(std::span(&piece, 1), codePage) && m_trial.malformed() > 20;
}

bool Statistics::readOther(int codePage, Reading& reading) {
  if (isHopeless(codePage) || !m_trial.read(m_pieces, codePage)) return false;
  reading.isOfPairs = true;
  reading.malformed = m_trial.malformed();
  double common = kMalformed * static_cast<double>(reading.malformed);
  ProfileSums sums(m_eastAsianLogs);
  for (std::size_t i = 0; i < m_trial.unitCount(); ++i) {
    const char16_t unit = m_trial.unit(i);
    mix(reading.fingerprint, unit);
    if (unit < 0x80) {
      common += static_cast<double>(logOfAscii(unit));
    } else {
      ++reading.characters;
      sums.add(unit);
    }
  }
  common += logOfShares(m_trial.unitCount() - reading.characters, reading.characters);
  const ProfileSums::Best best = sums.best();
  reading.score = common + best.log;
  reading.fit = best.log / static_cast<double>(std::max<std::uint64_t>(1, reading.characters));
  reading.language = best.language;
  return true;
}

std::vector<Reading> Statistics::read(std::span<const std::string_view> names) {
  std::vector<Reading> readings;
  readings.reserve(names.size());
  for (const std::string_view name : names) {
    const EncodingRow* const row = findEncoding(name);
    if (row == nullptr) continue;
    Reading reading;
    reading.codePage = row->number;
    reading.name = row->name;
    reading.fingerprint = 0xCBF29CE484222325u;
    const bool isRead = row->form == EncodingForm::kSingleByte
                            ? readSingleByte(row->number, reading)
                            : readOther(row->number, reading);
    if (!isRead) continue;
    reading.score += priorOf(name);
    readings.push_back(reading);
  }
  // A damaged place now and then. Of single bytes, one that has no character is another page's;
  // pairs have them seldom by chance, and hardly ever few.
  const auto isMalformed = [](const Reading& reading) {
    return reading.malformed * (reading.isOfPairs ? 15 : 500) > reading.characters;
  };
  if (!std::ranges::all_of(readings, isMalformed)) std::erase_if(readings, isMalformed);
  return readings;
}

std::vector<Reading> Statistics::rank(std::span<const std::string_view> names,
                                      std::string_view favourite, double favour) {
  std::vector<Reading> readings = read(names);
  for (Reading& reading : readings) {
    if (reading.name == favourite) reading.score += favour;
  }
  std::ranges::stable_sort(readings, std::greater<>{}, &Reading::score);
  std::vector<Reading> ranked;
  for (const Reading& reading : readings) {
    const bool isNew =
        std::ranges::find(ranked, reading.fingerprint, &Reading::fingerprint) == ranked.end();
    if (isNew) ranked.push_back(reading);
  }
  return ranked;
}

Reading Statistics::readGb18030() {
  Reading reading;
  reading.name = "GB18030";
  reading.codePage = streamCodePage(reading.name);
  const auto isLead = [](unsigned char c) { return c >= 0x81 && c <= 0xFE; };
  const auto isDigit = [](unsigned char c) { return c >= 0x30 && c <= 0x39; };
  std::vector<unsigned char> pairs;
  std::uint64_t fours = 0;
  for (const Piece& piece : m_pieces) {
    const Bytes bytes = piece.bytes;
    for (std::size_t i = 0; i < bytes.size();) {
      const std::size_t left = bytes.size() - i;
      if (left >= 4 && isLead(bytes[i]) && isDigit(bytes[i + 1]) && isLead(bytes[i + 2]) &&
          isDigit(bytes[i + 3])) {
        ++fours;
        i += 4;
        continue;
      }
      const std::size_t width = isLead(bytes[i]) && left >= 2 ? 2 : 1;
      if (width == 1 && isLead(bytes[i]) && piece.isCut) break;
      pairs.insert(pairs.end(), bytes.begin() + static_cast<std::ptrdiff_t>(i),
                   bytes.begin() + static_cast<std::ptrdiff_t>(i + width));
      i += width;
    }
  }
  const Piece whole{pairs, false};
  Statistics statistics(std::span(&whole, 1), m_trial);
  if (fours == 0 || !statistics.readOther(936, reading)) {
    reading.malformed = 1;
    return reading;
  }
  reading.characters += fours;
  reading.score += kFourBytes * static_cast<double>(fours);
  mix(reading.fingerprint, fours);
  return reading;
}

}  // namespace detection
