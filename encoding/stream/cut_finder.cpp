#include "encoding/stream/cut_finder.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <string_view>

#include "encoding/accent_pairs.h"
#include "encoding/codecs/codec.h"
#include "encoding/codecs/mac_arabic.h"
#include "encoding/plan.h"
#include "encoding/stream/stream_converter.h"
#include "encoding/stream/stream_place.h"
#include "support/utf.h"

namespace {

constexpr int kUtf16 = 1200;
// More bytes than any character has, with all escapes in front of it.
constexpr std::size_t kCharacter = 32;
// How much in front of the offset is looked at.
constexpr std::size_t kContext = 1024 * 1024;

// Characters that some encoding has, writes or composes together with the character before: marks,
// the letters of Indian scripts, vowels and finals of Hangul, signs of variants, surrogates of
// which the first may stand before. And the byte order mark, which the beginning of a text loses.
constexpr bool mayContinue(unsigned int unit) {
  constexpr struct {
    char16_t first, last;
  } kRanges[] = {
      {0x02E5, 0x02E9}, {0x0300, 0x036F}, {0x0483, 0x0489}, {0x0591, 0x05C7}, {0x0610, 0x061A},
      {0x064B, 0x0670}, {0x06D6, 0x06ED}, {0x0900, 0x0DFF}, {0x102E, 0x1039}, {0x1160, 0x11FF},
      {0x1AB0, 0x1AFF}, {0x1B34, 0x1B35}, {0x1DC0, 0x1DFF}, {0x20D0, 0x20FF}, {0x3099, 0x309C},
      {0xD7B0, 0xD7FF}, {0xDC00, 0xDFFF}, {0xF860, 0xF87F}, {0xFE00, 0xFE0F}, {0xFE20, 0xFE2F},
      {0xFEFF, 0xFEFF}, {0xFF9E, 0xFF9F},
  };
  return unit >= 0x2E5 && std::ranges::any_of(kRanges, [&](const auto& range) {
           return unit >= range.first && unit <= range.last;
         });
}

std::size_t findIn(const EncodingRow& row, const CutWindow& window) {
  switch (row.form) {
    case EncodingForm::kUtf8:
      return cutUtf8(nullptr, window);
    case EncodingForm::kUtf16:
      return cutAligned(window, 2);
    case EncodingForm::kUtf32:
      return cutAligned(window, 4);
    case EncodingForm::kSingleByte:
      return cutAnywhere(window);
    case EncodingForm::kCodec: {
      const Codec& codec = *row.codec;
      return codec.cut == nullptr ? CutWindow::kNone : codec.cut(codec.read.parameters(), window);
    }
    case EncodingForm::kDoubleByte:
      break;
  }
  return CutWindow::kNone;  // has a table
}

// The bytes of a table of one and two bytes.
CutBytes bytesOf(const fast::DoubleByteDecoder& table) {
  CutBytes bytes;
  bytes.addRange(0x00, 0x7F, 1, 0);
  for (unsigned int first = 0x80; first < 256; ++first) {
    if (!table.isLead(first)) {
      if (table.singles[first] != 0) bytes.add(first, 1, 0);
      continue;
    }
    for (unsigned int second = 0; second < 256; ++second) {
      if (table.units[first + second * 256] == 0) continue;
      bytes.add(first, 2, 0);
      bytes.add(second, 2, 1);
    }
  }
  // Characters that the code page lacks are one malformed piece each.
  if (table.threeByteShift != 0) {
    bytes.add(table.threeByteShift, 3, 0);
    for (unsigned int i = 1; i < 3; ++i) bytes.addRange(0xA1, 0xFE, 3, i);
  }
  return bytes;
}

const unsigned char* bytesOf(std::string_view text) {
  return reinterpret_cast<const unsigned char*>(text.data());
}

}  // namespace

// What is asked of every place that the rule of the encoding allows.
class CutFinder::Filter final : public CutWindow::Filter {
 public:
  explicit Filter(const EncodingRow* row) : m_row(row) {
    if (row == nullptr) return;
    m_settings.from = row->number;
    m_settings.to = kUtf16;
    const fast::Plan* const plan = fast::openPlan(row->number, kUtf16, fast::Reader::kStream);
    const fast::Decoder table = plan == nullptr ? fast::Decoder() : plan->decoding.table;
    const bool hasAscii = table.singleByte != nullptr && table.singleByte->isAscii;
    const bool hasPairs = row->form == EncodingForm::kDoubleByte && table.doubleByte != nullptr;
    if (hasPairs) m_bytes.emplace(bytesOf(*table.doubleByte));
    m_isAscii = row->form == EncodingForm::kUtf8 || row->form == EncodingForm::kDoubleByte ||
                (row->form == EncodingForm::kSingleByte && hasAscii);
  }

  const EncodingRow* row() const { return m_row; }
  const std::optional<CutBytes>& bytes() const { return m_bytes; }
  void wantLines(bool areWanted) {
    m_isBehindLine = areWanted;
    if (areWanted && m_lineEnds.empty() && !m_row->hidesLineEnds) findLineEnds();
  }

  bool allows(const CutWindow& window, std::size_t place) override {
    if (m_isBehindLine && !isBehindLine(window, place)) return false;
    const unsigned char* const at = window.data + place;
    const std::size_t left = window.size - place;
    // Half of a pair of surrogates, in the variants of UTF-8; text it is in none.
    const bool isUtf8 = m_row->form == EncodingForm::kUtf8 ||
                        (m_row->codec != nullptr && m_row->codec->cut == cutUtf8);
    if (isUtf8 && left > 1 && at[0] == 0xED && at[1] >= 0xB0) return false;
    if (m_row->reordersMacArabic && isMacArabicRightToLeft(*at)) return false;
    if (fast::hasAccentPairs(*m_row)) {
      if (place == 0 || fast::AccentPairs::isAccent(at[-1])) return false;
    }
    return !continuesText(at, left);
  }

 private:
  // Whether the first character may belong to one before it, or cannot be seen.
  bool continuesText(const unsigned char* at, std::size_t left) {
    if (*at < 0x80 && m_isAscii) return false;
    StreamPlace inside;
    inside.hasBegun = true;
    m_text.clear();
    if (m_stream.begin(m_settings, inside) != StreamStatus::kGood) return true;
    const std::size_t seen = std::min(left, kCharacter);
    const StreamStatus status = m_stream.push(at, seen, m_text);
    const bool isStopped = status == StreamStatus::kStopped;
    if (m_text.getSize() < 2 && !isStopped) {
      if (left < kCharacter) return true;
      m_stream.finish(m_text);
    }
    const unsigned char* const unit = m_text.getData2();
    if (m_text.getSize() >= 2) return mayContinue(unit[0] | unit[1] * 256u);
    // What is malformed belongs to nothing, but for the second half of a pair in UTF-16.
    return m_row->form == EncodingForm::kUtf16 && left > 1 &&
           isLowSurrogate(m_row->bigEndian ? at[0] * 256u + at[1] : at[1] * 256u + at[0]);
  }

  void findLineEnds() {
    for (const std::string_view unit :
         {std::string_view("\n\0", 2), std::string_view("\x85\0", 2)}) {
      StreamSettings settings;
      settings.from = kUtf16;
      // What is only read is UTF-16, or has no places for cuts.
      settings.to = m_row->isWritten ? m_row->number : m_row->bigEndian ? 1201 : kUtf16;
      settings.dropMark = true;
      DataBuffer bytes;
      StreamConverter writer;
      if (writer.begin(settings) != StreamStatus::kGood) continue;
      if (writer.push(bytesOf(unit), unit.size(), bytes) != StreamStatus::kGood) continue;
      if (writer.finish(bytes) != StreamStatus::kGood || bytes.getSize() == 0) continue;
      m_lineEnds.emplace_back(reinterpret_cast<const char*>(bytes.getData2()), bytes.getSize());
    }
  }
  bool isBehindLine(const CutWindow& window, std::size_t place) const {
    const std::string_view before(reinterpret_cast<const char*>(window.data), place);
    return std::ranges::any_of(m_lineEnds,
                               [&](const std::string& end) { return before.ends_with(end); });
  }

  const EncodingRow* const m_row;   // null: cannot be read
  std::optional<CutBytes> m_bytes;  // of a table of one and two bytes
  StreamSettings m_settings;
  StreamConverter m_stream;
  DataBuffer m_text;
  bool m_isAscii = false;  // bytes below 80 are, by themselves
  bool m_isBehindLine = false;
  std::vector<std::string> m_lineEnds;
};

CutFinder::CutFinder(int codePage)
    : m_filter(std::make_unique<Filter>(isStreamCodePage(codePage) ? findEncodingRow(codePage)
                                                                   : nullptr)) {}
CutFinder::~CutFinder() = default;

std::size_t CutFinder::find(const unsigned char* data, std::size_t size, std::size_t offset,
                            const CutSettings& settings) {
  if (m_filter->row() == nullptr) return CutWindow::kNone;
  const bool isAtCut = settings.isAtCut || settings.position == 0;
  if (isAtCut && offset == 0) return 0;
  m_filter->wantLines(settings.isBehindLine);
  const std::size_t skipped = std::min(offset, size) - std::min({offset, size, kContext});
  const CutWindow window = {data + skipped,          size - skipped,
                            offset - skipped,        settings.position + skipped,
                            isAtCut && skipped == 0, m_filter.get()};
  const std::optional<CutBytes>& bytes = m_filter->bytes();
  const std::size_t place = bytes ? bytes->find(window) : findIn(*m_filter->row(), window);
  return place == CutWindow::kNone ? place : skipped + place;
}
