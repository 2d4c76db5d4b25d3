#include "encoding/tables/table_registry.h"

#include "encoding/encoding_convert.h"
#include "support/string_buffer.h"

HashConvert* buildMap(const CodePageRow& row, int codePage, bool fromUnicode, LogBase& log) {
  HashConvert* map = HashConvert::createNewObject(codePage);
  if (map == nullptr) return nullptr;
  map->hcInitialize(fromUnicode ? row.fromUnicodeSize : row.toUnicodeSize);
  if (row.appendText != nullptr) {
    StringBuffer text;
    row.appendText(text);
    if (text.hasFailed()) map->latchFailure();
    EncodingConvert::buildHash(text.getString(), *map, fromUnicode, log);
  }
  if (row.text != nullptr) EncodingConvert::buildHash(row.text, *map, fromUnicode, log);
  if (map->hasFailed()) {
    delete map;
    return nullptr;
  }
  return map;
}
