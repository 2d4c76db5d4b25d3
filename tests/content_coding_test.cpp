#include "support/content_coding.h"

#include <gtest/gtest.h>

#include <string>

#include "tools/table_text_packing.h"

namespace {

std::string bytesOf(const DataBuffer& buffer) {
  return {reinterpret_cast<const char*>(buffer.getData2()), buffer.getSize()};
}

TEST(ContentCoding, WritesAndReadsEveryLengthAndByte) {
  std::string data;
  for (int i = 0; i < 260; ++i) {
    DataBuffer text, back;
    ASSERT_TRUE(encodeBase64(reinterpret_cast<const unsigned char*>(data.data()),
                             static_cast<unsigned int>(data.size()), text));
    ASSERT_TRUE(ContentCoding().decodeBase64ToDb(reinterpret_cast<const char*>(text.getData2()),
                                                 text.getSize(), back));
    ASSERT_EQ(bytesOf(back), data);
    data.push_back(static_cast<char>(i * 197));
  }
  DataBuffer text;
  ASSERT_TRUE(encodeBase64(reinterpret_cast<const unsigned char*>("au \xA0\0\0\0"), 8, text));
  EXPECT_EQ(bytesOf(text), "YXUgoAAAAAA=");
}

TEST(ContentCoding, RefusesWhatIsNotBase64) {
  for (const std::string bad :
       {"A", "AA", "AAA", "AAAAA", "=", "====", "A===", "AA=A", "=AAA", "AA==AAAA",
        "AAA=AAA=", "AAAA=AAA", "AA A", "AA\nA", "AA-_", "AAA\x80", "AAB=", "AB=="}) {
    DataBuffer out;
    out.appendChar('k');
    EXPECT_FALSE(
        ContentCoding().decodeBase64ToDb(bad.data(), static_cast<unsigned int>(bad.size()), out))
        << bad;
    EXPECT_EQ(bytesOf(out), "k") << bad;
    unsigned int length = 7;
    EXPECT_EQ(
        ContentCoding().decodeBase64(bad.data(), static_cast<unsigned int>(bad.size()), &length),
        nullptr);
    EXPECT_EQ(length, 0u);
  }
}

}  // namespace
