// Every allocation of a conversion fails in turn: the result is false or the output is whole,
// nothing leaks, and the next call works.
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <string_view>

#include "encconv/encconv.h"
#include "encconv/encconv_c.h"
#include "support/japanese.h"
#include "support/text_log.h"
#include "support/zv_utf.h"
#include "tests/stream_support.h"

using namespace std::string_view_literals;

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
long g_failAt = 0;          // counts down to the allocation that fails; 0: none does
bool g_failsOn = false;     // and so do all that follow it
std::size_t g_largest = 0;  // bytes, of the blocks asked for while watched

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
bool failsNow(std::size_t size) {
  if (!g_watching) return false;
  g_largest = std::max(g_largest, size);
  if (g_failAt < 0) return g_failsOn;
  if (g_failAt == 0 || --g_failAt != 0) return false;
  g_failAt = -1;
  return true;
}

constexpr std::size_t kAlignment = __STDCPP_DEFAULT_NEW_ALIGNMENT__;

// Blocks without anything between them, as some allocators have them, each in front of the one
// before; used once.
alignas(64) unsigned char g_row[1u << 18];
std::size_t g_rowLeft = 0;

void* allocate(std::size_t size, std::size_t alignment) {
  if (g_rowLeft > size + alignment) {
    return g_row + (g_rowLeft = (g_rowLeft - size) / alignment * alignment);
  }
  if (failsNow(size)) return nullptr;
  // malloc aligns for everything usual.
  std::size_t room = size + (alignment > kAlignment ? alignment : 0);
  auto* const base = static_cast<unsigned char*>(std::malloc(sizeof(Block) + room));
  if (base == nullptr) return nullptr;
  void* memory = base + sizeof(Block);
  std::align(alignment, size, memory, room);
  auto* block = new (static_cast<Block*>(memory) - 1) Block{nullptr, nullptr, base, size};
  if (g_watching) {
    *block = {g_watched.previous, &g_watched, base, size};
    block->previous->next = g_watched.previous = block;
  }
  return memory;
}

void release(void* memory) {
  const bool isInRow = memory >= g_row && memory < g_row + sizeof g_row;
  if (memory == nullptr || isInRow) return;
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
  return failsNow(size) ? nullptr : __real_realloc(memory, size);
}

namespace {

struct Case {
  int from, to, action = 0, alternate = 0;
  std::string_view input;
};
constexpr std::string_view kMixed = "plain d\xC3\xA9j\xC3\xA0 \xD0\xBF \xE6\x97\xA5 \xFF end";
constexpr std::string_view kBytes = "plain \x81 \xE9\x41\xAA \xFF\xFE\x90 end";
constexpr Case kCases[] = {
    {.from = 1252, .to = 65001, .input = kBytes},
    {.from = 65001, .to = 1252, .action = 1, .input = kMixed},
    {.from = 1252, .to = 1250, .action = 2, .input = kBytes},
    {.from = 28597, .to = 1200, .action = 8, .input = kBytes},
    {.from = 65001, .to = 1200, .action = 7, .input = kMixed},
    {.from = 1200, .to = 65001, .input = "a\0b\0\xAC\x20\x3D\xD8\x01\xDE"sv},
    {.from = 28597, .to = 65001, .action = 6, .alternate = 1252, .input = kBytes},
    {.from = 65001, .to = 1251, .action = 6, .alternate = 1252, .input = kMixed},
    {.from = 28593, .to = 1201, .input = kBytes},
    {.from = 28593, .to = 65001, .action = 2, .input = kBytes},
    {.from = 65001, .to = 20127, .action = 6, .alternate = 932, .input = kMixed},
    {.from = 949, .to = 1200, .action = 6, .alternate = 1252, .input = "text \xC9 \x81 end"},
    {.from = 65001, .to = 1256, .action = 7, .input = kMixed},
    {.from = 65001, .to = 28596, .action = 2, .input = kMixed},
    {.from = 65001, .to = 1258, .action = 1, .input = kMixed},
    {.from = 932, .to = 65001, .action = 2, .input = "\x93\xFA\x96\x7B \xB1 \xFF\x81"},
    {.from = 65001, .to = 936, .input = kMixed},
    {.from = 10001, .to = 1201, .action = 1, .input = "\x93\xFA\x86\x9B\xA0\x81 "},
    {.from = 50220, .to = 65001, .input = "\x1B$BF|K\\y!\x1B(B mail"},
    {.from = 65001, .to = 50220, .input = kMixed},
    {.from = 50225, .to = 1200, .input = "\x1B$)C\x0EHQ19\x0F text"},
    {.from = 1252, .to = 50225, .action = 2, .input = kBytes},
    {.from = 65000, .to = 1251, .action = 1, .input = "Hi +BB8-+2D3eAA-"},
    {.from = 1251, .to = 65000, .input = kBytes},
    {.from = 12001, .to = 1252, .input = "\0\0\0A\0\0 \xAC\0\1\xF6\0"sv},
    {.from = 1252, .to = 12000, .action = 7, .input = kBytes},
    {.from = 1201, .to = 1252, .action = 1, .input = "\0A \xAC\x4E\0"sv},
    {.from = 65001, .to = 1201, .action = 2, .input = kMixed},
    {.from = 10004, .to = 65001, .action = 1, .input = "\xC7\xB1\xB2\xC8 \xA1\xA2 x"},
    {.from = 55000, .to = 1252, .input = "GSM \x1B\x65\x80"},
    {.from = 1252, .to = 55000, .input = kBytes},
    {.from = 20127, .to = 65001, .input = kBytes},
    {.from = 1252, .to = 1252, .input = kBytes},
    // Without a way around the intermediate encoding.
    {.from = 1200, .to = 65000, .input = "a\0\xE9\0\xAC\x20\x3D\xD8\x00\xDE"sv},
    {.from = 50225, .to = 65000, .input = "\x1B$)C\x0EHQ19\x0F text"},
    {.from = 28593, .to = 65000, .action = 2, .input = kBytes},
    {.from = 932, .to = 12001, .action = 1, .input = "\x93\xFA\x96\x7B \xB1 \xFF\x81"},
    {.from = 65001, .to = 12000, .input = kMixed},
    {.from = 55000, .to = 1201, .input = "GSM \x1B\x65\x80"},
    {.from = 949, .to = 50221, .action = 1, .input = "text \xB0\xA1 \xC9 \x81 end"}};

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
std::string repeated(std::string_view text, int times) {
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
ConversionResult runWithFault(EncodingConvert& converter, const Case& c, const std::string& input,
                              long n, const Mode& mode) {
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

// The treatment that comes next to the error action.
std::string treatmentOf(const Case& c) {
  static constexpr const char* kTreatments[] = {
      "drop", "substitute=0x3F21", "compose,best-fit,hex", "drop", "drop", "drop", "raw",
      "raw",  "substitute=[?]"};
  return c.action == 6 ? "alternate=" + std::to_string(c.alternate) : kTreatments[c.action];
}

// The same as a stream in two pieces.
ConversionResult streamWithFault(EncodingConvert&, const Case& c, const std::string& input, long n,
                                 const Mode& mode) {
  const StreamSettings settings = settingsFor(c.from, c.to, treatmentOf(c));
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
  ConversionResult outcome{status == StreamStatus::kGood, stream.errorCount() != 0, textOf(out)};
  EXPECT_EQ(stream.begin(settings), StreamStatus::kGood) << "begun again";
  return outcome;
}

// An alternate for whose tables memory does not suffice counts as unknown.
bool isGoodOrNoMemory(encconv_status status, const Case& c) {
  return status == ENCCONV_OK || status == ENCCONV_OUT_OF_MEMORY ||
         (status == ENCCONV_UNKNOWN_ALTERNATE && c.action == 6);
}

// The same by the C interface, whole and as a stream.
ConversionResult convertThroughC(EncodingConvert&, const Case& c, const std::string& input, long n,
                                 const Mode& mode) {
  const std::string treatment = treatmentOf(c);
  unsigned char* output = nullptr;
  std::size_t size = 0;
  encconv_result result = ENCCONV_RESULT_INIT;
  encconv_options options = ENCCONV_OPTIONS_INIT;
  options.on_error = treatment.c_str();
  encconv_status status = ENCCONV_OK;
  {
    const Watch watch(n, mode.failsOn);
    status = encconv_convert(c.from, c.to, input.data(), input.size(), &options, &output, &size,
                             &result);
  }
  EXPECT_TRUE(isGoodOrNoMemory(status, c)) << status;
  const std::string text(reinterpret_cast<const char*>(output), size);
  encconv_free(output);
  return {status == ENCCONV_OK, result.problem_count != 0, text};
}
ConversionResult streamThroughC(EncodingConvert&, const Case& c, const std::string& input, long n,
                                const Mode& mode) {
  const std::string treatment = treatmentOf(c);
  encconv_options options = ENCCONV_OPTIONS_INIT;
  options.on_error = treatment.c_str();
  encconv_status status = ENCCONV_OK;
  encconv_stream* stream = nullptr;
  {
    const Watch watch(n, mode.failsOn);
    stream = encconv_open(c.from, c.to, &options, &status);
    if (stream != nullptr) status = encconv_push(stream, input.data(), input.size());
    if (status == ENCCONV_OK) status = encconv_finish(stream);
  }
  EXPECT_TRUE(isGoodOrNoMemory(status, c)) << status;
  std::size_t size = 0;
  const unsigned char* const output = encconv_output(stream, &size);
  const std::string text(reinterpret_cast<const char*>(output), size);
  const bool hasProblems = encconv_problem_count(stream) != 0;
  encconv_close(stream);
  return {status == ENCCONV_OK, hasProblems, text};
}

// And by the C++ interface, whose strings throw.
ConversionResult convertThroughCpp(EncodingConvert&, const Case& c, const std::string& input,
                                   long n, const Mode& mode) {
  encconv::Options options;
  EXPECT_TRUE(encconv::parse_on_error(treatmentOf(c), options));
  encconv::Result result;
  result.status = encconv::Status::out_of_memory;
  try {
    const Watch watch(n, mode.failsOn);
    result = encconv::convert(input, c.from, c.to, options);
  } catch (const std::bad_alloc&) {
  }
  if (result.status == encconv::Status::unknown_alternate && c.action == 6) {
    result.status = encconv::Status::out_of_memory;  // see isGoodOrNoMemory
  }
  EXPECT_TRUE(result || result.status == encconv::Status::out_of_memory)
      << encconv::describe(result.status);
  return {static_cast<bool>(result), result.problem_count != 0, result.text};
}

using Run = ConversionResult (*)(EncodingConvert&, const Case&, const std::string&, long,
                                 const Mode&);

class FaultInjection : public testing::TestWithParam<std::tuple<Case, Run>> {
 protected:
  static void TearDownTestSuite() { RecordProperty("faults", std::to_string(s_faults)); }
  static inline long s_faults = 0;
};

// Lets each allocation fail in turn; returns how many there were.
long failEach(const Case& c, Run run, const Mode& mode) {
  EncodingConvert converter;
  const std::string input = repeated(c.input, mode.times);
  const ConversionResult expected = run(converter, c, input, 0, mode);
  for (long n = 1;; ++n) {
    SCOPED_TRACE(testing::Message() << (mode.cold ? "cold" : "warm")
                                    << (mode.failsOn ? ", from" : ",") << " allocation " << n);
    if (mode.cold) {
      EXPECT_EQ(countLeaks(), 0);
    }
    const ConversionResult outcome = run(converter, c, input, n, mode);
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

TEST(FaultInjectionElsewhere, Utf32) {
  DataBuffer toUtf32, toUtf8;
  LogBase log;
  bool isGood = false;
  {
    const Watch watch(1, true);
    isGood = _zvUtf::utf8toUtf32(false, bytesOf("a"), 1, toUtf32) ||
             _zvUtf::utf32ToUtf8(bytesOf({"a\0\0\0", 4}), 1, toUtf8, log);
  }
  EXPECT_FALSE(isGood || !toUtf32.hasFailed() || !toUtf8.hasFailed());
}

// Tables that are made of mappings, by themselves and over others.
TEST(FaultInjectionElsewhere, Mappings) {
  constexpr int kBig5Hkscs = 200706, kIso2022Jp3 = 200853, kMarc8 = 200866, kLatin10 = 28606;
  const Case cases[] = {{.from = 65001, .to = kBig5Hkscs, .input = kMixed},
                        {.from = kIso2022Jp3, .to = 1252, .input = "\x1B$BF|K\\y!\x1B(B mail"},
                        {.from = kMarc8, .to = 65001, .input = "e\xE2 \x1B$1!04\x1B(B"},
                        {.from = 65001, .to = kLatin10, .input = kMixed}};
  for (const Case& c : cases) {
    EXPECT_GT(failEach(c, streamWithFault, kModes[0]), 0) << c.from << " to " << c.to;
    EXPECT_EQ(countLeaks(), 0);
  }
}

TEST(FaultInjectionElsewhere, Interfaces) {
  constexpr Mode kShort[] = {{false, false, false, 25}, {false, true, false, 25}};
  for (const Case& c : kCases) {
    if (c.action == 0 && c.from != 65001) continue;
    SCOPED_TRACE(std::to_string(c.from) + " to " + std::to_string(c.to));
    for (const Mode& mode : kShort) {
      ASSERT_GT(failEach(c, convertThroughC, mode), 0);
      ASSERT_GT(failEach(c, streamThroughC, mode), 0);
      ASSERT_GT(failEach(c, convertThroughCpp, mode), 0);
    }
  }
  EXPECT_EQ(countLeaks(), 0);
}

// What is found is found with all judges, or not at all.
TEST(FaultInjectionElsewhere, Detection) {
  for (const char* text : {"\xCF\xF0\xE8\xE2\xE5\xF2, \xEC\xE8\xF0!", "\x93\xFA\x96{\x8C\xEA",
                           "caf\xC3\xA9", "+AOkA6Q-"}) {
    SCOPED_TRACE(text);
    const encconv::Detection expected = encconv::detect(text);
    ASSERT_FALSE(expected.candidates.empty());
    bool hasFailed = true;
    for (long n = 1; hasFailed; ++n) {
      encconv_detection* found = nullptr;
      {
        const Watch watch(n, false);
        found = encconv_detect(text, std::strlen(text), 0);
      }
      hasFailed = Watch::hasFailed();
      ASSERT_TRUE(found != nullptr || hasFailed);
      if (found == nullptr) continue;
      ASSERT_EQ(encconv_candidate_count(found), expected.candidates.size());
      for (std::size_t i = 0; i < expected.candidates.size(); ++i) {
        encconv_candidate candidate = ENCCONV_CANDIDATE_INIT;
        encconv_candidate_at(found, i, &candidate);
        EXPECT_EQ(candidate.name, expected.candidates[i].name);
        EXPECT_EQ(candidate.confidence, expected.candidates[i].confidence);
      }
      encconv_detection_free(found);
    }
  }
}

// With a drain a stream keeps little, however large the pieces.
TEST(FaultInjectionElsewhere, LargePiecesNeedNoLargeStorage) {
  struct : StreamDrain {
    bool onStreamOutput(DataBuffer& out) override {
      out.clear();
      return true;
    }
  } drain;
  constexpr int kPairs[][2] = {{1200, 50220}, {1201, 65000},  {1200, 65000}, {932, 50220},
                               {50220, 932},  {65001, 50225}, {10004, 65000}};
  const std::string text(32 * 1024 * 1024, 'a');  // unmapped units in UTF-16
  for (const auto [from, to] : kPairs) {
    SCOPED_TRACE(std::to_string(from) + " to " + std::to_string(to));
    StreamSettings settings = settingsFor(from, to, "drop");
    settings.drain = &drain;
    StreamConverter converter;
    ASSERT_EQ(converter.begin(settings), StreamStatus::kGood);
    DataBuffer out;
    g_largest = 0;
    const Watch watch(0, false);
    EXPECT_EQ(converter.push(bytesOf(text), text.size(), out), StreamStatus::kGood);
    EXPECT_EQ(converter.finish(out), StreamStatus::kGood);
    EXPECT_LT(g_largest, text.size() / 8);
  }
}

// A block that begins where another ends is not taken for its room.
TEST(FaultInjectionElsewhere, BlocksSideBySideAreToldApart) {
  for (std::size_t count = 0; count < 150; ++count) {
    std::string text = std::string(count, 'a') + "\u0301";  // which is dropped
    for (int i = 0; i < 20; ++i) text += "\uD55C";
    const StreamSettings settings = settingsFor(65001, 50225, "drop");
    const StreamResult apart = stream(settings, text);
    g_rowLeft = sizeof g_row;
    const StreamResult inRow = stream(settings, text);
    g_rowLeft = 0;
    EXPECT_EQ(inRow.text, apart.text) << count;
  }
}

// Sizes have 32 bits.
TEST(FaultInjectionElsewhere, BuffersGrowToFourGigabytesAndNoFurther) {
  constexpr unsigned int kMuch = 3u << 30;
  unsigned char lent = 0;
  DataBuffer buffer;
  buffer.lendStorage(&lent, kMuch);  // which nobody looks at
  buffer.commitTail(kMuch);
  g_largest = 0;
  const Watch watch(1, true);
  EXPECT_FALSE(buffer.ensureBuffer(1));
  EXPECT_EQ(g_largest, 0xFFFFFFFFu);
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
