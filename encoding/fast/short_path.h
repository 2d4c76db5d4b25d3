// The way of short texts: no more is done for a pair of encodings seen before than to recognise it.
#ifndef ENCODING_FAST_SHORT_PATH_H_
#define ENCODING_FAST_SHORT_PATH_H_

#include <atomic>
#include <cstdint>

#include "encoding/encoding_convert.h"
#include "encoding/fast/conversion_side.h"

namespace fast {

inline constexpr unsigned int kShortBytes = 256;

// A pair of encodings, with the function for its kinds, their tables, and the kernels.
struct Route {
  // Converts a text of 1 to kShortBytes bytes. The result is that of EncConvert.
  using Convert = bool(const Route& route, EncodingConvert& converter, const unsigned char* data,
                       unsigned int length, DataBuffer& out, LogBase& log);

  int from = 0;
  int to = 0;
  std::uint64_t generation = 0;
  // First bytes from here up may begin a byte order mark.
  unsigned int firstByteLimit = 0;
  Convert* convert = nullptr;
  const Kernels* kernels = nullptr;
  Side source;
  Side target;
};

// Counts from 1 the times that tables or kernels were exchanged. Those who do that see to it that
// no conversion is under way, which orders their memory accesses and the conversions'; the counter
// needs no order of its own.
inline constinit std::atomic<std::uint64_t> g_routeGeneration = 1;

// The last few pairs of each thread. Per thread rather than in the converter: so they serve
// converters that live for one call, and take no part in what an object is.
inline constexpr unsigned int kRoutes = 4;
extern constinit thread_local Route t_routes[kRoutes];

inline Route& routeFor(int from, int to) {
  const unsigned int mixed = static_cast<unsigned int>(from) + 3 * static_cast<unsigned int>(to);
  return t_routes[mixed % kRoutes];
}

inline bool isValid(const Route& route, int from, int to) {
  return route.from == from && route.to == to &&
         route.generation == g_routeGeneration.load(std::memory_order_relaxed);
}

// Makes a route for a pair; the tables are built where they are missing. False when there is one
// already, for a pair that may have none, and when memory is short.
bool openRoute(EncodingConvert& converter, int from, int to);

// Makes all routes invalid. Whoever releases derived tables, or chooses other kernels, calls this;
// it must not overlap any conversion, as they must not.
void forgetRoutes();

}  // namespace fast

#endif  // ENCODING_FAST_SHORT_PATH_H_
