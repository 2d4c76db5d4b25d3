// EncodingConvert: conversion of a run of bytes from one character encoding to another.
#ifndef ENCODING_ENCODING_CONVERT_H_
#define ENCODING_ENCODING_CONVERT_H_

#include <cstdint>

#include "encoding/conversion_observer.h"
#include "encoding/tables/unicode_lookup.h"
#include "support/data_buffer.h"
#include "support/hash_convert.h"
#include "support/log_base.h"
#include "support/string_buffer.h"

// While true (as at start), a surrogate pair becomes one 4-byte UTF-8 sequence; while false it
// becomes two 3-byte forms. Read by conversions on any thread: set it before they start.
extern bool g_allow_4byte_utf8;

// Encodings are named by Windows-style code page numbers (docs/code-pages.md lists them). Input is
// a pointer and a length in bytes; output is appended to a DataBuffer, which is never cleared or
// shrunk; every operation returns true for success. Bad input is not a failure: it is treated as
// the error action says and reported in m_foundErrors.
//
// One thread uses an object at a time; separate objects may convert on separate threads. The
// mapping tables are process-wide, built on first use and kept until cleanupMemory().
class EncodingConvert {
 public:
  EncodingConvert();
  virtual ~EncodingConvert();
  EncodingConvert(const EncodingConvert&) = delete;
  EncodingConvert& operator=(const EncodingConvert&) = delete;

  // ---- Settings; they persist until changed. ----

  // What to write for input that cannot be converted: 0 nothing, 1 the substitution bytes, 2 a
  // hexadecimal reference "&#x...;" of the bad bytes, 3 to 5 nothing, 6 the bad bytes converted
  // into the alternate code page, 7 the bad bytes as they are, 8 a bad single byte followed by a
  // zero byte. Any value is accepted; others write nothing.
  void setErrorAction(int action);
  // The code page of action 6; 0 means the destination of the conversion.
  void setAltDestCodepage(int codePage);
  // The bytes of action 1, at most 100; further ones are ignored, a negative count counts as 0. A
  // null pointer keeps the old bytes and only sets their number.
  void setDefBytes(const unsigned char* bytes, int count);

  // ---- Conversion by code page number. ----

  // Converts and appends to out. A code page of 0 means the other one. False, silently, for code
  // pages below 100 other than 37; false also for a code page without a table and for lack of
  // memory, possibly with part of the output appended. Input of 7 bytes or more that begins
  // "%PDF-1" is copied unchanged.
  bool EncConvert(int fromCodePage, int toCodePage, const unsigned char* data, unsigned int length,
                  DataBuffer& out, LogBase& log);
  // The same behind the byte order mark of the target (1200, 1201 and 65001 have one here), which
  // is appended before anything else is looked at.
  bool EncConvertWithPreamble(int fromCodePage, int toCodePage, const unsigned char* data,
                              unsigned int length, DataBuffer& out, LogBase& log);

  // ---- Conversion by charset name. ----

  // False, with out untouched, when either name is unknown. The bool is ignored.
  bool ChConvert(const StringBuffer& fromCharset, const StringBuffer& toCharset,
                 const unsigned char* data, unsigned int length, DataBuffer& out, LogBase& log,
                 bool ignored);
  // An unknown source name is logged as an error and read as UTF-8.
  bool ChConvert2(const StringBuffer& fromCharset, int toCodePage, const unsigned char* data,
                  unsigned int length, DataBuffer& out, LogBase& log);
  bool ChConvert2p(const char* fromCharset, int toCodePage, const unsigned char* data,
                   unsigned int length, DataBuffer& out, LogBase& log);
  // An unknown destination name means UTF-8, silently.
  bool ChConvert3(int fromCodePage, const StringBuffer& toCharset, const unsigned char* data,
                  unsigned int length, DataBuffer& out, LogBase& log);
  bool ChConvert3p(int fromCodePage, const char* toCharset, const unsigned char* data,
                   unsigned int length, DataBuffer& out, LogBase& log);
  bool ChConvert3_withPreamble(int fromCodePage, const StringBuffer& toCharset,
                               const unsigned char* data, unsigned int length, DataBuffer& out,
                               LogBase& log);

  // ---- To and from the platform's code pages; a negative length is refused. ----

  bool AnsiToMultiByte(int codePage, const char* text, int length, DataBuffer& out, LogBase& log);
  bool MultiByteToAnsi(int codePage, const unsigned char* data, int length, DataBuffer& out,
                       LogBase& log);
  bool OemToMultiByte(int codePage, const char* text, int length, DataBuffer& out, LogBase& log);
  bool MultiByteToOem(int codePage, const unsigned char* data, int length, DataBuffer& out,
                      LogBase& log);

  // Releases all process-wide tables; the next conversion builds what it needs. Must not overlap
  // any conversion on any thread; a stream is one from begin() until it has ended.
  static void cleanupMemory();

  // ---- The reference converters, called by EncConvert and by each other. ----

  // EncConvert for a text of a byte or more, without the shortcut for short, clean texts.
  bool convertLong(int fromCodePage, int toCodePage, const unsigned char* data, unsigned int length,
                   DataBuffer& out, LogBase& log);
  // The conversion of two code pages once EncConvert has settled its special cases: byte order
  // marks, direct pairs, and the pivot through UTF-16 little endian.
  bool convert_a(int from, int to, const unsigned char* data, unsigned int length, DataBuffer& out,
                 LogBase& log);

  // UTF-8 and UTF-16 in host byte order without tables. cv_utf16_to_utf8 is false only for an odd
  // length, whose last byte is ignored; cv_utf8_to_utf16 is always true.
  bool cv_utf16_to_utf8(const unsigned char* data, unsigned int length, DataBuffer& out,
                        LogBase& log);
  bool cv_utf8_to_utf16(const unsigned char* data, unsigned int length, DataBuffer& out,
                        LogBase& log);

  // Table-driven decoding to UTF-16 in host byte order: by code page, with a single-byte lookup,
  // with the map of a double-byte code page (null: false and an error line).
  bool convertToUnicodeHC(int fromCodePage, const unsigned char* data, unsigned int length,
                          DataBuffer& out, LogBase& log);
  bool convertToUnicodeByLookup(UnicodeLookup& lookup, const unsigned char* data,
                                unsigned int length, DataBuffer& out, LogBase& log);
  bool convertToUnicodeHCVar(HashConvert* table, const unsigned char* data, unsigned int length,
                             DataBuffer& out, LogBase& log);

  // Table-driven encoding of UTF-16 little endian: by code page, and the loop over one table. False
  // when a unit could not be encoded, whatever the error action wrote for it.
  bool convertFromUnicodeHC(int toCodePage, const unsigned char* data, unsigned int inDataLen,
                            DataBuffer& out, LogBase& log);
  bool convertFromUnicodeHC2(HashConvert* table, const unsigned char* data, unsigned int len,
                             DataBuffer& out, LogBase& log);

  // What the error action writes for a byte of a single-byte code page, for a UTF-16 unit (2
  // bytes), for an invalid UTF-8 sequence and for a character of the source code page. The latter
  // two return the bytes of input to skip.
  void handleErrorFromSingleByte(const unsigned char* byte, DataBuffer& out, LogBase& log);
  void handleErrorFromUnicode(const unsigned char* unit, DataBuffer& out, LogBase& log);
  unsigned int handleErrorFromUtf8(const unsigned char* sequence, int bytesLeft, DataBuffer& out,
                                   LogBase& log);
  unsigned int handleErrorFromUnknown(const unsigned char* character, DataBuffer& out,
                                      LogBase& log);
  // The pieces that the handlers are made of: the pass-through escape in front of what is written
  // into a pivot; what actions 1, 2 and 7 write; the nested conversion of action 6.
  void appendEscape(int count, DataBuffer& out) const;
  void appendSubstitution(const unsigned char* bytes, int count, int hexEscapeCount,
                          DataBuffer& out) const;
  void convertAlternate(int fromCodePage, const unsigned char* bytes, unsigned int count,
                        DataBuffer& out, LogBase& log);
  // What a table-driven decoder does at a byte without a character: reports it and lets the error
  // action write. isSingleByte: the byte can be no more than itself, because of its code page or
  // because it is the last. Returns the bytes of input to skip.
  unsigned int handleUndecodable(const unsigned char* p, bool isSingleByte, DataBuffer& out,
                                 LogBase& log);
  // What the encoder writes for a unit that its table lacks, and the unit put back into the source
  // code page, which some actions write when the unit comes out of a pivot.
  void handleUnmappableUnit(const unsigned char* unit, DataBuffer& out, LogBase& log);
  void reencodeUnit(const unsigned char* unit, DataBuffer& target, LogBase& log);
  // Tells the observer, if there is one, of length bytes at piece in a step's input at begin.
  void reportUnconvertible(ConversionStep step, const unsigned char* begin,
                           const unsigned char* piece, unsigned int length) {
    if (m_observer == nullptr) return;
    m_observer->onUnconvertible({step, static_cast<unsigned int>(piece - begin), length, piece});
  }
  // Two upper-case hexadecimal digits for each byte.
  static void appendHexData(const unsigned char* bytes, int count, DataBuffer& out);

  // ---- The registries (encoding/tables/): make sure that a code page's table exists. True also
  // for a code page without one; false only when memory is short. Any thread may call. ----

  static bool ensureHashToUnicode(int codePage, LogBase& log);
  static bool ensureHashToUnicode1250(int codePage, LogBase& log);
  static bool ensureHashToUnicode8859(int codePage, LogBase& log);
  static bool ensureHashFromUnicode(int codePage, LogBase& log);
  static bool ensureHashFromUnicode2(int codePage, LogBase& log);
  // Copies a single-byte map into a lookup, entries 1 to 255. True when the ASCII flag is clear.
  static bool buildSingleByteLookup(HashConvert& map, UnicodeLookup& lookup, LogBase& log);

  // The table builders: fill a map (created and initialised by the caller) from a table text;
  // fromUnicode makes units the keys, else codes. The other two read the records of a table image
  // from behind its flag bytes up to their terminators.
  static void buildHash(const char* tableText, HashConvert& map, bool fromUnicode, LogBase& log);
  static void buildFromComplete(const unsigned char* records, HashConvert& map, bool fromUnicode,
                                LogBase& log);
  static void buildFromDiffs(const unsigned char* records, HashConvert& map, LogBase& log);

  // ---- Fields, in the order that the engine's users rely on. ----

  bool m_allow4ByteUtf8;           // with g_allow_4byte_utf8: join surrogate pairs
  std::int32_t m_errorAction;      // see setErrorAction
  std::int32_t m_altDestCodepage;  // see setAltDestCodepage
  std::int32_t m_defBytesLen;      // valid bytes in m_defBytes, 0 to 100
  unsigned char m_defBytes[100];   // see setDefBytes
  std::int32_t m_fromCodePage;     // source of the conversion under way
  std::int32_t m_toCodePage;       // its destination; 1200 while 1201 is produced
  bool m_pivotToUtf16;             // the decoder of a pivot is running
  bool m_pivotFromUtf16;           // the encoder of a pivot is running
  bool m_foundErrors;              // the last conversion met input that it could not convert
  // Told of each such piece, when not null; not owned. Null at start.
  ConversionObserver* m_observer;
};

#endif  // ENCODING_ENCODING_CONVERT_H_
