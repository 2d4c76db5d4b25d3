// The rows of the encodings whose accents are bytes of their own.
#ifndef ENCODING_CODECS_ROWS_ACCENTS_H_
#define ENCODING_CODECS_ROWS_ACCENTS_H_

#include "encoding/codecs/row_makers.h"

extern const Codec kAnselCodec, kIso6937Codec, kIso6937Part2Codec, kT61Codec, kX3110Codec,
    kTcvnCodec, kMarc8Codec;

namespace encoding_rows {

constexpr EncodingRow accents(int number, const char* name, const char* aliases,
                              const char* description, const Codec* itsCodec) {
  return streamOnly(codec(number, name, aliases, description, CharsetKind::kMultiByte, itsCodec));
}

// 20261 and 20269 are Windows's tables of T.61 and ISO 6937, in which accents are characters.
inline constexpr EncodingRow kAccentRows[] = {
    accents(200860, "ISO_6937", "ISO_6937:1992 ISO-IR-156", "ISO 6937, composing accents",
            &kIso6937Codec),
    accents(200861, "ISO_6937-2", "ISO_6937-2:1983 ISO-IR-90 csISO90",
            "ISO 6937-2, composing accents", &kIso6937Part2Codec),
    accents(200862, "T.61-8bit", "csISO103T618bit T.61 ISO-IR-103",
            "T.61 (Teletex), composing accents", &kT61Codec),
    accents(200863, "ANSI_X3.110-1983",
            "csISO99NAPLPS ANSI_X3.110 ISO-IR-99 CSA_T500-1983 CSA_T500 NAPLPS",
            "ANSI X3.110 (videotex), composing accents", &kX3110Codec),
    accents(200864, "TCVN5712-1", "TCVN5712-1:1993 TCVN-5712 TCVN",
            "Vietnamese, TCVN 5712-1, composing accents", &kTcvnCodec),
    accents(200865, "ANSEL", "ANSI_Z39.47 ISO-IR-231", "Library records, Latin part of MARC-8",
            &kAnselCodec),
    streamOnly(codec(200866, "MARC-8", "x-marc-8", "Library records, MARC-8 with all scripts",
                     CharsetKind::kStateful, &kMarc8Codec)),
};

}  // namespace encoding_rows

#endif  // ENCODING_CODECS_ROWS_ACCENTS_H_
