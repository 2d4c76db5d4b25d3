// What the fuzz targets share.
#ifndef FUZZ_FUZZ_SUPPORT_H_
#define FUZZ_FUZZ_SUPPORT_H_

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <span>
#include <string>
#include <string_view>

#include "support/data_buffer.h"

// A property that must hold for any input; the process ends where it does not.
inline void check(bool holds, const char* property) {
  if (holds) return;
  std::fprintf(stderr, "does not hold: %s\n", property);
  std::abort();
}

// The fuzzer's bytes: settings are taken from the front, the rest is the text. Missing settings
// are 0.
class FuzzInput {
 public:
  FuzzInput(const std::uint8_t* data, std::size_t size) : m_left(data, size) {}

  unsigned int byte() {
    if (m_left.empty()) return 0;
    const unsigned int value = m_left[0];
    m_left = m_left.subspan(1);
    return value;
  }
  // At most count bytes.
  std::span<const std::uint8_t> bytes(std::size_t count) {
    const auto taken = m_left.first(std::min(count, m_left.size()));
    m_left = m_left.subspan(taken.size());
    return taken;
  }
  template <class Value, std::size_t N>
  Value choice(const Value (&values)[N]) {
    return values[byte() % N];
  }
  std::span<const std::uint8_t> rest() { return bytes(m_left.size()); }

 private:
  std::span<const std::uint8_t> m_left;
};

// Every code page that is converted, and some numbers that are none. Only append: the seeds of the
// corpus name them by index.
inline constexpr int kFuzzCodePages[] = {
    1200,  1201,  12000, 12001, 65000, 65001, 65005, 65006, 55000, 50220, 50221, 50222,
    50225, 932,   936,   949,   950,   1361,  10001, 51932, 51936, 51949, 52936, 20127,
    10004, 1252,  1256,  1258,  28596, 28591, 37,    500,   1047,  1140,  437,   862,
    864,   720,   874,   20290, 20866, 28600, 28601, 28602, 0,     5,     -1,    99,
    100,   20936, 1250,  1251,  1253,  1254,  1255,  1257,  28592, 28597, 38598, 708,
    850,   855,   10000, 10005, 10021, 20106, 20261, 20420, 20838, 21025};

inline unsigned int sizeOf(std::span<const std::uint8_t> bytes) {
  return static_cast<unsigned int>(bytes.size());
}

inline std::string_view viewOf(const DataBuffer& buffer) {
  return {reinterpret_cast<const char*>(buffer.getData2()), buffer.getSize()};
}
inline std::string textOf(std::span<const std::uint8_t> bytes) {
  return {bytes.begin(), bytes.end()};
}

#endif  // FUZZ_FUZZ_SUPPORT_H_
