#include "converters.h"

#include <iconv.h>
#include <unicode/ucnv.h>
#include <unicode/ustring.h>

#include <algorithm>
#include <optional>

#include "encoding/encoding_convert.h"

#ifdef ENCCONV_BENCH_HAS_ENCODING_RS
struct RustEncoding;
extern "C" const RustEncoding* peer_encoding(const char* label, std::size_t length);
extern "C" std::size_t peer_convert(const RustEncoding* from, const RustEncoding* to,
                                    const char* source, std::size_t length, char* target,
                                    std::size_t capacity);
#endif

namespace {

class Engine : public Converter {
 public:
  Engine(int from, int to, int errorAction) : m_from(from), m_to(to), m_errorAction(errorAction) {
    name = "encconv";
    open();
  }
  bool convert(std::string_view input) override {
    m_output.clear();
    return m_converter->EncConvert(m_from, m_to,
                                   reinterpret_cast<const unsigned char*>(input.data()),
                                   static_cast<unsigned int>(input.size()), m_output, m_log) &&
           (m_errorAction != 0 || !m_converter->m_foundErrors);
  }
  std::string_view output() const override {
    return {reinterpret_cast<const char*>(m_output.getData2()), m_output.getSize()};
  }
  void reopen() override { open(); }

 private:
  void open() {
    m_converter.emplace();
    if (m_errorAction == 0) return;
    m_converter->setErrorAction(m_errorAction);
    m_converter->setDefBytes(reinterpret_cast<const unsigned char*>("?"), 1);
  }

  int m_from;
  int m_to;
  int m_errorAction;
  std::optional<EncodingConvert> m_converter;
  DataBuffer m_output;
  LogBase m_log;
};

// A peer with its output buffer. The buffer is as big as the text may need from the start, and
// touched before anything is timed, like the engine's.
class Peer : public Converter {
 public:
  explicit Peer(std::size_t capacity)
      : m_buffer(std::make_unique_for_overwrite<char[]>(capacity)), m_capacity(capacity) {}
  std::string_view output() const override { return {m_buffer.get(), m_size}; }

 protected:
  char* begin() { return m_buffer.get(); }
  char* end() { return begin() + m_capacity; }

  std::unique_ptr<char[]> m_buffer;
  std::size_t m_capacity;
  std::size_t m_size = 0;
};

class Iconv : public Peer {
 public:
  Iconv(const Encoding& from, const Encoding& to, std::size_t capacity)
      : Peer(capacity), m_from(from), m_to(to) {
    name = "iconv";
    if (!from.iconv.empty() && !to.iconv.empty()) open();
  }
  ~Iconv() override {
    if (isOpen()) iconv_close(m_converter);
  }
  bool isOpen() const { return m_converter != kClosed; }
  bool convert(std::string_view input) override {
    char* source = const_cast<char*>(input.data());
    std::size_t sourceLeft = input.size();
    char* target = begin();
    std::size_t targetLeft = m_capacity;
    // The second call writes the final shift and makes the converter ready for the next text.
    const bool ok =
        iconv(m_converter, &source, &sourceLeft, &target, &targetLeft) != static_cast<size_t>(-1);
    iconv(m_converter, nullptr, nullptr, &target, &targetLeft);
    m_size = m_capacity - targetLeft;
    return ok;
  }
  void reopen() override {
    iconv_close(m_converter);
    open();
  }

 private:
  // NOLINTNEXTLINE(performance-no-int-to-ptr): the value that iconv_open() defines.
  inline static const iconv_t kClosed = reinterpret_cast<iconv_t>(-1);

  void open() { m_converter = iconv_open(m_to.iconv.c_str(), m_from.iconv.c_str()); }

  const Encoding& m_from;
  const Encoding& m_to;
  iconv_t m_converter = kClosed;
};

UConverter* openIcu(const std::string& name) {
  UErrorCode error = U_ZERO_ERROR;
  UConverter* converter = name.empty() ? nullptr : ucnv_open(name.c_str(), &error);
  return U_SUCCESS(error) ? converter : nullptr;
}

// ICU in one of two ways: its own loop from converter to converter; or by two legs, with its string
// functions for UTF-8. UTF-16 on either side is the pivot itself; otherwise the legs take turns
// over blocks that stay in the first-level cache.
class Icu : public Peer {
 public:
  Icu(const Encoding& from, const Encoding& to, std::size_t capacity, bool byLegs)
      : Peer(capacity), m_from(from), m_to(to), m_byLegs(byLegs) {
    name = byLegs ? "icu-legs" : "icu";
    open();
  }
  ~Icu() override { close(); }
  bool isOpen() const { return m_source != nullptr && m_sink != nullptr; }
  void reopen() override {
    close();
    open();
  }
  bool convert(std::string_view input) override {
    m_error = U_ZERO_ERROR;
    m_next = begin();
    const char* source = input.data();
    if (m_byLegs) {
      convertByLegs(source, source + input.size());
    } else {
      UChar* pivotSource = m_pivot;
      UChar* pivotTarget = m_pivot;
      ucnv_convertEx(m_sink, m_source, &m_next, end(), &source, source + input.size(), m_pivot,
                     &pivotSource, &pivotTarget, std::end(m_pivot), true, true, &m_error);
    }
    m_size = static_cast<std::size_t>(m_next - begin());
    return U_SUCCESS(m_error);
  }

 private:
  void open() {
    m_source = openIcu(m_from.icu);
    m_sink = openIcu(m_to.icu);
  }
  void close() {
    ucnv_close(m_source);
    ucnv_close(m_sink);
  }

  void convertByLegs(const char* source, const char* sourceEnd) {
    ucnv_resetToUnicode(m_source);
    ucnv_resetFromUnicode(m_sink);
    if (m_to.codePage == 1200) {
      UChar* units = reinterpret_cast<UChar*>(m_next);
      units += decode(source, sourceEnd, units, m_capacity / sizeof(UChar));
      m_next = reinterpret_cast<char*>(units);
      return;
    }
    if (m_from.codePage == 1200) {
      const auto size = static_cast<std::size_t>(sourceEnd - source);
      encode(reinterpret_cast<const UChar*>(source), size / sizeof(UChar), true);
      return;
    }
    std::size_t kept = 0;  // the first half of a pair waits for the second
    for (bool isLast = false; !isLast && U_SUCCESS(m_error);) {
      std::size_t count =
          kept + decode(source, sourceEnd, m_pivot + kept, std::size(m_pivot) - kept);
      isLast = source == sourceEnd && m_error != U_BUFFER_OVERFLOW_ERROR;
      if (m_error == U_BUFFER_OVERFLOW_ERROR) m_error = U_ZERO_ERROR;
      kept = !isLast && count != 0 && U16_IS_LEAD(m_pivot[count - 1]) ? 1 : 0;
      count -= kept;
      encode(m_pivot, count, isLast);
      if (kept != 0) m_pivot[0] = m_pivot[count];
    }
  }
  std::size_t decode(const char*& source, const char* end, UChar* target, std::size_t capacity) {
    if (m_from.codePage != 65001) {
      UChar* next = target;
      ucnv_toUnicode(m_source, &next, target + capacity, &source, end, nullptr, true, &m_error);
      return static_cast<std::size_t>(next - target);
    }
    std::ptrdiff_t count = std::min(end - source, static_cast<std::ptrdiff_t>(capacity));
    while (count < end - source && U8_IS_TRAIL(source[count])) --count;
    std::int32_t units = 0;
    u_strFromUTF8(target, static_cast<std::int32_t>(capacity), &units, source,
                  static_cast<std::int32_t>(count), &m_error);
    source += count;
    return static_cast<std::size_t>(units);
  }
  void encode(const UChar* units, std::size_t count, bool isLast) {
    if (m_to.codePage != 65001) {
      ucnv_fromUnicode(m_sink, &m_next, end(), &units, units + count, nullptr, isLast, &m_error);
      return;
    }
    std::int32_t bytes = 0;
    u_strToUTF8(m_next, static_cast<std::int32_t>(end() - m_next), &bytes, units,
                static_cast<std::int32_t>(count), &m_error);
    m_next += bytes;
  }

  const Encoding& m_from;
  const Encoding& m_to;
  bool m_byLegs;
  UConverter* m_source = nullptr;
  UConverter* m_sink = nullptr;
  UChar m_pivot[8192];
  UErrorCode m_error = U_ZERO_ERROR;
  char* m_next = nullptr;  // the end of the output so far
};

#ifdef ENCCONV_BENCH_HAS_ENCODING_RS
// Its converters hold no memory, so that every call makes new ones.
class EncodingRs : public Peer {
 public:
  EncodingRs(const Encoding& from, const Encoding& to, std::size_t capacity)
      : Peer(capacity),
        m_isUnicode(isUnicode(from) || isUnicode(to)),
        m_from(peer_encoding(from.encodingRs.data(), from.encodingRs.size())),
        m_to(peer_encoding(to.encodingRs.data(), to.encodingRs.size())) {
    name = "encoding_rs";
  }
  bool isOpen() const { return m_isUnicode && m_from != nullptr && m_to != nullptr; }
  bool convert(std::string_view input) override {
    const std::size_t size =
        peer_convert(m_from, m_to, input.data(), input.size(), begin(), m_capacity);
    m_size = size == static_cast<std::size_t>(-1) ? 0 : size;
    return size == m_size;
  }
  void reopen() override {}

 private:
  static bool isUnicode(const Encoding& e) { return e.codePage == 65001 || e.codePage == 1200; }

  bool m_isUnicode;  // it converts to and from UTF-8 and UTF-16 only
  const RustEncoding* m_from;
  const RustEncoding* m_to;
};
#endif

}  // namespace

std::unique_ptr<Converter> openEngine(const Encoding& from, const Encoding& to, int errorAction) {
  return std::make_unique<Engine>(from.codePage, to.codePage, errorAction);
}

std::vector<std::unique_ptr<Converter>> openConverters(const Encoding& from, const Encoding& to,
                                                       std::size_t capacity) {
  std::vector<std::unique_ptr<Converter>> all;
  const auto add = [&](auto peer) {
    if (peer->isOpen()) all.push_back(std::move(peer));
  };
  all.push_back(openEngine(from, to, 0));
  add(std::make_unique<Iconv>(from, to, capacity));
  add(std::make_unique<Icu>(from, to, capacity, false));
  add(std::make_unique<Icu>(from, to, capacity, true));
#ifdef ENCCONV_BENCH_HAS_ENCODING_RS
  add(std::make_unique<EncodingRs>(from, to, capacity));
#endif
  return all;
}
