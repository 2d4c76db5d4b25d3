// Conversions from and to the ISO-2022 encodings and UTF-7, a clean block at a time: the text
// between the codec and the engine stays in the cache and is never held as a whole.
#ifndef ENCODING_CLEAN_BLOCKS_H_
#define ENCODING_CLEAN_BLOCKS_H_

#include <cstddef>

#include "encoding/encoding_convert.h"
#include "encoding/special_code_pages.h"
#include "support/japanese.h"
#include "support/korean.h"

// A codec with the code page that it reads into and writes from.
struct JapaneseCodec {
  using State = Iso2022JpState;
  static constexpr int kCodePage = kShiftJis;
  static constexpr auto readPiece = &Japanese::readPiece;
  static constexpr auto writePiece = &Japanese::writePiece;
};
struct KoreanCodec {
  using State = Iso2022KrState;
  static constexpr int kCodePage = kKorean;
  static constexpr auto readPiece = &Korean::readPiece;
  static constexpr auto writePiece = &Korean::writePiece;
};
// UTF-7 is only ever cut where nothing is pending, so that it has no state.
struct Utf7Codec {
  struct State {};
  static constexpr int kCodePage = kUtf16Le;
  static unsigned int writePiece(const unsigned char* utf16, unsigned int length, bool last,
                                 State& state, DataBuffer& out, std::nullptr_t);
};

// All of these convert the beginning of a text and return how many bytes of it are used. What is
// left is to be converted by the plain way, which gives for both together what it gives for the
// whole. Nothing is used where the fast path does not serve the other side. When memory is short,
// out or the last buffer has the failure latched.

// From ISO-2022 into the code page `to`. state is that of the reader behind the used bytes, and
// rest has what was read of them but not converted. isBegun says that something was converted.
template <typename Codec>
unsigned int readCleanBlocks(EncodingConvert& converter, int to, const unsigned char* data,
                             unsigned int length, DataBuffer& out, LogBase& log,
                             typename Codec::State& state, DataBuffer& rest, bool& isBegun);

// From the code page `from` into the codec's encoding. state is that of the writer behind the used
// bytes, and rest has what stands between it and them in the codec's code page.
template <typename Codec>
unsigned int writeCleanBlocks(EncodingConvert& converter, int from, const unsigned char* data,
                              unsigned int length, DataBuffer& out, LogBase& log,
                              typename Codec::State& state, DataBuffer& rest);

// From UTF-7 into a code page other than UTF-16. rest has the UTF-16 of used bytes that is not
// converted.
unsigned int readCleanUtf7(EncodingConvert& converter, int to, const unsigned char* data,
                           unsigned int length, DataBuffer& out, LogBase& log, DataBuffer& rest);

#endif  // ENCODING_CLEAN_BLOCKS_H_
