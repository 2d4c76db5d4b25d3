// GSM 03.38 (3GPP TS 23.038, 6.2.1) to and from UTF-16, and UTF-8: one set of loops for both.
//
// The default alphabet, one septet a byte, with the extension table behind 1B. An escape before a
// code without an extension is read as that code's default character, before another escape (a
// further table) as a space. Bytes from 80 up and an escape with no septet behind it are malformed,
// one byte each. What has no septet is written as "?".
#include "encoding/codecs/gsm.h"

#include <array>

#include "encoding/codecs/codec_run.h"
#include "encoding/codecs/gsm_alphabet.h"
#include "encoding/codecs/text_bytes.h"
#include "support/utf.h"

namespace {

// Up to three bytes of output, the first in the low byte, and their count in the high byte, so that
// the loops write every character alike: four bytes, of which the count says how many to keep.
using Entry = std::uint32_t;

constexpr Entry makeEntry(const unsigned char* bytes, unsigned int count) {
  Entry entry = count << 24;
  for (unsigned int i = 0; i < count; ++i) entry |= static_cast<Entry>(bytes[i]) << (8 * i);
  return entry;
}

unsigned char* writeEntry(unsigned char* dest, Entry entry) {
  storeLow(dest, entry);
  return dest + (entry >> 24);
}

// A character of the text on the other side.
using Character = Utf8Sequence;

struct Utf8Form {
  static constexpr unsigned int kUnitSize = 1;
  static constexpr std::ptrdiff_t kLongest = 6;  // bytes of a character: a pair of surrogate forms
  static constexpr unsigned int kGrowthRead = 10, kGrowthWrite = 9;

  static constexpr Entry entryOf(char16_t character) {
    unsigned char utf8[4] = {};
    return makeEntry(utf8, static_cast<unsigned int>(writeUtf8(utf8, character) - utf8));
  }
  static Bytes16 load(const unsigned char* p) { return Bytes16::load(p); }
  static void store(Bytes16 text, unsigned char* dest) { text.store(dest); }
  static Character next(const unsigned char* p, std::ptrdiff_t left) {
    return decodeScalar(p, static_cast<std::size_t>(left));
  }
};

struct Utf16Form {
  static constexpr unsigned int kUnitSize = 2;
  static constexpr std::ptrdiff_t kLongest = 4;
  static constexpr unsigned int kGrowthRead = 16, kGrowthWrite = 5;

  static constexpr Entry entryOf(char16_t character) { return Entry{2} << 24 | character; }
  static Bytes16 load(const unsigned char* p) { return loadUnits(p); }
  static void store(Bytes16 text, unsigned char* dest) { storeAsUnits(text, dest); }
  static Character next(const unsigned char* p, std::ptrdiff_t left) {
    if (left < 2) return {0, 1, false};
    const std::uint32_t unit = loadLow<std::uint16_t>(p);
    if (!isSurrogate(unit)) return {unit, 2, true};
    const bool isPair =
        left >= 4 && isHighSurrogate(unit) && isLowSurrogate(loadLow<std::uint16_t>(p + 2));
    return {0, isPair ? 4u : 2u, false};
  }
};

// Most text is letters, digits and marks that ASCII and the default alphabet have at the same
// place; the loops of both directions copy them together. (CR is one of them too, but rare.)
Bytes16 areSame(Bytes16 text) {
  return isAsciiLetter(text) | isBetween(text, ' ', '#') | isBetween(text, '%', '?') |
         equal(text, '\n');
}

// Copies the characters before the first different one, as far as there are sixteen in sight.
template <unsigned int InSize, unsigned int OutSize, typename Load, typename Store>
void copySame(const unsigned char*& in, const unsigned char* stop, unsigned char*& to, Load load,
              Store store) {
  for (; stop - in >= std::ptrdiff_t{InSize * kVector}; in += InSize * kVector) {
    const Bytes16 text = load(in);
    store(text, to);
    const unsigned int count = countHigh(areSame(text));
    to += OutSize * count;
    if (count == kVector) continue;
    in += InSize * count;
    break;
  }
}

// From GSM: by byte; 0 for the escape and for what is no septet.
template <typename Form>
constexpr auto kDecoded = [] {
  std::array<Entry, 256> table{};
  for (unsigned int code = 0; code < 128; ++code) {
    if (code != kGsmEscape) table[code] = Form::entryOf(kGsmAlphabet[code]);
  }
  return table;
}();

// By the byte behind an escape; 0 for what is no septet. A code without an extension stands for its
// default character. The code of a further extension table is shown as a space, as the standard
// asks of who knows no such table.
template <typename Form>
constexpr auto kDecodedBehindEscape = [] {
  std::array<Entry, 256> table = kDecoded<Form>;
  table[kGsmEscape] = Form::entryOf(u' ');
  for (const GsmExtension& e : kGsmExtensions) table[e.code] = Form::entryOf(e.character);
  return table;
}();

template <typename Form>
struct Reader : CodecRun {
  using CodecRun::CodecRun;
  static constexpr unsigned int kGrowth = Form::kGrowthRead;

  bool step() {
    const unsigned char* const stop = p + std::min(left(), (room() - kMinRoom) / 3 + 1);
    const unsigned char* in = p;
    unsigned char* to = dest;
    while (in < stop) {
      copySame<1, Form::kUnitSize>(in, stop, to, Utf8Form::load, Form::store);
      if (in == stop) break;
      Entry entry = kDecoded<Form>[*in];
      unsigned int length = 1;
      if (entry == 0 && *in == kGsmEscape) {
        if (end - in < 2 && !last) break;
        if (end - in >= 2) entry = kDecodedBehindEscape<Form>[in[1]];
        if (entry != 0) length = 2;
      }
      if (entry == 0) {
        dest = to;
        report(in, 1);
        entry = Form::entryOf(kReplacementCharacter);
      }
      to = writeEntry(to, entry);
      in += length;
    }
    p = in;
    dest = to;
    return in >= stop;
  }
  void finish() {}
};

// To GSM: the characters of the default alphabet lie below U+0400, and the euro sign far off.
constexpr std::uint32_t kEncodedEnd = 0x400;
constexpr std::uint32_t kEuro = 0x20AC;

constexpr Entry extensionEntry(unsigned char code) {
  const unsigned char bytes[] = {kGsmEscape, code};
  return makeEntry(bytes, 2);
}

constexpr unsigned char kSubstitute = '?';
constexpr Entry kNoForm = makeEntry(&kSubstitute, 1);

// By character; 0 for one without a form.
constexpr auto kEncoded = [] {
  std::array<Entry, kEncodedEnd> table{};
  for (unsigned int i = 0; i < 128; ++i) {
    const auto code = static_cast<unsigned char>(i);
    if (code != kGsmEscape) table[kGsmAlphabet[code]] = makeEntry(&code, 1);
  }
  for (const GsmExtension& e : kGsmExtensions) {
    if (e.character < kEncodedEnd) table[e.character] = extensionEntry(e.code);
  }
  return table;
}();

constexpr Entry kEncodedEuro = [] {
  for (const GsmExtension& e : kGsmExtensions) {
    if (e.character == kEuro) return extensionEntry(e.code);
  }
  return Entry{0};
}();

Entry encodedForm(const Character& character) {
  if (!character.valid) return 0;
  if (character.value < kEncodedEnd) return kEncoded[character.value];
  return character.value == kEuro ? kEncodedEuro : 0;
}

template <typename Form>
struct Writer : CodecRun {
  using CodecRun::CodecRun;
  static constexpr unsigned int kGrowth = Form::kGrowthWrite;

  bool step() {
    const unsigned char* const stop = p + std::min(left(), (room() - kMinRoom) / 2 + 1);
    const unsigned char* in = p;
    unsigned char* to = dest;
    while (in < stop) {
      copySame<Form::kUnitSize, 1>(in, stop, to, Form::load, Utf8Form::store);
      if (in >= stop) break;
      const Character character = Form::next(in, end - in);
      Entry entry = encodedForm(character);
      if (entry == 0) {
        if (!character.valid && end - in < Form::kLongest && !last) break;
        dest = to;
        report(in, character.length);
        entry = kNoForm;
      }
      to = writeEntry(to, entry);
      in += character.length;
    }
    p = in;
    dest = to;
    return in >= stop;
  }
  void finish() {}
};

}  // namespace

extern const Codec kGsmCodec = {1200, runCodec<Reader<Utf16Form>>, runCodec<Writer<Utf16Form>>,
                                nullptr, true};
const Codec kGsmUtf8Codec = {65001, runCodec<Reader<Utf8Form>>, runCodec<Writer<Utf8Form>>,
                             nullptr};
