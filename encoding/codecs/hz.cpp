// HZ (RFC 1843) to and from code page 936.
#include "encoding/codecs/pair_runs.h"
#include "encoding/codecs/plane94.h"

namespace {

// Code page 936 assigns all of the 94 rows of GB 2312; HZ has a place for rows 1 to 93, because the
// first byte of row 94 is the tilde.
constexpr unsigned char kTilde = 0x7E;

bool isGb7(unsigned char first, unsigned char second) {
  return isPlaneByte(first) && first != kTilde && isPlaneByte(second);
}
bool isGb8(unsigned char first, unsigned char second) {
  return first >= 0x80 && second >= 0x80 &&
         isGb7(static_cast<unsigned char>(first - 0x80), static_cast<unsigned char>(second - 0x80));
}

// Pairs in the two directions, with the usual turns of a text (pair_runs.h).
struct GbFromHz : HighBitPairs<isGb7, codec_vectors::PairBox{0x21, 0x7D, 0x21, 0x7E}, true> {
  static bool turn(const unsigned char*& p, unsigned char*&, bool& inPairs) {
    const unsigned char brace = inPairs ? '}' : '{';
    if (p[0] != kTilde || p[1] != brace) return false;
    p += 2;
    inPairs = !inPairs;
    return true;
  }
};
struct GbToHz : HighBitPairs<isGb8, codec_vectors::PairBox{0xA1, 0xFD, 0xA1, 0xFE}, false> {
  static bool turn(const unsigned char*& p, unsigned char*& dest, bool& inPairs) {
    const bool isPlain = *p < 0x80;
    if (isPlain != inPairs || *p == kTilde) return false;
    dest[0] = kTilde;
    dest[1] = isPlain ? '}' : '{';
    dest += 2;
    inPairs = !inPairs;
    return true;
  }
};

// CodecState::set.
constexpr std::uint8_t kAscii = 0;
constexpr std::uint8_t kGb = 1;  // between "~{" and "~}"

bool isState(const void*, const CodecState& state, bool) { return hasOnly(state, {.set = kGb}); }

// Every byte of the output belongs to a code of 936, whatever the input; see that of ISO-2022-JP.
struct Reader : CodecRun {
  using CodecRun::CodecRun;

  bool step() {
    state.set = copyTurns<GbFromHz, kTilde>(*this, state.set == kGb) ? kGb : kAscii;
    if (state.set == kGb) {
      if (!copyPairs<GbFromHz>(*this)) return true;
    } else {
      copyPlain<kTilde>(*this);
    }
    return left() == 0 || room() < kMinRoom || readUnit();
  }
  void finish() { state.set = kAscii; }

  bool readUnit() {
    const unsigned char byte = *p;
    if (byte >= 0x80) return geta(1);
    if (byte == kTilde) return readTilde();
    if (byte == '\r' || byte == '\n') state.set = kAscii;  // lines begin in ASCII
    if (state.set == kAscii || !isPlaneByte(byte)) return pass(1);
    if (left() < 2 && !last) return false;
    return geta(1);  // half a pair, for a whole one does not come here: what follows it stays
  }

  // Entering or leaving GB twice does no harm and is taken as meant.
  bool readTilde() {
    if (left() < 2 && !last) return false;
    const unsigned char next = left() < 2 ? 0 : p[1];
    const bool inGb = state.set == kGb;
    if (next == '{' || next == '}') {
      state.set = next == '{' ? kGb : kAscii;
    } else if (inGb) {
      return geta(isPlaneByte(next) ? 2 : 1);  // a pair of the row that does not exist
    } else if (next == kTilde) {
      put(kTilde);
    } else if (next == '\r') {
      // As below, in a text whose lines end in CR and LF.
      if (left() < 3 && !last) return false;
      if (left() < 3 || p[2] != '\n') return geta(1);
      ++p;
    } else if (next != '\n') {  // with which the line goes on
      return geta(1);
    }
    p += 2;
    return true;
  }

  bool geta(unsigned int length) { return mark(length, 0xA1, 0xFE); }
};

struct Writer : CodecRun {
  using CodecRun::CodecRun;

  bool step() {
    state.set = copyTurns<GbToHz, kTilde>(*this, state.set == kGb) ? kGb : kAscii;
    if (left() == 0 || room() < kMinRoom) return true;
    if (*p >= 0x80) return writePair();
    enter(kAscii);
    if (*p == kTilde) {
      put(kTilde, kTilde);
      ++p;
    } else {
      copyPlain<kTilde>(*this);
    }
    return true;
  }
  void finish() { enter(kAscii); }

  // Line ends are ASCII: the text returns there before each of them.
  void enter(std::uint8_t set) {
    if (state.set == set) return;
    put(kTilde, set == kGb ? '{' : '}');
    state.set = set;
  }

  bool writePair() {
    const bool isLead = *p >= 0x81 && *p <= 0xFE;
    if (isLead && left() < 2 && !last) return false;
    if (left() >= 2 && isGb8(p[0], p[1])) {
      enter(kGb);
      copyPairs<GbToHz>(*this);
      return true;
    }
    // Code page 936 assigns every pair of a lead and a trail byte.
    const bool isPair = isLead && left() >= 2 && p[1] >= 0x40 && p[1] <= 0xFE && p[1] != 0x7F;
    return geta(isPair ? 2 : 1);
  }

  bool geta(unsigned int length) {
    enter(kGb);
    return mark(length, 0x21, 0x7E);
  }
};

}  // namespace

extern const Codec kHzCodec = {.codePage = 936,
                               .read = runCodec<Reader>,
                               .write = runCodec<Writer>,
                               .cut = cutHz,
                               .isState = isState};
