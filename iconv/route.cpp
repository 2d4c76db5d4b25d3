#include "iconv/route.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "encoding/accent_pairs.h"
#include "encoding/code_page_list.h"
#include "iconv/strict_plan.h"

namespace iconv_layer {
namespace {

// Routes by the spellings that they were asked for with; put in front, complete, and kept. No lock
// is ever held, so that a child of fork finds them usable whatever other threads did.
struct Known {
  Route route;
  const Known* next;
  std::uint32_t hash;
  std::uint32_t toLength;
  std::uint32_t fromLength;
  // The two spellings follow.
  const char* text() const { return reinterpret_cast<const char*>(this + 1); }
};

constexpr unsigned int kChainBits = 6;
constinit std::atomic<const Known*> g_chains[1u << kChainBits];
// A program that makes up spellings is served all the same, only slower.
constexpr unsigned int kMostKnown = 4096;
constinit std::atomic<unsigned int> g_knownCount{0};

struct Spelling {
  std::string_view to;
  std::string_view from;
  std::uint32_t hash;
};

std::uint32_t addToHash(std::uint32_t hash, std::string_view text) {
  for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 0x01000193u;
  return (hash ^ 0xFFu) * 0x01000193u;
}

std::atomic<const Known*>& chainOf(const Spelling& spelling) {
  return g_chains[spelling.hash * 0x9E3779B1u >> (32 - kChainBits)];
}

const Known* find(const Spelling& spelling) {
  const Known* known = chainOf(spelling).load(std::memory_order_acquire);
  for (; known != nullptr; known = known->next) {
    if (known->hash == spelling.hash && known->toLength == spelling.to.size() &&
        known->fromLength == spelling.from.size() &&
        std::memcmp(known->text(), spelling.to.data(), spelling.to.size()) == 0 &&
        std::memcmp(known->text() + known->toLength, spelling.from.data(), spelling.from.size()) ==
            0) {
      return known;
    }
  }
  return nullptr;
}

// Two threads may add the same; the first one found serves.
void add(const Spelling& spelling, const Route& route) {
  if (g_knownCount.fetch_add(1, std::memory_order_relaxed) >= kMostKnown) return;
  void* const memory = std::malloc(sizeof(Known) + spelling.to.size() + spelling.from.size());
  if (memory == nullptr) return;
  auto* const known = new (memory)
      Known{route, nullptr, spelling.hash, static_cast<std::uint32_t>(spelling.to.size()),
            static_cast<std::uint32_t>(spelling.from.size())};
  char* const text = reinterpret_cast<char*>(known + 1);
  std::memcpy(text, spelling.to.data(), spelling.to.size());
  std::memcpy(text + spelling.to.size(), spelling.from.data(), spelling.from.size());
  std::atomic<const Known*>& chain = chainOf(spelling);
  known->next = chain.load(std::memory_order_acquire);
  while (!chain.compare_exchange_weak(known->next, known, std::memory_order_acq_rel)) {
  }
}

}  // namespace

OpenStatus findRoute(const char* toCode, const char* fromCode, Route& route) {
  constexpr std::size_t kLongest = 1024;
  Spelling spelling{toCode, fromCode, 0x811C9DC5u};
  if (spelling.to.size() > kLongest || spelling.from.size() > kLongest) {
    return OpenStatus::kUnknownName;
  }
  spelling.hash = addToHash(addToHash(spelling.hash, spelling.to), spelling.from);
  if (const Known* const known = find(spelling)) {
    route = known->route;
    return OpenStatus::kGood;
  }
  const CharsetCode to = parseCode(spelling.to);
  const CharsetCode from = parseCode(spelling.from);
  if (to.charset.row == nullptr || from.charset.row == nullptr ||
      !isStreamTarget(to.charset.row->number) || !isStreamCodePage(from.charset.row->number)) {
    return OpenStatus::kUnknownName;
  }
  route = {from.charset, to.charset, to.suffixes, nullptr};
  // Accents that are characters stay so: only a stream joins them and the letters behind them.
  const fast::Reader reader =
      fast::hasAccentPairs(*from.charset.row) ? fast::Reader::kEngine : fast::Reader::kStream;
  route.plan = fast::openPlan(from.charset.row->number, to.charset.row->number, reader);
  const Strictness strictness{from.charset.isStrict, to.charset.isStrict, to.charset.writesOneWay,
                              from.charset.row->reordersMacArabic};
  if (route.plan != nullptr && strictness != Strictness()) {
    route.plan = strictPlan(*route.plan, strictness);
  }
  if (route.plan == nullptr) return OpenStatus::kNoMemory;
  if (!to.isOfLocale && !from.isOfLocale) add(spelling, route);
  return OpenStatus::kGood;
}

}  // namespace iconv_layer
