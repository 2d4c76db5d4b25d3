// The rows of Unicode's less usual forms. Numbers of our own: 200800 to 200849.
#ifndef ENCODING_CODECS_ROWS_UNICODE_FORMS_H_
#define ENCODING_CODECS_ROWS_UNICODE_FORMS_H_

#include "encoding/codecs/codec.h"
#include "encoding/codecs/row_makers.h"

extern const Codec kBocu1Codec, kCesu8Codec, kImapUtf7Codec, kModifiedUtf8Codec, kScsuCodec,
    kWtf8Codec;

extern const Codec kGsmPackedCodec;
// Turkish, Turkish with the default alphabet, Spanish, Portuguese, Portuguese with the default one.
extern const Codec kGsmNationalCodecs[5], kGsmPackedNationalCodecs[5];

namespace encoding_rows {

constexpr EncodingRow unicodeForm(int number, const char* name, const char* aliases,
                                  const char* description, const Codec* form) {
  return streamOnly(codec(number, name, aliases, description, CharsetKind::kUnicode, form));
}

constexpr EncodingRow gsm(int number, const char* name, const char* description,
                          const Codec* form) {
  return streamOnly(codec(number, name, "", description, CharsetKind::kStateful, form));
}

constexpr EncodingRow packed(EncodingRow row) { return with(&EncodingRow::hidesLineEnds, row); }

// Numbers below 100000 are IBM's, which gives each form one number for all of Unicode and one for
// Unicode with the private use characters as its own products have them; the first of the two.
inline constexpr EncodingRow kUnicodeFormRows[] = {
    // As IANA has "UTF-16" and "UTF-32", names that stand for 1200 and 12000 here: a mark decides,
    // and without one it is big endian. The other two are the JDK's.
    marked(unicode(1204, "UTF-16-BOM",
                   "IBM1204 IBM1205 x-UTF-16BE-BOM UnicodeBig UTF-16,version=2 "
                   "UTF-16,version=1 UTF-16BE,version=1",
                   "Unicode, UTF-16 with a byte order mark, else big endian", EncodingForm::kUtf16,
                   true)),
    marked(unicode(1236, "UTF-32-BOM", "IBM1236 IBM1237 x-UTF-32BE-BOM UTF-32BE-BOM",
                   "Unicode, UTF-32 with a byte order mark, else big endian", EncodingForm::kUtf32,
                   true)),
    marked(unicode(200802, "x-UTF-16LE-BOM", "UnicodeLittle UTF-16LE,version=1",
                   "Unicode, UTF-16 with a byte order mark, else little endian",
                   EncodingForm::kUtf16, false)),
    marked(unicode(200803, "x-UTF-32LE-BOM", "UTF-32LE-BOM",
                   "Unicode, UTF-32 with a byte order mark, else little endian",
                   EncodingForm::kUtf32, false)),
    marked(unicode(200805, "UTF-8-BOM", "utf-8-sig", "Unicode, UTF-8 with a byte order mark",
                   EncodingForm::kUtf8, false)),
    with(&EncodingRow::hidesLineEnds,
         unicodeForm(1212, "SCSU", "csSCSU IBM1212 IBM1213",
                     "Unicode, SCSU: compressed, a byte for a letter", &kScsuCodec)),
    unicodeForm(1214, "BOCU-1", "csBOCU1 IBM1214 IBM1215",
                "Unicode, BOCU-1: compressed, sorts like UTF-8", &kBocu1Codec),
    unicodeForm(9400, "CESU-8", "csCESU8 IBM9400", "Unicode, CESU-8: UTF-16 in the dress of UTF-8",
                &kCesu8Codec),
    unicodeForm(200800, "x-modified-utf-8", "modified-utf-8 mutf-8 java-utf-8",
                "Unicode, modified UTF-8 of Java class files and JNI", &kModifiedUtf8Codec),
    unicodeForm(200801, "WTF-8", "", "Unicode, WTF-8: UTF-8 with unpaired surrogates", &kWtf8Codec),
    unicodeForm(200804, "UTF-7-IMAP", "IMAP-mailbox-name imap4-utf-7 x-imap4-modified-utf7",
                "Unicode, UTF-7 of the names of IMAP folders", &kImapUtf7Codec),
    // GSM 03.38 otherwise than 55000 has it. Where a name says nothing else, it is the locking and
    // the single shift of the language; Spanish has none but the single one.
    packed(
        gsm(200810, "gsm-packed", "GSM 03.38 default alphabet, packed septets", &kGsmPackedCodec)),
    gsm(200811, "gsm-turkish", "GSM 03.38 Turkish, one septet a byte", &kGsmNationalCodecs[0]),
    gsm(200812, "gsm-turkish-single", "GSM 03.38 Turkish single shift, one septet a byte",
        &kGsmNationalCodecs[1]),
    gsm(200813, "gsm-spanish", "GSM 03.38 Spanish single shift, one septet a byte",
        &kGsmNationalCodecs[2]),
    gsm(200814, "gsm-portuguese", "GSM 03.38 Portuguese, one septet a byte",
        &kGsmNationalCodecs[3]),
    gsm(200815, "gsm-portuguese-single", "GSM 03.38 Portuguese single shift, one septet a byte",
        &kGsmNationalCodecs[4]),
    packed(gsm(200821, "gsm-turkish-packed", "GSM 03.38 Turkish, packed septets",
               &kGsmPackedNationalCodecs[0])),
    packed(gsm(200822, "gsm-turkish-single-packed",
               "GSM 03.38 Turkish single shift, packed septets", &kGsmPackedNationalCodecs[1])),
    packed(gsm(200823, "gsm-spanish-packed", "GSM 03.38 Spanish single shift, packed septets",
               &kGsmPackedNationalCodecs[2])),
    packed(gsm(200824, "gsm-portuguese-packed", "GSM 03.38 Portuguese, packed septets",
               &kGsmPackedNationalCodecs[3])),
    packed(gsm(200825, "gsm-portuguese-single-packed",
               "GSM 03.38 Portuguese single shift, packed septets", &kGsmPackedNationalCodecs[4])),
};

}  // namespace encoding_rows

#endif  // ENCODING_CODECS_ROWS_UNICODE_FORMS_H_
