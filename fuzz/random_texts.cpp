// Random texts in every encoding with a state, made of what matters in it: its escapes and shifts,
// whole characters and cut ones, controls, any bytes.
//
//   random_texts COUNT [SEED [NUMBER...]]
//
// gives COUNT texts to each of the encodings, or to those of the numbers. Of each must hold: in
// pieces it gives what it gives at once, both ways, by the codec and, of some, by a stream; what
// was read, written and read again, is the same; and random characters that were written are read
// back.
#include <sanitizer/common_interface_defs.h>

#include <cinttypes>
#include <string>
#include <vector>

#include "encoding/codecs/encoding_row.h"
#include "fuzz/codec_checks.h"
#include "fuzz/stream_checks.h"

namespace {

using Bytes = std::span<const std::uint8_t>;
using Text = std::vector<std::uint8_t>;

// splitmix64: any text of any encoding can be made by itself.
class Random {
 public:
  explicit Random(std::uint64_t seed) : m_state(seed) {}
  std::uint32_t below(std::size_t limit) {
    std::uint64_t z = m_state += 0x9E3779B97F4A7C15;
    z = (z ^ z >> 30) * 0xBF58476D1CE4E5B9;
    z = (z ^ z >> 27) * 0x94D049BB133111EB;
    return static_cast<std::uint32_t>((z >> 32) * limit >> 32);
  }
  std::uint8_t byte() { return static_cast<std::uint8_t>(below(256)); }
  std::uint8_t of(std::string_view bytes) {
    return static_cast<std::uint8_t>(bytes[below(bytes.size())]);
  }

 private:
  std::uint64_t m_state;
};

// What is told when a check fails, or a sanitizer.
struct {
  int number;
  std::uint64_t seed, index;
  Text bytes, characters;
} current;

void print(const char* what, Bytes text) {
  std::fprintf(stderr, "%s:", what);
  for (const std::uint8_t byte : text) std::fprintf(stderr, " %02X", byte);
  std::fprintf(stderr, "\n");
}

void printCurrent() {
  std::fprintf(stderr, "encoding %d, seed %" PRIu64 ", text %" PRIu64 "\n", current.number,
               current.seed, current.index);
  print("bytes", current.bytes);
  print("characters", current.characters);
}

void append(Text& text, Bytes more) { text.insert(text.end(), more.begin(), more.end()); }
Bytes bytesOf(const DataBuffer& buffer) { return {buffer.getData2(), buffer.getSize()}; }

// ---- Characters, as the text on the other side of a codec has them. ----

void appendCharacter(Text& text, int codePage, char32_t value) {
  const auto put = [&](char32_t byte) { text.push_back(static_cast<std::uint8_t>(byte)); };
  if (codePage != 1200) {  // a code
    if (value > 0xFF) put(value >> 8);
    put(value);
    return;
  }
  const auto putUnit = [&](char32_t unit) {
    put(unit);
    put(unit >> 8);
  };
  if (value > 0xFFFF) putUnit(0xD800 + ((value - 0x10000) >> 10));
  putUnit(value > 0xFFFF ? 0xDC00 + (value & 0x3FF) : value);
}

// A codec, and the characters that it has.
class Subject {
 public:
  explicit Subject(const EncodingRow& row)
      : m_codec(*row.codec), m_isWritten(row.isWritten && m_codec.write) {
    const bool isUnicode = m_codec.codePage == 1200;
    for (char32_t value = 0; m_isWritten && value < (isUnicode ? 0x30000 : 0x10000); ++value) {
      if (isUnicode ? !isTried(value) : !isCode(value)) continue;
      Text character;
      appendCharacter(character, m_codec.codePage, value);
      convert(m_codec.write, character, m_whole);
      if (m_whole.state.replaced) continue;
      const Text bytes = copyOf(m_whole);
      convert(m_codec.read, bytes, m_whole);
      if (!m_whole.state.replaced && std::ranges::equal(bytesOf(m_whole.out), character)) {
        m_characters.push_back(value);
      }
    }
  }
  std::size_t characterCount() const { return m_characters.size(); }

  void check(Random& random) {
    current.bytes.clear();
    current.characters.clear();
    if (!m_characters.empty() && random.below(3) == 0) {
      const bool hasOthers = random.below(4) == 0;
      current.characters = randomCharacters(random, hasOthers);
      checkWritten(random, hasOthers);
    } else {
      current.bytes = randomBytes(random);
    }
    checkRead(random);
    if (random.below(16) == 0) checkStreams(random);
  }

 private:
  // Left out are marks that combine, as nukta and virama do in India: behind some characters they
  // come back as one with these. And ESC, SO and SI: behind these, characters may be refused.
  static bool isTried(char32_t value) {
    const bool isVirama = isIndic(value) && value % 0x80 == 0x4D;
    const bool isSurrogate = value >= 0xD800 && value < 0xE000;
    const bool isJoined = isMark(value) || isVirama || isNukta(value);
    return !isJoined && !isSurrogate && value != 0xFEFF && !isShift(value);
  }
  static bool isMark(char32_t value) { return value >= 0x300 && value < 0x370; }
  static bool isIndic(char32_t value) { return value >= 0x900 && value < 0xD80; }
  static bool isNukta(char32_t value) { return isIndic(value) && value % 0x80 == 0x3C; }
  static bool isCode(char32_t value) {
    return value > 0xFF ? value >= 0x8140 && value % 0x100 >= 0x40 : !isShift(value);
  }
  static bool isShift(char32_t value) { return value == 0x0E || value == 0x0F || value == 0x1B; }

  static Text copyOf(const Converted& converted) {
    const Bytes bytes = bytesOf(converted.out);
    return {bytes.begin(), bytes.end()};
  }
  static void convert(Codec::Convert by, Bytes text, Converted& result) {
    convertPieces(
        by, text, [&] { return text.size(); }, result);
  }
  // At once, which m_whole then has, and in pieces.
  void convertBothWays(Codec::Convert by, Bytes text, Random& random) {
    const std::size_t most = std::size_t{1} << random.below(6);
    checkPieces(
        by, text, [&] { return 1 + random.below(most); }, m_whole, m_cut);
  }

  // Others are any, whether it has them or not, and what is no character.
  Text randomCharacters(Random& random, bool hasOthers) {
    Text text;
    // Neighbours are of one set more often than not.
    const std::uint32_t near = random.below(m_characters.size());
    for (std::uint32_t count = lengthOf(random); count != 0; --count) {
      const std::uint32_t kind = random.below(8);
      if (kind == 4 && hasOthers) {
        const char32_t most = random.below(4) == 0 ? 0x110000 : 0x10000;
        appendCharacter(text, m_codec.codePage,
                        random.below(m_codec.codePage == 1200 ? most : 0x10000));
        continue;
      }
      std::size_t index = near + random.below(64);
      if (kind < 3) index = random.below(m_characters.size());
      if (kind == 3) index = random.below(128);
      appendCharacter(text, m_codec.codePage, m_characters[index % m_characters.size()]);
    }
    return text;
  }
  // Mostly few, so that many are near an end.
  static std::uint32_t lengthOf(Random& random) {
    return 1 + random.below(random.below(32) == 0 ? 100 : 10);
  }

  Text randomBytes(Random& random) {
    Text text;
    for (std::uint32_t count = lengthOf(random); count != 0; --count) appendPiece(text, random);
    return text;
  }
  void appendPiece(Text& text, Random& random) {
    switch (random.below(12)) {
      case 0:
        return text.push_back(random.byte());
      case 1:  // controls; in some encodings all that shifts
        return text.push_back(static_cast<std::uint8_t>(random.below(0x20)));
      case 2:
        return text.push_back(random.of("\x0E\x0F\x1B\n\r\x8E\x8F\xEF\xF0\xFF+-&~{}, \t\x19\x1D"));
      case 3:  // an escape sequence, or nearly one
        text.push_back(0x1B);
        for (std::uint32_t i = random.below(3); i != 0; --i)
          text.push_back(random.of("$()*+-.,%!"));
        return text.push_back(random.of("ABCDEFGHIJKLMNOPQSTZ@bgps12345!_/"));
      case 4:  // and one of ISCII
        text.push_back(0xEF);
        return text.push_back(static_cast<std::uint8_t>(0x20 + random.below(0x30)));
      case 5:
        return text.push_back(static_cast<std::uint8_t>(0x20 + random.below(0x60)));
      case 6:  // a pair
        text.push_back(static_cast<std::uint8_t>(0x20 + random.below(0xE0)));
        return text.push_back(static_cast<std::uint8_t>(0x20 + random.below(0xE0)));
      default:
        return appendWritten(text, random);
    }
  }
  // Some characters with all that they need in front and behind, or a part of that.
  void appendWritten(Text& text, Random& random) {
    if (m_characters.empty()) return text.push_back(random.byte());
    Text characters;
    const std::uint32_t near = random.below(m_characters.size());
    for (std::uint32_t count = 1 + random.below(3); count != 0; --count) {
      const std::size_t index = (near + random.below(16)) % m_characters.size();
      appendCharacter(characters, m_codec.codePage, m_characters[index]);
    }
    convert(m_codec.write, characters, m_whole);
    const Bytes written = bytesOf(m_whole.out);
    if (random.below(2) == 0) return append(text, written);
    const std::size_t begin = random.below(written.size());
    append(text, written.subspan(begin, 1 + random.below(written.size() - begin)));
  }

  void checkWritten(Random& random, bool hasOthers) {
    convertBothWays(m_codec.write, current.characters, random);
    if (hasOthers) {
      current.bytes = copyOf(m_whole);
      return;
    }
    ::check(!m_whole.state.replaced, "characters that it has can be written together");
    current.bytes = copyOf(m_whole);
    if (mayChange()) return;
    convert(m_codec.read, current.bytes, m_whole);
    ::check(!m_whole.state.replaced, "what was written can be read");
    ::check(std::ranges::equal(bytesOf(m_whole.out), current.characters),
            "characters that were written come back");
  }

  void checkRead(Random& random) {
    if (m_codec.readStrictly) convertBothWays(m_codec.readStrictly, current.bytes, random);
    convertBothWays(m_codec.read, current.bytes, random);
    if (!m_isWritten) return;
    current.characters = withoutMarks();
    convertBothWays(m_codec.write, current.characters, random);
    if (m_whole.state.replaced || mayChange()) return;  // only read, or with exceptions
    const Text written = copyOf(m_whole);
    convert(m_codec.read, written, m_whole);
    ::check(!m_whole.state.replaced, "what was read and written can be read");
    ::check(std::ranges::equal(bytesOf(m_whole.out), current.characters),
            "what was read and written comes back");
  }
  // The same of streams, whose reports are more, however they treat what has no place.
  void checkStreams(Random& random) {
    StreamSettings settings;
    settings.treatment = static_cast<StreamTreatment>(random.below(6));
    settings.alternate = 1252;
    settings.compose = random.below(2) == 0;
    settings.bestFit = random.below(2) == 0;
    settings.translit = random.below(2) == 0;
    settings.from = current.number;
    settings.to = 65001;
    checkStream(settings, current.bytes, random);
    if (m_characters.empty()) return;
    current.characters = randomCharacters(random, true);
    settings.from = m_codec.codePage;
    settings.to = current.number;
    checkStream(settings, current.characters, random);
  }
  static void checkStream(const StreamSettings& settings, Bytes text, Random& random) {
    const StreamedText whole = streamPieces(settings, text, [&] { return text.size(); });
    const std::size_t most = std::size_t{1} << random.below(6);
    ::check(streamPieces(settings, text, [&] { return 1 + random.below(most); }) == whole,
            "what a stream gives does not depend on the cuts");
  }

  // Whether a text need not come back. Python writes controls as they are, shifts too; packed GSM
  // has a CR at the end twice, so that it is no filling; ISCII has one form for a consonant and
  // nukta, and TCVN for a letter and its marks; TSCII reads what is in front of a letter behind it.
  bool mayChange() const {
    const Text& text = current.characters;
    const auto isAnyUnit = [&](const auto& test) {
      for (std::size_t at = 0; at + 1 < text.size(); at += 2) {
        if (test(text[at] | text[at + 1] * 256u)) return true;
      }
      return false;
    };
    const auto isNumber = [](int first, int last) {
      return current.number >= first && current.number <= last;
    };
    if (isNumber(200940, 200946)) return isAnyUnit(isShift);
    if (isNumber(57002, 57011)) return isAnyUnit(isNukta);
    if (isNumber(200864, 200864)) return isAnyUnit(isMark);
    if (isNumber(200519, 200519)) return hasStraySign();
    return isNumber(200810, 200825) && text.size() >= 2 && text.end()[-2] == '\r' &&
           text.back() == 0;
  }
  // The left half of a sign of Tamil that stands behind no letter, or with its right half behind
  // it.
  bool hasStraySign() const {
    const Text& text = current.characters;
    const auto unit = [&](std::size_t at) {
      return at + 1 < text.size() ? text[at] | text[at + 1] * 256 : 0;
    };
    for (std::size_t at = 0; at + 1 < text.size(); at += 2) {
      if (unit(at) < 0x0BC6 || unit(at) > 0x0BC8) continue;
      const int before = at == 0 ? 0 : unit(at - 2), behind = unit(at + 2);
      if (before < 0x0B95 || before > 0x0BB9 || behind == 0x0BBE || behind == 0x0BD7) return true;
    }
    return false;
  }
  // A letter for each, so that what stands around it does not come together.
  Text withoutMarks() const {
    const unsigned int length = m_codec.codePage == 65001 ? 3 : 2;
    Text text;
    unsigned int done = 0;
    for (const Converted::Place& place : m_whole.places) {
      append(text, bytesOf(m_whole.out).subspan(done, place.mark - done));
      appendCharacter(text, m_codec.codePage, 'x');
      done = place.mark + length;
    }
    append(text, bytesOf(m_whole.out).subspan(done));
    return text;
  }

  const Codec& m_codec;
  const bool m_isWritten;
  std::vector<char32_t> m_characters;
  Converted m_whole, m_cut;
};

bool hasState(const EncodingRow& row) {
  return row.codec != nullptr && (row.kind == CharsetKind::kStateful || !row.codec->isStateless ||
                                  row.codec->cut == cutAccents || row.codec->cut == cutTscii);
}

void run(const EncodingRow& row, std::uint64_t count) {
  current.number = row.number;
  Subject subject(row);
  for (current.index = 0; current.index < count; ++current.index) {
    Random random((current.seed * 1000003 + static_cast<unsigned int>(row.number)) * 0x100000001B3 +
                  current.index);
    subject.check(random);
  }
  std::printf("%d %s: %" PRIu64 " texts of %zu characters\n", row.number, row.name, count,
              subject.characterCount());
  std::fflush(stdout);
}

}  // namespace

// The text is told of checks that do not hold, too.
extern "C" const char* __asan_default_options() { return "handle_abort=1"; }

int main(int argc, char** argv) {
  if (argc < 2) return std::fputs("usage: random_texts COUNT [SEED [NUMBER...]]\n", stderr), 2;
  __sanitizer_set_death_callback(printCurrent);
  const std::uint64_t count = std::strtoull(argv[1], nullptr, 10);
  current.seed = argc > 2 ? std::strtoull(argv[2], nullptr, 10) : 1;
  for (const EncodingRow& row : encodingRows()) {
    const auto isRow = [&](const char* number) { return std::atoi(number) == row.number; };
    if (argc > 3 ? row.codec != nullptr && std::any_of(argv + 3, argv + argc, isRow)
                 : hasState(row)) {
      run(row, count);
    }
  }
}
