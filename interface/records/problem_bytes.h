// What a problem shows of the bytes that it is about.
#ifndef INTERFACE_RECORDS_PROBLEM_BYTES_H_
#define INTERFACE_RECORDS_PROBLEM_BYTES_H_

#include <cstddef>
#include <string>
#include <string_view>

namespace encconv {

inline constexpr std::size_t kShownBytes = 16;

inline std::string shownBytes(std::string_view bytes) {
  return std::string(bytes.substr(0, kShownBytes));
}

}  // namespace encconv

#endif  // INTERFACE_RECORDS_PROBLEM_BYTES_H_
