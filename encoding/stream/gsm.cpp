// The source and the target for GSM 03.38.
#include <algorithm>
#include <array>
#include <new>

#include "encoding/codecs/gsm_alphabet.h"
#include "encoding/special_code_pages.h"
#include "encoding/stream/source.h"
#include "encoding/stream/target_kinds.h"

namespace {

const GsmExtension* findExtension(unsigned char code) {
  const auto* end = std::end(kGsmExtensions);
  const auto* found = std::find_if(std::begin(kGsmExtensions), end,
                                   [&](const GsmExtension& e) { return e.code == code; });
  return found == end ? nullptr : found;
}

// A code behind the escape that no extension has stands for its default character, and the code of
// a further extension table for a space.
char16_t behindEscape(unsigned char code) {
  if (const GsmExtension* extension = findExtension(code)) return extension->character;
  return code == kGsmEscape ? u' ' : kGsmAlphabet[code];
}

class GsmSource final : public SteppingSource {
 public:
  std::uint32_t take(const unsigned char* data, std::uint32_t length, bool last,
                     SourceBlock& block) override {
    std::uint16_t* units = block.units.reserve(length + 1);
    if (units == nullptr) return 0;
    std::uint32_t count = 0;
    std::uint32_t i = 0;
    while (i < length) {
      const unsigned char byte = data[i];
      if (byte < 0x80 && byte != kGsmEscape) {
        units[count++] = kGsmAlphabet[byte];
        ++i;
        continue;
      }
      if (byte == kGsmEscape && i + 1 == length && !last) break;
      if (byte == kGsmEscape && i + 1 < length && data[i + 1] < 0x80) {
        units[count++] = behindEscape(data[i + 1]);
        i += 2;
        continue;
      }
      block.bad.add({i, 1, count, i, 1, -1});
      ++i;
    }
    block.units.commit(count);
    block.bytes = data;
    block.byteCount = i;
    startWalk(data, i, block);
    return i;
  }
  int bytesCodePage() const override { return kGsm; }

 private:
  Step step(const unsigned char* p, std::uint32_t /*left*/) const override {
    return {*p == kGsmEscape ? 2u : 1u, 1};
  }
};

// The septet of each character below U+0400, with this flag where it stands behind the escape, and
// kNoSeptet for the others.
constexpr std::uint16_t kBehindEscape = 0x100;
constexpr std::uint16_t kNoSeptet = 0x8000;
constexpr std::uint32_t kSeptetsEnd = 0x400;
constexpr auto kSeptets = [] {
  std::array<std::uint16_t, kSeptetsEnd> table{};
  for (std::uint16_t& septet : table) septet = kNoSeptet;
  for (std::uint16_t code = 0; code < 128; ++code) {
    if (code != kGsmEscape) table[kGsmAlphabet[code]] = code;
  }
  for (const GsmExtension& e : kGsmExtensions) {
    if (e.character < kSeptetsEnd) table[e.character] = kBehindEscape | e.code;
  }
  return table;
}();

std::uint16_t septetOf(std::uint32_t unit) {
  if (unit < kSeptetsEnd) return kSeptets[unit];
  for (const GsmExtension& e : kGsmExtensions) {
    if (e.character == unit) return kBehindEscape | e.code;
  }
  return kNoSeptet;
}

class GsmTarget final : public StreamTarget {
 public:
  bool encode(const std::uint16_t* units, std::uint32_t count, Behind /*behind*/, DataBuffer& out,
              EncodeResult& result) override {
    unsigned char* const begin = out.reserveTail(count * 2 + 1);
    if (begin == nullptr) return false;
    unsigned char* dest = begin;
    for (std::uint32_t i = 0; i < count; ++i) {
      const std::uint16_t septet = septetOf(units[i]);
      if (septet == kNoSeptet) {
        const bool isPair = isSurrogate(units[i]);
        result.misfits.add({i, isPair ? 2u : 1u});
        if (isPair) ++i;
        continue;
      }
      if ((septet & kBehindEscape) != 0) *dest++ = kGsmEscape;
      *dest++ = static_cast<unsigned char>(septet & 0x7F);
    }
    if (result.misfits.isEmpty()) {
      out.commitTail(static_cast<unsigned int>(dest - begin));
      result.used = count;
    }
    return !result.misfits.hasFailed();
  }
  int bytesCodePage() const override { return kGsm; }
};

}  // namespace

std::unique_ptr<StreamSource> makeGsmSource() {
  return std::unique_ptr<StreamSource>(new (std::nothrow) GsmSource());
}
std::unique_ptr<StreamTarget> makeGsmTarget() {
  return std::unique_ptr<StreamTarget>(new (std::nothrow) GsmTarget());
}
