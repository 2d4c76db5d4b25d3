// SCSU (Unicode Technical Standard 6) to and from UTF-16.
//
// Single bytes stand for ASCII and, from 80 up, for the 128 characters of the window in use, one of
// eight that the text may move; tags below 20 choose, move and quote windows. In Unicode mode,
// where ideographs are, there are units of two bytes and other tags.
//
// Malformed are: a tag that is reserved (one byte), a window that is (with the tag that defines
// it), and what the end of the text cuts in two. Surrogates are units like others, paired or not.
//
// A window is chosen by looking at one character more: what stands alone is quoted, what goes on in
// a window gets one, the least recently used. The same text always has the same form.
#include <algorithm>

#include "encoding/codecs/scsu_scheme.h"
#include "support/utf.h"

namespace {

// ---- Reading ----

struct Reader : ScsuRun {
  using ScsuRun::ScsuRun;
  static constexpr unsigned int kGrowth = 16;

  // No byte becomes more than four.
  bool step() {
    const unsigned char* const stop = p + std::min(left(), (room() - kMinRoom) / 4 + 1);
    while (p < stop) {
      if (isUnicode()) {
        copyUnits(stop);
        if (p < stop && !readUnit()) return false;
      } else {
        copySingles(stop);
        if (p < stop && !readSingle()) return false;
      }
    }
    return true;
  }

  // Plain bytes and those of the window. Where a run is short, as in Japanese, single steps are
  // done before a vector is.
  void copySingles(const unsigned char* stop) {
    const std::uint32_t begin = window(current());
    const unsigned char* in = p;
    unsigned char* to = dest;
    if (begin < 0x10000) {
      // The two halves of where the window begins, less the high bit of the bytes; its low half has
      // seven bits that matter or is at a place where these carry.
      const auto base = static_cast<std::uint16_t>(begin - kWindowSize);
      const auto copyTo = [&](const unsigned char* runEnd) {
        for (; in < runEnd && isPlain(*in); ++in, to += 2) {
          storeLow(to, static_cast<std::uint16_t>(*in < 0x80 ? *in : *in + base));
        }
      };
      constexpr std::ptrdiff_t kFew = 8;
      const unsigned char* const fewEnd = in + std::min(stop - in, kFew);
      copyTo(fewEnd);
      while (in == fewEnd && stop - in >= std::ptrdiff_t{kVector}) {
        const Bytes16 text = Bytes16::load(in);
        const auto isInWindow = isBetween(text, 0x80, 0xFF);
        const Bytes16 low = text + (isInWindow & (base & 0xFFu));
        // A sum that is less than what was added to has carried.
        const auto carries = ~isAtMost(text, low) & isInWindow;
        const Bytes16 high = (isInWindow & (static_cast<unsigned int>(base) >> 8)) + (carries & 1);
        storeAsUnits(low, high, to);
        const unsigned int count = countHigh(arePlain(text));
        in += count;
        to += 2 * count;
        if (count != kVector) break;
      }
      copyTo(stop);
    } else {
      for (; in < stop && isPlain(*in); ++in) {
        if (*in < 0x80) {
          storeLow(to, std::uint16_t{*in});
          to += 2;
        } else {
          const std::uint32_t scalar = begin + *in - 0x80;
          storeLow(to, highSurrogateOf(scalar) | lowSurrogateOf(scalar) << 16);
          to += 4;
        }
      }
    }
    p = in;
    dest = to;
  }

  // A tag. False when what follows decides.
  bool readSingle() {
    const unsigned int tag = *p;
    const unsigned int index = tag & (kWindows - 1);
    if (tag >= kDefineWindow) return defineWindow(index);
    if (tag >= kChangeWindow) {
      use(index);
      ++p;
      return true;
    }
    switch (tag) {
      case kToUnicode:
        state.set |= kUnicodeMode;
        ++p;
        return true;
      case kQuoteUnit:
        return quoteUnit();
      case kDefineFar:
        return defineFar();
      case kReserved:
        return refuse(1);
      default:
        return quoteWindow(tag - kQuoteWindow);
    }
  }

  bool quoteWindow(unsigned int index) {
    if (left() < 2) return last && refuse(1);
    const unsigned int byte = p[1];
    p += 2;
    putCharacter(byte < 0x80 ? kStaticWindows[index] + byte : window(index) + byte - 0x80);
    return true;
  }

  // A tag and a unit.
  bool quoteUnit() {
    if (left() < 3) return last && refuse(static_cast<unsigned int>(left()));
    put(p[2], p[1]);
    p += 3;
    return true;
  }

  bool defineWindow(unsigned int index) {
    if (left() < 2) return last && refuse(1);
    const std::uint32_t begin = windowOf(p[1]);
    if (begin == kNoWindow) return refuse(2);
    define(index, begin);
    p += 2;
    return true;
  }

  bool defineFar() {
    if (left() < 3) return last && refuse(static_cast<unsigned int>(left()));
    define(p[1] >> 5u, 0x10000 + ((p[1] & 0x1Fu) << 8 | p[2]) * kWindowSize);
    p += 3;
    return true;
  }

  void putCharacter(std::uint32_t character) {
    if (character < 0x10000) return putUnit(character);
    putUnit(highSurrogateOf(character));
    putUnit(lowSurrogateOf(character));
  }

  static bool isTag(unsigned int byte) {
    return byte >= kUnicodeChange && byte <= kUnicodeReserved;
  }

  void copyUnits(const unsigned char* stop) {
    const unsigned char* in = p;
    unsigned char* to = dest;
    for (; in < stop && end - in > 1 && !isTag(in[0]); in += 2, to += 2) {
      to[0] = in[1];
      to[1] = in[0];
    }
    p = in;
    dest = to;
  }

  bool readUnit() {
    const unsigned int tag = *p;
    const unsigned int index = tag & (kWindows - 1);
    if (!isTag(tag)) return last && refuse(1);  // half a unit
    if (tag < kUnicodeDefine) {
      use(index);
      ++p;
      return true;
    }
    if (tag < kUnicodeQuote) return defineWindow(index);
    if (tag == kUnicodeQuote) return quoteUnit();
    return tag == kUnicodeDefineFar ? defineFar() : refuse(1);
  }

  bool refuse(unsigned int length) {
    return mark(length, kReplacementCharacter & 0xFF, kReplacementCharacter >> 8);
  }
};

// ---- Writing ----

struct Writer : ScsuRun {
  using ScsuRun::ScsuRun;
  static constexpr unsigned int kGrowth = 8;

  // No unit becomes more than four bytes.
  bool step() {
    const unsigned char* const stop = p + std::min(left(), (room() - kMinRoom) / 2 + 1);
    while (p < stop) {
      if (isUnicode()) {
        copyWide(stop);
      } else {
        copySingles(stop);
      }
      if (p < stop && !writeOther()) return false;
    }
    return true;
  }

  // What plain bytes and the window have. Where a run is short, as in Japanese, single steps are
  // done before a vector is.
  void copySingles(const unsigned char* stop) {
    constexpr std::ptrdiff_t kFew = 16, kTwoVectors = 2 * kVector;
    const std::uint32_t begin = window(current());
    const unsigned char* in = p;
    unsigned char* to = dest;
    if (begin < 0x10000 && stop - in >= kFew + kTwoVectors) {
      const unsigned char* const fewEnd = in + kFew;
      while (in != fewEnd && copySingle(in, to, begin)) {
      }
      if (in == fewEnd) copyVectors(in, to, stop, begin);
    }
    while (in < stop && end - in > 1 && copySingle(in, to, begin)) {
    }
    p = in;
    dest = to;
  }
  static void copyVectors(const unsigned char*& in, unsigned char*& to, const unsigned char* stop,
                          std::uint32_t begin) {
    const auto lowBegin = static_cast<unsigned char>(begin);
    while (stop - in >= std::ptrdiff_t{2 * kVector}) {
      const Bytes16 low = loadLowBytes(in), high = loadHighBytes(in);
      const Bytes16 distance = low - lowBegin;
      // The high byte is that of the window, or the next where the low byte has come round.
      const Bytes16 above = high - static_cast<unsigned char>(begin >> 8);
      const auto hasCarried = ~isAtMost(lowBegin, low);
      const auto isInWindow = isAtMost(distance, kWindowSize - 1) & equal(above, hasCarried & 1);
      const auto isAscii = isAtMost(low, 0x7F) & equal(high, 0);
      const Bytes16 plain = arePlain(low) & isAscii & ~isInWindow;
      ((low & plain) | (isInWindow & (distance + 0x80))).store(to);
      const unsigned int count = countHigh(plain | isInWindow);
      in += 2 * count;
      to += count;
      if (count != kVector) break;
    }
  }
  // False for a character that neither has.
  bool copySingle(const unsigned char*& in, unsigned char*& to, std::uint32_t begin) const {
    const std::uint32_t unit = loadLow<std::uint16_t>(in);
    if (unit < 0x80 && isPlain(unit)) {
      *to++ = static_cast<unsigned char>(unit);
    } else if (begin < 0x10000 && isIn(unit, begin)) {
      *to++ = static_cast<unsigned char>(unit - begin + 0x80);
    } else if (begin >= 0x10000 && unit == highSurrogateOf(begin) && end - in > 3 &&
               isIn(loadLow<std::uint16_t>(in + 2), lowSurrogateOf(begin))) {
      *to++ = static_cast<unsigned char>(in[2] - begin + 0x80);
      in += 2;
    } else {
      return false;
    }
    in += 2;
    return true;
  }

  // What only Unicode mode has.
  void copyWide(const unsigned char* stop) {
    const unsigned char* in = p;
    unsigned char* to = dest;
    for (; in < stop && end - in > 1; in += 2, to += 2) {
      const std::uint32_t unit = loadLow<std::uint16_t>(in);
      if (!isWide(unit) || isSurrogate(unit)) break;
      to[0] = in[1];
      to[1] = in[0];
    }
    p = in;
    dest = to;
  }

  // A character, and what it is.
  struct Character {
    std::uint32_t value = kNone;
    unsigned int length = 0;
    bool isCut = false;                                 // what follows decides
    static constexpr std::uint32_t kNone = 0xFFFFFFFF;  // the text has ended
  };
  Character characterAt(const unsigned char* at) const {
    const std::ptrdiff_t more = end - at;
    if (more < 2) return {Character::kNone, 0, !last};
    const std::uint32_t unit = loadLow<std::uint16_t>(at);
    if (!isHighSurrogate(unit)) return {unit, 2, false};
    if (more < 4) return {unit, 2, !last};
    const std::uint32_t low = loadLow<std::uint16_t>(at + 2);
    if (!isLowSurrogate(low)) return {unit, 2, false};
    return {joinSurrogates(unit, low), 4, false};
  }

  // What the loops leave. False when what follows decides.
  bool writeOther() {
    if (left() < 2) return last && refuse();
    const Character character = characterAt(p);
    if (character.isCut) return false;
    // A pair of surrogates and the next one are the most that is looked at.
    const Character next = characterAt(p + character.length);
    if (next.isCut) return false;
    p += character.length;
    if (isUnicode()) {
      writeInUnicode(character.value, next.value);
    } else {
      writeSingle(character.value, next.value);
    }
    return true;
  }

  // Half a unit.
  bool refuse() {
    report(p++, 1);
    if (isUnicode()) {
      putWide(kReplacementCharacter);
    } else {
      quote(kReplacementCharacter);
    }
    return true;
  }

  void putBig(std::uint32_t unit) {
    put(static_cast<unsigned char>(unit >> 8), static_cast<unsigned char>(unit));
  }
  void quote(std::uint32_t unit) {
    put(kQuoteUnit);
    putBig(unit);
  }
  void putWide(std::uint32_t character) {
    if (character >= 0x10000) {
      putBig(highSurrogateOf(character));
      putBig(lowSurrogateOf(character));
      return;
    }
    const std::uint32_t high = character >> 8;
    if (high >= kUnicodeChange && high <= kUnicodeReserved) put(kUnicodeQuote);
    putBig(character);
  }

  void writeSingle(std::uint32_t character, std::uint32_t next) {
    const unsigned int index = windowWith(character);
    if (index < kWindows) {
      const auto byte = static_cast<unsigned char>(character - window(index) + 0x80);
      if (index == current()) return put(byte);
      const bool goesOn = isIn(next, window(index));
      note(index);
      put(static_cast<unsigned char>((goesOn ? kChangeWindow : kQuoteWindow) + index), byte);
      if (goesOn) use(index);
    } else if (character < 0x80) {
      if (!isPlain(character)) put(kQuoteWindow);  // in the static window of ASCII
      put(static_cast<unsigned char>(character));
    } else if (isWide(character) && !isWide(next)) {
      quote(character);
    } else if (isWide(character) || (character >= 0x10000 && isWide(next))) {
      put(kToUnicode);
      state.set |= kUnicodeMode;
      putWide(character);
    } else if (mayQuoteStatic(character) && !isIn(next, windowFor(character))) {
      quoteStatic(character);
    } else {
      defineFor(character, kDefineWindow, kDefineFar);
    }
  }

  void writeInUnicode(std::uint32_t character, std::uint32_t next) {
    // Back to single bytes where more than this one are to be had.
    const bool goesOn = next != Character::kNone && !isWide(next);
    const bool isFar = character >= 0x10000;
    if (isWide(character) || !goesOn) return putWide(character);
    const unsigned int index =
        character < 0x80 && isPlain(character) ? current() : windowWith(character);
    if (index < kWindows) {
      note(index);
      put(static_cast<unsigned char>(kUnicodeChange + index));
      use(index);
      put(static_cast<unsigned char>(character < 0x80 ? character
                                                      : character - window(index) + 0x80));
    } else if (character < 0x80 || !isIn(next, windowFor(character))) {
      if (isFar || !mayQuoteStatic(character)) return putWide(character);
      put(static_cast<unsigned char>(kUnicodeChange + current()));
      use(current());
      quoteStatic(character);
    } else {
      defineFor(character, kUnicodeDefine, kUnicodeDefineFar);
    }
  }

  // The window that has a character; kWindows for none.
  unsigned int windowWith(std::uint32_t character) const {
    if (isIn(character, window(current()))) return current();
    unsigned int index = 0;
    while (index < kWindows && !isIn(character, window(index))) ++index;
    return index;
  }

  // Where the window would begin that is defined for a character from 80 up that is not wide.
  static std::uint32_t windowFor(std::uint32_t character) {
    if (character < 0x80 || isWide(character)) return Character::kNone;
    for (const std::uint32_t begin : kSpecialWindows) {
      if (isIn(character, begin)) return begin;
    }
    return character & ~(kWindowSize - 1);
  }

  static unsigned int staticWindowWith(std::uint32_t character) {
    unsigned int index = 0;
    while (index < kWindows && !isIn(character, kStaticWindows[index])) ++index;
    return index;
  }
  static bool mayQuoteStatic(std::uint32_t character) {
    return staticWindowWith(character) < kWindows;
  }
  void quoteStatic(std::uint32_t character) {
    const unsigned int index = staticWindowWith(character);
    put(static_cast<unsigned char>(kQuoteWindow + index),
        static_cast<unsigned char>(character - kStaticWindows[index]));
  }

  // Moves the window that was not used for longest, and writes the character in it.
  void defineFor(std::uint32_t character, unsigned int near, unsigned int far) {
    const unsigned int index = order() & (kWindows - 1);
    const std::uint32_t begin = windowFor(character);
    note(index);
    define(index, begin);
    if (begin >= 0x10000) {
      put(static_cast<unsigned char>(far));
      putBig(index << 13 | (begin - 0x10000) / kWindowSize);
    } else {
      put(static_cast<unsigned char>(near + index), numberOf(begin));
    }
    put(static_cast<unsigned char>(character - begin + 0x80));
  }

  std::uint32_t order() const { return state.bits != 0 ? state.bits : kInitialOrder; }
  // A window is used: it moves behind all others.
  void note(unsigned int index) {
    const std::uint32_t now = order();
    unsigned int place = 0;
    while ((now >> place & (kWindows - 1)) != index) place += kOrderBits;
    const std::uint32_t before = now & ((1u << place) - 1);
    const std::uint32_t behind = now >> (place + kOrderBits) << place;
    state.bits = before | behind | index << (kOrderBits * (kWindows - 1));
  }
};

}  // namespace

extern const Codec kScsuCodec = {.codePage = 1200,
                                 .read = runCodec<Reader>,
                                 .write = runCodec<Writer>,
                                 .unitsPerByte = 2,
                                 .isState = isState};
