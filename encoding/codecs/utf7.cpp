// UTF-7 (RFC 2152), and its variant for the names of IMAP folders (RFC 3501, 5.1.3), to and from
// UTF-16: one set of loops, and what drives them.
//
// Written directly are the set D characters, space, tab, CR and LF; a "+" outside a run as "+-",
// everything else in base64, unpaired surrogates included. A run ends with "-" only before a
// character that could belong to it, and at the end of the text. Half a unit at the end of the
// UTF-16 is left out, and reported by CodecState::replaced only.
//
// Every ASCII character outside a run but "+" is read as itself. Malformed are: a byte from 80 up;
// a "+" before anything but base64 or "-" (one byte); digits at the end of a run that make no unit;
// bits behind the last unit that are not 0 (one byte, the last digit of that unit). Each becomes
// U+FFFD. Surrogates are units like others, paired or not. A unit is used together with its digits
// as soon as it can be told, the "+" of a run before the first of them.
//
// IMAP has "&" for "+" and "," for the digit "/". Written directly are all printable characters of
// ASCII, "&" as "&-", of which none ever stands in base64, and every run ends with "-". What is
// malformed is the same: names that only break a rule of writing are read.
#include <array>
#include <string_view>

#include "encoding/codecs/codec_run.h"
#include "encoding/codecs/text_bytes.h"
#include "support/utf.h"

namespace {

// CodecState::set. Pending bits are kept as they are when a unit is told: in a run that is read 0,
// 2 or 4 of them, in one that is written 0, 2 or 4 that no digit has shown yet.
constexpr std::uint8_t kDirect = 0;
constexpr std::uint8_t kRun = 1;  // behind a "+", in base64

bool isState(const void*, const CodecState& state, bool) {
  const bool isPending = state.bitCount <= 4 && state.bitCount % 2 == 0;
  return isPending && state.bits >> state.bitCount == 0 &&
         hasOnly(state, {.set = kRun, .bitCount = state.bitCount, .bits = state.bits});
}

// The value of each base64 character, and a value with the high bit set for all other bytes.
constexpr unsigned char kNoBase64 = 0x80;
constexpr std::array<unsigned char, 256> valuesOf(std::string_view digits) {
  std::array<unsigned char, 256> table{};
  for (unsigned char& value : table) value = kNoBase64;
  for (unsigned int i = 0; i != digits.size(); ++i) {
    table[static_cast<unsigned char>(digits[i])] = static_cast<unsigned char>(i);
  }
  return table;
}

struct Utf7 {
  static constexpr unsigned char kShift = '+';
  static constexpr std::string_view kBase64 =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  static constexpr auto kBase64Values = valuesOf(kBase64);
  // Set D and the white space that may be written as it is; letters and digits are in both lists.
  static constexpr std::string_view kDirectMarks = "'(),-./:? \t\r\n";
  static constexpr auto kIsDirect = [] {
    std::array<bool, 128> table{};
    for (const char c : kBase64) table[static_cast<unsigned char>(c)] = true;
    table['+'] = false;
    for (const char c : kDirectMarks) table[static_cast<unsigned char>(c)] = true;
    return table;
  }();
  static Bytes16 areDirect(Bytes16 text) {
    return isAsciiLetter(text) | isBetween(text, ',', ':') | isBetween(text, '\'', ')') |
           equal(text, ' ') | equal(text, '?') | isBetween(text, '\t', '\n') | equal(text, '\r');
  }
  // Whether a run has to be closed before a direct character, which could belong to it otherwise.
  static bool needsRunClosed(std::uint32_t direct) {
    return direct == '-' || kBase64Values[direct] != kNoBase64;
  }
  static bool endsRun(std::uint32_t unit) { return unit < kIsDirect.size() && kIsDirect[unit]; }
};

struct ImapUtf7 {
  static constexpr unsigned char kShift = '&';
  static constexpr std::string_view kBase64 =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+,";
  static constexpr auto kBase64Values = valuesOf(kBase64);
  static constexpr auto kIsDirect = [] {
    std::array<bool, 128> table{};
    for (unsigned char c = ' '; c <= '~'; ++c) table[c] = c != kShift;
    return table;
  }();
  static Bytes16 areDirect(Bytes16 text) {
    return isBetween(text, ' ', '~') & ~equal(text, kShift);
  }
  static bool needsRunClosed(std::uint32_t) { return true; }
  static bool endsRun(std::uint32_t unit) { return unit >= ' ' && unit <= '~'; }
};

template <typename Scheme>
bool isBase64(unsigned char byte) {
  return Scheme::kBase64Values[byte] != kNoBase64;
}
template <typename Scheme>
bool isDirect(std::uint32_t unit) {
  return unit < Scheme::kIsDirect.size() && Scheme::kIsDirect[unit];
}

template <typename Scheme>
unsigned char base64Digit(std::uint32_t bits) {
  return static_cast<unsigned char>(Scheme::kBase64[bits & 0x3F]);
}

// Three units are eight base64 digits: the loops of both directions do that many at once where they
// stand at the beginning of such a group, which is where no bits are pending. Two tables serve
// them: the two digits of each 12 bits, the first in the low byte, and the bits of a digit at each
// place among four, in the low 24 bits; for a byte that is no digit, a bit above these by its
// place.
constexpr unsigned int kGroupUnits = 3;
constexpr unsigned int kGroupDigits = 8;

template <typename Scheme>
constexpr auto kDigitPairs = [] {
  std::array<std::uint16_t, 4096> table{};
  for (unsigned int i = 0; i != table.size(); ++i) {
    table[i] =
        static_cast<std::uint16_t>(Scheme::kBase64[i >> 6] | (Scheme::kBase64[i & 0x3F] << 8));
  }
  return table;
}();

template <typename Scheme>
constexpr auto kDigitBits = [] {
  std::array<std::array<std::uint32_t, 256>, 4> tables{};
  for (unsigned int place = 0; place != tables.size(); ++place) {
    for (unsigned int byte = 0; byte < 256; ++byte) {
      const std::uint32_t value = Scheme::kBase64Values[byte];
      tables[place][byte] = value == kNoBase64 ? 1u << (24 + place) : value << (18 - 6 * place);
    }
  }
  return tables;
}();

template <typename Scheme>
std::uint32_t bitsOfFour(const unsigned char* p) {
  const auto& bits = kDigitBits<Scheme>;
  return bits[0][p[0]] | bits[1][p[1]] | bits[2][p[2]] | bits[3][p[3]];
}

// How a run may end, by the digits of its last, unfinished group: the whole units there, and the
// bits of the group (the first digit's at the top of 48) that have to be 0.
struct RunEnd {
  unsigned int units;
  std::uint64_t padding;
};
constexpr std::uint64_t kNeverZero = std::uint64_t{1} << 63;
constexpr RunEnd kRunEnds[kGroupDigits] = {{0, 0},
                                           {0, kNeverZero},
                                           {0, kNeverZero},
                                           {1, std::uint64_t{3} << 30},
                                           {1, kNeverZero},
                                           {1, kNeverZero},
                                           {2, std::uint64_t{0xF} << 12},
                                           {2, kNeverZero}};

unsigned char* putUnit(unsigned char* dest, std::uint32_t unit) {
  storeLow(dest, static_cast<std::uint16_t>(unit));
  return dest + 2;
}
std::uint32_t loadUnit(const unsigned char* p) { return loadLow<std::uint16_t>(p); }

// No byte becomes more than two, marks included.
template <typename Scheme>
struct Reader : CodecRun {
  using CodecRun::CodecRun;
  static constexpr unsigned int kGrowth = 16;

  bool step() {
    const unsigned char* const stop = p + std::min(left(), (room() - kMinRoom) / 2 + 1);
    if (state.bitCount == 0) copyText(stop);
    return p == stop || (state.set == kRun ? readUnit() : readSpecial());
  }
  void finish() {
    if (state.set == kRun) endRun(0);
  }

  // Direct characters and the whole groups of runs, as long as nothing is wrong.
  void copyText(const unsigned char* stop) {
    const unsigned char* in = p;
    unsigned char* to = dest;
    bool inRun = state.set == kRun;
    while (inRun ? copyGroups(in, stop, to) : copyDirect(in, stop, to)) inRun = !inRun;
    p = in;
    dest = to;
    state.set = inRun ? kRun : kDirect;
  }

  // True when a run has begun.
  static bool copyDirect(const unsigned char*& in, const unsigned char* stop, unsigned char*& to) {
    for (; stop - in >= std::ptrdiff_t{kVector}; in += kVector) {
      const auto text = Bytes16::load(in);
      storeAsUnits(text, to);
      const unsigned int count = countLow(text | equal(text, Scheme::kShift));
      to += 2 * count;
      if (count != kVector) {
        in += count;
        break;
      }
    }
    for (; in < stop && *in < 0x80 && *in != Scheme::kShift; ++in) to = putUnit(to, *in);
    if (stop - in <= std::ptrdiff_t{kGroupDigits} || *in != Scheme::kShift ||
        !isBase64<Scheme>(in[1])) {
      return false;
    }
    ++in;
    return true;
  }

  // True when the run has ended well; otherwise fewer digits than a group are in sight, or it ends
  // badly.
  static bool copyGroups(const unsigned char*& in, const unsigned char* stop, unsigned char*& to) {
    for (; stop - in >= std::ptrdiff_t{kGroupDigits}; in += kGroupDigits) {
      const std::uint32_t first = bitsOfFour<Scheme>(in);
      const std::uint32_t second = bitsOfFour<Scheme>(in + 4);
      putUnit(to, first >> 8);
      putUnit(to + 2, (first << 8) | ((second >> 16) & 0xFF));
      const std::uint32_t noDigits = (first >> 24) | (second >> 24 << 4);
      if (noDigits != 0) {
        const int digits = std::countr_zero(noDigits);
        const RunEnd& end = kRunEnds[digits];
        const std::uint64_t bits = (std::uint64_t{first} << 24) | (second & 0xFFFFFF);
        if (((bits | kNeverZero) & end.padding) != 0) return false;
        in += digits;
        in += *in == '-' ? 1 : 0;
        to += 2 * end.units;
        return true;
      }
      putUnit(to + 4, second);
      to += 2 * kGroupUnits;
    }
    return false;
  }

  // The shift, or a byte that is no text.
  bool readSpecial() {
    if (*p >= 0x80) return malformed(1);
    if (left() < 2 && !last) return false;
    if (left() >= 2 && p[1] == '-') {
      put(Scheme::kShift, 0);
      p += 2;
      return true;
    }
    if (left() < 2 || !isBase64<Scheme>(p[1])) return malformed(1);
    ++p;
    state.set = kRun;
    return true;
  }

  // One unit of a run, or its end. Bits behind the unit that are not 0 have to be part of the next:
  // the end of the run is told from the same place.
  bool readUnit() {
    const unsigned int wanted = (21u - state.bitCount) / 6;
    const auto rest = static_cast<std::size_t>(left());
    std::uint32_t bits = state.bits;
    unsigned int digits = 0;
    for (; digits < wanted && digits < rest && isBase64<Scheme>(p[digits]); ++digits) {
      bits = (bits << 6) | Scheme::kBase64Values[p[digits]];
    }
    const bool isCut = digits == rest && !last;
    const unsigned int bitCount = state.bitCount + 6 * digits - 16;
    const std::uint32_t pending = digits < wanted ? 1 : bits & ((1u << bitCount) - 1);
    if (pending != 0 && isCut) return false;
    if (digits < wanted) {
      endRun(digits);
      return true;
    }
    dest = putUnit(dest, bits >> bitCount);
    p += digits;
    state.bits = pending;
    state.bitCount = static_cast<std::uint8_t>(bitCount);
    return true;
  }

  // Ends a run behind this many digits of a unit that is not there.
  void endRun(unsigned int digits) {
    if (digits != 0) {
      malformed(digits);
    } else if (state.bits != 0 && p != begin) {
      // In the last digit of the unit before. That is here: a piece in front would have ended the
      // run as well.
      report(p - 1, 1);
      dest = putUnit(dest, kReplacementCharacter);
    }
    if (p != end && *p == '-') ++p;
    state.set = kDirect;
    state.bits = state.bitCount = 0;
  }

  bool malformed(unsigned int length) { return mark(length, 0xFD, 0xFF); }
};

// No unit becomes more than five bytes, and two no more than eight.
template <typename Scheme>
struct Writer : CodecRun {
  using CodecRun::CodecRun;
  static constexpr unsigned int kGrowth = 12;

  bool step() {
    if (left() < 2) return endInUnit();
    const unsigned char* const stop = p + (std::min(left(), (room() - kMinRoom) / 2 + 2) & ~1);
    while (p != stop) {
      if (state.set == kRun) {
        continueRun(stop);
      } else {
        copyDirect(stop);
      }
    }
    return true;
  }
  void finish() {
    if (state.set != kRun) return;
    flushBits(dest);
    put('-');
    state.set = kDirect;
  }

  // Half a unit at the end of a text is left out.
  bool endInUnit() {
    if (!last) return false;
    ++p;
    state.replaced = true;
    return true;
  }

  // Up to a run of more than one unit, or one whose end is not in sight.
  void copyDirect(const unsigned char* stop) {
    const unsigned char* in = p;
    unsigned char* to = dest;
    while (in < stop) {
      for (; stop - in >= 2 * std::ptrdiff_t{kVector}; in += 2 * kVector) {
        const auto text = loadUnits(in);
        text.store(to);
        const unsigned int count = countHigh(Scheme::areDirect(text));
        to += count;
        if (count != kVector) {
          in += 2 * count;
          break;
        }
      }
      for (; in < stop && isDirect<Scheme>(loadUnit(in)); in += 2) *to++ = *in;
      if (in == stop) break;
      *to++ = Scheme::kShift;
      if (loadUnit(in) == Scheme::kShift) {
        *to++ = '-';
      } else if (stop - in < 4 || !isDirect<Scheme>(loadUnit(in + 2))) {
        state.set = kRun;
        break;
      } else {
        to = writeSingle(loadUnit(in), loadUnit(in + 2), to);
      }
      in += 2;
    }
    p = in;
    dest = to;
  }

  // Most runs in Latin text hold one unit, that is three digits. next is the direct character
  // behind it.
  static unsigned char* writeSingle(std::uint32_t unit, std::uint32_t next, unsigned char* to) {
    storeLow(to, kDigitPairs<Scheme>[unit >> 4]);
    to[2] = base64Digit<Scheme>(unit << 2);
    to[3] = '-';
    return to + (Scheme::needsRunClosed(next) ? 4 : 3);
  }

  void continueRun(const unsigned char* stop) {
    const unsigned char* in = p;
    unsigned char* to = dest;
    while (in < stop) {
      if (state.bitCount == 0) {
        to = writeGroups(in, stop, to);
        if (in == stop) break;
      }
      const std::uint32_t unit = loadUnit(in);
      if (Scheme::endsRun(unit)) {
        flushBits(to);
        if (Scheme::needsRunClosed(unit)) *to++ = '-';
        state.set = kDirect;
        break;
      }
      std::uint32_t bits = (state.bits << 16) | unit;
      unsigned int count = state.bitCount + 16u;
      for (; count >= 6; count -= 6) *to++ = base64Digit<Scheme>(bits >> (count - 6));
      state.bits = bits & ((1u << count) - 1);
      state.bitCount = static_cast<std::uint8_t>(count);
      in += 2;
    }
    p = in;
    dest = to;
  }

  // Whole groups, as long as no unit is one that might end the run.
  static unsigned char* writeGroups(const unsigned char*& in, const unsigned char* stop,
                                    unsigned char* to) {
    for (; stop - in >= 2 * std::ptrdiff_t{kGroupUnits}; in += 2 * kGroupUnits) {
      std::uint64_t bits = 0;
      bool isAscii = false;
      for (unsigned int i = 0; i < kGroupUnits; ++i) {
        const std::uint32_t unit = loadUnit(in + 2 * i);
        isAscii = isAscii || unit < 0x80;
        bits = (bits << 16) | unit;
      }
      if (isAscii) break;
      for (unsigned int i = 0; i < kGroupDigits / 2; ++i, to += 2) {
        storeLow(to, kDigitPairs<Scheme>[(bits >> (36 - 12 * i)) & 0xFFF]);
      }
    }
    return to;
  }

  void flushBits(unsigned char*& to) {
    if (state.bitCount != 0) *to++ = base64Digit<Scheme>(state.bits << (6 - state.bitCount));
    state.bits = state.bitCount = 0;
  }
};

template <typename Scheme>
constexpr Codec codecFor(CutRule cut) {
  return {.codePage = 1200,
          .read = runCodec<Reader<Scheme>>,
          .write = runCodec<Writer<Scheme>>,
          .cut = cut,
          .isState = isState};
}

}  // namespace

extern const Codec kUtf7Codec = codecFor<Utf7>(cutUtf7);
extern const Codec kImapUtf7Codec = codecFor<ImapUtf7>(cutImapUtf7);
