#include "support/hash_convert.h"

#include <cstring>
#include <new>

#include "support/zv_base.h"

namespace {

using Bucket = HashConvert::Bucket;

bool isEmpty(const Bucket& bucket) { return (bucket.key[0] | bucket.key[1]) == 0; }

bool holds(const Bucket& bucket, const unsigned char* key) {
  return bucket.key[0] == key[0] && bucket.key[1] == key[1];
}

bool isPrivateUse(std::uint16_t unit) { return unit >= 0xE000 && unit <= 0xF8FF; }

// Whether a code is to be read as unit candidate rather than as unit other. A private-use unit
// never hides a character that everybody knows.
bool isPreferred(std::uint16_t candidate, std::uint16_t other) {
  if (isPrivateUse(candidate) != isPrivateUse(other)) return isPrivateUse(other);
  return candidate < other;
}

}  // namespace

// An open-addressed table, at most half full, so that a search always meets an empty place. A
// removed entry keeps its place marked, so that the entries that were put behind it are found.
struct HashConvert::Displaced {
  static constexpr std::uint32_t kFirstCapacity = 256;  // a power of two, as all that follow

  Bucket* places = nullptr;
  std::uint32_t capacity = 0;
  std::uint32_t used = 0;  // places that are not empty, removed ones included

  ~Displaced() { delete[] places; }

  std::uint32_t firstPlace(const unsigned char* key) const {
    return ((key[0] | (static_cast<std::uint32_t>(key[1]) << 8)) * 0x9E3779B1u >> 15) &
           (capacity - 1);
  }

  Bucket* find(const unsigned char* key) {
    if (capacity == 0) return nullptr;
    for (std::uint32_t i = firstPlace(key);; i = (i + 1) & (capacity - 1)) {
      if (isEmpty(places[i])) return nullptr;
      if (holds(places[i], key) && places[i].isOneByte != kRemoved) return &places[i];
    }
  }

  bool add(const Bucket& entry) {
    if (2 * (used + 1) > capacity && !grow()) return false;
    put(entry);
    return true;
  }

 private:
  void put(const Bucket& entry) {
    std::uint32_t i = firstPlace(entry.key);
    while (!isEmpty(places[i])) i = (i + 1) & (capacity - 1);
    places[i] = entry;
    ++used;
  }

  bool grow() {
    const std::uint32_t newCapacity = capacity == 0 ? kFirstCapacity : 2 * capacity;
    Bucket* newPlaces = new (std::nothrow) Bucket[newCapacity]();
    if (newPlaces == nullptr) return false;
    Bucket* oldPlaces = places;
    const std::uint32_t oldCapacity = capacity;
    places = newPlaces;
    capacity = newCapacity;
    used = 0;
    for (std::uint32_t i = 0; i < oldCapacity; ++i) {
      if (!isEmpty(oldPlaces[i]) && oldPlaces[i].isOneByte != kRemoved) put(oldPlaces[i]);
    }
    delete[] oldPlaces;
    return true;
  }
};

HashConvert* HashConvert::createNewObject(int codePage) {
  return new (std::nothrow) HashConvert(codePage);
}

HashConvert::~HashConvert() {
  if (m_buckets != &m_noBucket) delete[] m_buckets;
  delete m_displaced;
}

void HashConvert::setBucketCount(std::uint32_t count) {
  constexpr std::uint32_t kNumbers = 65536;  // of two-byte keys
  m_bucketCount = count;
  m_divisor = count < kNumbers ? count : kNumbers;
  m_reciprocal = 0xFFFFFFFFu / m_divisor + 1;
}

void HashConvert::hcInitialize(int size) {
  setBucketCount(size > 0 ? static_cast<std::uint32_t>(size) : 1);
  m_buckets = new (std::nothrow) Bucket[m_bucketCount]();
  if (m_buckets == nullptr) {
    m_buckets = &m_noBucket;
    setBucketCount(1);
    m_failed = true;
  }
}

HashConvert::Bucket* HashConvert::find(const unsigned char* key) const {
  if ((key[0] | key[1]) == 0) return nullptr;
  Bucket& bucket = m_buckets[bucketOf(key)];
  if (holds(bucket, key)) return &bucket;
  return m_displaced != nullptr ? m_displaced->find(key) : nullptr;
}

void HashConvert::addAbsent(const Bucket& entry) {
  // The key 00 00 would look like an empty bucket.
  if (isEmpty(entry)) return;
  if (m_buckets == &m_noBucket) return;
  Bucket& bucket = m_buckets[bucketOf(entry.key)];
  if (isEmpty(bucket)) {
    bucket = entry;
    return;
  }
  if (m_displaced == nullptr) m_displaced = new (std::nothrow) Displaced;
  if (m_displaced == nullptr || !m_displaced->add(entry)) m_failed = true;
}

void HashConvert::hcInsert(const unsigned char* key, const unsigned char* value, int lengthCode,
                           LogBase& /*log*/) {
  if (find(key) != nullptr) return;
  if (lengthCode == 21) {
    addAbsent({{key[0], key[1]}, {value[0], 0}, 1});
  } else if (lengthCode == 22) {
    addAbsent({{key[0], key[1]}, {value[0], value[1]}, 0});
  }
}

void HashConvert::hcInsertUnit(const unsigned char* code, const unsigned char* unit,
                               bool bigEndian) {
  Bucket* present = find(code);
  if (present == nullptr) {
    addAbsent({{code[0], code[1]}, {unit[0], unit[1]}, 0});
  } else if (isPreferred(zvLoadHostUnit(unit, bigEndian),
                         zvLoadHostUnit(present->value, bigEndian))) {
    std::memcpy(present->value, unit, 2);
  }
}

void HashConvert::hcRemove(const unsigned char* key) {
  Bucket* present = find(key);
  if (present == nullptr) return;
  if (present != &m_buckets[bucketOf(key)]) {
    present->isOneByte = kRemoved;
    return;
  }
  *present = Bucket{};
  // Keys that this one displaced are now in no chain that starts at a full bucket.
  m_overflow = 1;
}

void HashConvert::hcLookup(const unsigned char* key, unsigned char* out, int& outLength) const {
  outLength = 0;
  const Bucket* present = find(key);
  if (present == nullptr) return;
  out[0] = present->value[0];
  outLength = 1;
  if (present->isOneByte == 0) {
    out[1] = present->value[1];
    outLength = 2;
  }
}

void HashConvert::hcBuildReverse(HashConvert& dest, LogBase& /*log*/) const {
  const bool bigEndian = zvIsBigEndian();
  dest.m_tableKind = 2;
  dest.m_isLowerAscii = m_isLowerAscii;
  if (m_failed) dest.m_failed = true;
  forEachEntry([&](const Bucket& entry) {
    if (entry.isOneByte == 0) {
      dest.hcInsertUnit(entry.value, entry.key, bigEndian);
    } else {
      dest.setSingleByte(entry.value[0], entry.key, bigEndian);
    }
  });
}

std::span<const HashConvert::Bucket> HashConvert::displacedPlaces() const {
  if (m_displaced == nullptr) return {};
  return {m_displaced->places, m_displaced->capacity};
}

void HashConvert::setSingleByte(unsigned char byte, const unsigned char* unit, bool bigEndian) {
  auto* entry = reinterpret_cast<unsigned char*>(&m_singleBytes[byte]);
  if (m_singleBytes[byte] == 0 ||
      isPreferred(zvLoadHostUnit(unit, bigEndian), zvLoadHostUnit(entry, bigEndian))) {
    std::memcpy(entry, unit, 2);
  }
}
