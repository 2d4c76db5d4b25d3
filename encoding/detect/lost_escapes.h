// Text of ISO-2022-JP that was read as ASCII, as old mail often was: its escape characters are
// gone, or stand there unread ("$B$3$s(B").
#ifndef ENCODING_DETECT_LOST_ESCAPES_H_
#define ENCODING_DETECT_LOST_ESCAPES_H_

#include <optional>
#include <string>
#include <string_view>

namespace detection {

// What the text was. What stands between its runs of pairs stays as it is, and so does what looks
// like such a run but is none. Nothing when there is no run. Throws std::bad_alloc only.
std::optional<std::u16string> readWithoutEscapes(std::u16string_view garbled);

}  // namespace detection

#endif  // ENCODING_DETECT_LOST_ESCAPES_H_
