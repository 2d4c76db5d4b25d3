// _zvUtf: GSM 03.38 to and from UTF-8.
#include <array>

#include "support/gsm_alphabet.h"
#include "support/sixteen_bytes.h"
#include "support/utf_loops.h"
#include "support/zv_utf.h"

namespace {

// Up to three bytes of output, the first in the low byte, and their count in the high byte, so that
// the loops write every character alike: three bytes, of which the count says how many to keep.
using Entry = std::uint32_t;

constexpr Entry makeEntry(const unsigned char* bytes, unsigned int count) {
  Entry entry = count << 24;
  for (unsigned int i = 0; i < count; ++i) entry |= static_cast<Entry>(bytes[i]) << (8 * i);
  return entry;
}

constexpr Entry utf8Entry(char16_t character) {
  unsigned char utf8[4] = {};
  return makeEntry(utf8, static_cast<unsigned int>(writeUtf8(utf8, character) - utf8));
}

unsigned char* writeEntry(unsigned char* dest, Entry entry) {
  storeLow(dest, entry);
  return dest + (entry >> 24);
}

// Most text is letters, digits and marks that ASCII and the default alphabet have at the same
// place; the loops of both directions copy them together. (CR is one of them too, but rare.)
SixteenBytes areSame(SixteenBytes text) {
  return text.isAsciiLetter() | text.isBetween(' ', '#') | text.isBetween('%', '?') | text.is('\n');
}

// Copies the bytes before the first different one, as far as there are sixteen in sight.
unsigned char* copySame(const unsigned char*& p, const unsigned char* stop, unsigned char* dest) {
  for (; stop - p >= std::ptrdiff_t{SixteenBytes::kSize}; p += SixteenBytes::kSize) {
    const auto text = SixteenBytes::load(p);
    text.store(dest);
    const unsigned int count = areSame(text).countHigh();
    dest += count;
    if (count != SixteenBytes::kSize) {
      p += count;
      break;
    }
  }
  return dest;
}

// From GSM: by byte; 0 for the escape and for what is no septet.
constexpr auto kDecoded = [] {
  std::array<Entry, 256> table{};
  for (unsigned int code = 0; code < 128; ++code) {
    if (code != kGsmEscape) table[code] = utf8Entry(kGsmAlphabet[code]);
  }
  return table;
}();

// By the byte behind an escape; 0 for what is no septet. A code without an extension stands for its
// default character. The code of a further extension table is shown as a space, as the standard
// asks of who knows no such table.
constexpr auto kDecodedBehindEscape = [] {
  std::array<Entry, 256> table = kDecoded;
  table[kGsmEscape] = utf8Entry(u' ');
  for (const GsmExtension& e : kGsmExtensions) table[e.code] = utf8Entry(e.character);
  return table;
}();

// To GSM: the characters of the default alphabet lie below U+0400, and the euro sign far off.
constexpr std::uint32_t kEncodedEnd = 0x400;
constexpr std::uint32_t kEuro = 0x20AC;
constexpr Entry kUnmapped = 0x80000000u;  // set in the entries of characters without a form
constexpr Entry kCountMask = 0x7FFFFFFFu;
constexpr unsigned char kSubstitute[] = {'?'};
constexpr Entry kNoForm = makeEntry(kSubstitute, 1) | kUnmapped;

constexpr Entry extensionEntry(unsigned char code) {
  const unsigned char bytes[] = {kGsmEscape, code};
  return makeEntry(bytes, 2);
}

constexpr auto kEncoded = [] {
  std::array<Entry, kEncodedEnd> table{};
  for (Entry& entry : table) entry = kNoForm;
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
  return kNoForm;
}();

Entry encodedForm(const Utf8Sequence& sequence) {
  if (!sequence.valid) return kNoForm;
  if (sequence.value < kEncodedEnd) return kEncoded[sequence.value];
  return sequence.value == kEuro ? kEncodedEuro : kNoForm;
}

}  // namespace

bool _zvUtf::gsm_to_utf8(const unsigned char* gsm, unsigned int length, DataBuffer& out, LogBase&) {
  const unsigned char* const end = gsm + length;
  bool clean = true;
  const auto loop = [&](const unsigned char*& in, const unsigned char* stop, unsigned char* dest) {
    constexpr Entry kReplacement = utf8Entry(static_cast<char16_t>(kReplacementCharacter));
    const unsigned char* p = in;
    while (p < stop) {
      dest = copySame(p, stop, dest);
      if (p == stop) break;
      Entry entry = kDecoded[*p++];
      if (entry == 0) {
        const bool escaped = p[-1] == kGsmEscape && p < end && *p < 0x80;
        if (escaped) entry = kDecodedBehindEscape[*p++];
        if (!escaped) entry = kReplacement;
        clean = clean && escaped;
      }
      dest = writeEntry(dest, entry);
    }
    in = p;
    return dest;
  };
  out.expect(std::uint64_t{length} + length / 4);
  return writeInChunks<3>(gsm, end, out, loop) && clean;
}

bool _zvUtf::utf8_to_gsm(const unsigned char* utf8, unsigned int length, DataBuffer& out,
                         LogBase&) {
  const unsigned char* const end = utf8 + length;
  Entry seen = 0;
  const auto note = [&](Entry entry) {
    seen |= entry;
    return entry & kCountMask;
  };
  const auto loop = [&](const unsigned char*& in, const unsigned char* stop, unsigned char* dest) {
    const unsigned char* p = in;
    while (p < stop) {
      dest = copySame(p, stop, dest);
      if (p == stop) break;
      while (p < stop && *p >= 0x80) {
        const Utf8Sequence sequence = decodeScalar(p, static_cast<std::size_t>(end - p));
        dest = writeEntry(dest, note(encodedForm(sequence)));
        p += sequence.length;
      }
      if (p < stop) dest = writeEntry(dest, note(kEncoded[*p++]));
    }
    in = p;
    return dest;
  };
  out.expect(std::uint64_t{length} + length / 8);
  return writeInChunks<2>(utf8, end, out, loop) && (seen & kUnmapped) == 0;
}
