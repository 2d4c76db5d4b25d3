#include "apps/encconv/ebcdic.h"

#include <numeric>

#include "encoding/encoding_convert.h"

namespace tool {
namespace {

ByteMap identity() {
  ByteMap map;
  std::iota(map.begin(), map.end(), static_cast<unsigned char>(0));
  return map;
}

}  // namespace

bool findEbcdicLineEnds(int codePage, EbcdicLineEnds& lineEnds) {
  // Blank, NL, LF and "A": no other family of code pages has all four here.
  static constexpr unsigned char kProbe[] = {0x40, 0x15, 0x25, 0xC1};
  EncodingConvert converter;
  LogBase log;
  DataBuffer out;
  if (!converter.EncConvert(codePage, 65001, kProbe, sizeof kProbe, out, log)) return false;
  const std::string_view text(reinterpret_cast<const char*>(out.getData2()), out.getSize());
  if (text == " \u0085\nA") {
    lineEnds = {0x25, 0x15};
  } else if (text == " \n\u0085A") {
    lineEnds = {0x15, 0x25};
  } else {
    return false;
  }
  return true;
}

ByteMap mapBeforeReading(int codePage, EbcdicNewline mode) {
  ByteMap map = identity();
  EbcdicLineEnds lineEnds;
  if (mode == EbcdicNewline::kKeep || !findEbcdicLineEnds(codePage, lineEnds)) return map;
  if (mode == EbcdicNewline::kLf) {
    map[kEbcdicNl] = lineEnds.lineFeed;
  } else {
    map[lineEnds.lineFeed] = lineEnds.nextLine;
  }
  return map;
}

ByteMap mapAfterWriting(int codePage, EbcdicNewline mode) {
  ByteMap map = identity();
  EbcdicLineEnds lineEnds;
  if (mode == EbcdicNewline::kKeep || !findEbcdicLineEnds(codePage, lineEnds)) return map;
  map[lineEnds.lineFeed] = kEbcdicNl;
  if (mode == EbcdicNewline::kNl) map[lineEnds.nextLine] = kEbcdicNl;
  return map;
}

}  // namespace tool
