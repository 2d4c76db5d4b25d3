// Where a file of records can be cut.
#include "encconv/records.h"

namespace encconv {
namespace {

constexpr std::size_t kWord = 4;  // bytes of a descriptor word

std::size_t number(std::string_view bytes, std::size_t at, std::size_t count) {
  std::size_t value = 0;
  for (; count != 0; --count) value = value << 8 | static_cast<unsigned char>(bytes[at++]);
  return value;
}

// Whether a record begins with the segment at a place, and does not go on with it.
bool isFirstSegment(std::string_view bytes, std::size_t at) {
  constexpr std::size_t kOfOthersBefore = 2;  // the middle segment and the last one
  return (number(bytes, at + 2, 1) & kOfOthersBefore) == 0;
}

}  // namespace

std::optional<std::uint64_t> find_record_cut(std::string_view bytes, const RecordFormat& format,
                                             std::uint64_t offset, const CutOptions& options) {
  if (format.form == RecordForm::fixed) {
    const std::uint64_t behind = (options.position + offset) % format.length;
    return behind == 0 ? offset : offset + format.length - behind;
  }
  if (options.position != 0 && !options.at_cut) return std::nullopt;
  const bool isInBlocks = format.form == RecordForm::bdw;
  const std::size_t words = isInBlocks ? 2 * kWord : kWord;
  std::size_t at = 0;
  while (bytes.size() - at >= words) {
    const bool isExtended = isInBlocks && (number(bytes, at, 1) & 0x80) != 0;
    const std::size_t length =
        isExtended ? number(bytes, at, kWord) & 0x7FFFFFFF : number(bytes, at, 2);
    if (length < kWord || (!isInBlocks && length > 0x7FFF)) return std::nullopt;
    const bool isBeginning = isFirstSegment(bytes, isInBlocks ? at + kWord : at);
    if (at >= offset && isBeginning && length >= words) return at;
    if (length > bytes.size() - at) return std::nullopt;
    at += length;
  }
  return std::nullopt;
}

}  // namespace encconv
