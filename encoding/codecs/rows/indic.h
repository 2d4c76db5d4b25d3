// The rows of the encodings of Indian scripts.
#ifndef ENCODING_CODECS_ROWS_INDIC_H_
#define ENCODING_CODECS_ROWS_INDIC_H_

#include "encoding/codecs/iscii.h"
#include "encoding/codecs/row_makers.h"

extern const Codec kTsciiCodec;

namespace encoding_rows {

template <IsciiScript script>
constexpr EncodingRow iscii(int number, const char* name, const char* aliases,
                            const char* description) {
  return streamOnly(
      codec(number, name, aliases, description, CharsetKind::kStateful, &kIsciiCodec<script>));
}

// The number says which script a line begins in.
inline constexpr EncodingRow kIndicRows[] = {
    iscii<IsciiScript::kDevanagari>(
        57002, "x-iscii-de", "iscii-dev ISCII x-ISCII91 ISCII91 ISCII,version=0 ibm-4902 ibm-806",
        "ISCII, Devanagari"),
    iscii<IsciiScript::kBengali>(57003, "x-iscii-be", "iscii-bng ISCII,version=1",
                                 "ISCII, Bengali"),
    iscii<IsciiScript::kTamil>(57004, "x-iscii-ta", "iscii-tml ISCII,version=5", "ISCII, Tamil"),
    iscii<IsciiScript::kTelugu>(57005, "x-iscii-te", "iscii-tlg ISCII,version=6", "ISCII, Telugu"),
    // In the codes of Bengali, whose script it is.
    iscii<IsciiScript::kBengali>(57006, "x-iscii-as", "iscii-asm", "ISCII, Assamese"),
    iscii<IsciiScript::kOriya>(57007, "x-iscii-or", "iscii-ori ISCII,version=4", "ISCII, Oriya"),
    iscii<IsciiScript::kKannada>(57008, "x-iscii-ka", "iscii-knd ISCII,version=7",
                                 "ISCII, Kannada"),
    iscii<IsciiScript::kMalayalam>(57009, "x-iscii-ma", "iscii-mlm ISCII,version=8",
                                   "ISCII, Malayalam"),
    iscii<IsciiScript::kGujarati>(57010, "x-iscii-gu", "iscii-guj ISCII,version=3",
                                  "ISCII, Gujarati"),
    iscii<IsciiScript::kGurmukhi>(57011, "x-iscii-pa", "iscii-gur ISCII,version=2",
                                  "ISCII, Gurmukhi (Punjabi)"),
    streamOnly(codec(200519, "TSCII", "csTSCII", "Tamil in the order of the page, TSCII 1.7",
                     CharsetKind::kMultiByte, &kTsciiCodec)),
};

}  // namespace encoding_rows

#endif  // ENCODING_CODECS_ROWS_INDIC_H_
