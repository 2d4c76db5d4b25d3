// Texts that need no conversion: short ones that are clean, and those that a look shows to be what
// JavaScript reads by itself.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "encoding/codecs/codec.h"
#include "encoding/codecs/encoding_row.h"
#include "encoding/kernels/registers.h"
#include "encoding/plan.h"
#include "encoding/special_code_pages.h"
#include "encoding/stream/stream_converter.h"
#include "interface/outputs.h"
#include "npm/native/exports.h"
#include "support/utf.h"

// Whether bytes are UTF-16, little endian, in which no half of a surrogate pair stands alone.
ENCCONV_EXPORT(isUtf16) bool isUtf16(const unsigned char* data, unsigned int size) {
  if (size % 2 != 0) return false;
  constexpr unsigned int kBlock = 1024;
  for (unsigned int at = 0; at < size;) {
    const unsigned int end = at + std::min(kBlock, size - at);
    std::uint16_t found = 0;
    for (unsigned int i = at; i < end; i += 2) {
      std::uint16_t unit = 0;
      std::memcpy(&unit, data + i, sizeof unit);
      found |= static_cast<std::uint16_t>((unit & 0xF800u) == 0xD800);
    }
    if (found == 0) {
      at = end;
      continue;
    }
    for (; at < end; at += 2) {
      const unsigned int unit = data[at] | data[at + 1] * 256u;
      if (!isSurrogate(unit)) continue;
      const bool isPair = isHighSurrogate(unit) && size - at >= 4 &&
                          isLowSurrogate(data[at + 2] | data[at + 3] * 256u);
      if (!isPair) return false;
      at += 2;
    }
  }
  return true;
}

namespace {
alignas(16) unsigned char g_shortInput[fast::kShortBytes];
alignas(16) unsigned char g_shortOutput[fast::kShortOutput];

// One that no plan converts alone.
int convertByStream(int from, int to, unsigned int size) {
  static StreamConverter stream;
  StreamSettings settings;
  settings.from = from;
  settings.to = to;
  settings.dropMark = to == kUtf16Le;
  SpanOutput out(g_shortOutput, sizeof g_shortOutput);
  const bool isDone = stream.begin(settings) == StreamStatus::kGood &&
                      stream.finish(g_shortInput, size, out) == StreamStatus::kGood && out.flush();
  return isDone ? static_cast<int>(out.written() - g_shortOutput) : -1;
}
}  // namespace

// Where a short text is put, of at most 256 bytes, and where what it becomes is found.
ENCCONV_EXPORT(shortInput) unsigned char* shortInput() { return g_shortInput; }
ENCCONV_EXPORT(shortOutput) unsigned char* shortOutput() { return g_shortOutput; }
// Converts it to or from UTF-16 as a string has it: the size of the output, or -1, with nothing
// done, where a conversion is needed to say what is wrong or how it begins.
ENCCONV_EXPORT(convertShort) int convertShort(int from, int to, unsigned int size) {
  const unsigned char* const end = fast::convertShort(
      from, to, reinterpret_cast<const char*>(g_shortInput), size, g_shortOutput);
  if (end != nullptr) return static_cast<int>(end - g_shortOutput);
  const bool isString = from == kUtf16Le && size >= 2;
  const unsigned int unit = isString ? g_shortInput[0] | g_shortInput[1] * 256u : 0;
  if (unit == 0xFEFF || unit == 0xFFFE) return -1;  // no mark, but a character
  return convertByStream(from, to, size);
}

// Whether bytes are ASCII.
ENCCONV_EXPORT(isAscii) bool isAscii(const unsigned char* data, unsigned int size) {
  using fast::Bytes16;
  constexpr unsigned int kSize = 16, kBlock = 4 * kSize;
  const unsigned char* const end = data + size;
  for (; end - data >= static_cast<std::ptrdiff_t>(kBlock); data += kBlock) {
    const Bytes16 all = Bytes16::load(data) | Bytes16::load(data + kSize) |
                        Bytes16::load(data + 2 * kSize) | Bytes16::load(data + 3 * kSize);
    if (topBits(all) != 0) return false;
  }
  unsigned int bits = 0;
  while (data != end) bits |= *data++;
  return bits < 0x80;
}
// Whether ASCII is read as itself, by an encoding that has no state.
ENCCONV_EXPORT(readsAscii) bool readsAscii(int codePage) {
  const EncodingRow* const row = findEncodingRow(codePage);
  if (row == nullptr || row->reordersMacArabic) return false;
  if (row->form == EncodingForm::kCodec && !row->codec->isStateless) return false;
  constexpr unsigned int kCount = 0x80;
  unsigned char ascii[kCount];
  for (unsigned int i = 0; i < kCount; ++i) ascii[i] = static_cast<unsigned char>(i);
  StreamSettings settings;
  settings.from = codePage;
  settings.to = kUtf16Le;
  StreamConverter stream;
  DataBuffer text;
  if (stream.begin(settings) != StreamStatus::kGood ||
      stream.push(ascii, kCount, text) != StreamStatus::kGood || text.getSize() != 2 * kCount) {
    return false;
  }
  for (unsigned int i = 0; i < kCount; ++i) {
    if (text.getData2()[2 * i] != i || text.getData2()[2 * i + 1] != 0) return false;
  }
  return true;
}
