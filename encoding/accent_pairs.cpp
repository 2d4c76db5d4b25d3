#include "encoding/accent_pairs.h"

#include <algorithm>
#include <iterator>
#include <memory>

#include "encoding/tables/flat_tables.h"
#include "encoding/tables/table_builder.h"
#include "support/zv_base.h"

namespace fast {

bool AccentPairs::fill(const EncodingRow& row) {
  constexpr int kBuckets = 509;
  const SingleByteDecoder* const decoder = decoderFor(row, Reader::kStream).singleByte;
  const std::unique_ptr<HashConvert> map(HashConvert::createNewObject(row.number));
  if (decoder == nullptr || map == nullptr) return false;
  LogBase silent;
  map->hcInitialize(kBuckets);
  buildHash(row.onlyReadText, *map, false, silent);
  if (map->hasFailed()) return false;
  std::copy(std::begin(decoder->units), std::end(decoder->units), singles);
  for (auto& letters : pairs) std::fill(std::begin(letters), std::end(letters), std::uint16_t{0});
  map->forEachEntry([&](const HashConvert::Bucket& entry) {
    if (!isAccent(entry.key[0])) return;
    pairs[entry.key[0] - kFirstAccent][entry.key[1]] = zvLoadHostUnit(entry.value, zvIsBigEndian());
  });
  return true;
}

}  // namespace fast
