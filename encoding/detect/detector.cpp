#include "encoding/detect/detector.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "encoding/code_page_list.h"
#include "encoding/detect/binary_files.h"
#include "encoding/detect/declarations.h"
#include "encoding/detect/ebcdic_text.h"
#include "encoding/detect/sample.h"
#include "encoding/detect/seven_bit_text.h"
#include "encoding/detect/statistics.h"
#include "encoding/detect/trial.h"
#include "encoding/detect/uchardet_judge.h"
#include "encoding/detect/unicode_forms.h"

namespace detection {
namespace {

// How well letters must fit a language for their encoding to be more than a doubtful guess, and how
// well for it to be one at all. Text comes to -4 and more, of thousands of ideographs to -7; random
// bytes come to -7.5.
bool fitsSomehow(const Reading& reading) { return reading.fit > -7.5 || reading.isOfPairs; }
bool fitsWell(const Reading& reading) { return reading.fit > (reading.isOfPairs ? -8.8 : -6); }

class Detector {
 public:
  Detector(Bytes text, bool isWhole) : m_sample(text, isWhole) {}

  Finding find() {
    if (m_sample.size == 0) {
      return ending(m_sample.isHeadCut ? Kind::kUnknown : Kind::kEmpty, "empty");
    }
    if (const int page = pageOfMark(m_sample, m_trial); page != 0) {
      add(page, 1, Evidence::kMark, "byte order mark");
      return text();
    }
    const std::string_view format = binaryFormat(m_sample.head);
    if (!format.empty()) return ending(Kind::kBinary, "begins as " + std::string(format));
    bool isByZeros = false;
    if (const int page = pageOfWideForm(m_sample, m_trial, isByZeros); page != 0) {
      if (isByZeros) {
        add(page, 0.95, Evidence::kStructure, "its NUL bytes stand where they do in this form");
        return text();
      }
      // Bytes that are UTF-16 by their characters alone are seldom UTF-8 as well.
      if (lookForUtf8(m_sample).malformed != 0) {
        add(page, 0.8, Evidence::kStructure, "letters of few scripts, with their punctuation");
        return text();
      }
    }
    if (m_sample.counts[0] != 0) return ending(Kind::kBinary, "NUL bytes");
    if (isEbcdic()) return text();
    if (hasTooManyControls(m_sample)) return ending(Kind::kBinary, "many control characters");
    m_declaration = findDeclaration(m_sample.head, !m_sample.isHeadCut);
    return findByBytes();
  }

 private:
  // Of encodings that have ASCII in them.
  Finding findByBytes() {
    const Utf8Look utf8 = lookForUtf8(m_sample);
    if (utf8.malformed == 0 && utf8.sequences == 0) return findInAscii();
    if (utf8.malformed == 0) {
      const bool isDeclared = streamCodePage(m_declaration.name) == 65001;
      add(65001, utf8.sequences > 2 ? 0.99 : 0.9,
          isDeclared ? Evidence::kDeclaration : Evidence::kStructure,
          isDeclared ? describeDeclaration() : "valid UTF-8 with characters beyond ASCII");
      return text();
    }
    judgeByLetters();
    // A stray byte or two in text of seven bits.
    std::uint64_t high = 0;
    for (unsigned int byte = 0x80; byte < 0x100; ++byte) high += m_sample.counts[byte];
    if (high * 100 < m_sample.size) {
      const SevenBitLook look = lookForSevenBitText(m_sample, m_trial);
      if (look.mayConvert) {
        insertFirst(streamCodePage(look.name), look.name, 0.45, Evidence::kStructure,
                    describe(look));
      }
    }
    if (utf8.sequences > utf8.malformed * 10) {
      insertFirst(65001, "UTF-8", 0.45, Evidence::kStructure,
                  "UTF-8 but for " + count(utf8.malformed));
    }
    return text();
  }

  Finding findInAscii() {
    const SevenBitLook look = lookForSevenBitText(m_sample, m_trial);
    if (!look.name.empty()) {
      const int page = streamCodePage(look.name);
      const bool isRead = look.mayConvert || page == 0;
      const double whenWhole = look.name == "UTF-7" ? 0.8 : 0.95;
      addNamed(page, look.name,
               !isRead               ? 0.3
               : look.malformed != 0 ? 0.6
                                     : whenWhole,
               Evidence::kStructure, describe(look));
      return text();
    }
    m_finding.kind = Kind::kAscii;
    m_finding.reason = m_sample.isEverything ? "only ASCII" : "only ASCII in what was looked at";
    add(20127, 1, Evidence::kStructure, m_finding.reason);
    // What follows may be in the encoding that the text declares.
    const int declared = streamCodePage(m_declaration.name);
    if (!m_sample.isEverything && declared != 0 && declared != 20127) {
      add(declared, 0.9, Evidence::kDeclaration, describeDeclaration());
    }
    return std::move(m_finding);
  }

  bool isEbcdic() {
    const EbcdicLook look = lookForEbcdic(m_sample);
    if (look == EbcdicLook::kNone) return false;
    const std::vector<Piece> pieces = m_sample.forStatistics();
    Statistics statistics(pieces, m_trial);
    const std::vector<Reading> ranked = statistics.rank(judgedEbcdic(), {}, 0);
    if (ranked.empty()) return false;
    if (look == EbcdicLook::kPossible) {
      // It must be much likelier text than what the bytes are in any other encoding.
      const auto size = static_cast<double>(m_sample.size);
      const std::vector<Reading> others = statistics.rank(judgedEncodings(), {}, 0);
      if (ranked[0].malformed != 0 || ranked[0].score < -5.5 * size ||
          (!others.empty() && others[0].score + 0.5 * size > ranked[0].score)) {
        return false;
      }
    }
    // Pages that read the text alike count as one; else the national page is left open.
    const bool isOpen = ranked.size() > 1 && ranked[0].score - ranked[1].score < 20;
    for (const Reading& reading : ranked) {
      const bool isFirst = m_finding.candidates.empty();
      addNamed(reading.codePage, reading.name, isFirst ? (isOpen ? 0.45 : 0.8) : 0.3,
               Evidence::kStatistics,
               isOpen ? "letters of EBCDIC; which national page, the text leaves open"
                      : "letters of EBCDIC");
      if (!isOpen) break;
    }
    return true;
  }

  void judgeByLetters() {
    const std::vector<Piece> pieces = m_sample.forStatistics();
    Statistics statistics(pieces, m_trial);
    const std::string judged = askUchardet(pieces);
    // What is called GB18030 there is nearly always its older part.
    const EncodingRow* const favourite = findEncoding(judged == "GB18030" ? "GBK" : judged);
    std::vector<std::string_view> names(judgedEncodings().begin(), judgedEncodings().end());
    const EncodingRow* const declared = findEncoding(m_declaration.name);
    for (const EncodingRow* const row : {favourite, declared}) {
      if (row != nullptr && std::ranges::find(names, row->name) == names.end()) {
        names.emplace_back(row->name);
      }
    }
    const double favour = 2 + std::min(0.2 * static_cast<double>(statistics.beyondAscii()), 20.0);
    std::vector<Reading> ranked =
        statistics.rank(names, favourite == nullptr ? "" : favourite->name, favour);
    const Reading gb18030 = statistics.readGb18030();
    if (gb18030.malformed == 0) insertByScore(ranked, gb18030);
    addReadings(ranked, statistics, favourite);
    if (declared != nullptr) preferDeclared(*declared, statistics);
  }

  static void insertByScore(std::vector<Reading>& ranked, const Reading& reading) {
    const auto place = std::ranges::find_if(
        ranked, [&](const Reading& other) { return other.score < reading.score; });
    ranked.insert(place, reading);
  }

  void addReadings(const std::vector<Reading>& ranked, const Statistics& statistics,
                   const EncodingRow* favourite) {
    if (ranked.empty() || !fitsSomehow(ranked[0])) return;
    const double lead = ranked.size() == 1 ? 1e3 : ranked[0].score - ranked[1].score;
    double confidence = confidenceOf(lead, statistics.beyondAscii());
    const bool isAgreed = favourite != nullptr && ranked[0].name == favourite->name;
    if (isAgreed) confidence += 0.08;
    if (ranked[0].malformed != 0 || !fitsWell(ranked[0])) confidence = std::min(confidence, 0.4);
    for (std::size_t i = 0; i < std::min(ranked.size(), kMaxCandidates); ++i) {
      const Reading& reading = ranked[i];
      if (i != 0 && ranked[0].score - reading.score > 200) break;
      const double share =
          i == 0 ? confidence : std::min(confidence, 1 - confidence) / static_cast<double>(i + 1);
      addNamed(reading.codePage, reading.name, share, Evidence::kStatistics,
               "the frequencies of its letters, as in " + std::string(reading.language) +
                   (reading.malformed == 0 ? "" : ", but for " + count(reading.malformed)));
    }
  }

  // A declaration decides, unless the text is malformed so, or hardly any language.
  void preferDeclared(const EncodingRow& declared, Statistics& statistics) {
    const std::string_view first =
        m_finding.candidates.empty() ? declared.name : m_finding.candidates[0].name;
    const std::string_view names[] = {declared.name, first};
    const std::vector<Reading> readings = statistics.read(names);
    if (readings.empty() || readings[0].codePage != declared.number || readings[0].malformed != 0) {
      return;
    }
    const double behind = readings.size() > 1 ? readings[1].score - readings[0].score : 0;
    const bool isBelievable = behind < static_cast<double>(statistics.beyondAscii());
    if (isBelievable) {
      // Another name for the same text is none.
      if (readings.size() > 1 && readings[0].fingerprint == readings[1].fingerprint) {
        std::erase_if(m_finding.candidates, [&](const Candidate& c) { return c.name == first; });
      }
      insertFirst(declared.number, declared.name, 0.95, Evidence::kDeclaration,
                  describeDeclaration());
    } else if (!m_finding.candidates.empty()) {
      m_finding.candidates[0].reason += "; but " + describeDeclaration();
      m_finding.candidates[0].confidence = std::min(m_finding.candidates[0].confidence, 0.6);
    }
  }

  static std::string describe(const SevenBitLook& look) {
    return std::string(look.reason) +
           (look.malformed == 0 ? "" : ", but for " + count(look.malformed));
  }
  std::string describeDeclaration() const {
    return "declared in its " + std::string(m_declaration.kind) + " as " +
           std::string(m_declaration.name);
  }

  static std::string count(std::uint64_t places) {
    return std::to_string(places) + (places == 1 ? " place" : " places");
  }

  void add(int page, double confidence, Evidence evidence, std::string reason) {
    addNamed(page, findEncodingRow(page)->name, confidence, evidence, std::move(reason));
  }
  void addNamed(int page, std::string_view name, double confidence, Evidence evidence,
                std::string reason) {
    if (m_finding.candidates.size() == kMaxCandidates) return;
    m_finding.candidates.push_back({page, name, confidence, evidence, std::move(reason)});
  }
  // Before the others, which become less likely.
  void insertFirst(int page, std::string_view name, double confidence, Evidence evidence,
                   std::string reason) {
    std::erase_if(m_finding.candidates, [&](const Candidate& c) { return c.name == name; });
    for (Candidate& other : m_finding.candidates) {
      other.confidence = std::min({other.confidence, confidence, (1 - confidence) * 0.9});
    }
    m_finding.candidates.insert(m_finding.candidates.begin(),
                                {page, name, confidence, evidence, std::move(reason)});
    if (m_finding.candidates.size() > kMaxCandidates) m_finding.candidates.pop_back();
  }

  Finding text() {
    m_finding.kind = m_finding.candidates.empty() ? Kind::kUnknown : Kind::kText;
    if (m_finding.candidates.empty()) m_finding.reason = "the bytes suggest nothing";
    return std::move(m_finding);
  }
  static Finding ending(Kind kind, std::string reason) {
    Finding finding;
    finding.kind = kind;
    finding.reason = std::move(reason);
    return finding;
  }

  Sample m_sample;
  Trial m_trial;
  Declaration m_declaration;
  Finding m_finding;
};

}  // namespace

Finding detect(std::span<const unsigned char> bytes, bool isWhole) {
  return Detector(bytes, isWhole).find();
}

std::string_view nameOf(Evidence evidence) {
  static constexpr std::string_view kNames[] = {"mark", "declaration", "structure", "statistics"};
  return kNames[static_cast<std::size_t>(evidence)];
}

std::string_view nameOf(Kind kind) {
  static constexpr std::string_view kNames[] = {"empty", "ascii", "text", "binary", "unknown"};
  return kNames[static_cast<std::size_t>(kind)];
}

}  // namespace detection
