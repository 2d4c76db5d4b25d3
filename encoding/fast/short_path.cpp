// Of a text of twenty bytes most of the time would go into finding tables and kernels by the
// numbers of the code pages. So the pairs that were in use are kept with all that belongs to them.
#include "encoding/fast/short_path.h"

#include <algorithm>
#include <memory>
#include <new>

#include "encoding/fast/fast_path.h"
#include "encoding/kernels/cpu_dispatch.h"
#include "encoding/special_code_pages.h"

namespace fast {

constinit std::atomic<const Route*> g_routes[(1u << kRouteBits) + kRoutePlaces - 1];

namespace {

// Bytes of output for a byte of input, at most.
constexpr unsigned int kWorstFactor = 3;

// ---- The conversion, for each pair of kinds ----

// The end of the output; null where the text is not clean throughout.
template <Side::Kind source, Side::Kind target>
unsigned char* convertClean(const Route& route, const unsigned char* data, unsigned int length,
                            unsigned char* out, unsigned char* outEnd) {
  const unsigned char* end = data + length;
  const Kernels& k = *route.kernels;
  KernelResult r{};
  if constexpr (source == Side::kUtf16) {
    r = encodeAs<target>(k, route.target, data, end, out, outEnd);
  } else if constexpr (target == Side::kUtf16) {
    r = decodeAs<source>(k, route.source, data, end, out, outEnd);
  } else if constexpr (source == Side::kSingleByte && target == Side::kUtf8) {
    r = k.singleByteToUtf8(*route.source.decoder.singleByte, data, end, out, outEnd);
  } else {
    alignas(32) unsigned char utf16[2 * kShortBytes + kKernelSlack];
    const KernelResult decoded =
        decodeAs<source>(k, route.source, data, end, utf16, utf16 + sizeof utf16);
    if (decoded.in != end) return nullptr;
    end = decoded.out;
    r = encodeAs<target>(k, route.target, utf16, end, out, outEnd);
  }
  return r.in == end ? r.out : nullptr;
}

template <Side::Kind source, Side::Kind target>
bool convertShort(const Route& route, EncodingConvert& converter, const unsigned char* data,
                  unsigned int length, DataBuffer& out, LogBase& log) {
  if (out.getSize() <= kNearlyFull) {
    unsigned char* const tail = out.reserveTail(kWorstFactor * length + kKernelSlack);
    if (tail == nullptr) return false;
    const unsigned char* const tailEnd =
        convertClean<source, target>(route, data, length, tail, tail + out.getTailRoom());
    if (tailEnd != nullptr) {
      out.commitTail(static_cast<unsigned int>(tailEnd - tail));
      return !out.hasFailed();
    }
  }
  return convertBetween(converter, route.from, route.to, route.source, route.target, data, length,
                        out, log) &&
         !out.hasFailed();
}

template <Side::Kind source>
Route::Convert* convertFrom(Side::Kind target) {
  if constexpr (source != Side::kUtf16) {
    if (target == Side::kUtf16) return convertShort<source, Side::kUtf16>;
  }
  if constexpr (source != Side::kUtf8) {
    if (target == Side::kUtf8) return convertShort<source, Side::kUtf8>;
  }
  if (target == Side::kSingleByte) return convertShort<source, Side::kSingleByte>;
  return target == Side::kDoubleByte ? convertShort<source, Side::kDoubleByte> : nullptr;
}

Route::Convert* findConvert(Side::Kind source, Side::Kind target) {
  switch (source) {
    case Side::kUtf16:
      return convertFrom<Side::kUtf16>(target);
    case Side::kUtf8:
      return convertFrom<Side::kUtf8>(target);
    case Side::kSingleByte:
      return convertFrom<Side::kSingleByte>(target);
    case Side::kDoubleByte:
      return convertFrom<Side::kDoubleByte>(target);
    default:
      return nullptr;
  }
}

// Fills in a route; false for pairs that go other ways, and when memory is short.
bool fill(Route& route, EncodingConvert& converter) {
  LogBase silent;  // the conversion itself will report what is wrong
  if (!isFastPathOpen(silent)) return false;
  // 1258 asks the converter for the destination of the conversion.
  const std::int32_t before = converter.m_toCodePage;
  converter.m_toCodePage = route.to;
  const bool areOpen = openSource(route.from, silent, route.source) &&
                       openTarget(route.to, converter, silent, route.target);
  converter.m_toCodePage = before;
  if (areOpen) route.convert = findConvert(route.source.kind, route.target.kind);
  route.mark = markBegin(route.from);
  route.kernels = &kernels();
  onKernelsChanged(forgetRoutes);
  return route.convert != nullptr;
}

}  // namespace

bool openRoute(EncodingConvert& converter, int from, int to) {
  // Mac Arabic text is rewritten first, and ASCII is often copied.
  if (from == to || from == kMacArabic || (from == kUsAscii && copiesUsAscii(to))) return false;
  std::atomic<const Route*>* const places = routePlaces(from, to);
  const auto isFree = [](const auto& place) { return place.load() == nullptr; };
  if (findRoute(from, to) != nullptr || std::none_of(places, places + kRoutePlaces, isFree)) {
    return false;
  }
  Route filled;
  filled.from = from;
  filled.to = to;
  if (!fill(filled, converter)) return false;
  std::unique_ptr<const Route> made(new (std::nothrow) Route(filled));
  if (made == nullptr) return false;
  for (unsigned int i = 0; i < kRoutePlaces; ++i) {
    const Route* other = nullptr;
    if (places[i].compare_exchange_strong(other, made.get(), std::memory_order_acq_rel)) {
      static_cast<void>(made.release());  // the place holds it
      return true;
    }
    if (other->from == from && other->to == to) return true;  // another thread was faster
  }
  return false;
}

void forgetRoutes() {
  for (auto& place : g_routes) delete place.exchange(nullptr, std::memory_order_acq_rel);
}

}  // namespace fast
