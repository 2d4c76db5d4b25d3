#include "encoding/clean_blocks.h"

#include <algorithm>

#include "encoding/codecs/utf7.h"
#include "encoding/error_action.h"
#include "encoding/fast/fast_path.h"
#include "encoding/special_code_pages.h"
#include "support/zv_base.h"

namespace {

constexpr unsigned int kBlockBytes = 16384;  // of input

// Longer texts go the plain way, which knows what to refuse.
constexpr unsigned int kMaxLength = 0x3FFFFFFF;

// The first bytes of a text in the codec's code page decide whether it passes for PDF.
constexpr unsigned int kPdfBytes = 7;

// Takes the first count bytes away.
void dropFront(DataBuffer& buffer, unsigned int count) {
  if (count == 0) return;
  DataBuffer kept;
  kept.append(buffer.getData2() + count, buffer.getSize() - count);
  buffer.clear();
  buffer.append(kept);
  if (kept.hasFailed()) buffer.latchFailure();
}

// Whether the plain way could take the beginning of what is left for a byte order mark.
bool maybeMark(int codePage, const unsigned char* data) {
  const bool isUnicode = codePage == kUtf8 || isUtf16(codePage) || isUtf32(codePage);
  return isUnicode && (data[0] == 0 || data[0] >= 0xEF);
}

}  // namespace

unsigned int readCleanBlocks(EncodingConvert& converter, const Codec& codec, int to,
                             const unsigned char* data, unsigned int length, DataBuffer& out,
                             LogBase& log, CodecState& state, DataBuffer& rest, bool& isBegun) {
  isBegun = false;
  if (to == codec.codePage || log.m_wantsContexts || length > kMaxLength) return 0;
  unsigned int used = 0;
  while (used != length) {
    const unsigned int count = std::min(length - used, kBlockBytes);
    used += codec.read(data + used, count, used + count == length, state, rest, nullptr);
    if (rest.hasFailed()) break;
    if (!isBegun && used != length && rest.getSize() < kPdfBytes) continue;
    if (!isBegun && rest.getSize() != 0 && rest.getData2()[0] == '%') break;
    const unsigned int done = fast::convertPrefix(converter, codec.codePage, to, rest.getData2(),
                                                  rest.getSize(), out, log);
    isBegun = isBegun || done != 0;
    dropFront(rest, done);
    if (rest.getSize() != 0) break;
  }
  return used;
}

unsigned int writeCleanBlocks(EncodingConvert& converter, const Codec& codec, int from,
                              const unsigned char* data, unsigned int length, DataBuffer& out,
                              LogBase& log, CodecState& state, DataBuffer& rest) {
  if (log.m_wantsContexts || length > kMaxLength || (isUtf16(from) && length % 2 != 0)) return 0;
  const unsigned int sizeBefore = out.getSize();
  unsigned int used = 0;
  while (used != length && !rest.hasFailed() && !out.hasFailed()) {
    const unsigned int count = std::min(length - used, kBlockBytes);
    const unsigned int done =
        fast::convertPrefix(converter, from, codec.codePage, data + used, count, rest, log);
    if (done == 0) break;
    used += done;
    dropFront(rest, codec.write(rest.getData2(), rest.getSize(), false, state, out, nullptr));
  }
  // Converting again may leave half a unit, which the plain way takes for a failure when it is all.
  const bool isWholeNeeded = converter.m_errorAction == kConvertAlternate;
  if (used != 0 && used != length && (isWholeNeeded || maybeMark(from, data + used))) {
    out.truncate(sizeBefore);
    rest.clear();
    state = {};
    return 0;
  }
  return used;
}

unsigned int readCleanUtf7(EncodingConvert& converter, int to, const unsigned char* data,
                           unsigned int length, DataBuffer& out, LogBase& log, CodecState& state,
                           DataBuffer& rest) {
  if (isUtf16(to) || log.m_wantsContexts || length > kMaxLength || !zvIsLittleEndian()) return 0;
  unsigned int used = 0;
  while (used != length && !out.hasFailed()) {
    const unsigned int count = std::min(length - used, kBlockBytes);
    const unsigned int read =
        kUtf7Codec.read(data + used, count, used + count == length, state, rest, nullptr);
    used += read;
    if (rest.hasFailed()) break;
    const unsigned int done =
        fast::convertPrefix(converter, kUtf16Le, to, rest.getData2(), rest.getSize(), out, log);
    dropFront(rest, done);
    // The first half of a pair waits for the second.
    if (rest.getSize() > 2 || (done == 0 && read != 0)) break;
  }
  return used;
}
