// Tracing garbled text, in the C++ and the C interface.
#include <algorithm>
#include <cstddef>
#include <cstring>
#include <new>
#include <utility>

#include "encconv/encconv.h"
#include "encconv/encconv_c.h"
#include "encoding/detect/tracer.h"

namespace encconv {

std::vector<Origin> trace(std::string_view garbled) {
  Options lenient;
  lenient.on_error = OnError::substitute;
  const Utf16Result units = to_utf16(garbled, "utf-8", lenient);
  if (units.status == Status::out_of_memory) throw std::bad_alloc();
  std::vector<Origin> origins;
  for (const detection::Origin& found : detection::traceBack(units.text)) {
    Result text = from_utf16(found.text, "utf-8", lenient);
    if (text.status == Status::out_of_memory) throw std::bad_alloc();
    Origin origin = {std::move(text.text), {}, found.confidence};
    for (const detection::Misreading& step : found.misreadings) {
      origin.misreadings.push_back({step.written, step.read});
    }
    origins.push_back(std::move(origin));
  }
  return origins;
}

}  // namespace encconv

struct encconv_trace {
  struct Origin {
    std::string text;
    std::vector<encconv_misreading> misreadings;
    double confidence;
  };
  std::vector<Origin> origins;
};

namespace {

// How large the structure was first; what claims to be smaller has no size set.
constexpr std::size_t kLeastOrigin =
    offsetof(encconv_origin, confidence) + sizeof(encconv_origin::confidence);

}  // namespace

// Nothing may throw out of here.
encconv_trace* encconv_trace_back(const char* text, size_t size) {
  if (text == nullptr && size != 0) return nullptr;
  try {
    auto trace = std::make_unique<encconv_trace>();
    for (encconv::Origin& origin : encconv::trace({text, size})) {
      std::vector<encconv_misreading> misreadings;
      for (const encconv::Misreading& step : origin.misreadings) {
        misreadings.push_back({step.written, step.read});
      }
      trace->origins.push_back({std::move(origin.text), std::move(misreadings), origin.confidence});
    }
    return trace.release();
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

size_t encconv_origin_count(const encconv_trace* trace) {
  return trace == nullptr ? 0 : trace->origins.size();
}

int encconv_origin_at(const encconv_trace* trace, size_t index, encconv_origin* origin) {
  if (origin == nullptr || origin->struct_size < kLeastOrigin ||
      index >= encconv_origin_count(trace)) {
    return 0;
  }
  const encconv_trace::Origin& found = trace->origins[index];
  const encconv_origin known = {origin->struct_size,      found.text.c_str(),
                                found.text.size(),        found.misreadings.data(),
                                found.misreadings.size(), found.confidence};
  std::memcpy(origin, &known, std::min(known.struct_size, sizeof known));
  return 1;
}

void encconv_trace_free(encconv_trace* trace) { delete trace; }
