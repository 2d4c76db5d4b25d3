// UnicodeLookup: the to-Unicode table of a single-byte code page.
#ifndef ENCODING_TABLES_UNICODE_LOOKUP_H_
#define ENCODING_TABLES_UNICODE_LOOKUP_H_

#include <cstdint>

class UnicodeLookup {
 public:
  // Zeroes entries 0 to 127 only; the registry writes entries 1 to 255 itself.
  UnicodeLookup();
  virtual ~UnicodeLookup() = default;
  UnicodeLookup(const UnicodeLookup&) = delete;
  UnicodeLookup& operator=(const UnicodeLookup&) = delete;

  // A new object that the caller destroys with delete, or null when memory is short.
  static UnicodeLookup* createNewObject();

  // UTF-16 code units in host byte order, by code page byte; 0: no mapping.
  std::uint16_t m_units[256];
};

#endif  // ENCODING_TABLES_UNICODE_LOOKUP_H_
