// DataBuffer, StringBuffer, the logs and the free functions.
#include <gtest/gtest.h>

#include <array>
#include <string>

#include "support/data_buffer.h"
#include "support/string_buffer.h"
#include "support/text_log.h"
#include "support/zv_base.h"

namespace {

std::string text(const DataBuffer& buffer) {
  return {reinterpret_cast<const char*>(buffer.getData2()), buffer.getSize()};
}

TEST(DataBufferTest, AppendsAcrossGrowthAndFromItself) {
  DataBuffer buffer;
  EXPECT_TRUE(buffer.append(nullptr, 0));
  EXPECT_EQ(buffer.getDataAt2(0), nullptr);
  std::string expected;
  for (int i = 0; i < 1000; ++i) {
    const auto c = static_cast<unsigned char>('a' + i % 26);
    buffer.appendChar(c);
    expected.push_back(static_cast<char>(c));
  }
  ASSERT_TRUE(buffer.append(buffer));
  ASSERT_TRUE(buffer.append(buffer.getData2() + 5, 1995));
  expected += expected;
  expected += expected.substr(5, 1995);
  EXPECT_EQ(text(buffer), expected);
  EXPECT_EQ(buffer.getDataAt2(buffer.getSize()), nullptr);
  EXPECT_EQ(*buffer.getDataAt2(buffer.getSize() - 1), static_cast<unsigned char>(expected.back()));
  // On into storage that grows in another way.
  while (buffer.getSize() < 5'000'000) ASSERT_TRUE(buffer.append(buffer));
  while (expected.size() < 5'000'000) expected += expected;
  EXPECT_TRUE(text(buffer) == expected);
}

TEST(DataBufferTest, BorrowedMemoryIsNeverWritten) {
  const std::array<unsigned char, 3> memory = {'a', 0xE9, 'b'};
  for (int change = 0; change < 4; ++change) {
    DataBuffer buffer;
    buffer.append("old", 3);
    buffer.borrowData(memory.data(), 3);
    EXPECT_EQ(buffer.getData2(), memory.data());
    switch (change) {
      case 0:
        buffer.append("c", 1);
        EXPECT_EQ(text(buffer),
                  "a\xE9"
                  "bc");
        break;
      case 1:
        buffer.drop_non_usascii();
        EXPECT_EQ(text(buffer), "ab");
        break;
      case 2:
        buffer.truncate(1);
        buffer.appendChar('x');
        EXPECT_EQ(text(buffer), "ax");
        break;
      default:
        buffer.clear();
        buffer.appendChar('y');
        EXPECT_EQ(text(buffer), "y");
        break;
    }
    EXPECT_EQ(memory, (std::array<unsigned char, 3>{'a', 0xE9, 'b'}));
  }
}

TEST(DataBufferTest, TakesAnArrayAndKeepsItsAddress) {
  unsigned char* array = zvNewUnsignedChar(10);
  ASSERT_NE(array, nullptr);
  array[0] = 'z';
  DataBuffer buffer;
  buffer.append("old", 3);
  buffer.takeData(array, 1);
  EXPECT_EQ(buffer.getData2(), array);
  buffer.takeData(array, 1);
  EXPECT_EQ(text(buffer), "z") << "what it has already";
  buffer.append("!", 1);
  EXPECT_EQ(text(buffer), "z!");
}

TEST(DataBufferTest, RequestsWithoutA32BitSizeFailAndAreLatched) {
  DataBuffer buffer;
  buffer.append("abc", 3);
  EXPECT_FALSE(buffer.ensureBuffer(0xFFFFFFFFu));
  EXPECT_TRUE(buffer.hasFailed());
  EXPECT_EQ(text(buffer), "abc");
  EXPECT_TRUE(buffer.append("d", 1));
  EXPECT_TRUE(buffer.hasFailed()) << "a hole stays known until clear()";
  buffer.clear();
  EXPECT_FALSE(buffer.hasFailed());
}

TEST(DataBufferTest, ReserveAndCommit) {
  DataBuffer buffer;
  buffer.append("ab", 2);
  unsigned char* tail = buffer.reserveTail(100);
  ASSERT_NE(tail, nullptr);
  tail[0] = 'c';
  buffer.commitTail(1);
  EXPECT_EQ(text(buffer), "abc");
}

TEST(StringBufferTest, ClearsAndRefills) {
  StringBuffer s;
  EXPECT_STREQ(s.getString(), "");
  s.append("hello ");
  s.append("world");
  EXPECT_STREQ(s.getString(), "hello world");
  s.weakClear();
  EXPECT_STREQ(s.getString(), "");
  s.appendN("abcdef", 3);
  EXPECT_STREQ(s.getString(), "abc");
  EXPECT_EQ(s.getSize(), 3u);
}

TEST(TextLogTest, ContextsNestAndQuietOnesAppearOnlyWithContent) {
  for (const bool verbose : {false, true}) {
    TextLog log(verbose);
    {
      LogContextExitor outer(log, "EncConvert", verbose);
      { LogContextExitor silent(log, "silent", verbose); }
      LogContextExitor inner(log, "convert_a", verbose);
      log.LogError("bad");
      log.LogDataLong("inDataLen", -7);
      log.LogDataBool("m_foundErrors", true);
      StringBuffer name;
      name.append("klingon");
      log.LogDataSb("charsetName", name);
    }
    log.LogInfo("done");
    EXPECT_EQ(log.text(), std::string("EncConvert:\n") + (verbose ? "  silent:\n" : "") +
                              "  convert_a:\n    error: bad\n    inDataLen: -7\n"
                              "    m_foundErrors: true\n    charsetName: klingon\ndone\n");
  }
}

TEST(FreeFunctionsTest, StringsAndHostOrder) {
  EXPECT_EQ(zvStrLen("four"), 4);
  EXPECT_EQ(zvStrLen(nullptr), 0);
  EXPECT_EQ(zvStrNCmp("%PDF-1.7", "%PDF-1", 6), 0);
  EXPECT_NE(zvStrNCmp("%PDF_1.7", "%PDF-1", 6), 0);
  EXPECT_EQ(zvStrNCmp("a\0b", "a\0c", 3), 0) << "stops at NUL";
  EXPECT_NE(zvIsBigEndian(), zvIsLittleEndian());
  unsigned char bytes[2];
  zvStoreHostUnit(bytes, 0x1234, true);
  EXPECT_EQ(bytes[0], 0x12);
  EXPECT_EQ(zvLoadHostUnit(bytes, false), 0x3412);
}

}  // namespace
