#include "encoding/detect/lost_escapes.h"

#include <algorithm>
#include <bit>
#include <new>

#include "encoding/detect/undoer.h"
#include "encoding/stream/stream_converter.h"

namespace detection {
namespace {

constexpr int kIso2022Jp = 50220;
constexpr int kHostUtf16 = std::endian::native == std::endian::little ? 1200 : 1201;

// Units of a run: lines of mail are shorter, and no text is looked at again and again.
constexpr std::size_t kLongestRun = 1000;

// What is left of an escape character, or stands for it.
bool isEscape(char16_t unit) { return unit == 0x1B || unit == kLost || unit == u'\u241B'; }
bool isOfPair(char16_t unit) { return unit >= 0x21 && unit <= 0x7E; }

// A designation at a place of text, with its escape character or without: how long it is, or 0.
std::size_t designationAt(std::u16string_view text, std::size_t at, char16_t first,
                          std::u16string_view second) {
  const std::size_t begin = at;
  if (at < text.size() && isEscape(text[at])) ++at;
  const bool isFound = at + 1 < text.size() && text[at] == first &&
                       second.find(text[at + 1]) != std::u16string_view::npos;
  return isFound ? at + 2 - begin : 0;
}

class Reader {
 public:
  explicit Reader(std::u16string_view garbled) : m_text(garbled) {}

  std::optional<std::u16string> read() {
    std::size_t end = 0;
    for (std::size_t at = 0; at + 1 < m_text.size();) {
      const std::size_t designation = designationAt(m_text, at, u'$', u"@B");
      const std::size_t begin = at + designation;
      std::size_t last = begin;
      if (designation == 0 || !findEnd(last) || !readPairs(m_text.substr(begin, last - begin))) {
        ++at;
        continue;
      }
      m_read += m_text.substr(end, at - end);
      m_read += m_pairs;
      end = at = last + designationAt(m_text, last, u'(', u"BJ");
    }
    if (end == 0) return std::nullopt;
    m_read += m_text.substr(end);
    return std::move(m_read);
  }

 private:
  // Behind the pairs that begin at a place, if the designation of ASCII stands there.
  bool findEnd(std::size_t& at) const {
    const std::size_t begin = at;
    while (designationAt(m_text, at, u'(', u"BJ") == 0) {
      const bool isPair =
          at + 1 < m_text.size() && isOfPair(m_text[at]) && isOfPair(m_text[at + 1]);
      if (!isPair || at - begin > kLongestRun) return false;
      at += 2;
    }
    return at != begin;
  }

  // False when some pair is no character.
  bool readPairs(std::u16string_view pairs) {
    std::string bytes = "\x1B$B";
    for (const char16_t unit : pairs) bytes += static_cast<char>(unit);
    StreamSettings settings;
    settings.from = kIso2022Jp;
    settings.to = kHostUtf16;
    m_out.clear();
    StreamStatus status = m_stream.begin(settings);
    if (status == StreamStatus::kGood) {
      status =
          m_stream.push(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size(), m_out);
    }
    if (status == StreamStatus::kGood) status = m_stream.finish(m_out);
    if (status == StreamStatus::kStopped) return false;
    if (status != StreamStatus::kGood) throw std::bad_alloc();
    m_pairs.resize(m_out.getSize() / sizeof(char16_t));
    std::copy_n(m_out.getData2(), m_out.getSize(),
                reinterpret_cast<unsigned char*>(m_pairs.data()));
    return true;
  }

  std::u16string_view m_text;
  std::u16string m_read;
  std::u16string m_pairs;  // of the last run
  StreamConverter m_stream;
  DataBuffer m_out;
};

}  // namespace

std::optional<std::u16string> readWithoutEscapes(std::u16string_view garbled) {
  return Reader(garbled).read();
}

}  // namespace detection
