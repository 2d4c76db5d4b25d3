// A program that uses the engine's own classes, alone or beside the interface.
#include <iostream>

#include "encoding/encoding_convert.h"
#include "encoding/stream/stream_converter.h"
#include "support/text_log.h"
#ifdef USES_BOTH
#include <encconv/encconv.h>
#endif

int main() {
  EncodingConvert converter;
  TextLog log;
  DataBuffer out;
  const unsigned char text[] = {0x80};
  bool ok = converter.EncConvert(1252, 65001, text, 1, out, log) && out.getSize() == 3 &&
            streamCodePage("hz") == kCodePageHz;
#ifdef USES_BOTH
  ok = ok && encconv::to_utf8("\x80", 1252).text == "\xE2\x82\xAC";
#endif
  std::cout << (ok ? "ok" : "wrong") << "\n";
  return ok ? 0 : 1;
}
