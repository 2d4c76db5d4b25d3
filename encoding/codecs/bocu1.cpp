// BOCU-1 (Unicode Technical Note 6) to and from UTF-16.
//
// A character is its distance from a place in the middle of the block of the character before, in
// one byte to four, of which the first tells how many there are. Controls and the space are
// themselves; a control sets the place back to that of ASCII, which is why lines can be told apart.
// The byte FF, which does that too, is read and never written. Malformed, as one piece: a first
// byte with what follows it as far as that can follow; bytes that lead to no scalar value. The
// place stays where it was. Unpaired surrogates have no form.
#include <array>

#include "encoding/codecs/codec_run.h"
#include "encoding/codecs/text_bytes.h"
#include "support/utf.h"

namespace {

// ---- The scheme. ----

constexpr int kAsciiPlace = 0x40;
constexpr int kBlockSize = 0x80;
constexpr unsigned char kSpace = 0x20;
constexpr unsigned char kReset = 0xFF;

// First bytes: kMiddle stands for no distance; the further from it, the longer the form.
constexpr int kMiddle = 0x90;
constexpr int kTrails = 243;  // bytes that may follow a first byte
// The greatest distance of each length, and the first bytes from where each length begins. Those
// below the middle begin one below.
constexpr int kReach1 = 63, kReach2 = kReach1 + 43 * kTrails,
              kReach3 = kReach2 + 3 * kTrails * kTrails;
constexpr int kLow1 = -64, kLow2 = kLow1 - 43 * kTrails, kLow3 = kLow2 - 3 * kTrails * kTrails;
constexpr int kFirst2 = 0xD0, kFirst3 = 0xFB, kFirst4 = 0xFE;
constexpr int kLowFirst2 = 0x50, kLowFirst3 = 0x25, kLowFirst4 = 0x22;

// What follows a first byte is a digit of the distance: twenty controls, then everything from 21
// up.
constexpr std::array<unsigned char, kTrails> kTrailBytes = [] {
  constexpr int kControls = 20;
  std::array<unsigned char, kTrails> bytes{};
  std::size_t count = 0;
  for (unsigned char byte = 0x01; byte < kSpace; ++byte) {
    const bool isKept = (byte >= 0x07 && byte <= 0x0F) || byte == 0x1A || byte == 0x1B;
    if (!isKept) bytes[count++] = byte;
  }
  for (; count < kTrails; ++count) {
    bytes[count] = static_cast<unsigned char>(kSpace + 1 + count - kControls);
  }
  return bytes;
}();
constexpr std::array<std::int16_t, 256> kTrailDigits = [] {
  std::array<std::int16_t, 256> digits{};
  digits.fill(-1);
  for (std::size_t i = 0; i < kTrails; ++i) digits[kTrailBytes[i]] = static_cast<std::int16_t>(i);
  return digits;
}();

// The place from which the character behind one is measured: the middle of its block, or of what is
// larger than a block and used together.
constexpr int placeBehind(int character) {
  if (character >= 0x3040 && character <= 0x309F) return 0x3070;  // Hiragana
  if (character >= 0x4E00 && character <= 0x9FA5) return 0x4E00 - kLow2;
  if (character >= 0xAC00 && character <= 0xD7A3) return (0xAC00 + 0xD7A3) / 2;
  return (character & ~(kBlockSize - 1)) + kAsciiPlace;
}

// Whether the place stays, whatever characters of one byte come: all these are of one block, which
// is a block like others, and in the BMP.
constexpr bool isSteady(int place) {
  const int block = place & ~(kBlockSize - 1);
  return place - block == kAsciiPlace && place < 0x10000 && block != 0x3000 && block != 0x3080 &&
         block != 0x9F80 && block != 0xD780;
}

// After so many characters of one byte more are to be expected.
constexpr unsigned int kManySingles = 4;

// CodecState::bits is the place; 0 at the beginning of a text.
int placeOf(const CodecState& state) {
  return state.bits == 0 ? kAsciiPlace : static_cast<int>(state.bits);
}

// A place is one that is behind some character. The character in the middle of a block, or at its
// beginning, has the place of the block.
bool isState(const void*, const CodecState& state, bool) {
  const auto isBehind = [&](std::uint32_t character) {
    return character <= 0x10FFFF && !isSurrogate(character) &&
           placeBehind(static_cast<int>(character)) == placeOf(state);
  };
  return (isBehind(state.bits) || isBehind(state.bits - kAsciiPlace)) &&
         hasOnly(state, {.bits = state.bits});
}

// ---- Reading ----

struct Reader : CodecRun {
  using CodecRun::CodecRun;
  static constexpr unsigned int kGrowth = 16;

  int place = placeOf(state);
  bool steady = isSteady(place);

  // No byte becomes more than four.
  bool step() {
    const unsigned char* const stop = p + std::min(left(), (room() - kMinRoom) / 4 + 1);
    bool goesOn = true;
    while (goesOn && p < stop) {
      if (steady) copyBlock(stop);
      goesOn = readCharacters(stop);
    }
    state.bits = static_cast<std::uint32_t>(place);
    return goesOn;
  }
  void finish() { state.bits = 0; }

  void moveTo(int newPlace) {
    if (place == newPlace) return;
    place = newPlace;
    steady = isSteady(place);
  }

  // Characters of one byte in a steady block.
  void copyBlock(const unsigned char* stop) {
    const bool isAscii = place == kAsciiPlace;
    const auto first = static_cast<unsigned int>(place - kAsciiPlace);
    const Bytes16 toByte = Bytes16(kLowFirst2) - (first & 0xFF);
    while (stop - p >= std::ptrdiff_t{kVector}) {
      const Bytes16 text = Bytes16::load(p);
      const auto isDistance = isBetween(text, kLowFirst2, kFirst2 - 1);
      const auto isItself = isAscii ? isAtMost(text, kSpace) : equal(text, kSpace);
      storeAsUnits(text - (isDistance & toByte), isDistance & (first >> 8), dest);
      const unsigned int count = countHigh(isDistance | isItself);
      p += count;
      dest += 2 * count;
      if (count != kVector) return;
    }
  }

  // Any characters, until several of one byte have come. False when what follows decides.
  bool readCharacters(const unsigned char* stop) {
    unsigned int singles = 0;
    while (p < stop && singles < kManySingles) {
      const unsigned int byte = *p;
      if (byte <= kSpace) {
        if (byte != kSpace) moveTo(kAsciiPlace);
        put(*p++, 0);
        ++singles;
      } else if (byte >= kLowFirst2 && byte < kFirst2) {
        ++p;
        if (!putCharacter(place + static_cast<int>(byte) - kMiddle)) return refuse(p - 1, 1);
        ++singles;
      } else if (byte == kReset) {
        moveTo(kAsciiPlace);
        ++p;
      } else {
        if (!readLong(static_cast<int>(byte))) return false;
        singles = 0;
      }
    }
    return true;
  }

  bool readLong(int first) {
    int distance;
    unsigned int length;
    if (first >= kFirst2) {
      length = first < kFirst3 ? 2 : first < kFirst4 ? 3 : 4;
      distance = length == 2   ? (first - kFirst2) * kTrails + kReach1 + 1
                 : length == 3 ? (first - kFirst3) * kTrails * kTrails + kReach2 + 1
                               : kReach3 + 1;
    } else {
      length = first >= kLowFirst3 ? 2 : first >= kLowFirst4 ? 3 : 4;
      distance = length == 2   ? (first - kLowFirst2) * kTrails + kLow1
                 : length == 3 ? (first - kLowFirst3) * kTrails * kTrails + kLow2
                               : kLow3 - kTrails * kTrails * kTrails;
    }
    int digits = 0;
    for (unsigned int i = 1; i < length; ++i) {
      if (left() <= static_cast<std::ptrdiff_t>(i)) return last && refuseNext(i);
      if (kTrailDigits[p[i]] < 0) return refuseNext(i);
      digits = digits * kTrails + kTrailDigits[p[i]];
    }
    p += length;
    return putCharacter(place + distance + digits) || refuse(p - length, length);
  }

  // False for what is no scalar value.
  bool putCharacter(int character) {
    const auto scalar = static_cast<std::uint32_t>(character);
    if (scalar < 0x10000) {
      if (isSurrogate(scalar)) return false;
      storeLow(dest, static_cast<std::uint16_t>(scalar));
      dest += 2;
    } else {
      if (scalar > 0x10FFFF) return false;
      storeLow(dest, highSurrogateOf(scalar) | lowSurrogateOf(scalar) << 16);
      dest += 4;
    }
    // In most texts the same as before, which nothing has to wait for then.
    if (((character ^ place) & ~(kBlockSize - 1)) != 0 || !steady) moveTo(placeBehind(character));
    return true;
  }

  bool refuseNext(unsigned int length) {
    p += length;
    return refuse(p - length, length);
  }
  bool refuse(const unsigned char* from, unsigned int length) {
    report(from, length);
    put(kReplacementCharacter & 0xFF, kReplacementCharacter >> 8);
    return true;
  }
};

// ---- Writing ----

struct Writer : CodecRun {
  using CodecRun::CodecRun;
  static constexpr unsigned int kGrowth = 8;

  int place = placeOf(state);

  // No unit becomes more than four bytes.
  bool step() {
    const unsigned char* const stop = p + std::min(left(), (room() - kMinRoom) / 2 + 1);
    bool goesOn = true;
    while (goesOn && p < stop) {
      if (isSteady(place)) copyBlock(stop);
      goesOn = writeCharacters(stop);
    }
    state.bits = static_cast<std::uint32_t>(place);
    return goesOn;
  }
  void finish() { state.bits = 0; }

  void copyBlock(const unsigned char* stop) {
    const bool isAscii = place == kAsciiPlace;
    const auto first = static_cast<unsigned int>(place - kAsciiPlace);
    const Bytes16 toByte = Bytes16(kLowFirst2) - (first & 0xFF);
    while (stop - p >= std::ptrdiff_t{2 * kVector}) {
      const Bytes16 low = loadLowBytes(p), high = loadHighBytes(p);
      const auto isControl = isAtMost(low, kSpace) & equal(high, 0);
      const auto isItself = isAscii ? isControl : equal(low, kSpace) & equal(high, 0);
      const auto isInBlock =
          isAtMost(low - (first & 0xFF), kBlockSize - 1) & equal(high, first >> 8) & ~isControl;
      (low + (isInBlock & toByte)).store(dest);
      const unsigned int count = countHigh(isInBlock | isItself);
      p += 2 * count;
      dest += count;
      if (count != kVector) return;
    }
  }

  // Any characters, until several of one byte have come. False when what follows decides.
  bool writeCharacters(const unsigned char* stop) {
    unsigned int singles = 0;
    while (p < stop && singles < kManySingles) {
      if (left() < 2) return last && refuse(1);
      std::uint32_t character = loadLow<std::uint16_t>(p);
      unsigned int length = 2;
      if (isSurrogate(character)) {
        if (isHighSurrogate(character) && left() < 4 && !last) return false;
        const std::uint32_t low = left() < 4 ? 0 : loadLow<std::uint16_t>(p + 2);
        if (!isHighSurrogate(character) || !isLowSurrogate(low)) {
          refuse(2);
          continue;
        }
        character = joinSurrogates(character, low);
        length = 4;
      }
      p += length;
      singles = writeCharacter(static_cast<int>(character)) ? singles + 1 : 0;
    }
    return true;
  }

  // Whether that was one byte.
  bool writeCharacter(int character) {
    if (character <= kSpace) {
      if (character != kSpace) place = kAsciiPlace;
      put(static_cast<unsigned char>(character));
      return true;
    }
    const int distance = character - place;
    place = placeBehind(character);
    if (distance >= kLow1 && distance <= kReach1) {
      put(static_cast<unsigned char>(kMiddle + distance));
      return true;
    }
    if (distance > 0) {
      if (distance <= kReach2) {
        putLong<1>(kFirst2, distance - kReach1 - 1);
      } else if (distance <= kReach3) {
        putLong<2>(kFirst3, distance - kReach2 - 1);
      } else {
        putLong<3>(kFirst4, distance - kReach3 - 1);
      }
    } else if (distance >= kLow2) {
      putLong<1>(kLowFirst2 - 43, distance - kLow2);
    } else if (distance >= kLow3) {
      putLong<2>(kLowFirst3 - 3, distance - kLow3);
    } else {
      putLong<3>(kLowFirst4 - 1, distance - kLow3 + kTrails * kTrails * kTrails);
    }
    return false;
  }

  // A first byte counted from one on, and digits; distance is not negative.
  template <unsigned int digits>
  void putLong(int first, int distance) {
    for (unsigned int i = digits; i > 0; --i) {
      dest[i] = kTrailBytes[static_cast<std::size_t>(distance % kTrails)];
      distance /= kTrails;
    }
    dest[0] = static_cast<unsigned char>(first + distance);
    dest += digits + 1;
  }

  bool refuse(unsigned int length) {
    report(p, length);
    p += length;
    writeCharacter(static_cast<int>(kReplacementCharacter));
    return true;
  }
};

}  // namespace

extern const Codec kBocu1Codec = {.codePage = 1200,
                                  .read = runCodec<Reader>,
                                  .write = runCodec<Writer>,
                                  .unitsPerByte = 2,
                                  .cut = cutBocu1,
                                  .isState = isState};
