// mapping_dump: what the engine makes of every code of code pages, for comparison with others.
//
//   mapping_dump CODEPAGE...
//
// For each code page a line "P NUMBER"; then a line "D CODE UNIT" for every one- or two-byte code
// that decodes to one UTF-16 code unit, and "E UNIT CODE" for every unit that encodes, all in
// hexadecimal, without 00 and U+0000.
#include <cstdio>
#include <cstdlib>

#include "encoding/codecs/encoding_row.h"
#include "encoding/encoding_convert.h"

namespace {

void printLine(char kind, const unsigned char* key, unsigned int keySize,
               const unsigned char* value, unsigned int valueSize) {
  std::printf("%c ", kind);
  for (unsigned int i = 0; i < keySize; ++i) std::printf("%02X", key[i]);
  std::printf(" ");
  for (unsigned int i = 0; i < valueSize; ++i) std::printf("%02X", value[i]);
  std::printf("\n");
}

void swapUnit(unsigned char* unit) {
  const unsigned char low = unit[0];
  unit[0] = unit[1];
  unit[1] = low;
}

void dumpDecoding(const EncodingRow& row, EncodingConvert& converter, LogBase& log) {
  for (unsigned int code = 1; code < (row.form == EncodingForm::kDoubleByte ? 0x10000u : 0x100u);
       ++code) {
    const unsigned char bytes[2] = {static_cast<unsigned char>(code >> 8),
                                    static_cast<unsigned char>(code)};
    const unsigned int size = code > 0xFF ? 2 : 1;
    const unsigned char* first = bytes + 2 - size;
    DataBuffer out;
    // The decoder itself: EncConvert reorders Mac Arabic first.
    converter.m_foundErrors = false;
    converter.convertToUnicodeHC(row.number, first, size, out, log);
    if (converter.m_foundErrors || out.getSize() != 2) continue;
    unsigned char unit[2] = {out.getData2()[0], out.getData2()[1]};
    swapUnit(unit);
    printLine('D', first, size, unit, 2);
  }
}

void dumpEncoding(const EncodingRow& row, EncodingConvert& converter, LogBase& log) {
  for (unsigned int value = 1; value < 0x10000; ++value) {
    unsigned char unit[2] = {static_cast<unsigned char>(value),
                             static_cast<unsigned char>(value >> 8)};
    DataBuffer out;
    converter.m_toCodePage = row.number;
    if (!converter.convertFromUnicodeHC(row.number, unit, 2, out, log)) continue;
    swapUnit(unit);
    printLine('E', unit, 2, out.getData2(), out.getSize());
  }
}

}  // namespace

int main(int argc, char** argv) {
  EncodingConvert converter;
  LogBase log;
  for (int i = 1; i < argc; ++i) {
    const EncodingRow* row = findEncodingRow(static_cast<int>(std::strtol(argv[i], nullptr, 10)));
    if (row == nullptr || !hasTable(*row) || !row->inEngine) {
      std::fprintf(stderr, "mapping_dump: %s is no table-backed code page\n", argv[i]);
      return 2;
    }
    std::printf("P %d\n", row->number);
    dumpDecoding(*row, converter, log);
    dumpEncoding(*row, converter, log);
  }
  return 0;
}
