// Small free functions that everything else stands on.
#ifndef SUPPORT_ZV_BASE_H_
#define SUPPORT_ZV_BASE_H_

#include <cstdint>

// Length of a NUL-terminated string in bytes; a null pointer has length 0, a string longer than
// INT_MAX counts as INT_MAX.
int zvStrLen(const char* s);

// Compares at most maxCount bytes and stops at the first difference or NUL. Returns 0 when equal,
// otherwise the sign of the first difference (bytes compared as unsigned). A maxCount of 0 or less
// compares nothing and returns 0.
int zvStrNCmp(const char* a, const char* b, int maxCount);

// The byte order of the host. This is the only place in the engine that asks; exactly one is true.
bool zvIsBigEndian();
inline bool zvIsLittleEndian() { return !zvIsBigEndian(); }

// Makes the two functions above answer as a host of the other byte order would, so that what the
// engine does there can be tested anywhere. Units that the engine lays out "in host order" follow
// the answer, because they go through the two functions below. Not for use while conversions run,
// and tables built under one answer must be released before the other is used.
void zvSetBigEndianForTesting(bool bigEndian);

// Stores or loads one 16-bit code unit as two bytes in host order.
inline void zvStoreHostUnit(unsigned char* p, std::uint16_t unit, bool bigEndian) {
  p[bigEndian ? 0 : 1] = static_cast<unsigned char>(unit >> 8);
  p[bigEndian ? 1 : 0] = static_cast<unsigned char>(unit & 0xFF);
}
inline std::uint16_t zvLoadHostUnit(const unsigned char* p, bool bigEndian) {
  return static_cast<std::uint16_t>(bigEndian ? (p[0] << 8) | p[1] : p[0] | (p[1] << 8));
}

// A new array of count bytes, not initialised, or null when memory cannot be had; never throws.
// The caller frees it with delete[], or hands it to DataBuffer::takeData. A count of 0 gives a
// valid pointer to no bytes.
unsigned char* zvNewUnsignedChar(unsigned int count);

#endif  // SUPPORT_ZV_BASE_H_
