// Table texts, well formed and hostile, through the builders, and look-ups in what they made.
// Settings: form of the text, direction, size of the map.
#include "encoding/encoding_convert.h"
#include "fuzz/fuzz_support.h"
#include "tools/table_text_packing.h"

namespace {

// The table text that holds the bytes as its image, stored or compressed, or as the damaged
// container of one; or just the bytes.
std::string tableText(unsigned int form, std::span<const std::uint8_t> bytes) {
  if (form == 0) return textOf(bytes);
  DataBuffer raw, coded;
  raw.append(bytes.data(), sizeOf(bytes));
  if (form == 1) {
    DataBuffer container;
    packBzip2(raw, container);
    encodeBase64(container.getData2(), container.getSize(), coded);
  } else {
    encodeBase64(raw.getData2(), raw.getSize(), coded);
  }
  return (form == 2 ? 'x' : 'c') + std::string(viewOf(coded));
}

std::size_t entriesOf(const HashConvert& map) {
  std::size_t count = 0;
  map.forEachEntry([&](const HashConvert::Bucket& entry) {
    ++count;
    unsigned char value[2];
    int length = 0;
    map.hcLookup(entry.key, value, length);
    check(length == (entry.isOneByte != 0 ? 1 : 2), "every entry is found");
  });
  return count;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzInput input(data, size);
  const unsigned int form = input.byte() % 4;
  const bool fromUnicode = input.byte() % 2 == 0;
  const int buckets = static_cast<int>(input.byte() * 2 + 1);
  const auto base = input.bytes(input.byte());
  const std::string text = tableText(form, input.rest());

  LogBase log;
  HashConvert* map = HashConvert::createNewObject(1);
  map->hcInitialize(buckets);
  // A table of differences is applied over another one.
  if (!base.empty()) {
    EncodingConvert::buildHash(tableText(2, base).c_str(), *map, fromUnicode, log);
  }
  EncodingConvert::buildHash(text.c_str(), *map, fromUnicode, log);
  check(!map->hasFailed(), "memory suffices");
  check(entriesOf(*map) <= 65536, "a key has one entry");

  HashConvert* reversed = HashConvert::createNewObject(1);
  reversed->hcInitialize(buckets);
  map->hcBuildReverse(*reversed, log);
  check(entriesOf(*reversed) <= 65536, "a key has one entry");
  delete reversed;
  delete map;
  return 0;
}
