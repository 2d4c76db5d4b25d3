#include "encoding/tables/table_builder.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "encoding/tables/texts/table_image.h"
#include "support/zv_base.h"

void buildHash(const char* tableText, HashConvert& map, bool fromUnicode, LogBase& log,
               DifferenceKeys keys) {
  if (tableText == nullptr || tableText[0] == 0) return;
  DataBuffer buffer;
  unpackTableImage(tableText, buffer);
  if (buffer.hasFailed()) {
    map.latchFailure();
    return;
  }
  const unsigned char* image = buffer.getData2();
  if (buffer.getSize() == 0) return;
  map.put_IsLowerAscii(image[0] == 'a');
  if (image[1] != 'd') {
    buildFromComplete(image + 2, map, fromUnicode, log);
  } else if (fromUnicode) {
    buildFromDiffs(image + 2, map, log, keys);
  }
  map.m_tableKind = fromUnicode ? 1 : 2;
}

void buildFromComplete(const unsigned char* records, HashConvert& map, bool fromUnicode,
                       LogBase& log) {
  const bool bigEndian = zvIsBigEndian();
  map.m_tableKind = fromUnicode ? 1 : 2;
  const unsigned char* p = records;
  unsigned char unitBytes[2];
  unsigned int code = 0, unit = 0;
  for (; p[0] != 0; p += 3) {
    code += p[0];
    unit += loadImageU16(p + 1);
    zvStoreHostUnit(unitBytes, static_cast<std::uint16_t>(unit), bigEndian);
    const auto byte = static_cast<unsigned char>(code);
    if (fromUnicode) {
      map.hcInsert(unitBytes, &byte, 21, log);
    } else {
      std::memcpy(&map.m_singleBytes[byte], unitBytes, 2);
    }
  }
  code = unit = 0;
  for (++p; loadImageU16(p) != 0; p += 4) {
    code += loadImageU16(p);
    unit += loadImageU16(p + 2);
    zvStoreHostUnit(unitBytes, static_cast<std::uint16_t>(unit), bigEndian);
    const unsigned char codeBytes[2] = {static_cast<unsigned char>(code >> 8),
                                        static_cast<unsigned char>(code)};
    if (fromUnicode) {
      map.hcInsert(unitBytes, codeBytes, 22, log);
    } else {
      map.hcInsertUnit(codeBytes, unitBytes, bigEndian);
    }
  }
}

void buildFromDiffs(const unsigned char* records, HashConvert& map, LogBase& log,
                    DifferenceKeys keys) {
  const bool bigEndian = keys == DifferenceKeys::kHostOrder && zvIsBigEndian();
  unsigned char key[2];
  const auto remove = [&](const unsigned char* unit) {
    zvStoreHostUnit(key, static_cast<std::uint16_t>(loadImageU16(unit)), bigEndian);
    map.hcRemove(key);
  };
  map.m_overflow = 1;
  const unsigned char* p = records;
  for (; loadImageU16(p) != 0; p += 2) remove(p);
  for (p += 2; p[0] != 0; p += 3) {
    remove(p + 1);
    map.hcInsert(key, p, 21, log);
  }
  for (++p; loadImageU16(p) != 0; p += 4) {
    remove(p + 2);
    map.hcInsert(key, p, 22, log);
  }
}

void buildBestFit(const char* tableText, HashConvert& map, LogBase& log) {
  DataBuffer image;
  unpackTableImage(tableText, image);
  if (image.hasFailed()) map.latchFailure();
  if (image.getSize() == 0 || image.getData2()[1] != 'f') return;
  unsigned int unit = 0, replacement = 0;
  for (const unsigned char* p = image.getData2() + 2; loadImageU16(p) != 0; p += 4) {
    unit += loadImageU16(p);
    replacement += loadImageU16(p + 2);
    const unsigned char key[2] = {static_cast<unsigned char>(unit),
                                  static_cast<unsigned char>(unit >> 8)};
    const unsigned char value[2] = {static_cast<unsigned char>(replacement),
                                    static_cast<unsigned char>(replacement >> 8)};
    map.hcInsert(key, value, 22, log);
  }
}

UnicodeLookup::UnicodeLookup() { std::fill_n(m_units, 128, std::uint16_t{0}); }

UnicodeLookup* UnicodeLookup::createNewObject() { return new (std::nothrow) UnicodeLookup; }

bool buildSingleByteLookup(const HashConvert& map, UnicodeLookup& lookup) {
  const bool isAscii = map.get_IsLowerAscii();
  const bool bigEndian = zvIsBigEndian();
  for (unsigned int b = 1; b < 256; ++b) {
    const auto* unit = reinterpret_cast<const unsigned char*>(&map.m_singleBytes[b]);
    lookup.m_units[b] =
        isAscii && b < 128 ? static_cast<std::uint16_t>(b) : zvLoadHostUnit(unit, bigEndian);
  }
  return !isAscii;
}
