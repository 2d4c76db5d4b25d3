// Every code and every unit of every table-backed code page, against a reader of the table texts
// that shares nothing with the engine's.
#include <bzlib.h>
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "encoding/codecs/encoding_row.h"
#include "encoding/codecs/vietnamese.h"
#include "encoding/encoding_convert.h"

namespace {

using Offsets = std::vector<unsigned int>;

std::string decodeBase64(const std::string& text) {
  const std::string alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string bytes;
  unsigned int bits = 0, count = 0;
  for (const char c : text.substr(0, text.find('='))) {
    bits = bits << 6 | static_cast<unsigned int>(alphabet.find(c));
    if (++count % 4 != 1) bytes += static_cast<char>(bits >> (6 - 2 * ((count - 1) % 4)));
  }
  return bytes;
}

// One table, as the texts state it: what each unit encodes to, and what each code decodes to.
struct Model {
  bool isAscii = false;
  std::map<unsigned int, std::string> codes;
  std::map<std::string, unsigned int> units;

  void read(const std::string& text) {
    m_image = decodeBase64(text.substr(1));
    if (text[0] != 'x') {
      unsigned int size = 1 << 20;
      std::string unpacked(size, '\0');
      ASSERT_EQ(BZ2_bzBuffToBuffDecompress(unpacked.data(), &size, m_image.data() + 8,
                                           static_cast<unsigned int>(m_image.size() - 8), 0, 0),
                BZ_OK);
      m_image = unpacked.substr(0, size);
    }
    isAscii = m_image[0] == 'a';
    m_at = 2;
    if (m_image[1] == 'd') {
      while (const unsigned int unit = number(2)) codes.erase(unit);
      for (const std::size_t width : {1u, 2u}) {
        while (number(width) != 0) {
          const std::string code = m_image.substr(m_at - width, width);
          codes[number(2)] = code;
        }
      }
    } else {
      for (const std::size_t width : {1u, 2u}) readSection(width);
    }
    ASSERT_EQ(m_at, m_image.size());
    for (const auto& [unit, code] : codes) prefer(code, unit);
  }

  // What the decoder makes of bytes, and the offsets where it can make nothing.
  std::string decode(const std::string& bytes, Offsets& bad) const {
    std::string utf16;
    for (std::size_t i = 0; i < bytes.size();) {
      const auto b = static_cast<unsigned char>(bytes[i]);
      auto entry = isAscii && b < 0x80 ? units.end() : units.find(bytes.substr(i, 2));
      if (entry == units.end()) entry = units.find(bytes.substr(i, 1));
      const bool isIdentity = b == 0 || (isAscii && b < 0x80);
      if (isIdentity) {
        utf16 += {static_cast<char>(b), '\0'};
      } else if (entry == units.end()) {
        bad.push_back(static_cast<unsigned int>(i));
      } else {
        utf16 += {static_cast<char>(entry->second & 0xFF), static_cast<char>(entry->second >> 8)};
      }
      i += isIdentity || entry == units.end() ? 1 : entry->first.size();
    }
    return utf16;
  }

  std::string encode(int codePage, unsigned int unit) const {
    const bool isDigit = (unit >= 0x660 && unit <= 0x669) || (unit >= 0x6F0 && unit <= 0x6F9);
    if (isDigit && (codePage == 1256 || codePage == 28596)) unit = '0' + (unit & 0x0F);
    if (unit == 0 || (isAscii && unit < 0x80)) return {static_cast<char>(unit)};
    const auto entry = codes.find(unit);
    if (entry != codes.end()) return entry->second;
    const auto* letter = codePage == 1258 ? findVietnameseDecomposition(unit) : nullptr;
    if (letter == nullptr) return "";
    return {static_cast<char>(letter->base), static_cast<char>(letter->mark)};
  }

 private:
  unsigned int number(std::size_t width) {
    unsigned int value = 0;
    for (std::size_t i = 0; i < width; ++i, ++m_at) {
      value |= static_cast<unsigned int>(static_cast<unsigned char>(m_image.at(m_at))) << 8 * i;
    }
    return value;
  }

  void readSection(std::size_t width) {
    unsigned int code = 0, unit = 0;
    while (const unsigned int delta = number(width)) {
      code += delta;
      unit = (unit + number(2)) & 0xFFFF;
      const std::string bytes{static_cast<char>(code >> 8), static_cast<char>(code)};
      codes[unit] = bytes.substr(2 - width);
    }
  }

  // Units come in ascending order: a double-byte code keeps the first, but for a private-use one,
  // and so do the single bytes; those of 20 to 7E that an ASCII table lists again are never read.
  void prefer(const std::string& code, unsigned int unit) {
    const auto [entry, isNew] = units.emplace(code, unit);
    if (!isNew && entry->second >= 0xE000 && entry->second < 0xF900) entry->second = unit;
  }

  std::string m_image;
  std::size_t m_at = 0;
};

Model modelOf(const EncodingRow& row) {
  Model model;
  if (row.appendText != nullptr) {
    StringBuffer text;
    row.appendText(text);
    model.read(text.getString());
  }
  if (row.text != nullptr) {
    model.units.clear();
    model.read(row.text);
  }
  return model;
}

struct Recorder : ConversionObserver {
  void onUnconvertible(const UnconvertibleInput& piece) override { bad.push_back(piece.offset); }
  Offsets bad;
};

// Runs one decoder or encoder that drops what it cannot convert.
std::string run(int from, int to, const std::string& input, Offsets& bad) {
  EncodingConvert converter;
  Recorder recorder;
  DataBuffer out;
  LogBase log;
  converter.m_observer = &recorder;
  const auto* data = reinterpret_cast<const unsigned char*>(input.data());
  const auto size = static_cast<unsigned int>(input.size());
  // Past EncConvert for Mac Arabic, which is reordered there before it is decoded.
  const bool result = from == 10004 ? converter.convertToUnicodeHC(from, data, size, out, log)
                                    : converter.EncConvert(from, to, data, size, out, log);
  EXPECT_EQ(converter.m_foundErrors, !recorder.bad.empty());
  EXPECT_EQ(result, from != 1200 || recorder.bad.empty());
  bad = recorder.bad;
  return {reinterpret_cast<const char*>(out.getData2()), out.getSize()};
}

TEST(CodePages, DecodeEveryCode) {
  std::string singles, pairs;
  for (int code = 0; code < 0x10000; ++code) {
    if (code < 256) singles += static_cast<char>(code);
    // Whatever becomes of the pair, the decoder is in step again behind two letters.
    pairs += {static_cast<char>(code >> 8), static_cast<char>(code), 'A', 'A'};
  }
  for (const EncodingRow& row : encodingRows()) {
    if (!hasTable(row) || !row.inEngine) continue;
    const Model model = modelOf(row);
    const std::string& input = row.form == EncodingForm::kDoubleByte ? pairs : singles;
    Offsets expectedBad, bad;
    const std::string expected = model.decode(input, expectedBad);
    EXPECT_TRUE(run(row.number, 1200, input, bad) == expected) << row.number;
    EXPECT_EQ(bad, expectedBad) << row.number;
  }
}

TEST(CodePages, EncodeEveryUnit) {
  std::string input;
  for (int unit = 0; unit < 0x10000; ++unit) {
    input += {static_cast<char>(unit), static_cast<char>(unit >> 8)};
  }
  for (const EncodingRow& row : encodingRows()) {
    if (!hasTable(row) || !row.inEngine) continue;
    const Model model = modelOf(row);
    std::string expected;
    Offsets expectedBad, bad;
    for (unsigned int unit = 0; unit < 0x10000; ++unit) {
      const std::string code = model.encode(row.number, unit);
      expected += code;
      if (code.empty()) expectedBad.push_back(2 * unit);
    }
    EXPECT_TRUE(run(1200, row.number, input, bad) == expected) << row.number;
    EXPECT_TRUE(bad == expectedBad) << row.number;
  }
}

// Letters that 1258 has in two parts, each before its base, and their marks: what Unicode states.
TEST(CodePages, TakeVietnameseLettersApart) {
  const struct {
    std::u16string letters;
    char mark;
  } rows[] = {
      {u"ÌIÒOìiòoẦÂầâẰĂằăỀÊềêỒÔồôỜƠờơỪƯừưỲYỳy", '\xCC'},
      {u"ẢAảaẨÂẩâẲĂẳăẺEẻeỂÊểêỈIỉiỎOỏoỔÔổôỞƠởơỦUủuỬƯửưỶYỷy", '\xD2'},
      {u"ÃAÕOãaõoĨIĩiŨUũuẪÂẫâẴĂẵăẼEẽeỄÊễêỖÔỗôỠƠỡơỮƯữưỸYỹy", '\xDE'},
      {u"ÝYýyẤÂấâẮĂắăẾÊếêỐÔốôỚƠớơỨƯứư", '\xEC'},
      {u"ẠAạaẬÂậâẶĂặăẸEẹeỆÊệêỊIịiỌOọoỘÔộôỢƠợơỤUụuỰƯựưỴYỵy", '\xF2'},
  };
  for (const auto& row : rows) {
    std::string letters, bases, expected;
    for (std::size_t i = 0; i < row.letters.size(); ++i) {
      std::string& text = i % 2 == 0 ? letters : bases;
      text += {static_cast<char>(row.letters[i]), static_cast<char>(row.letters[i] >> 8)};
    }
    Offsets bad;
    for (const char base : run(1200, 1258, bases, bad)) expected += {base, row.mark};
    EXPECT_EQ(run(1200, 1258, letters, bad), expected);
    EXPECT_TRUE(bad.empty());
  }
}

}  // namespace
