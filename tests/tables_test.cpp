// The map, the container and the table texts, up to filled maps.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <random>
#include <string>

#include "encoding/codecs/encoding_row.h"
#include "encoding/encoding_convert.h"
#include "encoding/tables/table_builder.h"
#include "support/content_coding.h"
#include "support/norvane_bzip2.h"
#include "support/zv_base.h"
#include "tools/table_text_format.h"
#include "tools/table_text_packing.h"

namespace {

const unsigned char* bytes(const std::string& s) {
  return reinterpret_cast<const unsigned char*>(s.data());
}

std::string unitKey(unsigned int unit) {
  unsigned char key[2];
  zvStoreHostUnit(key, static_cast<std::uint16_t>(unit), zvIsBigEndian());
  return {reinterpret_cast<const char*>(key), 2};
}

std::unique_ptr<HashConvert> newMap(int size) {
  std::unique_ptr<HashConvert> map(HashConvert::createNewObject(1));
  map->hcInitialize(size);
  return map;
}

// As the converters look a key up.
std::string probe(const HashConvert& map, const std::string& key) {
  unsigned char value[2];
  const int length = map.probe(bytes(key), value);
  return {reinterpret_cast<char*>(value), static_cast<std::size_t>(length)};
}

std::unique_ptr<HashConvert> built(const std::string& text, bool fromUnicode, int size = 283) {
  LogBase log;
  std::unique_ptr<HashConvert> map = newMap(size);
  EncodingConvert::buildHash(text.c_str(), *map, fromUnicode, log);
  return map;
}

std::string textOf(int codePage) {
  const EncodingRow* row = findEncodingRow(codePage);
  if (row->text != nullptr) return row->text;
  StringBuffer text;
  row->appendText(text);
  return text.getString();
}

std::string storedText(const std::string& image) {
  std::string text;
  EXPECT_EQ(packText(image, true, text), "");
  return text;
}

std::string imageOf(int codePage) {
  std::string image;
  EXPECT_EQ(unpackText(textOf(codePage), image), "");
  return image;
}

TEST(HashConvert, AgreesWithAPlainMapWhereverKeysAreDisplacedOrRemoved) {
  LogBase log;
  std::mt19937 random(1);
  for (const int size : {1, 7, 283, 4001}) {
    const std::unique_ptr<HashConvert> map = newMap(size);
    std::map<std::string, std::string> model;
    for (int step = 0; step < 20000; ++step) {
      const std::string key = unitKey(static_cast<unsigned int>(random() % 3000));
      if (random() % 3 == 0 && step > 8000) {
        map->hcRemove(bytes(key));
        model.erase(key);
      } else {  // a key that is there keeps its value
        const std::string value =
            unitKey(static_cast<unsigned int>(random() & 0xFFFF)).substr(random() % 2);
        map->hcInsert(bytes(key), bytes(value), static_cast<int>(20 + value.size()), log);
        if (key != unitKey(0)) model.emplace(key, value);  // the key 00 00 is never found
      }
      if (step % 4000 != 0 && step != 8000) continue;
      for (unsigned int unit = 0; unit < 3100; ++unit) {
        const auto entry = model.find(unitKey(unit));
        ASSERT_EQ(probe(*map, unitKey(unit)), entry == model.end() ? "" : entry->second)
            << size << " " << step << " " << unit;
      }
    }
  }
}

TEST(HashConvert, TakesBucketsByTheRemainder) {
  for (const int size : {1, 2, 3, 283, 4096, 7919, 65535, 65536, 70001}) {
    const std::unique_ptr<HashConvert> map = newMap(size);
    for (unsigned int number = 0; number < 65536; ++number) {
      const unsigned char key[2] = {static_cast<unsigned char>(number & 0xFF),
                                    static_cast<unsigned char>(number >> 8)};
      ASSERT_EQ(map->bucketOf(key), number % static_cast<unsigned int>(size)) << size;
    }
  }
}

TEST(HashConvert, ReversesWithTheKnownCharacterBeforeThePrivateOne) {
  LogBase log;
  const std::unique_ptr<HashConvert> from = newMap(3), to = newMap(283);
  from->put_IsLowerAscii(true);
  for (const unsigned int unit : {0xF8F1u, 0x2122u, 0x00A9u, 0xFA11u, 0xE000u}) {
    from->hcInsert(bytes(unitKey(unit)), bytes("\xFD"), 21, log);
    from->hcInsert(bytes(unitKey(unit + 1)), bytes("\x81\x40"), 22, log);
    from->hcInsert(bytes(unitKey(unit + 2)), bytes("\x81\x41"), 23, log);  // no such code
  }
  from->hcBuildReverse(*to, log);
  EXPECT_EQ(to->m_singleBytes[0xFD], 0x00A9);
  EXPECT_EQ(probe(*to, "\x81\x40"), unitKey(0x00AA));
  EXPECT_EQ(probe(*to, "\x81\x41"), "");
  EXPECT_TRUE(to->get_IsLowerAscii());
  EXPECT_EQ(to->m_tableKind, 2);
}

TEST(NorvaneBzip2, RefusesEveryDamage) {
  DataBuffer original, packed, out;
  for (int i = 0; i < 5000; ++i) original.appendChar(static_cast<unsigned char>(i * i >> 7));
  ASSERT_TRUE(packBzip2(original, packed));
  const std::string good(reinterpret_cast<const char*>(packed.getData2()), packed.getSize());
  EXPECT_EQ(good.substr(8, 4), "BZh3");
  const auto unpacks = [&out](const std::string& container) {
    DataBuffer in;
    in.borrowData(bytes(container), static_cast<unsigned int>(container.size()));
    out.appendChar('k');  // content that must not survive
    return NorvaneBzip2().unBzipWithHeader(in, out, nullptr);
  };
  ASSERT_TRUE(unpacks(good));
  ASSERT_EQ(out.getSize(), 5000u);
  EXPECT_EQ(std::memcmp(out.getData2(), original.getData2(), 5000), 0);
  std::vector<std::string> bad{good + '\0', good + good};
  for (std::size_t size = 0; size < good.size(); size += 1 + size / 16) {
    bad.push_back(good.substr(0, size));
  }
  for (const std::size_t at : {0u, 3u, 4u, 5u, 6u, 7u, 8u, 11u, 14u, 20u}) {  // 4 to 7: the length
    bad.push_back(good);
    bad.back()[at] = static_cast<char>(bad.back()[at] ^ 0x81);
  }
  for (const std::string& container : bad) {
    EXPECT_FALSE(unpacks(container)) << container.size();
    EXPECT_EQ(out.getSize(), 0u);
    EXPECT_FALSE(out.hasFailed());
  }
}

TEST(TableText, PrintedPairsPackToTheSameSource) {
  int count = 0;
  for (const auto& entry : std::filesystem::directory_iterator(ENCCONV_TABLE_TEXTS)) {
    const std::string name = entry.path().filename().string();
    if (entry.path().extension() != ".cpp" || name == "table_image.cpp") continue;
    std::ifstream file(entry.path());
    const std::string source{std::istreambuf_iterator<char>(file), {}};
    PairTable printed, table;
    std::string image, text;
    ASSERT_EQ(parseSource(source, printed), "") << entry.path();
    ASSERT_EQ(parsePairs(printPairs(printed), table), "") << entry.path();
    ASSERT_EQ(packImage(table, image), "");
    ASSERT_EQ(packText(image, table.isStored, text), "");
    EXPECT_EQ(printSource(table, text), source) << entry.path();
    ++count;
  }
  EXPECT_EQ(count, 112);
}

TEST(TableText, RefusesPairsThatCannotBeStated) {
  const std::string head = "# code page 9, _Enc_x; ascii no\n", diff = "# code page 9, _Enc_x, ";
  for (const std::string& pairs :
       {std::string("80 20AC\n"), std::string("# code page 9; ascii no\n"), head + "80\n",
        head + "8 20AC\n", head + "80 20AC 1\n", head + "80 20ACE\n", head + "- 20AC\n",
        head + "80 20AC\n81 20AC\n", head + "80 20AC\n8140 20AC\n", head + "80 20AC\n80 20AD\n",
        head + "00 0000\n", head + "0000 0000\n", diff + "applied over 8; ascii yes\n- 0000\n"}) {
    PairTable table;
    std::string image;
    EXPECT_FALSE(parsePairs(pairs, table).empty() && packImage(table, image).empty()) << pairs;
  }
}

TEST(TableText, MultiByteTextsHaveTheirSizes) {
  const struct {
    int codePage;
    std::size_t imageSize;
  } cases[] = {{932, 37039},  {936, 95774},   {949, 68958},   {950, 78854},
               {1361, 69061}, {51932, 37102}, {51936, 95774}, {51949, 33670}};
  for (const auto& c : cases) EXPECT_EQ(imageOf(c.codePage).size(), c.imageSize) << c.codePage;
  EXPECT_EQ(textOf(936).size(), 33529u);
  EXPECT_EQ(imageOf(936), imageOf(51936));
}

TEST(TableBuilder, BuildsTheWorkedExamples) {
  const std::unique_ptr<HashConvert> from = built("xYXUgoAAAAAA=", true);
  EXPECT_EQ(textOf(20127), "xYXUgoAAAAAA=");
  EXPECT_TRUE(from->get_IsLowerAscii());
  EXPECT_EQ(from->m_tableKind, 1);
  EXPECT_EQ(built(textOf(20127), false)->m_singleBytes[0x20], 0xA0);
  for (unsigned int unit = 1; unit < 0x10000; ++unit) {
    ASSERT_EQ(probe(*from, unitKey(unit)), unit == 0xA0 ? " " : "") << unit;
  }
  EXPECT_EQ(probe(*built(textOf(1252), true), unitKey(0x20AC)), "\x80");  // behind 9B: it wraps
  EXPECT_FALSE(built(textOf(37), true)->get_IsLowerAscii());

  // Two units of one code: the known character is read, both are written.
  const std::unique_ptr<HashConvert> eucJp = built(textOf(51932), true, 25873);
  EXPECT_EQ(probe(*built(textOf(51932), false, 25873), "\xF9\xF5"), unitKey(0xFA11));
  std::string codes;
  for (unsigned int unit = 0xE000; unit < 0xF900; ++unit) {
    if (probe(*eucJp, unitKey(unit)) == "\xF9\xF5") codes += "p";
  }
  EXPECT_EQ(codes + probe(*eucJp, unitKey(0xFA11)), "p\xF9\xF5");
}

TEST(TableBuilder, AppliesTheDifferencesOfMacJapanese) {
  LogBase log;
  const std::unique_ptr<HashConvert> map = built(textOf(932), true, 23021);
  buildHash(textOf(10001).c_str(), *map, true, log, DifferenceKeys::kHostOrder);
  EXPECT_NE(map->m_overflow, 0);
  const std::map<unsigned int, std::string> expected{
      {0xA5, ""},       {0x2211, ""},         {0xF8F0, ""},        {0xF8F1, ""},     {0xF8F2, ""},
      {0xF8F3, ""},     {0xA0, "\xA0"},       {0xA9, "\xFD"},      {0x2122, "\xFE"}, {0x80, "\x80"},
      {0xFF61, "\xA1"}, {0x2116, "\x86\x9B"}, {0x4E00, "\x88\xEA"}};
  for (const auto& [unit, code] : expected) EXPECT_EQ(probe(*map, unitKey(unit)), code) << unit;

  const std::unique_ptr<HashConvert> ignored = built(textOf(10001), false);
  EXPECT_EQ(ignored->m_tableKind, 2);
  EXPECT_TRUE(ignored->get_IsLowerAscii());
  for (const std::uint16_t unit : ignored->m_singleBytes) EXPECT_EQ(unit, 0);
}

TEST(TableBuilder, FollowsTheByteOrderOfTheHost) {
  const bool original = zvIsBigEndian();
  for (const bool bigEndian : {false, true}) {
    zvSetBigEndianForTesting(bigEndian);
    const std::unique_ptr<HashConvert> from = built(textOf(932), true, 25183);
    const std::unique_ptr<HashConvert> to = built(textOf(932), false, 25183);
    const std::string unit = bigEndian ? "\x4E\xC0" : "\xC0\x4E";
    EXPECT_EQ(probe(*from, unit), "\x8F\x59");
    EXPECT_EQ(probe(*to, "\x8F\x59"), unit);
    const auto* single = reinterpret_cast<const unsigned char*>(&to->m_singleBytes[0xA1]);
    EXPECT_EQ(zvLoadHostUnit(single, bigEndian), 0xFF61);
    // The keys of differences stay as they lie in the table: low byte first.
    LogBase log;
    EncodingConvert::buildHash(textOf(10001).c_str(), *from, true, log);
    EXPECT_EQ(probe(*from, bigEndian ? "\x21\x16" : "\x16\x21"),
              bigEndian ? "\x87\x82" : "\x86\x9B");
    EXPECT_EQ(probe(*from, "\x16\x21"), "\x86\x9B");
  }
  zvSetBigEndianForTesting(original);
}

TEST(TableBuilder, StaysInsideDamagedTexts) {
  // Base64 that does not decode and streams that do not unpack change nothing.
  for (const std::string text : {"", "x", "c", "xYXUgoAAAAAA", "x*", "cYXUgoAAAAAA=", "cAAAA"}) {
    const std::unique_ptr<HashConvert> map = built(text, true);
    EXPECT_FALSE(map->get_IsLowerAscii()) << text;
    EXPECT_EQ(map->m_tableKind, 0) << text;
  }
  // An image cut anywhere gives some of its entries: the last may have a wrong unit, no other.
  for (const int codePage : {1252, 51949, 10001}) {
    const std::string image = imageOf(codePage);
    const std::unique_ptr<HashConvert> whole = built(textOf(codePage), true, 32749);
    for (std::size_t size = 1; size < image.size(); size += 1 + size / 16) {
      const std::unique_ptr<HashConvert> part = built(storedText(image.substr(0, size)), true, 997);
      EXPECT_EQ(part->m_tableKind, 1);
      int wrong = 0;
      for (unsigned int unit = 1; unit < 0x10000; unit += 1) {
        const std::string code = probe(*part, unitKey(unit));
        wrong += !code.empty() && code != probe(*whole, unitKey(unit));
      }
      EXPECT_LE(wrong, 1) << codePage << " " << size;
      built(storedText(image.substr(0, size)), false, 997);
    }
  }
}

}  // namespace
