// Route: the two sides of a conversion, resolved; what iconv_open looks up.
#ifndef ICONV_ROUTE_H_
#define ICONV_ROUTE_H_

#include "encoding/plan.h"
#include "iconv/charset.h"

namespace iconv_layer {

struct Route {
  Charset from;
  Charset to;
  Suffixes suffixes;
  const fast::Plan* plan = nullptr;  // of the two rows; kept for as long as the program runs
};

enum class OpenStatus : unsigned char { kGood, kUnknownName, kNoMemory };

// Finds the route between two codes. One that was found before, by the same spellings, costs two
// comparisons of texts, unless it depends on the locale. Any thread may call.
OpenStatus findRoute(const char* toCode, const char* fromCode, Route& route);

}  // namespace iconv_layer

#endif  // ICONV_ROUTE_H_
