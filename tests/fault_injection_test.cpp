// Every allocation of a conversion fails in turn: the result is false or the output is whole,
// nothing leaks, and the next call works.
#include <cstdlib>
#include <new>

#include "support/japanese.h"
#include "support/text_log.h"
#include "tests/stream_support.h"

namespace {

// In front of every block that operator new gives out. Those made while a test is watching are in
// a ring.
struct Block {
  Block* previous;
  Block* next;
  void* base;
  std::size_t size;
};
Block g_watched{&g_watched, &g_watched, nullptr, 0};
bool g_watching = false;
long g_failAt = 0;       // counts down to the allocation that fails; 0: none does
bool g_failsOn = false;  // and so do all that follow it

// Watches the allocations of its scope and lets the n-th of them fail, or all from there on; 0:
// none.
class Watch {
 public:
  Watch(long n, bool failsOn) {
    g_failAt = n;
    g_failsOn = failsOn;
    g_watching = true;
  }
  ~Watch() { g_watching = false; }
  Watch(const Watch&) = delete;
  Watch& operator=(const Watch&) = delete;
  static bool hasFailed() { return g_failAt < 0; }
};

// Whether the allocation that is asked for now is to fail.
bool failsNow() {
  if (!g_watching) return false;
  if (g_failAt < 0) return g_failsOn;
  if (g_failAt == 0 || --g_failAt != 0) return false;
  g_failAt = -1;
  return true;
}

void* allocate(std::size_t size, std::size_t alignment) {
  if (failsNow()) return nullptr;
  const std::size_t offset = (sizeof(Block) + alignment - 1) / alignment * alignment;
  auto* base = static_cast<unsigned char*>(
      std::aligned_alloc(alignment, (size + offset + alignment - 1) / alignment * alignment));
  if (base == nullptr) return nullptr;
  auto* block = new (base + offset - sizeof(Block)) Block{nullptr, nullptr, base, size};
  if (g_watching) {
    *block = {g_watched.previous, &g_watched, base, size};
    block->previous->next = g_watched.previous = block;
  }
  return base + offset;
}

void release(void* memory) {
  if (memory == nullptr) return;
  auto* block = static_cast<Block*>(memory) - 1;
  if (block->next != nullptr) {
    block->previous->next = block->next;
    block->next->previous = block->previous;
  }
  std::free(block->base);
}

void* allocateOrThrow(std::size_t size, std::size_t alignment) {
  void* memory = allocate(size, alignment);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

constexpr std::size_t kAlignment = __STDCPP_DEFAULT_NEW_ALIGNMENT__;

}  // namespace

void* operator new(std::size_t size) { return allocateOrThrow(size, kAlignment); }
void* operator new[](std::size_t size) { return allocateOrThrow(size, kAlignment); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return allocate(size, kAlignment);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return allocate(size, kAlignment);
}
void* operator new(std::size_t size, std::align_val_t alignment) {
  return allocateOrThrow(size, static_cast<std::size_t>(alignment));
}
void* operator new(std::size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept {
  return allocate(size, static_cast<std::size_t>(alignment));
}
void operator delete(void* memory) noexcept { release(memory); }
void operator delete[](void* memory) noexcept { release(memory); }
void operator delete(void* memory, std::size_t) noexcept { release(memory); }
void operator delete[](void* memory, std::size_t) noexcept { release(memory); }
void operator delete(void* memory, std::align_val_t) noexcept { release(memory); }
void operator delete(void* memory, std::size_t, std::align_val_t) noexcept { release(memory); }

// Large storage is not operator new's. The linker puts this in front of realloc.
extern "C" void* __real_realloc(void* memory, std::size_t size);
extern "C" void* __wrap_realloc(void* memory, std::size_t size) {
  return failsNow() ? nullptr : __real_realloc(memory, size);
}

namespace {

struct Case {
  int from, to, action, alternate;
  const char* input;
};
constexpr const char* kMixed = "plain d\xC3\xA9j\xC3\xA0 \xD0\xBF \xE6\x97\xA5 \xFF end";
constexpr const char* kBytes = "plain \x81 \xE9\x41\xAA \xFF\xFE\x90 end";
constexpr Case kCases[] = {{1252, 65001, 0, 0, kBytes},
                           {65001, 1252, 1, 0, kMixed},
                           {1252, 1250, 2, 0, kBytes},
                           {28597, 1200, 8, 0, kBytes},
                           {65001, 1200, 7, 0, kMixed},
                           {1200, 65001, 0, 0, "a\0b\0\xAC\x20\x3D\xD8\x01\xDE"},
                           {28597, 65001, 6, 1252, kBytes},
                           {65001, 1251, 6, 1252, kMixed},
                           {28593, 1201, 0, 0, kBytes},
                           {28593, 65001, 2, 0, kBytes},
                           {65001, 20127, 6, 932, kMixed},
                           {949, 1200, 6, 1252, "text \xC9 \x81 end"},
                           {65001, 1256, 7, 0, kMixed},
                           {65001, 28596, 2, 0, kMixed},
                           {65001, 1258, 1, 0, kMixed},
                           {932, 65001, 2, 0, "\x93\xFA\x96\x7B \xB1 \xFF\x81"},
                           {65001, 936, 0, 0, kMixed},
                           {10001, 1201, 1, 0, "\x93\xFA\x86\x9B\xA0\x81 "},
                           {50220, 65001, 0, 0, "\x1B$BF|K\\y!\x1B(B mail"},
                           {65001, 50220, 0, 0, kMixed},
                           {50225, 1200, 0, 0, "\x1B$)C\x0EHQ19\x0F text"},
                           {1252, 50225, 2, 0, kBytes},
                           {65000, 1251, 1, 0, "Hi +BB8-+2D3eAA-"},
                           {1251, 65000, 0, 0, kBytes},
                           {12001, 1252, 0, 0, "\0\0\0A\0\0 \xAC\0\1\xF6\0"},
                           {1252, 12000, 7, 0, kBytes},
                           {1201, 1252, 1, 0, "\0A \xAC\x4E\0"},
                           {65001, 1201, 2, 0, kMixed},
                           {10004, 65001, 1, 0, "\xC7\xB1\xB2\xC8 \xA1\xA2 x"},
                           {55000, 1252, 0, 0, "GSM \x1B\x65\x80"},
                           {1252, 55000, 0, 0, kBytes},
                           {20127, 65001, 0, 0, kBytes},
                           {1252, 1252, 0, 0, kBytes}};

std::string inputOf(const Case& c) {
  // The literals of UTF-16 and UTF-32 hold zeros.
  if (c.from == 1200) return {c.input, 10};
  if (c.from == 1201) return {c.input, 6};
  return c.from == 12001 ? std::string(c.input, 12) : c.input;
}

// What is known to be lost, and kept so: the lookup of a single-byte code page whose map cannot be
// built. (The other known state, a to-Unicode map of 10001 that is not there although the registry
// said so, shows as a failed conversion only.)
bool isKeptLeak(std::size_t size) { return size == sizeof(UnicodeLookup); }

// Releases everything, and counts what was still there of the watched scopes.
int countLeaks() {
  EncodingConvert::cleanupMemory();
  int leaks = 0;
  while (g_watched.next != &g_watched) {
    if (!isKeptLeak(g_watched.next->size)) ++leaks;
    release(g_watched.next + 1);
  }
  return leaks;
}

// Long enough that buffers grow while it is converted.
std::string repeated(const std::string& text, int times) {
  std::string all;
  for (int i = 0; i < times; ++i) all += text;
  return all;
}

void configure(EncodingConvert& converter, const Case& c) {
  converter.setErrorAction(c.action);
  converter.setAltDestCodepage(c.alternate);
  converter.setDefBytes(bytesOf("??"), 2);
}

struct Mode {
  bool cold;     // without tables
  bool failsOn;  // the allocations behind the failing one fail too
  bool verbose;
  int times;  // of the input, behind itself
};
constexpr Mode kModes[] = {{true, false, false, 25},
                           {true, true, false, 1},
                           {true, true, true, 1},
                           {false, true, false, 25},
                           {false, false, true, 25}};

// One conversion with its n-th allocation failing.
Outcome runWithFault(EncodingConvert& converter, const Case& c, const std::string& input, long n,
                     const Mode& mode) {
  TextLog text(true);
  LogBase silent;
  LogBase& log = mode.verbose ? static_cast<LogBase&>(text) : silent;
  configure(converter, c);
  DataBuffer out;
  bool ok = false;
  {
    const Watch watch(n, mode.failsOn);
    ok = converter.EncConvert(c.from, c.to, bytesOf(input), static_cast<unsigned int>(input.size()),
                              out, log);
  }
  return {ok, converter.m_foundErrors, textOf(out)};
}

// The same as a stream in two pieces, with the treatment that comes next to the action.
Outcome streamWithFault(EncodingConvert&, const Case& c, const std::string& input, long n,
                        const Mode& mode) {
  static constexpr const char* kTreatments[] = {
      "drop", "substitute=0x3F21", "hex", "drop", "drop", "drop", "raw", "raw", "substitute=[?]"};
  StreamSettings settings = settingsFor(c.from, c.to, kTreatments[c.action]);
  settings.alternate = c.alternate;
  if (c.action == 6) settings.treatment = StreamTreatment::kAlternate;
  StreamConverter stream;
  DataBuffer out;
  const std::size_t half = input.size() / 2;
  StreamStatus status = StreamStatus::kGood;
  {
    const Watch watch(n, mode.failsOn);
    status = stream.begin(settings);
    if (status == StreamStatus::kGood) status = stream.push(bytesOf(input), half, out);
    if (status == StreamStatus::kGood) {
      status = stream.push(bytesOf(input) + half, input.size() - half, out);
    }
    if (status == StreamStatus::kGood) status = stream.finish(out);
  }
  Outcome outcome{status == StreamStatus::kGood, stream.errorCount() != 0, textOf(out)};
  EXPECT_EQ(stream.begin(settings), StreamStatus::kGood) << "begun again";
  return outcome;
}

using Run = Outcome (*)(EncodingConvert&, const Case&, const std::string&, long, const Mode&);

class FaultInjection : public testing::TestWithParam<std::tuple<Case, Run>> {
 protected:
  static void TearDownTestSuite() { RecordProperty("faults", std::to_string(s_faults)); }
  static inline long s_faults = 0;
};

// Lets each allocation fail in turn; returns how many there were.
long failEach(const Case& c, Run run, const Mode& mode) {
  EncodingConvert converter;
  const std::string input = repeated(inputOf(c), mode.times);
  const Outcome expected = run(converter, c, input, 0, mode);
  for (long n = 1;; ++n) {
    SCOPED_TRACE(testing::Message() << (mode.cold ? "cold" : "warm")
                                    << (mode.failsOn ? ", from" : ",") << " allocation " << n);
    if (mode.cold) {
      EXPECT_EQ(countLeaks(), 0);
    }
    const Outcome outcome = run(converter, c, input, n, mode);
    const bool failed = Watch::hasFailed();
    if (outcome.ok || !failed) {
      EXPECT_EQ(outcome, expected);
    }
    EXPECT_EQ(run(converter, c, input, 0, mode), expected) << "afterwards";
    if (!failed || testing::Test::HasFailure()) return n - 1;
  }
}

TEST_P(FaultInjection, FailsWholeOrNotAtAll) {
  const auto& [c, run] = GetParam();
  for (const Mode& mode : kModes) {
    const long faults = failEach(c, run, mode);
    ASSERT_GT(faults, 0) << "nothing was allocated";
    s_faults += faults;
  }
  EXPECT_EQ(countLeaks(), 0);
}

std::string nameOf(const testing::TestParamInfo<std::tuple<Case, Run>>& info) {
  const auto& [c, run] = info.param;
  return std::to_string(c.from) + "To" + std::to_string(c.to) +
         (run == runWithFault ? "" : "AsStream");
}
INSTANTIATE_TEST_SUITE_P(EveryPath, FaultInjection,
                         testing::Combine(testing::ValuesIn(kCases),
                                          testing::Values(runWithFault, streamWithFault)),
                         nameOf);

// Buffers beyond a megabyte, which grow in another way.
TEST(FaultInjectionElsewhere, LargeStorage) {
  constexpr Mode kLarge{false, true, false, 48 * 1024};
  long faults = 0;
  for (const Case& c : kCases) {
    if (c.action != 0) continue;
    SCOPED_TRACE(std::to_string(c.from) + " to " + std::to_string(c.to));
    faults += failEach(c, runWithFault, kLarge);
  }
  RecordProperty("faults", std::to_string(faults));
  EXPECT_EQ(countLeaks(), 0);
}

// The tables that are not built on the way of a conversion.
TEST(FaultInjectionElsewhere, LastBlockList) {
  EXPECT_EQ(countLeaks(), 0);
  for (int call = 0; call < 2; ++call) {
    const Watch watch(call == 0 ? 1 : 0, true);
    EXPECT_EQ(Japanese::GetSjisFrom2022_LastBlock() == nullptr, call == 0);
  }
  EXPECT_EQ(countLeaks(), 0);
}

}  // namespace
