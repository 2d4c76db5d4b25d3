// The way of short texts: no more is done for a pair of encodings seen before than to recognise it.
#ifndef ENCODING_FAST_SHORT_PATH_H_
#define ENCODING_FAST_SHORT_PATH_H_

#include <atomic>
#include <cstdint>

#include "encoding/encoding_convert.h"
#include "encoding/fast/conversion_side.h"
#include "encoding/special_code_pages.h"

namespace fast {

inline constexpr unsigned int kShortBytes = 256;

// A pair of encodings, with the function for its kinds, their tables, and the kernels.
struct Route {
  // Converts a text of 1 to kShortBytes bytes. The result is that of EncConvert.
  using Convert = bool(const Route& route, EncodingConvert& converter, const unsigned char* data,
                       unsigned int length, DataBuffer& out, LogBase& log);

  int from = 0;
  int to = 0;
  MarkBegin mark;
  Convert* convert = nullptr;
  const Kernels* kernels = nullptr;
  Side source;
  Side target;

  // Whether a text may go this way: what begins like a PDF, or with a byte order mark, has special
  // cases to settle.
  bool takes(const unsigned char* data, unsigned int length) const {
    return data[0] != '%' && !mark.begins(data, length);
  }
};

// The routes of all threads, published once and kept until forgetRoutes(). A hash table with a few
// places for each pair; a pair that finds them taken has no route.
inline constexpr unsigned int kRouteBits = 10;
inline constexpr unsigned int kRoutePlaces = 4;
extern std::atomic<const Route*> g_routes[(1u << kRouteBits) + kRoutePlaces - 1];

// The first of a pair's places.
inline std::atomic<const Route*>* routePlaces(int from, int to) {
  const unsigned int pair = static_cast<unsigned int>(from) << 16 ^ static_cast<unsigned int>(to);
  return g_routes + (pair * 0x9E3779B1u >> (32 - kRouteBits));
}

// The route of a pair, or null.
inline const Route* findRoute(int from, int to) {
  const std::atomic<const Route*>* place = routePlaces(from, to);
  for (unsigned int i = 0; i < kRoutePlaces; ++i) {
    const Route* route = place[i].load(std::memory_order_acquire);
    if (route == nullptr || (route->from == from && route->to == to)) return route;
  }
  return nullptr;
}

// Makes a route for a pair; the tables are built where they are missing. False when there is one
// already, for a pair that may have none, and when memory is short.
bool openRoute(EncodingConvert& converter, int from, int to);

// Releases all routes. Whoever releases flat tables, or chooses other kernels, calls this; it
// must not overlap any conversion, as they must not.
void forgetRoutes();

}  // namespace fast

#endif  // ENCODING_FAST_SHORT_PATH_H_
