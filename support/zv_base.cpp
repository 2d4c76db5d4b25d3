#include "support/zv_base.h"

#include <bit>
#include <climits>
#include <cstring>
#include <new>

namespace {
bool g_bigEndian = std::endian::native == std::endian::big;
}

int zvStrLen(const char* s) {
  if (s == nullptr) return 0;
  const std::size_t n = std::strlen(s);
  return n > INT_MAX ? INT_MAX : static_cast<int>(n);
}

int zvStrNCmp(const char* a, const char* b, int maxCount) {
  return maxCount <= 0 ? 0 : std::strncmp(a, b, static_cast<std::size_t>(maxCount));
}

bool zvIsBigEndian() { return g_bigEndian; }

void zvSetBigEndianForTesting(bool bigEndian) { g_bigEndian = bigEndian; }

unsigned char* zvNewUnsignedChar(unsigned int count) {
  return new (std::nothrow) unsigned char[count];
}
