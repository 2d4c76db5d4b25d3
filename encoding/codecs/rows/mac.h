// Encodings of single bytes of the Macintosh that have a mapping.
#ifndef ENCODING_CODECS_ROWS_MAC_H_
#define ENCODING_CODECS_ROWS_MAC_H_

#include "encoding/codecs/mapping_list.h"
#include "encoding/codecs/multi_byte.h"
#include "encoding/codecs/row_makers.h"

namespace encoding_rows {

inline constexpr EncodingRow kMacRows[] = {
    mapped(200450, "MAC-IS", "", "Mac, Icelandic as the C library has it", &kMap_mac_is),
    mapped(200451, "MAC-SAMI", "", "Mac, Sami", &kMap_mac_sami),
    mapped(200452, "MacDingbats", "x-MacDingbat MacDingbat", "Mac, Zapf Dingbats",
           &kMap_mac_dingbats),
    // Three signs have a mark of their variant behind them.
    streamOnly(codec(200453, "MacSymbol", "x-MacSymbol", "Mac, Symbol font",
                     CharsetKind::kSingleByte, &kMultiByteCodec<kMap_mac_symbol, 2>)),
    mapped(200454, "MacFarsi", "", "Mac, Farsi", &kMap_mac_farsi),
    mapped(200455, "macos-0_2-10.2", "", "Mac, Western European with euro", &kMap_mac_roman_euro),
    mapped(200456, "macos-35-10.2", "", "Mac, Turkish of Mac OS X", &kMap_mac_turkish_omega),
    mapped(200457, "macos-6_2-10.4", "", "Mac, Greek with euro", &kMap_mac_greek_euro),
    mapped(200458, "macos-7_3-10.2", "", "Mac, Cyrillic with euro", &kMap_mac_cyrillic_euro),
};

}  // namespace encoding_rows

#endif  // ENCODING_CODECS_ROWS_MAC_H_
