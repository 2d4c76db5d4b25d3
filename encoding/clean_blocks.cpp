#include "encoding/clean_blocks.h"

#include <algorithm>

#include "encoding/error_action.h"
#include "encoding/fast/fast_path.h"
#include "support/zv_utf.h"

namespace {

constexpr unsigned int kBlockBytes = 16384;  // of input

// Longer texts go the plain way, which finds out what is longer than a buffer.
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

unsigned int Utf7Codec::writePiece(const unsigned char* utf16, unsigned int length, bool last,
                                   State&, DataBuffer& out, std::nullptr_t) {
  const unsigned int count = last ? length : _zvUtf::utf16CutForUtf7(utf16, length);
  DataBuffer piece;
  piece.borrowData(utf16, count);
  _zvUtf::Utf16XEToUtf7(piece, out);
  return count;
}

template <typename Codec>
unsigned int readCleanBlocks(EncodingConvert& converter, int to, const unsigned char* data,
                             unsigned int length, DataBuffer& out, LogBase& log,
                             typename Codec::State& state, DataBuffer& rest, bool& isBegun) {
  isBegun = false;
  if (to == Codec::kCodePage || !fast::isFastPathOpen(log) || length > kMaxLength) return 0;
  unsigned int used = 0;
  while (used != length) {
    const unsigned int count = std::min(length - used, kBlockBytes);
    used += Codec::readPiece(data + used, count, used + count == length, state, rest, nullptr);
    if (rest.hasFailed()) break;
    if (!isBegun && used != length && rest.getSize() < kPdfBytes) continue;
    if (!isBegun && rest.getSize() != 0 && rest.getData2()[0] == '%') break;
    const unsigned int done = fast::convertPrefix(converter, Codec::kCodePage, to, rest.getData2(),
                                                  rest.getSize(), out, log);
    isBegun = isBegun || done != 0;
    dropFront(rest, done);
    if (rest.getSize() != 0) break;
  }
  return used;
}

template <typename Codec>
unsigned int writeCleanBlocks(EncodingConvert& converter, int from, const unsigned char* data,
                              unsigned int length, DataBuffer& out, LogBase& log,
                              typename Codec::State& state, DataBuffer& rest) {
  if (!fast::isFastPathOpen(log) || length > kMaxLength || (isUtf16(from) && length % 2 != 0))
    return 0;
  const unsigned int sizeBefore = out.getSize();
  unsigned int used = 0;
  while (used != length && !rest.hasFailed() && !out.hasFailed()) {
    const unsigned int count = std::min(length - used, kBlockBytes);
    const unsigned int done =
        fast::convertPrefix(converter, from, Codec::kCodePage, data + used, count, rest, log);
    if (done == 0) break;
    used += done;
    dropFront(rest, Codec::writePiece(rest.getData2(), rest.getSize(), false, state, out, nullptr));
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
                           unsigned int length, DataBuffer& out, LogBase& log, DataBuffer& rest) {
  if (isUtf16(to) || !fast::isFastPathOpen(log) || length > kMaxLength) return 0;
  unsigned int used = 0;
  while (used != length && !out.hasFailed()) {
    unsigned int count = length - used;
    // A run that is longer than a block is taken whole.
    for (unsigned int size = kBlockBytes; size < count; size *= 2) {
      const unsigned int cut = _zvUtf::utf7Cut(data + used, size);
      if (cut != 0) count = cut;
    }
    DataBuffer piece;
    piece.borrowData(data + used, count);
    _zvUtf::Utf7ToUtf16_xe(piece, rest);
    used += count;
    if (rest.hasFailed()) break;
    const unsigned int done =
        fast::convertPrefix(converter, kUtf16Le, to, rest.getData2(), rest.getSize(), out, log);
    dropFront(rest, done);
    // The first half of a pair waits for the second.
    if (rest.getSize() > 2 || (done == 0 && count != 0)) break;
  }
  return used;
}

template unsigned int readCleanBlocks<JapaneseCodec>(EncodingConvert&, int, const unsigned char*,
                                                     unsigned int, DataBuffer&, LogBase&,
                                                     Iso2022JpState&, DataBuffer&, bool&);
template unsigned int readCleanBlocks<KoreanCodec>(EncodingConvert&, int, const unsigned char*,
                                                   unsigned int, DataBuffer&, LogBase&,
                                                   Iso2022KrState&, DataBuffer&, bool&);
template unsigned int writeCleanBlocks<JapaneseCodec>(EncodingConvert&, int, const unsigned char*,
                                                      unsigned int, DataBuffer&, LogBase&,
                                                      Iso2022JpState&, DataBuffer&);
template unsigned int writeCleanBlocks<KoreanCodec>(EncodingConvert&, int, const unsigned char*,
                                                    unsigned int, DataBuffer&, LogBase&,
                                                    Iso2022KrState&, DataBuffer&);
template unsigned int writeCleanBlocks<Utf7Codec>(EncodingConvert&, int, const unsigned char*,
                                                  unsigned int, DataBuffer&, LogBase&,
                                                  Utf7Codec::State&, DataBuffer&);
