#include "encoding/tables/flat_tables.h"

#include <algorithm>
#include <bitset>
#include <iterator>
#include <memory>
#include <type_traits>

#include "encoding/codecs/mapped_tables.h"
#include "encoding/codecs/vietnamese.h"
#include "encoding/tables/table_builder.h"
#include "encoding/tables/table_registry.h"
#include "support/publish.h"
#include "support/zv_base.h"

namespace fast {
namespace {

constexpr unsigned int kReaders = 2;

struct FlatSlots {
  std::atomic<const SingleByteDecoder*> singleDecoders[kReaders];  // by Reader, where they differ
  std::atomic<const DoubleByteDecoder*> doubleDecoders[kReaders];
  std::atomic<const SingleByteEncoder*> singleEncoder;
  std::atomic<const DoubleByteEncoder*> doubleEncoder;
  std::atomic<const SingleByteEncoder*> exactSingleEncoder;
  std::atomic<const DoubleByteEncoder*> exactDoubleEncoder;
};
FlatSlots g_slots[kMaxTableSlots];

// Whether the published maps of a row are not what its texts mean.
bool hasOtherMaps(const EncodingRow& row) {
  return row.appendText != nullptr && row.text != nullptr && zvIsBigEndian();
}

// The published table of a slot: made of the row's mapping, where it has one, else by fill(row,
// base table, table). Null when memory is short, or when a flat table will not do.
template <class Table, class Base, class Fill>
const Table* publishOf(std::atomic<const Table*>& slot, const EncodingRow& row,
                       const std::atomic<Base*>& base, Fill fill) {
  return publish(slot, [&](Table& table) {
    if (row.mapping != nullptr) {
      const CodeTable* const mapping = CodeTable::open(*row.mapping);
      return mapping != nullptr && fillFromMapping(*mapping, table);
    }
    if constexpr (std::is_same_v<Base, HashConvert>) {
      if (hasOtherMaps(row)) {
        const bool fromUnicode = &base == &tableSlots(row).fromUnicode;
        const std::unique_ptr<HashConvert> meant = buildMeantMap(row, fromUnicode);
        return meant != nullptr && fill(row, *meant, table);
      }
    }
    const Base* const source = base.load(std::memory_order_acquire);
    return source != nullptr && fill(row, *source, table);
  });
}

// Calls putSingle(byte, unit) and putPair(bytes, unit) for the codes of a row that are only read.
// False when memory is short.
template <class PutSingle, class PutPair>
bool forEachOnlyRead(const EncodingRow& row, PutSingle putSingle, PutPair putPair) {
  constexpr int kBuckets = 1009;
  const bool bigEndian = zvIsBigEndian();
  const std::unique_ptr<HashConvert> map(HashConvert::createNewObject(row.number));
  if (map == nullptr) return false;
  LogBase silent;
  map->hcInitialize(kBuckets);
  buildHash(row.onlyReadText, *map, false, silent);
  if (map->hasFailed()) return false;
  for (unsigned int byte = 0; byte < 256; ++byte) {
    const auto* const entry = reinterpret_cast<const unsigned char*>(&map->m_singleBytes[byte]);
    if (const std::uint16_t unit = zvLoadHostUnit(entry, bigEndian)) putSingle(byte, unit);
  }
  map->forEachEntry([&](const HashConvert::Bucket& entry) {
    putPair(entry.key, zvLoadHostUnit(entry.value, bigEndian));
  });
  return true;
}

bool fillSingleByteDecoder(const EncodingRow& /*row*/, const UnicodeLookup& lookup,
                           SingleByteDecoder& table) {
  for (int byte = 0; byte < 256; ++byte) table.units[byte] = lookup.m_units[byte];
  table.units[0] = 0;
  table.prepare();
  return true;
}

bool fillDoubleByteDecoder(const EncodingRow& row, const HashConvert& map,
                           DoubleByteDecoder& table) {
  table.threeByteShift = row.threeByteShift;
  const bool bigEndian = zvIsBigEndian();
  for (int byte = 0; byte < 256; ++byte) {
    const auto* entry = reinterpret_cast<const unsigned char*>(&map.m_singleBytes[byte]);
    table.singles[byte] = zvLoadHostUnit(entry, bigEndian);
  }
  bool flat = map.get_IsLowerAscii();
  map.forEachEntry([&](const HashConvert::Bucket& entry) {
    const unsigned int unit = zvLoadHostUnit(entry.value, bigEndian);
    if (entry.isOneByte != 0 || unit == 0) flat = false;
    table.units[entry.key[0] + 256u * entry.key[1]] = static_cast<std::uint16_t>(unit);
  });
  table.prepare();
  return flat;
}

// Of a single-byte code page the bytes that are only read; its pairs are no matter of the table.
bool fillSingleByteReader(const EncodingRow& row, const UnicodeLookup& lookup,
                          SingleByteDecoder& table) {
  UnicodeLookup all;
  std::copy(std::begin(lookup.m_units), std::end(lookup.m_units), all.m_units);
  const auto put = [&](unsigned int byte, std::uint16_t unit) { all.m_units[byte] = unit; };
  return forEachOnlyRead(row, put, [](const unsigned char*, std::uint16_t) {}) &&
         fillSingleByteDecoder(row, all, table);
}

bool fillDoubleByteReader(const EncodingRow& row, const HashConvert& map,
                          DoubleByteDecoder& table) {
  const auto put = [&](const unsigned char* pair, std::uint16_t unit) {
    table.units[pair[0] + 256u * pair[1]] = unit;
  };
  return forEachOnlyRead(
             row, [](unsigned int, std::uint16_t) {}, put) &&
         fillDoubleByteDecoder(row, map, table);
}

// Calls put(unit, code) for everything that the encoder of a code page writes without an error.
// False for what a flat table cannot say: a unit but 0 that is written as 0, a second byte 0.
template <class Put>
bool forEachEncoding(const HashConvert& map, Put put) {
  const bool bigEndian = zvIsBigEndian();
  bool flat = true;
  map.forEachEntry([&](const HashConvert::Bucket& entry) {
    const unsigned int unit = zvLoadHostUnit(entry.key, bigEndian);
    const bool isPair = entry.isOneByte == 0;
    const unsigned int code = entry.value[0] + (isPair ? entry.value[1] * 256u : 0);
    if (unit != kEscapeUnit) put(unit, code);
    if ((code == 0 && unit != 0) || (isPair && entry.value[1] == 0)) flat = false;
  });
  if (map.get_IsLowerAscii()) {
    for (unsigned int unit = 0; unit < 0x80; ++unit) put(unit, unit);
  }
  return flat;
}

bool fillSingleByteEncoder(const EncodingRow& row, const HashConvert& map,
                           SingleByteEncoder& table) {
  const bool flat = forEachEncoding(map, [&](unsigned int unit, unsigned int code) {
    table.bytes[unit] = static_cast<std::uint8_t>(code);
  });
  if (row.foldsArabicDigits) {
    for (unsigned int digit = 0; digit < 10; ++digit) {
      const auto ascii = static_cast<std::uint8_t>('0' + digit);
      table.bytes[0x0660 + digit] = table.bytes[0x06F0 + digit] = ascii;
    }
  }
  table.prepare();
  return flat;
}

bool fillDoubleByteEncoder(const EncodingRow& row, const HashConvert& map,
                           DoubleByteEncoder& table) {
  const bool flat = forEachEncoding(map, [&](unsigned int unit, unsigned int code) {
    table.codes[unit] = static_cast<std::uint16_t>(code);
  });
  if (row.decomposesVietnamese) {
    for (unsigned int unit = 0x00C0; unit < 0x1F00; ++unit) {
      const VietnameseDecomposition* letter = findVietnameseDecomposition(unit);
      if (letter == nullptr || table.codes[unit] != 0) continue;
      table.codes[unit] = static_cast<std::uint16_t>(letter->base + letter->mark * 256);
    }
  }
  table.prepare();
  return flat;
}

// Whether two units have the same code in a table of codes by unit.
template <class Code>
bool hasTwins(const Code (&codes)[65536]) {
  std::bitset<65536> isSeen;
  for (const Code code : codes) {
    if (code != 0 && isSeen[code]) return true;
    isSeen[code] = true;
  }
  return false;
}

bool fillExactSingleByteEncoder(const EncodingRow& row, SingleByteEncoder& table) {
  const SingleByteEncoder* const whole = encoderFor(row).singleByte;
  const SingleByteDecoder* const decoder = decoderFor(row).singleByte;
  if (whole == nullptr || decoder == nullptr) return false;
  for (unsigned int unit = 0; unit < 0x10000; ++unit) {
    const std::uint8_t byte = whole->bytes[unit];
    table.bytes[unit] = decoder->units[byte] == unit ? byte : std::uint8_t{0};
  }
  table.prepare();
  return true;
}

bool fillExactDoubleByteEncoder(const EncodingRow& row, DoubleByteEncoder& table) {
  const DoubleByteEncoder* const whole = encoderFor(row).doubleByte;
  const Decoder decoder = decoderFor(row);
  if (whole == nullptr || (decoder.singleByte == nullptr && decoder.doubleByte == nullptr)) {
    return false;
  }
  for (unsigned int unit = 0; unit < 0x10000; ++unit) {
    const std::uint16_t code = whole->codes[unit];
    const bool isTakenApart = row.decomposesVietnamese && code > 0xFF;
    table.codes[unit] = isTakenApart || readUnit(decoder, code) == unit ? code : std::uint16_t{0};
  }
  table.prepare();
  return true;
}

}  // namespace

std::uint16_t readUnit(const Decoder& decoder, std::uint16_t code) {
  if (decoder.singleByte != nullptr) return code > 0xFF ? 0 : decoder.singleByte->units[code];
  if (code > 0xFF) return decoder.doubleByte->units[code];
  return code < 0x80 ? code : decoder.doubleByte->singles[code];
}

Decoder decoderFor(const EncodingRow& row, Reader reader) {
  FlatSlots& slots = g_slots[row.slot];
  const TableSlots& tables = tableSlots(row);
  const bool readsMore = reader == Reader::kStream && row.onlyReadText != nullptr;
  const unsigned int kind = readsMore ? 1 : 0;
  if (row.form == EncodingForm::kDoubleByte) {
    return {.doubleByte = publishOf(slots.doubleDecoders[kind], row, tables.multiToUnicode,
                                    readsMore ? fillDoubleByteReader : fillDoubleByteDecoder)};
  }
  return {.singleByte = publishOf(slots.singleDecoders[kind], row, tables.singleToUnicode,
                                  readsMore ? fillSingleByteReader : fillSingleByteDecoder)};
}

Encoder encoderFor(const EncodingRow& row) {
  FlatSlots& slots = g_slots[row.slot];
  const std::atomic<HashConvert*>& map = tableSlots(row).fromUnicode;
  if (row.form == EncodingForm::kDoubleByte || row.decomposesVietnamese) {
    return {.doubleByte = publishOf(slots.doubleEncoder, row, map, fillDoubleByteEncoder)};
  }
  return {.singleByte = publishOf(slots.singleEncoder, row, map, fillSingleByteEncoder)};
}

bool mayApproximate(const Encoder& encoder) {
  return encoder.doubleByte != nullptr
             ? hasTwins(encoder.doubleByte->codes)
             : encoder.singleByte != nullptr && hasTwins(encoder.singleByte->bytes);
}

Encoder exactEncoderFor(const EncodingRow& row) {
  FlatSlots& slots = g_slots[row.slot];
  if (row.form == EncodingForm::kDoubleByte || row.decomposesVietnamese) {
    return {.doubleByte = publish(slots.exactDoubleEncoder, [&](DoubleByteEncoder& table) {
              return fillExactDoubleByteEncoder(row, table);
            })};
  }
  return {.singleByte = publish(slots.exactSingleEncoder, [&](SingleByteEncoder& table) {
            return fillExactSingleByteEncoder(row, table);
          })};
}

void releaseFlatTables() {
  for (FlatSlots& slots : g_slots) {
    for (auto& slot : slots.singleDecoders) release(slot);
    for (auto& slot : slots.doubleDecoders) release(slot);
    release(slots.singleEncoder);
    release(slots.doubleEncoder);
    release(slots.exactSingleEncoder);
    release(slots.exactDoubleEncoder);
  }
}

}  // namespace fast
