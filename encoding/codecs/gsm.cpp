// GSM 03.38 (3GPP TS 23.038) to and from UTF-16, and the default alphabet to and from UTF-8: one
// set of loops, and tables that drive them.
//
// An alphabet, one septet a byte, with the extension table behind 1B: the default ones (6.2.1), or
// those of a language (annex A), of which a text has either both or the extension table. An escape
// before a code without an extension is read as that code's character in the alphabet, before
// another escape (a further table) as a space. Bytes from 80 up and an escape with no septet behind
// it are malformed, one byte each. What has no septet is written as "?".
//
// Packed (6.1.2), eight septets are seven bytes, the first in the low bits. Seven bits that are
// left over are written as CR, so that nobody takes them for "@", and a CR that ends a text and its
// last byte is written twice; one that stands there is dropped in reading. Malformed, as the last
// byte, are an escape at the end and bits left over that are not 0.
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

// ---- The tables of an alphabet. ----

// To GSM: the characters of the alphabets lie below U+0400, and two far off.
constexpr std::uint32_t kEncodedEnd = 0x400;
constexpr std::uint32_t kEuro = 0x20AC;
constexpr std::uint32_t kInfinity = 0x221E;

constexpr unsigned char kSubstitute = '?';
constexpr Entry kNoForm = makeEntry(&kSubstitute, 1);

template <typename Form>
struct Tables {
  // From GSM: by byte; 0 for the escape and for what is no septet. Behind an escape a code without
  // an extension stands for its character in the alphabet. The code of a further extension table
  // is shown as a space, as the standard asks of who knows no such table.
  std::array<Entry, 256> decoded{}, decodedBehindEscape{};
  // By character; 0 for one without a form.
  std::array<Entry, kEncodedEnd> encoded{};
  Entry encodedEuro = 0, encodedInfinity = 0;

  constexpr Entry encodedForm(const Character& character) const {
    if (!character.valid) return 0;
    if (character.value < kEncodedEnd) return encoded[character.value];
    if (character.value == kEuro) return encodedEuro;
    return character.value == kInfinity ? encodedInfinity : 0;
  }

 private:
  template <typename>
  friend constexpr auto makeTables(GsmCodes, GsmCodes);
  constexpr void encode(char16_t character, Entry entry) {
    (character < kEncodedEnd ? encoded[character]
     : character == kEuro    ? encodedEuro
                             : encodedInfinity) = entry;
  }
};

// The default alphabet with what a language has in other places, and its extension table besides
// the default one.
template <typename Form>
constexpr auto makeTables(GsmCodes locking = {}, GsmCodes single = {}) {
  Tables<Form> tables;
  std::array<char16_t, 128> alphabet{};
  for (unsigned int i = 0; i < 128; ++i) alphabet[i] = kGsmAlphabet[i];
  for (const GsmCode& c : locking) alphabet[c.code] = c.character;
  for (unsigned int i = 0; i < 128; ++i) {
    if (i != kGsmEscape) tables.decoded[i] = Form::entryOf(alphabet[i]);
  }
  tables.decodedBehindEscape = tables.decoded;
  tables.decodedBehindEscape[kGsmEscape] = Form::entryOf(u' ');
  for (const GsmCodes extensions : {GsmCodes(kGsmExtensions), single}) {
    for (const GsmCode& e : extensions) {
      const unsigned char bytes[] = {kGsmEscape, e.code};
      tables.decodedBehindEscape[e.code] = Form::entryOf(e.character);
      tables.encode(e.character, makeEntry(bytes, 2));
    }
  }
  // One septet is better than two.
  for (unsigned int i = 0; i < 128; ++i) {
    const auto code = static_cast<unsigned char>(i);
    if (code != kGsmEscape) tables.encode(alphabet[i], makeEntry(&code, 1));
  }
  return tables;
}

// ---- The loops. ----

// Both convert up to stop, of what ends at end, and return false where what follows the end
// decides; report(at, length, to) says that a mark, written to `to` next, stands for these bytes.

template <typename Form, typename Report>
bool decodeSeptets(const Tables<Form>& tables, const unsigned char*& position,
                   const unsigned char* stop, const unsigned char* end, bool last,
                   unsigned char*& dest, Report report) {
  const unsigned char* in = position;
  unsigned char* to = dest;
  while (in < stop) {
    copySame<1, Form::kUnitSize>(in, stop, to, Utf8Form::load, Form::store);
    if (in == stop) break;
    Entry entry = tables.decoded[*in];
    unsigned int length = 1;
    if (entry == 0 && *in == kGsmEscape) {
      if (end - in < 2 && !last) break;
      if (end - in >= 2) entry = tables.decodedBehindEscape[in[1]];
      if (entry != 0) length = 2;
    }
    if (entry == 0) {
      report(in, 1u, to);
      entry = Form::entryOf(kReplacementCharacter);
    }
    to = writeEntry(to, entry);
    in += length;
  }
  position = in;
  dest = to;
  return in >= stop;
}

template <typename Form, typename Report>
bool encodeSeptets(const Tables<Form>& tables, const unsigned char*& position,
                   const unsigned char* stop, const unsigned char* end, bool last,
                   unsigned char*& dest, Report report) {
  const unsigned char* in = position;
  unsigned char* to = dest;
  while (in < stop) {
    copySame<Form::kUnitSize, 1>(in, stop, to, Form::load, Utf8Form::store);
    if (in >= stop) break;
    const Character character = Form::next(in, end - in);
    Entry entry = tables.encodedForm(character);
    if (entry == 0) {
      if (!character.valid && end - in < Form::kLongest && !last) break;
      report(in, character.length, to);
      entry = kNoForm;
    }
    to = writeEntry(to, entry);
    in += character.length;
  }
  position = in;
  dest = to;
  return in >= stop;
}

// ---- One septet a byte. ----

template <typename Form>
struct Reader : CodecRun {
  using CodecRun::CodecRun;
  static constexpr unsigned int kGrowth = Form::kGrowthRead;

  const Tables<Form>& tables = *static_cast<const Tables<Form>*>(parameters);

  bool step() {
    const unsigned char* const stop = p + std::min(left(), (room() - kMinRoom) / 3 + 1);
    unsigned char* to = dest;
    const bool goesOn =
        decodeSeptets(tables, p, stop, end, last, to,
                      [&](const unsigned char* at, unsigned int length, unsigned char* marked) {
                        dest = marked;
                        report(at, length);
                      });
    dest = to;
    return goesOn;
  }
  void finish() {}
};

template <typename Form>
struct Writer : CodecRun {
  using CodecRun::CodecRun;
  static constexpr unsigned int kGrowth = Form::kGrowthWrite;

  const Tables<Form>& tables = *static_cast<const Tables<Form>*>(parameters);

  bool step() {
    const unsigned char* const stop = p + std::min(left(), (room() - kMinRoom) / 2 + 1);
    unsigned char* to = dest;
    const bool goesOn =
        encodeSeptets(tables, p, stop, end, last, to,
                      [&](const unsigned char* at, unsigned int length, unsigned char* marked) {
                        dest = marked;
                        report(at, length);
                      });
    dest = to;
    return goesOn;
  }
  void finish() {}
};

// ---- Packed. ----

constexpr unsigned char kReturn = '\r';
constexpr unsigned int kGroupSeptets = 8;
constexpr unsigned int kGroupBytes = 7;

// Eight septets, a byte each, as 56 bits, and back.
std::uint64_t join(std::uint64_t v) {
  v = (v & 0x007F007F007F007F) | (v & 0x7F007F007F007F00) >> 1;
  v = (v & 0x00003FFF00003FFF) | (v & 0x3FFF00003FFF0000) >> 2;
  return (v & 0x000000000FFFFFFF) | (v & 0x0FFFFFFF00000000) >> 4;
}
std::uint64_t part(std::uint64_t v) {
  v = (v & 0x000000000FFFFFFF) | (v & 0x00FFFFFFF0000000) << 4;
  v = (v & 0x00003FFF00003FFF) | (v & 0x0FFFC0000FFFC000) << 2;
  return (v & 0x007F007F007F007F) | (v & 0x3F803F803F803F80) << 1;
}

// In CodecState, bits and bitCount are what is left of the last byte read, or not yet written;
// shiftedOut: reading, the septet before was an escape; writing, it was a CR.
bool isPackedState(const void*, const CodecState& state, bool isWriting) {
  constexpr unsigned int kSeptet = 7, kByte = 8;
  return state.bitCount < (isWriting ? kByte : kSeptet) && state.bits >> state.bitCount == 0 &&
         hasOnly(state,
                 {.shiftedOut = state.shiftedOut, .bitCount = state.bitCount, .bits = state.bits});
}

template <typename Form>
struct PackedReader : CodecRun {
  using CodecRun::CodecRun;
  static constexpr unsigned int kGrowth = 19;
  static constexpr std::ptrdiff_t kBlock = 32 * kGroupBytes;

  const Tables<Form>& tables = *static_cast<const Tables<Form>*>(parameters);

  // The last byte of a text is known as such: any other waits for the next.
  bool step() {
    const std::ptrdiff_t known = last ? left() : left() - 1;
    const auto count = std::min({known, (room() - kMinRoom) / 4 + 1, kBlock});
    if (count == 0) return false;
    unsigned char septets[1 + kBlock / kGroupBytes * kGroupSeptets + kGroupSeptets];
    unsigned char* stop = septets;
    if (state.shiftedOut) *stop++ = kGsmEscape;
    stop = unpack(p + count, stop);
    const bool isEnd = last && p == end;
    const unsigned char* in = septets;
    const bool endsInReturn = isEnd && state.bitCount == 0 && stop[-1] == kReturn;
    decode(in, stop - (endsInReturn ? 1 : 0));
    if (endsInReturn && in != stop - 1) decode(in, stop);  // it belongs to the escape
    state.shiftedOut = in != stop && *in == kGsmEscape;
    if (isEnd && (state.shiftedOut || state.bits != 0)) {
      report(p - 1, 1);
      put(kReplacementCharacter & 0xFF, kReplacementCharacter >> 8);
    }
    return true;
  }
  void finish() {
    state.shiftedOut = false;
    state.bits = state.bitCount = 0;
  }

  void decode(const unsigned char*& in, const unsigned char* stop) {
    decodeSeptets(tables, in, stop, stop, false, dest,
                  [](const unsigned char*, unsigned int, unsigned char*) {});
  }

  unsigned char* unpack(const unsigned char* stop, unsigned char* to) {
    while (p < stop) {
      // The eighth byte is looked at, and not used.
      for (; state.bitCount == 0 && stop - p > std::ptrdiff_t{kGroupBytes};
           p += kGroupBytes, to += kGroupSeptets) {
        storeLow(to, part(loadLow<std::uint64_t>(p)));
      }
      state.bits |= std::uint32_t{*p++} << state.bitCount;
      unsigned int count = state.bitCount + 8u;
      for (; count >= 7; count -= 7, state.bits >>= 7) {
        *to++ = static_cast<unsigned char>(state.bits & 0x7F);
      }
      state.bitCount = static_cast<std::uint8_t>(count);
    }
    return to;
  }
};

template <typename Form>
struct PackedWriter : CodecRun {
  using CodecRun::CodecRun;
  static constexpr unsigned int kGrowth = 4;

  const Tables<Form>& tables = *static_cast<const Tables<Form>*>(parameters);

  // Septets are written a byte each, and packed where they stand: that is never behind them.
  bool step() {
    const unsigned char* const stop = p + std::min(left(), (room() - kMinRoom) / 2 + 1);
    unsigned char* const begin = dest;
    unsigned char* to = begin;
    const bool goesOn = encodeSeptets(
        tables, p, stop, end, last, to,
        [&](const unsigned char* at, unsigned int length, const unsigned char* marked) {
          dest = begin + (state.bitCount + 7 * (marked - begin)) / 8;
          report(at, length);
        });
    dest = begin;
    if (to != begin) state.shiftedOut = to[-1] == kReturn;
    pack(begin, to);
    return goesOn;
  }
  void finish() {
    const bool needsReturn = state.bitCount == 0 ? state.shiftedOut : state.bitCount == 1;
    if (needsReturn)
      put(static_cast<unsigned char>(state.bits | unsigned{kReturn} << state.bitCount));
    if (!needsReturn && state.bitCount != 0) put(static_cast<unsigned char>(state.bits));
    state.shiftedOut = false;
    state.bits = state.bitCount = 0;
  }

  void pack(const unsigned char* in, const unsigned char* stop) {
    while (in < stop) {
      for (; state.bitCount == 0 && stop - in >= std::ptrdiff_t{kGroupSeptets};
           in += kGroupSeptets, dest += kGroupBytes) {
        storeLow(dest, join(loadLow<std::uint64_t>(in)));
      }
      if (in == stop) return;
      state.bits |= std::uint32_t{*in++} << state.bitCount;
      state.bitCount = static_cast<std::uint8_t>(state.bitCount + 7);
      if (state.bitCount < 8) continue;
      put(static_cast<unsigned char>(state.bits));
      state.bits >>= 8;
      state.bitCount = static_cast<std::uint8_t>(state.bitCount - 8);
    }
  }
};

// ---- The codecs. ----

template <typename Form>
constexpr Tables<Form> kDefault = makeTables<Form>();
constexpr auto kTurkish = makeTables<Utf16Form>(kGsmTurkishLocking, kGsmTurkishSingle);
constexpr auto kTurkishSingle = makeTables<Utf16Form>({}, kGsmTurkishSingle);
constexpr auto kSpanish = makeTables<Utf16Form>({}, kGsmSpanishSingle);
constexpr auto kPortuguese = makeTables<Utf16Form>(kGsmPortugueseLocking, kGsmPortugueseSingle);
constexpr auto kPortugueseSingle = makeTables<Utf16Form>({}, kGsmPortugueseSingle);

template <typename Form>
constexpr Codec unpacked(int codePage, const Tables<Form>& tables) {
  return cutBy(cutGsm, {codePage,
                        {runCodec<Reader<Form>>, &tables},
                        {runCodec<Writer<Form>>, &tables},
                        nullptr,
                        true});
}
template <typename Form>
constexpr Codec packed(const Tables<Form>& tables) {
  return {.codePage = 1200,
          .read = {runCodec<PackedReader<Form>>, &tables},
          .write = {runCodec<PackedWriter<Form>>, &tables},
          .unitsPerByte = 2,
          .cut = cutPackedGsm,
          .isState = isPackedState};
}

}  // namespace

extern const Codec kGsmCodec = unpacked(1200, kDefault<Utf16Form>);
const Codec kGsmUtf8Codec = unpacked(65001, kDefault<Utf8Form>);
extern const Codec kGsmPackedCodec = packed(kDefault<Utf16Form>);
extern const Codec kGsmNationalCodecs[] = {unpacked(1200, kTurkish), unpacked(1200, kTurkishSingle),
                                           unpacked(1200, kSpanish), unpacked(1200, kPortuguese),
                                           unpacked(1200, kPortugueseSingle)};
extern const Codec kGsmPackedNationalCodecs[] = {packed(kTurkish), packed(kTurkishSingle),
                                                 packed(kSpanish), packed(kPortuguese),
                                                 packed(kPortugueseSingle)};
