// ISO-2022-KR (RFC 1557) to and from code page 949.
#include "encoding/codecs/escape_sequence.h"
#include "encoding/codecs/pair_runs.h"
#include "encoding/codecs/plane94.h"
#include "encoding/codecs/text_bytes.h"
#include "encoding/kernels/cpu_dispatch.h"

namespace {

constexpr char kHeader[] = "$)C";  // behind an ESC: KS X 1001 as the set of SO
constexpr unsigned int kHeaderLength = sizeof kHeader - 1;

// What code page 949 assigns of the KS X 1001 plane, which includes its two user-defined rows, 41
// and 94: they have a place here as well.
constexpr PlaneRange kAssigned[] = {
    {1, 1, 1, 94},   {2, 2, 1, 71},   {3, 4, 1, 94},    {5, 5, 1, 10},   {5, 5, 16, 25},
    {5, 5, 33, 56},  {5, 5, 65, 88},  {6, 6, 1, 68},    {7, 7, 1, 79},   {8, 8, 1, 4},
    {8, 8, 6, 6},    {8, 8, 8, 15},   {8, 8, 17, 94},   {9, 9, 1, 94},   {10, 10, 1, 83},
    {11, 11, 1, 86}, {12, 12, 1, 33}, {12, 12, 49, 81}, {16, 94, 1, 94},
};

constexpr std::array<bool, kPlaneSize> makeAssigned() {
  std::array<bool, kPlaneSize> assigned{};
  for (const PlaneRange& range : kAssigned) {
    for (unsigned int row = range.firstRow; row <= range.lastRow; ++row) {
      for (unsigned int cell = range.first; cell <= range.last; ++cell) {
        assigned[(row - 1) * kRowStride + cell - 1] = true;
      }
    }
  }
  return assigned;
}
constexpr std::array<bool, kPlaneSize> kIsAssigned = makeAssigned();

// Whether a byte is ASCII and none of the codes that shift.
bool isPlain(unsigned char byte) {
  return byte < 0x80 && byte != kEscape && byte != kShiftOut && byte != kShiftIn;
}

// Whether two 7-bit bytes, or two of a 949 code, are a character of KS X 1001.
bool isKs7(unsigned char first, unsigned char second) {
  return kIsAssigned[planeIndex(first, second)];
}
bool isKs8(unsigned char first, unsigned char second) {
  return first >= 0x80 && second >= 0x80 &&
         isKs7(static_cast<unsigned char>(first - 0x80), static_cast<unsigned char>(second - 0x80));
}

// The kernel begins with a block of so many bytes.
constexpr std::ptrdiff_t kLeastForKernel = 64;

// Pairs in the other direction, with the usual turns of a text (pair_runs.h); eight at a time are
// those of the full rows.
struct KsFrom949 : HighBitPairs<isKs8, codec_vectors::PairBox{0xB0, 0xFE, 0xA1, 0xFE}, false> {
  static bool turn(const unsigned char*& p, unsigned char*& dest, bool& inPairs) {
    if (inPairs ? !isPlain(*p) : *p < 0x80) return false;
    // Between two words one space is the rule. As a branch of its own it costs nearly nothing.
    if (inPairs && p[1] >= 0x80) {
      dest[0] = kShiftIn;
      dest[1] = *p++;
      dest[2] = kShiftOut;
      dest += 3;
      return true;
    }
    *dest++ = inPairs ? kShiftIn : kShiftOut;
    inPairs = !inPairs;
    return true;
  }
};

// Whether a pair is a Unified Hangul Code syllable outside KS X 1001.
bool isUnifiedHangul(unsigned char lead, unsigned char trail) {
  const bool isTrail = (trail >= 0x41 && trail <= 0x5A) || (trail >= 0x61 && trail <= 0x7A) ||
                       (trail >= 0x81 && trail <= 0xFE);
  if (lead < 0x81 || lead > 0xC6 || !isTrail) return false;
  if (lead == 0xC6) return trail <= 0x52;
  return lead <= 0xA0 || trail <= 0xA0;
}

// Every byte of the output belongs to a code of 949, whatever the input; see that of ISO-2022-JP.
struct Reader : CodecRun {
  using CodecRun::CodecRun;

  bool step() {
    if (left() >= kLeastForKernel) {
      const auto done = fast::kernels().unshiftPairs(state.shiftedOut, p, end, dest, destEnd);
      p = done.in;
      dest = done.out;
    }
    return !copyRuns() || left() == 0 || room() < kMinRoom || readUnit();
  }
  void finish() { state.shiftedOut = false; }

  // The usual course of a short text, and pairs where the kernel stops. True where something else
  // stands in front.
  bool copyRuns() {
    // A pair may be the last that begins there.
    const unsigned char* const stop = p + std::min({left(), room() - 1, kMinRoom});
    const unsigned char* in = p;
    unsigned char* to = dest;
    bool inPairs = state.shiftedOut;
    while (in < stop) {
      if ((*in | 1) == kShiftIn) {
        inPairs = *in++ == kShiftOut;
      } else if (inPairs && end - in > 1 && isKs7(in[0], in[1])) {
        to[0] = in[0] | 0x80;
        to[1] = in[1] | 0x80;
        in += 2;
        to += 2;
      } else if (!inPairs && *in < 0x80 && *in != kEscape) {
        *to++ = *in++;
      } else {
        break;
      }
    }
    const bool isUsual = in >= stop;
    p = in;
    dest = to;
    state.shiftedOut = inPairs;
    return !isUsual;
  }

  bool readUnit() {
    const unsigned char byte = *p;
    if (byte >= 0x80) return readEightBit();
    if (byte == kEscape) return readEscape();
    if (byte == kShiftOut || byte == kShiftIn) {
      state.shiftedOut = byte == kShiftOut;
      ++p;
      return true;
    }
    if (byte == '\r' || byte == '\n') state.shiftedOut = false;  // lines begin in ASCII
    if (!state.shiftedOut || !isPlaneByte(byte)) return pass(1);
    if (left() < 2 && !last) return false;
    return geta(left() < 2 || !isPlaneByte(p[1]) ? 1 : 2);
  }

  // Mail labelled ISO-2022-KR has often been sent as EUC-KR. Its pairs cannot mean anything else.
  bool readEightBit() {
    if (left() < 2 && !last) return false;
    return left() >= 2 && isKs8(p[0], p[1]) ? pass(2) : geta(1);
  }

  bool readEscape() {
    const EscapeMatch match = matchEscape(p + 1, end, kHeader);
    if (match == EscapeMatch::kYes) {
      p += 1 + kHeaderLength;
      return true;
    }
    bool atEnd = match == EscapeMatch::kMaybe;
    const unsigned int unknown = designationLength(p + 1, end, atEnd);
    if (atEnd && !last) return false;
    return pass(1 + unknown);
  }

  bool geta(unsigned int length) { return mark(length, 0xA1, 0xEB); }
};

struct Writer : CodecRun {
  using CodecRun::CodecRun;

  bool step() {
    if (!state.headerWritten) {
      put(kEscape);
      for (unsigned int i = 0; i < kHeaderLength; ++i) put(static_cast<unsigned char>(kHeader[i]));
      state.headerWritten = true;
    }
    state.shiftedOut = copyTurns<KsFrom949, kEscape, kShiftOut, kShiftIn>(*this, state.shiftedOut);
    if (left() == 0 || room() < kMinRoom) return true;
    return *p < 0x80 ? writeAscii() : writePair();
  }
  void finish() {
    enter(false);
    state.headerWritten = false;
  }

  // Line ends and all other controls are ASCII: the text returns there before each of them.
  void enter(bool shiftedOut) {
    if (state.shiftedOut == shiftedOut) return;
    put(shiftedOut ? kShiftOut : kShiftIn);
    state.shiftedOut = shiftedOut;
  }

  bool writeAscii() {
    // A reader would take it for the shift, or the designation.
    if (*p == kShiftOut || *p == kShiftIn) return geta(1);
    if (*p == kEscape) {
      const EscapeMatch match = matchEscape(p + 1, end, kHeader);
      if (match == EscapeMatch::kMaybe && !last) return false;
      if (match == EscapeMatch::kYes) return geta(1);
      enter(false);
      return pass(1);
    }
    enter(false);
    copyPlain<kEscape, kShiftOut, kShiftIn>(*this);
    return true;
  }

  bool writePair() {
    const bool isLead = *p >= 0x81 && *p <= 0xFE;
    if (isLead && left() < 2 && !last) return false;
    if (!isLead || left() < 2) return geta(1);
    if (isKs8(p[0], p[1])) {
      enter(true);
      copyPairs<KsFrom949>(*this);
      return true;
    }
    // What is no code at all is one byte: the second may well be a letter on its own.
    const bool isPair = p[1] >= 0x81 && p[1] <= 0xFE;
    return geta(isPair || isUnifiedHangul(p[0], p[1]) ? 2 : 1);
  }

  bool geta(unsigned int length) {
    enter(true);
    return mark(length, 0x21, 0x6B);
  }
};

// The header stands once, in front of the first text, whatever shifts are left.
void resume(const CodecState& left, bool wrote, CodecState& state) {
  state.headerWritten = left.headerWritten || wrote;
}

// Nothing is written in front of the header.
bool isState(const void*, const CodecState& state, bool isWriting) {
  return (isWriting ? state.headerWritten : !state.headerWritten) &&
         hasOnly(state, {.shiftedOut = state.shiftedOut, .headerWritten = state.headerWritten});
}

}  // namespace

extern const Codec kIso2022KrCodec = {.codePage = 949,
                                      .read = runCodec<Reader>,
                                      .write = runCodec<Writer>,
                                      .resume = resume,
                                      .cut = cutIso2022Kr,
                                      .isState = isState};
