// HashConvert: the table of one code page in one direction.
#ifndef SUPPORT_HASH_CONVERT_H_
#define SUPPORT_HASH_CONVERT_H_

#include <cstdint>
#include <span>

#include "support/log_base.h"

// A hash map from two-byte keys to one- or two-byte values, beside a 256-entry array for single
// bytes and an ASCII flag. One thread builds a map; once published it is only read, by any number
// of threads.
class HashConvert {
 public:
  // One direct bucket. A bucket whose two key bytes are both zero is empty, so the key 00 00 is
  // never found through a bucket.
  struct Bucket {
    unsigned char key[2];
    unsigned char value[2];
    unsigned char isOneByte;  // nonzero: the value is value[0] alone
  };
  static_assert(sizeof(Bucket) == 5);

  // A new empty map, or null when memory is short. codePage is only a label. The caller owns it
  // and destroys it with delete.
  static HashConvert* createNewObject(int codePage);
  virtual ~HashConvert();
  HashConvert(const HashConvert&) = delete;
  HashConvert& operator=(const HashConvert&) = delete;

  // Sizes the map with that many direct buckets (> 0; the tables use primes). Call once, before
  // anything else. When memory is short the map has one bucket that holds nothing, and inserts
  // are dropped and latched in hasFailed().
  void hcInitialize(int size);

  // Adds an entry. lengthCode is 21 (two-byte key, one-byte value) or 22 (two and two); any other
  // code adds nothing. A key that is present keeps its value, so that a damaged table that repeats
  // keys cannot fill memory.
  void hcInsert(const unsigned char* key, const unsigned char* value, int lengthCode, LogBase& log);
  // Adds the unit of a two-byte code to a to-Unicode map. A code that has a unit already keeps the
  // one outside U+E000..U+F8FF, then the lower. Both are two bytes, the unit in host order.
  void hcInsertUnit(const unsigned char* code, const unsigned char* unit, bool bigEndian);
  // Removes the entry of a two-byte key; an absent key is ignored.
  void hcRemove(const unsigned char* key);
  // On a hit copies the value (at most 2 bytes) into out and sets outLength to 1 or 2; on a miss
  // sets outLength to 0. Finds every key, in its bucket or displaced.
  void hcLookup(const unsigned char* key, unsigned char* out, int& outLength) const;
  // The same inline, for the loops of the converters: looks at the key's own bucket, and further
  // only where another key sits there or keys were removed. Returns the number of bytes in value.
  int probe(const unsigned char* key, unsigned char* value) const {
    int length = 0;
    const Bucket& bucket = m_buckets[bucketOf(key)];
    if (bucket.key[0] == 0 && bucket.key[1] == 0) {
      if (m_overflow != 0) hcLookup(key, value, length);
    } else if (bucket.key[0] == key[0] && bucket.key[1] == key[1]) {
      value[0] = bucket.value[0];
      value[1] = bucket.value[1];
      length = bucket.isOneByte != 0 ? 1 : 2;
    } else {
      hcLookup(key, value, length);
    }
    return length;
  }
  // Fills dest (created and initialised) with the reverse of this from-Unicode map: one-byte values
  // go into its single-byte array, two-byte values into its hash; the ASCII flag is carried over.
  // Where two keys share a value the one outside U+E000..U+F8FF wins, then the lower.
  void hcBuildReverse(HashConvert& dest, LogBase& log) const;

  // Calls visit(entry) for each entry, in no order; the entry's key and value lie as inserted.
  template <class Visit>
  void forEachEntry(Visit visit) const {
    for (std::uint32_t i = 0; i < m_bucketCount; ++i) {
      if (isEntry(m_buckets[i])) visit(m_buckets[i]);
    }
    const std::span<const Bucket> displaced = displacedPlaces();
    for (const Bucket& place : displaced) {
      if (isEntry(place)) visit(place);
    }
  }

  // The ASCII flag: bytes 00 to 7F and units U+0000 to U+007F map to themselves and are not stored.
  bool get_IsLowerAscii() const { return m_isLowerAscii; }
  void put_IsLowerAscii(bool isLowerAscii) { m_isLowerAscii = isLowerAscii; }

  // The label given at creation.
  int codePage() const { return m_codePage; }

  // True once an entry was lost for lack of memory.
  bool hasFailed() const { return m_failed; }
  // For a builder that finds out on its own that entries are missing.
  void latchFailure() { m_failed = true; }

  // The index of a key's bucket.
  std::uint32_t bucketOf(const unsigned char* key) const {
    // The remainder by two multiplications, exact for numbers of 16 bits; a division takes several
    // times as long.
    const std::uint32_t number = key[0] + 256u * key[1];
    const std::uint32_t fraction = m_reciprocal * number;  // of the quotient
    return static_cast<std::uint32_t>((static_cast<std::uint64_t>(fraction) * m_divisor) >> 32);
  }

  // Read by the probes, written by the table builders, in this order.
  std::uint32_t m_bucketCount = 0;
  Bucket* m_buckets = nullptr;
  // Nonzero: keys may have been removed, an empty bucket proves nothing.
  std::uint8_t m_overflow = 0;
  std::int32_t m_tableKind = 0;           // 1: from Unicode, 2: to Unicode
  std::uint16_t m_singleBytes[256] = {};  // to Unicode: unit of each single byte, 0: unmapped

 private:
  struct Displaced;  // entries whose bucket belongs to another key

  static constexpr unsigned char kRemoved = 0xFF;  // as isOneByte of a displaced entry's place
  static bool isEntry(const Bucket& place) {
    return (place.key[0] | place.key[1]) != 0 && place.isOneByte != kRemoved;
  }
  void setBucketCount(std::uint32_t count);
  // Where the displaced entries lie; some places are no entries.
  std::span<const Bucket> displacedPlaces() const;

  explicit HashConvert(int codePage) : m_codePage(codePage) {}
  Bucket* find(const unsigned char* key) const;
  void addAbsent(const Bucket& entry);
  void setSingleByte(unsigned char byte, const unsigned char* unit, bool bigEndian);

  std::uint32_t m_divisor = 0;     // m_bucketCount, as far as a key's number can tell
  std::uint32_t m_reciprocal = 0;  // 2^32 / m_divisor, rounded up; 0 for 1
  Displaced* m_displaced = nullptr;
  Bucket m_noBucket = {};  // stands for the buckets when memory was short
  int m_codePage;
  bool m_isLowerAscii = false;
  bool m_failed = false;
};

#endif  // SUPPORT_HASH_CONVERT_H_
