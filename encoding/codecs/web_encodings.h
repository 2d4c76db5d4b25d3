// The encodings of the Encoding Standard that need more than a table of single bytes: its mappings
// with its rules on what is malformed, and how long each such piece is.
#ifndef ENCODING_CODECS_WEB_ENCODINGS_H_
#define ENCODING_CODECS_WEB_ENCODINGS_H_

#include "encoding/codecs/mapping_list.h"
#include "encoding/codecs/multi_byte.h"

// A pair without a character is one piece, unless its second byte is below 80, which is read again.
unsigned int webPairPiece(const unsigned char* bytes, std::size_t known, bool last);
// The same of Shift_JIS, whose lead bytes leave out A0 to DF and FD to FF.
unsigned int webShiftJisPiece(const unsigned char* bytes, std::size_t known, bool last);
// Behind 8F, three bytes or what stands in front of a byte below 80.
unsigned int webEucJpPiece(const unsigned char* bytes, std::size_t known, bool last);
// Of four bytes that do not follow each other, the first; cut short by the end, all of them.
unsigned int webGb18030Piece(const unsigned char* bytes, std::size_t known, bool last);

inline constexpr RuledMapping kWebBig5{kMap_web_big5, webPairPiece};
inline constexpr RuledMapping kWebEucJp{kMap_web_euc_jp, webEucJpPiece};
inline constexpr RuledMapping kWebEucKr{kMap_web_euc_kr, webPairPiece};
inline constexpr RuledMapping kWebGb18030{kMap_web_gb18030, webGb18030Piece};
inline constexpr RuledMapping kWebGbk{kMap_web_gbk, webGb18030Piece, 2};
inline constexpr RuledMapping kWebShiftJis{kMap_web_shift_jis, webShiftJisPiece};

// ISO-2022-JP, and the "replacement", which is read as one malformed piece and never written.
extern const Codec kWebIso2022JpCodec, kWebReplacementCodec;

#endif  // ENCODING_CODECS_WEB_ENCODINGS_H_
