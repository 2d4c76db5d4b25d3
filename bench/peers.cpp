// The converters that a program would use otherwise.
#include <iconv.h>
#include <unicode/ucnv.h>
#include <unicode/ustring.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>

#include "contestants.h"

#ifdef ENCCONV_BENCH_HAS_CRATES
struct RustEncoding;
extern "C" {
const RustEncoding* encoding_rs_find(const char* label, std::size_t length);
std::size_t encoding_rs_convert(const RustEncoding* from, const RustEncoding* to,
                                const char* source, std::size_t length, char* target,
                                std::size_t capacity);
std::size_t simdutf_convert_pages(int from, int to, const char* source, std::size_t length,
                                  char* target);
}
#endif

namespace {

// A peer's output, as big as a text may need from the start. The conversion that is compared,
// before anything is timed, touches it.
class Buffer {
 public:
  explicit Buffer(const Task& task)
      : m_capacity(task.longest * 4 + 64),
        m_bytes(std::make_unique_for_overwrite<char[]>(m_capacity)) {}
  std::size_t capacity() const { return m_capacity; }
  char* begin() const { return m_bytes.get(); }
  char* end() const { return begin() + m_capacity; }
  void copyTo(std::string* copy, std::size_t size) const {
    if (copy != nullptr) copy->append(begin(), size);
  }

 private:
  std::size_t m_capacity;
  std::unique_ptr<char[]> m_bytes;
};

// Whatever is made for one text: construct and convert each time.
template <typename Peer>
Convert anew(const Task& task) {
  const auto buffer = std::make_shared<Buffer>(task);
  if (!Peer(task, buffer).isOpen()) return {};
  return [task, buffer](std::string_view input, std::string* copy) {
    return Peer(task, buffer).convert(input, copy);
  };
}
template <typename Peer>
Convert kept(const Task& task) {
  const auto peer = std::make_shared<Peer>(task, std::make_shared<Buffer>(task));
  if (!peer->isOpen()) return {};
  return [peer](std::string_view input, std::string* copy) { return peer->convert(input, copy); };
}

// ---- iconv(3). ----

class Iconv {
 public:
  Iconv(const Task& task, std::shared_ptr<Buffer> output)
      : m_output(std::move(output)), m_drops(task.treatment == "drop") {
    if (task.from.iconv.empty() || task.to.iconv.empty()) return;
    m_converter =
        iconv_open((task.to.iconv + (m_drops ? "//IGNORE" : "")).c_str(), task.from.iconv.c_str());
  }
  Iconv(const Iconv&) = delete;
  Iconv& operator=(const Iconv&) = delete;
  ~Iconv() {
    if (isOpen()) iconv_close(m_converter);
  }
  bool isOpen() const { return m_converter != kClosed; }
  bool convert(std::string_view input, std::string* copy) {
    char* source = const_cast<char*>(input.data());
    std::size_t sourceLeft = input.size();
    char* target = m_output->begin();
    std::size_t targetLeft = m_output->capacity();
    bool ok = true;
    // When it ignores, each call goes on to the end of some inner block and then reports EILSEQ.
    for (std::size_t before = sourceLeft + 1; sourceLeft != 0 && sourceLeft < before;) {
      before = sourceLeft;
      ok = iconv(m_converter, &source, &sourceLeft, &target, &targetLeft) !=
           static_cast<std::size_t>(-1);
      if (!ok && !(m_drops && errno == EILSEQ)) break;
    }
    // Writes the final shift and makes the converter ready for the next text.
    iconv(m_converter, nullptr, nullptr, &target, &targetLeft);
    m_output->copyTo(copy, m_output->capacity() - targetLeft);
    return ok || (m_drops && sourceLeft == 0);
  }

 private:
  // NOLINTNEXTLINE(performance-no-int-to-ptr): the value that iconv_open() defines.
  inline static const iconv_t kClosed = reinterpret_cast<iconv_t>(-1);

  std::shared_ptr<Buffer> m_output;
  bool m_drops;
  iconv_t m_converter = kClosed;
};

Convert openIconvTool(const Task& task) {
  if (task.from.iconv.empty() || task.to.iconv.empty()) return {};
  return openProcess({"iconv", "-f", task.from.iconv, "-t", task.to.iconv, task.file});
}

// ---- ICU. ----

UConverter* openIcu(const std::string& name) {
  UErrorCode error = U_ZERO_ERROR;
  UConverter* converter = name.empty() ? nullptr : ucnv_open(name.c_str(), &error);
  return U_SUCCESS(error) ? converter : nullptr;
}

// ICU's own loop from converter to converter. What it does about bad text is said by callbacks;
// those that write a substitute are there from the start.
class Icu {
 public:
  Icu(const Task& task, std::shared_ptr<Buffer> output)
      : m_output(std::move(output)),
        m_source(openIcu(task.from.icu)),
        m_sink(openIcu(task.to.icu)) {
    if (task.treatment != "drop" || !isOpen()) return;
    ucnv_setToUCallBack(m_source, UCNV_TO_U_CALLBACK_SKIP, nullptr, nullptr, nullptr, &m_error);
    ucnv_setFromUCallBack(m_sink, UCNV_FROM_U_CALLBACK_SKIP, nullptr, nullptr, nullptr, &m_error);
  }
  Icu(const Icu&) = delete;
  Icu& operator=(const Icu&) = delete;
  ~Icu() {
    ucnv_close(m_source);
    ucnv_close(m_sink);
  }
  bool isOpen() const { return m_source != nullptr && m_sink != nullptr; }
  bool convert(std::string_view input, std::string* copy) {
    m_error = U_ZERO_ERROR;
    m_next = m_output->begin();
    const char* source = input.data();
    UChar* pivotSource = m_pivot;
    UChar* pivotTarget = m_pivot;
    ucnv_convertEx(m_sink, m_source, &m_next, m_output->end(), &source, source + input.size(),
                   m_pivot, &pivotSource, &pivotTarget, std::end(m_pivot), true, true, &m_error);
    return finish(copy);
  }

 protected:
  bool finish(std::string* copy) {
    m_output->copyTo(copy, static_cast<std::size_t>(m_next - m_output->begin()));
    return U_SUCCESS(m_error);
  }

  std::shared_ptr<Buffer> m_output;
  UConverter* m_source;
  UConverter* m_sink;
  UChar m_pivot[8192];
  UErrorCode m_error = U_ZERO_ERROR;
  char* m_next = nullptr;  // the end of the output so far
};

// ICU by way of UTF-16, with its string functions for UTF-8. UTF-16 on either side is the pivot
// itself; otherwise decoder and encoder take turns over blocks that stay in the first-level cache.
class IcuByPivot : public Icu {
 public:
  IcuByPivot(const Task& task, std::shared_ptr<Buffer> output)
      : Icu(task, std::move(output)), m_from(task.from.codePage), m_to(task.to.codePage) {}
  bool convert(std::string_view input, std::string* copy) {
    m_error = U_ZERO_ERROR;
    m_next = m_output->begin();
    const char* source = input.data();
    const char* end = source + input.size();
    ucnv_resetToUnicode(m_source);
    ucnv_resetFromUnicode(m_sink);
    if (m_to == 1200) {
      UChar* units = reinterpret_cast<UChar*>(m_next);
      m_next += 2 * decode(source, end, units, m_output->capacity() / sizeof(UChar));
    } else if (m_from == 1200) {
      encode(reinterpret_cast<const UChar*>(source), input.size() / sizeof(UChar), true);
    } else {
      convertBlocks(source, end);
    }
    return finish(copy);
  }

 private:
  void convertBlocks(const char* source, const char* end) {
    std::size_t waiting = 0;  // the first half of a pair waits for the second
    for (bool isLast = false; !isLast && U_SUCCESS(m_error);) {
      std::size_t count =
          waiting + decode(source, end, m_pivot + waiting, std::size(m_pivot) - waiting);
      isLast = source == end && m_error != U_BUFFER_OVERFLOW_ERROR;
      if (m_error == U_BUFFER_OVERFLOW_ERROR) m_error = U_ZERO_ERROR;
      waiting = !isLast && count != 0 && U16_IS_LEAD(m_pivot[count - 1]) ? 1 : 0;
      count -= waiting;
      encode(m_pivot, count, isLast);
      if (waiting != 0) m_pivot[0] = m_pivot[count];
    }
  }
  std::size_t decode(const char*& source, const char* end, UChar* target, std::size_t capacity) {
    if (m_from != 65001) {
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
    if (m_to != 65001) {
      ucnv_fromUnicode(m_sink, &m_next, m_output->end(), &units, units + count, nullptr, isLast,
                       &m_error);
      return;
    }
    std::int32_t bytes = 0;
    u_strToUTF8(m_next, static_cast<std::int32_t>(m_output->end() - m_next), &bytes, units,
                static_cast<std::int32_t>(count), &m_error);
    m_next += bytes;
  }

  int m_from;
  int m_to;
};

Convert openIcuTool(const Task& task) {
  if (task.from.icu.empty() || task.to.icu.empty()) return {};
  return openProcess({"uconv", "-f", task.from.icu, "-t", task.to.icu, task.file});
}

#ifdef ENCCONV_BENCH_HAS_CRATES
// ---- The crates. Their converters hold no memory, so that every call makes new ones. ----

Convert openEncodingRs(const Task& task) {
  const auto isUnicode = [](const Encoding& e) {
    return e.codePage == 65001 || e.codePage == 1200;
  };
  const auto find = [](const std::string& name) {
    return encoding_rs_find(name.data(), name.size());
  };
  const RustEncoding* from = find(task.from.encodingRs);
  const RustEncoding* to = find(task.to.encodingRs);
  if (from == nullptr || to == nullptr || !(isUnicode(task.from) || isUnicode(task.to))) return {};
  return [from, to, output = std::make_shared<Buffer>(task)](std::string_view input,
                                                             std::string* copy) {
    const std::size_t size = encoding_rs_convert(from, to, input.data(), input.size(),
                                                 output->begin(), output->capacity());
    if (size == static_cast<std::size_t>(-1)) return false;
    output->copyTo(copy, size);
    return true;
  };
}

Convert openSimd(const Task& task) {
  const int from = task.from.codePage;
  const int to = task.to.codePage;
  const auto output = std::make_shared<Buffer>(task);
  const auto convert = [=](std::string_view input, std::string* copy) {
    const std::size_t size =
        simdutf_convert_pages(from, to, input.data(), input.size(), output->begin());
    if (size == static_cast<std::size_t>(-1)) return false;
    output->copyTo(copy, size);
    return true;
  };
  return convert({}, nullptr) ? Convert(convert) : Convert();
}
#endif

// The limit that memory sets.
Convert openMemcpy(const Task& task) {
  return [output = std::make_shared<Buffer>(task)](std::string_view input, std::string*) {
    std::memcpy(output->begin(), input.data(), input.size());
    return true;
  };
}

constexpr Entry kEntries[] = {
    {"iconv", kSpeed | kShort | kDrop | kFirst, kept<Iconv>},
    {"iconv anew", kShort, anew<Iconv>},
    {"icu", kSpeed | kShort | kDrop | kFirst, kept<Icu>},
    {"icu", kSpeed | kShort, kept<IcuByPivot>},
    {"icu anew", kShort, anew<Icu>},
    {"iconv -c", kBad, kept<Iconv>, "drop"},
    {"icu skip", kBad, kept<Icu>, "drop"},
    {"icu substitute", kBad, kept<Icu>, "substitute"},
#ifdef ENCCONV_BENCH_HAS_CRATES
    {"encoding_rs", kSpeed | kShort, openEncodingRs},
    {"encoding_rs", kBad, openEncodingRs, "substitute"},
    {"SIMD", kSpeed | kShort, openSimd},
#endif
    {"iconv(1)", kFile | kStart, openIconvTool},
    {"uconv", kFile | kStart, openIcuTool},
    {"memcpy", kSpeed, openMemcpy, kOwnOutput},
};

}  // namespace

std::span<const Entry> peerEntries() { return kEntries; }
