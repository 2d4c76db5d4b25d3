#include "support/hz.h"

#include "support/codec_run.h"
#include "support/plane94.h"

namespace {

using codec_vectors::Bytes;
using codec_vectors::inBox;
using codec_vectors::SignedWords;
using codec_vectors::Words;

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

// Pairs in the two directions, with the usual turns of a text (codec_run.h).
struct GbFromHz {
  static bool one(const unsigned char* pair, unsigned char* dest) {
    if (!isGb7(pair[0], pair[1])) return false;
    dest[0] = pair[0] | 0x80;
    dest[1] = pair[1] | 0x80;
    return true;
  }
  static Words eight(Words pairs, SignedWords& known) {
    known = inBox(reinterpret_cast<Bytes>(pairs), {0x21, 0x7D, 0x21, 0x7E});
    return pairs | 0x8080;
  }
  static bool turn(const unsigned char*& p, unsigned char*&, bool& inPairs) {
    const unsigned char brace = inPairs ? '}' : '{';
    if (p[0] != kTilde || p[1] != brace) return false;
    p += 2;
    inPairs = !inPairs;
    return true;
  }
};
struct GbToHz {
  static bool one(const unsigned char* pair, unsigned char* dest) {
    if (!isGb8(pair[0], pair[1])) return false;
    dest[0] = pair[0] & 0x7F;
    dest[1] = pair[1] & 0x7F;
    return true;
  }
  static Words eight(Words pairs, SignedWords& known) {
    known = inBox(reinterpret_cast<Bytes>(pairs), {0xA1, 0xFD, 0xA1, 0xFE});
    return pairs & 0x7F7F;
  }
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

// Every byte of the output belongs to a code of 936, whatever the input; see the Japanese reader.
struct Reader : CodecRun {
  Reader(const unsigned char* data, unsigned int length, bool isLast, HzState& carried,
         DataBuffer& output, ReplacementSink* replacementSink)
      : CodecRun(data, length, isLast, output, replacementSink), state(carried) {}

  bool step() {
    state.inGb = copyTurns<GbFromHz, kTilde>(*this, state.inGb);
    if (state.inGb) {
      if (!copyPairs<GbFromHz>(*this)) return true;
    } else {
      copyPlain<kTilde>(*this);
    }
    return left() == 0 || room() < kMinRoom || readUnit();
  }
  void finish() { state.inGb = false; }

  bool readUnit() {
    const unsigned char byte = *p;
    if (byte >= 0x80) {
      geta(1);
      return true;
    }
    if (byte == kTilde) return readTilde();
    if (byte == '\r' || byte == '\n') state.inGb = false;  // lines begin in ASCII
    if (!state.inGb || !isPlaneByte(byte)) {
      pass(1);
      return true;
    }
    if (left() < 2 && !last) return false;
    geta(1);  // half a pair, for a whole one does not come here: what follows it stays
    return true;
  }

  // Entering or leaving GB twice does no harm and is taken as meant.
  bool readTilde() {
    if (left() < 2 && !last) return false;
    const unsigned char next = left() < 2 ? 0 : p[1];
    if (next == '{' || next == '}') {
      state.inGb = next == '{';
      p += 2;
    } else if (next == kTilde && !state.inGb) {
      put(kTilde);
      p += 2;
    } else if (next == '\n' && !state.inGb) {
      p += 2;  // the line goes on
    } else if (next == '\r' && !state.inGb) {
      return readFoldedCrLf();
    } else {
      // Within GB the tilde begins a pair of the row that does not exist.
      geta(state.inGb && isPlaneByte(next) ? 2 : 1);
    }
    return true;
  }

  // A line that goes on, in a text whose lines end in CR and LF.
  bool readFoldedCrLf() {
    if (left() < 3 && !last) return false;
    if (left() >= 3 && p[2] == '\n') {
      p += 3;
    } else {
      geta(1);
    }
    return true;
  }

  void geta(unsigned int length) { mark(length, 0xA1, 0xFE, state.replaced); }

  HzState& state;
};

struct Writer : CodecRun {
  Writer(const unsigned char* data, unsigned int length, bool isLast, HzState& carried,
         DataBuffer& output, ReplacementSink* replacementSink)
      : CodecRun(data, length, isLast, output, replacementSink), state(carried) {}

  bool step() {
    state.inGb = copyTurns<GbToHz, kTilde>(*this, state.inGb);
    if (left() == 0 || room() < kMinRoom) return true;
    if (*p >= 0x80) return writePair();
    enter(false);
    if (*p == kTilde) {
      put(kTilde, kTilde);
      ++p;
    } else {
      copyPlain<kTilde>(*this);
    }
    return true;
  }
  void finish() { enter(false); }

  // Line ends are ASCII: the text returns there before each of them.
  void enter(bool inGb) {
    if (state.inGb == inGb) return;
    put(kTilde, inGb ? '{' : '}');
    state.inGb = inGb;
  }

  bool writePair() {
    const bool isLead = *p >= 0x81 && *p <= 0xFE;
    if (isLead && left() < 2 && !last) return false;
    if (left() >= 2 && isGb8(p[0], p[1])) {
      enter(true);
      copyPairs<GbToHz>(*this);
      return true;
    }
    // Code page 936 assigns every pair of a lead and a trail byte.
    const bool isPair = isLead && left() >= 2 && p[1] >= 0x40 && p[1] <= 0xFE && p[1] != 0x7F;
    geta(isPair ? 2 : 1);
    return true;
  }

  void geta(unsigned int length) {
    enter(true);
    mark(length, 0x21, 0x7E, state.replaced);
  }

  HzState& state;
};

}  // namespace

unsigned int Hz::readPiece(const unsigned char* data, unsigned int length, bool last,
                           HzState& state, DataBuffer& out, ReplacementSink* sink) {
  Reader reader(data, length, last, state, out, sink);
  return runCodec(reader);
}

unsigned int Hz::writePiece(const unsigned char* data, unsigned int length, bool last,
                            HzState& state, DataBuffer& out, ReplacementSink* sink) {
  Writer writer(data, length, last, state, out, sink);
  return runCodec(writer);
}

bool Hz::hzToGbk(const unsigned char* data, unsigned int length, DataBuffer& out) {
  HzState state;
  readPiece(data, length, true, state, out);
  return !state.replaced && !out.hasFailed();
}

bool Hz::gbkToHz(const unsigned char* data, unsigned int length, DataBuffer& out) {
  HzState state;
  writePiece(data, length, true, state, out);
  return !state.replaced && !out.hasFailed();
}
