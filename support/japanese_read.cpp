#include "support/codec_run.h"
#include "support/escape_sequence.h"
#include "support/japanese.h"
#include "support/jis_plane.h"

namespace {

using Set = Iso2022JpState::Set;

struct Escape {
  std::string_view tail;
  Set set;
};
constexpr Escape kEscapes[] = {
    {"$B", Set::kJis0208},  // the usual two first
    {"(B", Set::kAscii},
    {"(J", Set::kAscii},
    {"(H", Set::kAscii},  // a mistake for "(J" that old mail is full of
    {"(I", Set::kKatakana},
    {"$@", Set::kJis0208},
    {"$(@", Set::kJis0208},  // the same in the long form
    {"$(B", Set::kJis0208},
    {"&@\x1B$B", Set::kJis0208},  // with the announcement of the revision of 1990
    {"$(D", Set::kJis0212},
};

// The usual turns of a text, for copyTurns.
struct Turns : JisToShiftJis {
  static bool turn(const unsigned char*& p, unsigned char*&, bool& inPairs) {
    const unsigned char kind = inPairs ? '(' : '$';
    if (p[0] != kEscape || p[1] != kind || p[2] != 'B') return false;
    p += 3;
    inPairs = !inPairs;
    return true;
  }
};

// Every byte of the output belongs to a code of 932, whatever the input: a lead byte that got
// through on its own would take the next character with it when the text is decoded. So a code of
// JIS where 932 has none, and every byte above 7F that is not katakana, becomes the mark.
struct Reader : CodecRun {
  Reader(const unsigned char* data, unsigned int length, bool isLast, Iso2022JpState& carried,
         DataBuffer& output, ReplacementSink* replacementSink)
      : CodecRun(data, length, isLast, output, replacementSink), state(carried) {}

  bool step() {
    if (state.shiftedOut || state.set == Set::kKatakana) {
      copyKatakana();
    } else if (state.set != Set::kJis0212) {
      const bool inPairs =
          copyTurns<Turns, kEscape, kShiftOut, kShiftIn>(*this, state.set == Set::kJis0208);
      state.set = inPairs ? Set::kJis0208 : Set::kAscii;
      if (inPairs) {
        if (!copyPairs<JisToShiftJis>(*this)) return true;
      } else {
        copyPlain<kEscape, kShiftOut, kShiftIn>(*this);
      }
    }
    return left() == 0 || room() < kMinRoom || readUnit();
  }
  void finish() {
    state.set = Set::kAscii;
    state.shiftedOut = false;
  }

  void copyKatakana() {
    for (std::ptrdiff_t count = copyable(1); count > 0 && *p >= 0x21 && *p <= 0x5F; --count) {
      put(static_cast<unsigned char>(*p++ + 0x80));
    }
  }

  // What the loops above left: one unit of any kind.
  bool readUnit() {
    const unsigned char byte = *p;
    if (byte >= 0x80) {
      if (isHalfWidthKatakana(byte)) {
        pass(1);
      } else {
        geta(1);
      }
      return true;
    }
    if (byte == kEscape) return readEscape();
    if (byte == kShiftOut || byte == kShiftIn) return readShift();
    if (byte == '\r' || byte == '\n') finish();  // whoever forgot to return has returned
    if (!isPlaneByte(byte) || (state.set == Set::kAscii && !state.shiftedOut)) {
      pass(1);
      return true;
    }
    if (state.shiftedOut || state.set == Set::kKatakana) {
      geta(1);
      return true;
    }
    return readPair();
  }

  bool readPair() {
    if (left() < 2 && !last) return false;
    if (left() < 2 || !isPlaneByte(p[1])) {
      geta(1);  // half a pair: what follows it stays
    } else if (state.set == Set::kJis0208 && p[0] >= kLastBlockFirst && p[0] <= kLastBlockLast) {
      readLastBlock();
    } else {
      geta(2);
    }
    return true;
  }

  void readLastBlock() {
    const unsigned char* list = Japanese::GetSjisFrom2022_LastBlock();
    if (list == nullptr) {
      out.latchFailure();
      geta(2);
      return;
    }
    const unsigned int position = (p[0] - kLastBlockFirst) * 94 + p[1] - 0x21u;
    const unsigned char first = list[2 * position], second = list[2 * position + 1];
    if (isEmptyInLastBlock(position)) {
      mark(2, first, second, state.replaced);
    } else {
      put(first, second);
      p += 2;
    }
  }

  bool readEscape() {
    bool atEnd = false;
    for (const Escape& escape : kEscapes) {
      const EscapeMatch match = matchEscape(p + 1, end, escape.tail);
      if (match == EscapeMatch::kYes) {
        state.set = escape.set;
        state.shiftedOut = false;
        p += 1 + escape.tail.size();
        return true;
      }
      if (match == EscapeMatch::kMaybe) atEnd = true;
    }
    const unsigned int unknown = designationLength(p + 1, end, atEnd);
    if (atEnd && !last) return false;
    pass(1 + unknown);
    return true;
  }

  // A shift that would change nothing, or for no character at all, is a control character of the
  // text and stays.
  bool readShift() {
    bool isShift = state.shiftedOut;
    if (*p == kShiftOut && !state.shiftedOut) {
      if (left() < 2 && !last) return false;
      isShift = left() >= 2 && p[1] != kShiftIn && p[1] != '\r' && p[1] != '\n';
    } else if (*p == kShiftOut) {
      isShift = false;
    }
    if (isShift) {
      state.shiftedOut = *p == kShiftOut;
      ++p;
    } else {
      pass(1);
    }
    return true;
  }

  void geta(unsigned int length) { mark(length, 0x81, 0xAC, state.replaced); }

  Iso2022JpState& state;
};

}  // namespace

unsigned int Japanese::readPiece(const unsigned char* data, unsigned int length, bool last,
                                 Iso2022JpState& state, DataBuffer& out, ReplacementSink* sink) {
  Reader reader(data, length, last, state, out, sink);
  return runCodec(reader);
}

bool Japanese::Iso2022ToShiftJis(const unsigned char* data, int length, DataBuffer& out, LogBase&) {
  if (length <= 0) return true;
  Iso2022JpState state;
  readPiece(data, static_cast<unsigned int>(length), true, state, out);
  return !state.replaced && !out.hasFailed();
}
