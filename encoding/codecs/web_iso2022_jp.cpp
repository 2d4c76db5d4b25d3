// ISO-2022-JP of the Encoding Standard to and from UTF-16.
//
// The plane is the part of its EUC-JP that stands in two bytes. What differs from ISO-2022-JP of
// mail is what is malformed: shifts, designations that follow each other with nothing between them,
// controls and line ends in the plane; and that a designation without a meaning begins to be read
// again behind its ESC.
#include <iterator>

#include "encoding/codecs/escape_sequence.h"
#include "encoding/codecs/mapped_tables.h"
#include "encoding/codecs/unit_text.h"
#include "encoding/codecs/web_encodings.h"

namespace {

// CodecState::set. While reading, CodecState::shiftedOut says that a designation was the last
// thing.
enum Set : std::uint8_t { kAscii, kRoman, kKatakana, kPlane };

bool isState(const void*, const CodecState& state, bool isWriting) {
  const bool isOfWriter = state.set != kKatakana && !state.shiftedOut;
  return state.set <= kPlane && (isOfWriter || !isWriting) &&
         hasOnly(state, {.set = state.set, .shiftedOut = state.shiftedOut});
}

constexpr char16_t kYen = 0x00A5, kOverline = 0x203E, kFirstKatakana = 0xFF61;
// What is written for the half-width katakana, which are only read.
constexpr char16_t kFullWidth[] =
    u"。「」、・ヲァィゥェォャュョッーアイウエオカキクケコサシスセソタ"
    u"チツテトナニヌネノハヒフヘホマミムメモヤユヨラリルレロワン゛゜";

constexpr bool isShift(unsigned int byte) {
  return byte == kEscape || byte == kShiftOut || byte == kShiftIn;
}
constexpr bool isPlaneByte(unsigned int byte) { return byte >= 0x21 && byte <= 0x7E; }

// The set that the two bytes behind ESC designate; false for none.
bool findSet(unsigned int first, unsigned int second, std::uint8_t& set) {
  if (first == '(') {
    set = second == 'J' ? kRoman : second == 'I' ? kKatakana : kAscii;
    return second == 'B' || set != kAscii;
  }
  set = kPlane;
  return first == '$' && (second == '@' || second == 'B');
}

struct Reader : UnitReader {
  using UnitReader::UnitReader;
  const fast::DoubleByteDecoder* const pairs =
      static_cast<const CodeTable*>(parameters)->pairDecoder();

  bool step() {
    if (pairs == nullptr) {
      out.latchFailure();
      p = end;
      return true;
    }
    const unsigned char* const stop = readable();
    while (p < stop) {
      const unsigned char* const before = p;
      if (state.set == kPlane) {
        copyPairs(stop, *pairs);
      } else if (state.set == kAscii) {
        copyAsciiBut(stop, kEscape, kShiftOut, kShiftIn);
      }
      if (p != before) state.shiftedOut = false;
      if (p < stop && !readOne()) return false;
    }
    return true;
  }
  void finish() {
    state.set = kAscii;
    state.shiftedOut = false;
  }

  // What the loops leave. False when what follows decides.
  bool readOne() {
    if (*p == kEscape) return readEscape();
    state.shiftedOut = false;
    switch (state.set) {
      case kRoman:
        if (*p >= 0x80 || isShift(*p)) return refuse(1);
        return accept(1, *p == 0x5C ? kYen : *p == 0x7E ? kOverline : *p);
      case kKatakana:
        return *p >= 0x21 && *p <= 0x5F ? accept(1, kFirstKatakana + *p - 0x21u) : refuse(1);
      case kPlane:
        return readPair();
      default:
        return refuse(1);
    }
  }
  bool accept(unsigned int length, std::uint32_t unit) {
    p += length;
    putUnit(unit);
    return true;
  }

  bool readPair() {
    if (!isPlaneByte(p[0])) return refuse(1);
    if (left() < 2) return last && refuse(1);
    return refuse(p[1] == kEscape ? 1 : 2);
  }

  bool readEscape() {
    std::uint8_t set = kAscii;
    const bool mayBegin = left() < 2 || p[1] == '(' || p[1] == '$';
    if (mayBegin && left() < 3 && !last) return false;
    if (left() < 3 || !findSet(p[1], p[2], set)) {
      state.shiftedOut = false;
      return refuse(1);
    }
    state.set = set;
    if (state.shiftedOut) return refuse(3);
    state.shiftedOut = true;
    p += 3;
    return true;
  }
};

struct Writer : UnitWriter {
  using UnitWriter::UnitWriter;
  const CodeTable& table = *static_cast<const CodeTable*>(parameters);
  const fast::DoubleByteEncoder* const codes = table.pairEncoder();

  bool step() {
    const unsigned char* const stop = writable();
    while (p < stop) {
      if (state.set == kPlane) {
        copyPairs(stop);
      } else if (state.set == kAscii) {
        copyAsciiBut(stop, kEscape, kShiftOut, kShiftIn);
      }
      if (p < stop) return writeOne();
    }
    return true;
  }
  void finish() { enter(kAscii); }

  // The code of a character in the plane, of EUC; 0 for none.
  std::uint32_t pairOf(char32_t scalar) const {
    const std::uint32_t code = table.codeOf(scalar);
    return code > 0xA100 && code <= 0xFFFF ? code : 0;
  }
  void copyPairs(const unsigned char* stop) {
    if (codes == nullptr) return;
    const unsigned char* in = p;
    unsigned char* to = dest;
    for (; stop - in >= 2; in += 2, to += 2) {
      const std::uint16_t code = codes->codes[loadLow<std::uint16_t>(in)];
      if ((code & 0xFF) < 0xA1) break;
      storeLow(to, static_cast<std::uint16_t>(code & 0x7F7F));
    }
    p = in;
    dest = to;
  }
  void putPair(std::uint32_t code) {
    put(static_cast<unsigned char>(code >> 8 & 0x7F), static_cast<unsigned char>(code & 0x7F));
  }

  void enter(Set set) {
    if (state.set == set) return;
    put(kEscape, set == kPlane ? '$' : '(');
    put(set == kRoman ? 'J' : 'B');
    state.set = set;
  }

  bool writeOne() {
    const Character character = characterAt(p);
    if (character.length == 0) return false;
    const char32_t scalar = character.scalar;
    const bool isPlain = scalar < 0x80;
    if (!character.isScalar || (isPlain && isShift(scalar))) return refuseInAscii(character.length);
    if (isPlain && state.set == kRoman && scalar != 0x5C && scalar != 0x7E) {
      put(static_cast<unsigned char>(scalar));
    } else if (isPlain) {
      enter(kAscii);
      put(static_cast<unsigned char>(scalar));
    } else if (scalar == kYen || scalar == kOverline) {
      enter(kRoman);
      put(scalar == kYen ? 0x5C : 0x7E);
    } else if (const std::uint32_t code = pairOf(scalar)) {
      enter(kPlane);
      putPair(code);
    } else {
      return refuseInAscii(character.length);
    }
    p += character.length;
    return true;
  }
  bool refuseInAscii(unsigned int length) {
    enter(kAscii);
    return refuse(length, '?');
  }
};

template <typename Direction>
unsigned int run(const void* parameters, const unsigned char* data, unsigned int length, bool last,
                 CodecState& state, DataBuffer& out, ReplacementSink* sink) {
  if (const auto* const table = CodeTable::open(*static_cast<const Mapping*>(parameters))) {
    return runCodec<Direction>(table, data, length, last, state, out, sink);
  }
  out.latchFailure();
  return length;
}

std::uint32_t approximate(const void* parameters, std::uint32_t scalar) {
  constexpr std::size_t kCount = std::size(kFullWidth) - 1;
  if (scalar - kFirstKatakana < kCount) return kFullWidth[scalar - kFirstKatakana];
  return approximateMultiByte(parameters, scalar);
}

}  // namespace

extern const Codec kWebIso2022JpCodec = {.codePage = 1200,
                                         .read = {run<Reader>, &kMap_web_euc_jp},
                                         .write = {run<Writer>, &kMap_web_euc_jp},
                                         .approximate = approximate,
                                         .cut = cutWebIso2022Jp,
                                         .mappings = visitMultiByte,
                                         .isState = isState};
