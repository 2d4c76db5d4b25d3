// The encodings of Indian scripts: that they read and write what other converters do, what is
// malformed in them, and that they stand anything.
#include <string>

#include "encoding/codecs/encoding_row.h"
#include "tests/codec_support.h"

namespace {

const Codec& kDevanagari = codecOf(57002);
const Codec& kBengali = codecOf(57003);
const Codec& kAssamese = codecOf(57006);
const Codec& kGurmukhi = codecOf(57011);

const Case kCases[] = {
    // A second byte that makes another letter of the first; joiners behind a virama; Vedic signs.
    // ICU reads the same.
    {kDevanagari.read,
     "Ab \xB3\xE9\xE8\xE9\xD6 \xB3\xE8\xE8\xB3\xA6\xE9\xA4\xE0\xEA\xEA\xEA\xD9\xF0\xB8\xE9",
     utf16(u"Ab \u0958\u094D\u200D\u0937 \u0915\u094D\u200C\u0915\u090C\u0904\u0965\u0964\u200D"
           u"\u0952\u093C"),
     {}},
    // Another script, up to the end of the line; that of the lines; what is only for display.
    {kDevanagari.read,
     "\xEF\x43\xB3 \xB3\xEF\x40\xB3\xEF\x4B\xB3\n\xB3\xEF\x30\xB3\xEF\x46\xB3\r\xB3",
     utf16(u"\u0995 \u0995\u0915\u0A15\n\u0915\u0915\u0995\r\u0915"),
     {}},
    // In Gurmukhi a consonant on both sides of a virama is a doubled one.
    {kGurmukhi.read,
     "\xC8\xB3\xE8\xB3\xDA \xB3\xE8\xB4\xC0\xE9",
     utf16(u"\u0A2A\u0A71\u0A15\u0A3E \u0A15\u0A4D\u0A16\u0A5C\u0A4D\u0A39"),
     {}},
    // No script, no sign, no letter; and an end in the middle.
    {kDevanagari.read,
     "\xEF\x41\xF0\xB9\xFF\xEB\xB3\xEF",
     utf16(u"\xFFFD"
           u"A\xFFFD\u091B\xFFFD\xFFFD\u0915\xFFFD"),
     {{0, 1, 0}, {2, 1, 4}, {4, 1, 8}, {5, 1, 10}, {7, 1, 14}}},
    // A script is announced again behind a line end, and Devanagari is in its own lines only.
    {kDevanagari.write,
     utf16(u"\u0915\u0995\u0996A\u0964\n\u0996\u0915"),
     "\xB3\xEF\x43\xB3\xB4"
     "A\xEA\n\xEF\x43\xB4\xEF\x42\xB3",
     {}},
    // What would be read together is kept apart, but for a nukta at its consonant.
    {kDevanagari.write,
     utf16(u"\u0915\u093C\u0958\u0964\u0964\u0965\u094D\u094D\u093C\u0907\u093C\u094D\u200D\u0952"
           u"\u0907"
           u"a\u093C"),
     "\xB3\xE9\xB3\xE9\xEA\xEF\x42\xEA\xEF\x42\xEA\xEA\xE8\xEF\x42\xE8\xEF\x42\xE9\xA6\xEF\x42\xE9"
     "\xE8\xE9"
     "\xF0\xB8\xA6"
     "a\xE9",
     {}},
    {kGurmukhi.write,
     utf16(u"\u0A2A\u0A71\u0A15\u0A3E \u0A15\u0A4D\u0A15\u0A71"),
     "\xC8\xB3\xE8\xB3\xDA \xB3\xE8\xEF\x4B\xB3?",
     {{16, 2, 11}}},
    // Assamese is Bengali.
    {kAssamese.write, utf16(u"\u0995\u0915\u0995"), "\xB3\xEF\x42\xB3\xEF\x43\xB3", {}},
    {kBengali.write,
     utf16(u"\u0900\u4E00\xD83D\xDE00\xDC00\u0995") + "z",
     "????\xB3?",
     {{0, 2, 0}, {2, 2, 1}, {4, 4, 2}, {8, 2, 3}, {12, 1, 5}}},
};

TEST(Iscii, ConvertsAndReportsHoweverTheTextIsCut) {
  for (const Case& c : kCases) checkCase(c);
}

TEST(Iscii, StandsAnyBytesHoweverTheyAreCut) {
  const std::string bytes =
      "\xB3\xB3\xB4\xE8\xE8\xE9\xE9\xEA\xEF\xEF\x42\x43\x4B\xF0\xB8\xA4\xE0\xD9\n z\xFF";
  const std::string units(
      "\x15\x09\x3C\x09\x4D\x09\x0D\x20\x64\x09\x95\x09\x71\x0A\x15\x0A\x4D\x0A\0\0\n\0z\0", 24);
  std::vector<Direction> directions;
  for (const Codec* codec : {&kDevanagari, &kAssamese, &kGurmukhi}) {
    directions.push_back({codec->read, -1, 4, bytes});
    directions.push_back({codec->write, -1, 3, units});
  }
  checkAnyBytes(directions, 400);
}

// Every letter of every script comes back in a text that begins in any.
TEST(Iscii, HoldsAllScripts) {
  std::u16string letters;
  for (char16_t letter = 0x0901; letter < 0x0D80; ++letter) letters += {letter, u'x'};
  for (int number = 57002; number <= 57011; ++number) {
    const Codec& codec = codecOf(number);
    const Result written = wholly(codec.write, utf16(letters));
    std::string held = utf16(letters);
    for (auto place = written.places.rbegin(); place != written.places.rend(); ++place) {
      held.erase(place->offset, place->length);
    }
    EXPECT_GT(held.size() / 4, 650u) << number;
    const std::string again = wholly(codec.write, held).text;
    EXPECT_EQ(hex(wholly(codec.read, again).text), hex(held)) << number;
  }
}

// ---- TSCII: Tamil as it stands on the page. ----

const Codec& kTscii = codecOf(200519);

// Texts that are both what is read and what is written. Where Grantha and AU are not in it, the C
// library has the same.
const struct {
  const char* bytes;
  std::u16string_view text;
} kTsciiTexts[] = {
    {"\xBE\xC1\xA2\xFA z", u"தமிழ் z"},
    // A sign in front of its letter, or around it.
    {"\xA6\xB8\xA1\xF1\xCE \xA7\xB8\xA1\xA8\xC5", u"கொண்டு கோவை"},
    {"\xA6\xB8\xA1\xA6\xB8\xA7\xB8\xA8\xB8\xB8\xEC\xCC", u"கொகெகேகைகக்கு"},
    {"\xA6\xB8\xAA\xB6", u"கௌஔ"},
    // Grantha, and what is several characters in one byte.
    {"\xA6\x83\xC2\xC4\xC4\xA2\xBE\xA1", u"ஜெயலலிதா"},
    {"\x87\x8C\xA7\x87\xA1\xEC\x82\x8A\xD5\x85\xA4\x89", u"க்ஷக்ஷ்க்ஷோக்ஸ்ரீஸ்ருஸுஷ்"},
    {"\xCA\xCB\x99\x9C\x81\x98\x9F\x91\x94\xA9", u"டிடீஙுஞூ௧௯௲‘”©"},
    // Signs without a letter in front of them, and the right halves.
    {"\xA6\xA1\xA7\xA1\xA6\xAA\xAA\xA1 \xA7\xCC\xA6",
     u"\u0BCA\u0BCB\u0BCC\u0BD7\u0BBE \u0BC7கு\u0BC6"},
    {"\xA6\xA6\xB8\xA7\xA8", u"\u0BC6கெ\u0BC7\u0BC8"},
};

TEST(Tscii, ReadsAndWritesLettersInTheirOrder) {
  for (const auto& [bytes, text] : kTsciiTexts) {
    checkCase({kTscii.read, bytes, utf16(text), {}});
    checkCase({kTscii.write, utf16(text), bytes, {}});
  }
}

const Case kTsciiCases[] = {
    // What is only read: the letter I of version 1.6, and forms of the C library.
    {kTscii.read, "\xAD\xA7\xB8\xAA\xA7\xAA\x8A\xA4\x8B\xA5\x8A", utf16(u"இகௌ\u0BCCஸுஹூஸ்"), {}},
    // No characters, which belong to none in front of them; and byte 00, which does not either.
    {kTscii.read,
     std::string("\xA6\xFF\xA7\xB8\xA0\xA6\0\xA6\xB8\0\xA8z\x8A\0", 14),
     utf16({u"\u0BC6\uFFFDகே\uFFFD\u0BC6\0கெ\0\u0BC8zஸ்\0", 15}),
     {{1, 1, 2}, {4, 1, 8}}},
    {kTscii.write,
     utf16({u"க\0\u0BC6é\u0BCD\U0001F600க\xD800ஸ்ர\u0BC0ஷ்\xDC00\u0B95\u0BCD", 18}) + "z",
     std::string("\xB8\0\xA6???\xB8?\x82\x89?\xEC?", 13),
     {{6, 2, 3}, {8, 2, 4}, {10, 4, 5}, {16, 2, 7}, {30, 2, 10}, {36, 1, 12}}},
    {kTscii.write, utf16(u"க்ஷ்\u0BCDஸ்ர"), "\x8C?\x8A\xC3", {{8, 2, 1}}},
};

TEST(Tscii, ConvertsAndReportsHoweverTheTextIsCut) {
  for (const Case& c : kTsciiCases) checkCase(c);
}

TEST(Tscii, StandsAnyBytesHoweverTheyAreCut) {
  const std::string bytes =
      "\xA6\xA7\xA8\xA6\xA7\xA1\xAA\xB8\xC9\x83\x87\x8A\xA4\x82\x8C\xEC\xA0z\n";
  const std::string units = utf16(u"கஷஸரஜ\u0BCD\u0BCD\u0BC0\u0BC6\u0BC7\u0BBE\u0BD7\u0BCAz");
  const Direction directions[] = {{kTscii.read, -1, 8, bytes}, {kTscii.write, -1, 2, units}};
  checkAnyBytes(directions, 400);
}

}  // namespace
