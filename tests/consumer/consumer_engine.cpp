// A program that uses the engine's own classes.
#include <iostream>

#include "encoding/encoding_convert.h"
#include "encoding/stream/stream_converter.h"
#include "support/text_log.h"

int main() {
  EncodingConvert converter;
  TextLog log;
  DataBuffer out;
  const unsigned char text[] = {0x80};
  const bool ok = converter.EncConvert(1252, 65001, text, 1, out, log) && out.getSize() == 3 &&
                  streamCodePage("hz") == kCodePageHz;
  std::cout << (ok ? "ok" : "wrong") << "\n";
  return ok ? 0 : 1;
}
