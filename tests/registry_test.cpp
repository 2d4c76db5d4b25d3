// The rows, the process-wide tables and their life.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <new>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "encoding/encoding_convert.h"
#include "encoding/tables/table_registry.h"
#include "support/japanese.h"
#include "tests/test_support.h"

namespace {

// Allocations until all fail; negative: none does.
thread_local int allocationsLeft = -1;

bool isAllocationRefused() {
  if (allocationsLeft > 0) --allocationsLeft;
  return allocationsLeft == 0;
}

}  // namespace

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return isAllocationRefused() ? nullptr : ::operator new(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return isAllocationRefused() ? nullptr : ::operator new[](size);
}

namespace {

using Ensure = bool (*)(int, LogBase&);
constexpr Ensure kEnsureAll[] = {
    EncodingConvert::ensureHashToUnicode, EncodingConvert::ensureHashToUnicode1250,
    EncodingConvert::ensureHashToUnicode8859, EncodingConvert::ensureHashFromUnicode,
    EncodingConvert::ensureHashFromUnicode2};

TableSlots& slotsOf(int codePage) { return tableSlots(*findEncodingRow(codePage)); }

int countFilled() {
  std::set<const TableSlots*> seen;
  int count = 0;
  for (const EncodingRow& row : tableRows()) {
    TableSlots& slots = tableSlots(row);
    if (!seen.insert(&slots).second) continue;
    count += (slots.singleToUnicode != nullptr) + (slots.multiToUnicode != nullptr) +
             (slots.fromUnicode != nullptr);
  }
  return count;
}

// Length and value of every key.
std::vector<std::uint32_t> entriesOf(const HashConvert& map) {
  std::vector<std::uint32_t> entries;
  for (unsigned int key = 0; key < 0x10000; ++key) {
    const unsigned char bytes[2] = {static_cast<unsigned char>(key & 0xFF),
                                    static_cast<unsigned char>(key >> 8)};
    unsigned char value[2] = {};
    int length = 0;
    map.hcLookup(bytes, value, length);
    entries.push_back(static_cast<std::uint32_t>(length) * 0x10000u + value[0] * 0x100u + value[1]);
  }
  return entries;
}

class Registry : public testing::Test {
 protected:
  void SetUp() override {
    EncodingConvert::cleanupMemory();
    m_filledAtStart = countFilled();
  }
  // Slots filled by the test.
  int filled() const { return countFilled() - m_filledAtStart; }

  LogBase m_log;

 private:
  int m_filledAtStart = 0;
};

TEST_F(Registry, FindsEveryRowAndNoOther) {
  std::vector<const EncodingRow*> found;
  for (int number = -70000; number < 1'100'000; ++number) {
    const EncodingRow* row = findEncodingRow(number);
    if (row == nullptr) continue;
    ASSERT_EQ(row->number, number);
    found.push_back(row);
  }
  ASSERT_EQ(found.size(), encodingRows().size());
  for (std::size_t i = 0; i < found.size(); ++i) EXPECT_EQ(found[i], &encodingRows()[i]);
}

TEST_F(Registry, EveryTableHasSlotsOfItsOwn) {
  std::map<const TableSlots*, std::vector<int>> rowsOfSlots;
  for (const EncodingRow& row : tableRows()) {
    rowsOfSlots[&tableSlots(row)].push_back(row.number);
    EXPECT_TRUE(row.text != nullptr || row.appendText != nullptr) << row.number;
    EXPECT_TRUE(row.toUnicodeSize != 0 && row.fromUnicodeSize != 0) << row.number;
  }
  for (const auto& [slots, numbers] : rowsOfSlots) {
    EXPECT_EQ(numbers, numbers[0] == 936 ? std::vector({936, 52936}) : std::vector({numbers[0]}));
  }
}

TEST_F(Registry, BuildsWhatItHoldsOnce) {
  const struct {
    Ensure ensure;
    int codePage;
    int tables;  // slots filled by the first call
  } cases[] = {{kEnsureAll[0], 1252, 1},  {kEnsureAll[0], 28592, 1}, {kEnsureAll[0], 437, 1},
               {kEnsureAll[0], 52936, 1}, {kEnsureAll[0], 936, 0},   {kEnsureAll[0], 10001, 2},
               {kEnsureAll[1], 1250, 1},  {kEnsureAll[1], 1259, 0},  {kEnsureAll[1], 28591, 0},
               {kEnsureAll[1], 850, 0},   {kEnsureAll[2], 28605, 1}, {kEnsureAll[2], 28602, 0},
               {kEnsureAll[2], 28604, 0}, {kEnsureAll[2], 1251, 0},  {kEnsureAll[3], 37, 1},
               {kEnsureAll[3], 500, 1},   {kEnsureAll[3], 936, 1},   {kEnsureAll[3], 52936, 0},
               {kEnsureAll[3], 10001, 0}, {kEnsureAll[3], 1258, 1},  {kEnsureAll[4], 1257, 0},
               {kEnsureAll[4], 932, 0},   {kEnsureAll[4], 708, 1},   {kEnsureAll[3], 28603, 1}};
  for (const auto& c : cases) {
    for (const int expected : {c.tables, 0}) {
      const int before = filled();
      EXPECT_TRUE(c.ensure(c.codePage, m_log));
      EXPECT_EQ(filled() - before, expected) << c.codePage;
    }
  }
  EXPECT_EQ(slotsOf(936).multiToUnicode.load()->codePage(), 52936);
  EXPECT_EQ(slotsOf(936).fromUnicode.load()->codePage(), 936);
  const int before = filled();
  for (const Ensure ensure : kEnsureAll) {
    for (const int codePage : {-1, 0, 1200, 1259, 20936, 28602, 28604, 65001}) {
      EXPECT_TRUE(ensure(codePage, m_log));
    }
  }
  EXPECT_EQ(filled(), before);
}

TEST_F(Registry, LookupsHaveZeroAsciiAndTheTable) {
  for (const int codePage : {1252, 28591, 20127, 500}) kEnsureAll[0](codePage, m_log);
  const UnicodeLookup& windows = *slotsOf(1252).singleToUnicode;
  const UnicodeLookup& ascii = *slotsOf(20127).singleToUnicode;
  EXPECT_EQ(std::memcmp(windows.m_units, slotsOf(28591).singleToUnicode.load()->m_units, 512), 0);
  EXPECT_EQ(windows.m_units[0x80], 0x20AC);
  for (unsigned int b = 0; b < 256; ++b) EXPECT_EQ(ascii.m_units[b], b < 128 ? b : 0) << b;
  const UnicodeLookup& ebcdic = *slotsOf(500).singleToUnicode;
  EXPECT_EQ(ebcdic.m_units[0], 0);
  EXPECT_EQ(ebcdic.m_units[0xC1], 'A');
}

TEST_F(Registry, TeardownEmptiesAllButTwo) {
  EncodingConvert::cleanupMemory();  // twice in a row
  const unsigned char* list = Japanese::GetSjisFrom2022_LastBlock();
  ASSERT_NE(list, nullptr);
  EXPECT_EQ(Japanese::GetSjisFrom2022_LastBlock(), list);
  const std::vector<unsigned char> codes(list, list + 2 * Japanese::kLastBlockCodes);
  for (const EncodingRow& row : tableRows()) {
    EXPECT_TRUE(EncodingConvert::ensureHashToUnicode(row.number, m_log));
    EXPECT_TRUE(EncodingConvert::ensureHashFromUnicode(row.number, m_log));
  }
  // Both directions of each; 936 and 52936 share theirs.
  EXPECT_EQ(countFilled(), 2 * static_cast<int>(tableRows().size() - 1));
  const UnicodeLookup* kept = slotsOf(28600).singleToUnicode;
  EncodingConvert::cleanupMemory();
  EXPECT_EQ(countFilled(), 4);
  EXPECT_EQ(slotsOf(28600).singleToUnicode, kept);
  EXPECT_NE(slotsOf(28601).fromUnicode, nullptr);
  EXPECT_TRUE(EncodingConvert::ensureHashToUnicode(1252, m_log));
  EXPECT_EQ(slotsOf(1252).singleToUnicode.load()->m_units[0x80], 0x20AC);
  EXPECT_TRUE(std::equal(codes.begin(), codes.end(), Japanese::GetSjisFrom2022_LastBlock()));
}

// What is remembered of a pair of code pages must not outlive the tables.
TEST_F(Registry, ShortTextsFindTheirTablesAgainAfterTeardown) {
  EncodingConvert converter;
  const unsigned char euro[] = {0x80, 'x'};
  for (int round = 0; round < 6; ++round) {  // each teardown behind two conversions
    DataBuffer out;
    ASSERT_TRUE(converter.EncConvert(1252, 1251, euro, sizeof euro, out, m_log));
    ASSERT_EQ(out.getSize(), 2u);
    EXPECT_EQ(out.getData2()[0], 0x88);
    EXPECT_NE(slotsOf(1252).singleToUnicode, nullptr) << round;
    EXPECT_NE(slotsOf(1251).fromUnicode, nullptr) << round;
    if (round % 2 != 0) EncodingConvert::cleanupMemory();
  }
}

TEST_F(Registry, CopiesAndRefusalsBuildNoTable) {
  struct {
    int from, to;
    bool ok;
    int built = 0;
    const char* begin = "";
  } const cases[] = {
      {936, 0, true},
      {0, 936, true},
      {936, 936, true},
      {936, 5, false},
      {5, 936, false},
      {936, -1, false},
      {932, 1252, true, 0, "%PDF-1"},
      {20127, 1252, true},
      {20127, 12000, true},
      {932, 50220, true},  // copied, and then the codec
      {949, 50225, true},
      {50221, 50222, true},
      {20936, 936, false},
      {1201, 936, false, 0, "\xFF\xFE"},
      {936, 20936, false, 1},  // decoded before the refusal
      {936, 65000, true, 1},
      {936, 932, true, 2},
  };
  for (const auto& c : cases) {
    for (const std::size_t length : {20u, 400u}) {  // short texts have a way of their own
      EncodingConvert::cleanupMemory();
      const std::string text = c.begin + std::string(length, 'a');
      EncodingConvert converter;
      DataBuffer out;
      EXPECT_EQ(
          converter.EncConvert(c.from, c.to, reinterpret_cast<const unsigned char*>(text.data()),
                               static_cast<unsigned int>(text.size()), out, m_log),
          c.ok)
          << c.from << " to " << c.to;
      EXPECT_EQ(filled(), c.built) << c.from << " to " << c.to << ", " << length << " bytes";
    }
  }
}

// Whenever memory runs out, no incomplete table is published and a later request builds it.
TEST_F(Registry, ShortMemoryLeavesTheSlotEmpty) {
  const struct {
    Ensure ensure;
    int codePage;
    bool isFromUnicode;
  } cases[] = {{EncodingConvert::ensureHashFromUnicode, 932, true},
               {EncodingConvert::ensureHashFromUnicode, 1252, true},
               {EncodingConvert::ensureHashFromUnicode, 10001, true},
               {EncodingConvert::ensureHashToUnicode, 949, false},
               {EncodingConvert::ensureHashToUnicode, 10001, false}};
  for (const auto& c : cases) {
    EncodingConvert::cleanupMemory();
    std::atomic<HashConvert*>& from = slotsOf(c.codePage).fromUnicode;
    std::atomic<HashConvert*>& slot = c.isFromUnicode ? from : slotsOf(c.codePage).multiToUnicode;
    int failures = 0;
    for (; slot == nullptr && failures < 1000; ++failures) {
      // The reversed table of 10001 asks for the other one first, and says true without it.
      const bool isOddlyTrue = c.codePage == 10001 && !c.isFromUnicode && from == nullptr;
      allocationsLeft = failures + 1;
      const bool result = c.ensure(c.codePage, m_log);
      allocationsLeft = -1;
      EXPECT_EQ(result, slot != nullptr || (isOddlyTrue && from == nullptr)) << failures;
    }
    EXPECT_GT(failures, c.codePage == 1252 ? 3 : 6) << c.codePage;
    ASSERT_NE(slot, nullptr);
    const std::vector<std::uint32_t> entries = entriesOf(*slot);
    EncodingConvert::cleanupMemory();
    ASSERT_TRUE(c.ensure(c.codePage, m_log));
    EXPECT_EQ(entries, entriesOf(*slot)) << c.codePage;
  }
}

TEST_F(Registry, TwoThreadsBuildTheSameTableAtOnce) {
  for (int round = 0; round < 30; ++round) {
    EncodingConvert::cleanupMemory();
    for (const int codePage : {1252, 51949, 10001}) {
      const UnicodeLookup* lookups[2] = {};
      const HashConvert* maps[2] = {};
      const unsigned char* lists[2] = {};
      std::atomic<int> waiting = 2;
      const auto work = [&](int me) {
        LogBase log;
        --waiting;
        while (waiting > 0) std::this_thread::yield();
        EXPECT_TRUE(EncodingConvert::ensureHashToUnicode(codePage, log));
        EXPECT_TRUE(EncodingConvert::ensureHashFromUnicode(codePage, log));
        lists[me] = Japanese::GetSjisFrom2022_LastBlock();
        lookups[me] = slotsOf(codePage).singleToUnicode;
        maps[me] = slotsOf(codePage).fromUnicode;
        unsigned char value[2];
        int length = 0;
        const unsigned char unit[2] = {0xA0, 0x00};
        maps[me]->hcLookup(unit, value, length);
        EXPECT_EQ(length, 1);
        if (lookups[me] != nullptr) {
          EXPECT_EQ(lookups[me]->m_units[0x41], 'A');
        }
      };
      std::thread other(work, 1);
      work(0);
      other.join();
      EXPECT_EQ(lookups[0], lookups[1]);
      EXPECT_EQ(maps[0], maps[1]);
      EXPECT_EQ(lists[0], lists[1]);
    }
  }
}

}  // namespace
