// The names of what records are divided by.
#include <charconv>

#include "encconv/records.h"

namespace encconv {
namespace {

bool parseSize(std::string_view text, std::uint32_t lowest, std::uint32_t highest,
               std::uint32_t& size) {
  std::uint32_t value = 0;
  const char* const end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc() || rest != end || value < lowest || value > highest) return false;
  size = value;
  return true;
}

}  // namespace

std::optional<RecordFormat> parse_record_format(std::string_view text) {
  constexpr std::string_view kFixed = "fixed:", kBlocks = "bdw:";
  constexpr std::uint32_t kLeastBlock = 9;  // both descriptor words, and a byte
  RecordFormat format;
  if (text.starts_with(kFixed)) {
    if (parseSize(text.substr(kFixed.size()), 1, max_fixed_length, format.length)) return format;
  } else if (text == "rdw") {
    format.form = RecordForm::rdw;
    return format;
  } else if (text == "bdw") {
    format.form = RecordForm::bdw;
    return format;
  } else if (text.starts_with(kBlocks)) {
    format.form = RecordForm::bdw;
    if (parseSize(text.substr(kBlocks.size()), kLeastBlock, max_block_size, format.block_size)) {
      return format;
    }
  }
  return std::nullopt;
}

}  // namespace encconv
