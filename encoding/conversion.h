// Conversion: one conversion of EncConvert under way, as its operations hand it on.
#ifndef ENCODING_CONVERSION_H_
#define ENCODING_CONVERSION_H_

#include "encoding/encoding_convert.h"

// The source changes as its beginning is converted or the text is normalised.
struct Conversion {
  EncodingConvert& converter;
  int from;
  int to;
  const unsigned char* data;
  unsigned int length;
  DataBuffer& out;
  LogBase& log;
  bool bigEndian = false;  // UTF-16 and UTF-32 sources

  void skip(unsigned int count) {
    data += count;
    length -= count;
  }
  void setSource(int codePage, const DataBuffer& buffer) {
    from = codePage;
    data = buffer.getData2();
    length = buffer.getSize();
  }
  void setPivotFlags(bool toUtf16, bool fromUtf16) const {
    converter.m_pivotToUtf16 = toUtf16;
    converter.m_pivotFromUtf16 = fromUtf16;
  }
  void info(const char* message) const {
    if (log.m_verboseLogging != 0) log.LogInfo(message);
  }
};

#endif  // ENCODING_CONVERSION_H_
