#include "encoding/codecs/python_iso2022.h"

#include <string_view>

#include "encoding/codecs/escape_sequence.h"
#include "encoding/codecs/iso2022_sets.h"

namespace {

using Mark = std::uint8_t;
constexpr Mark kPairsBit = 0x80;

constexpr Mark markOf(std::string_view escape) {
  const auto final = static_cast<Mark>(escape.back());
  return escape.front() == '$' ? final | kPairsBit : final;
}

constexpr bool isFinal(unsigned char byte) { return byte >= '@' && byte <= 'Z'; }

const Designation* designationOf(const Iso2022& scheme, Mark mark) {
  for (std::size_t i = 0; i < scheme.designationCount; ++i) {
    if (markOf(scheme.designations[i].escape) == mark) return &scheme.designations[i];
  }
  return nullptr;
}

// What both directions do.
template <class Base>
struct Direction : Base {
  using Base::Base;
  using Base::state;
  const Iso2022& scheme = *static_cast<const Iso2022*>(Base::parameters);
  bool isOutOfMemory = false;

  Mark markIn(unsigned int place) const {
    const auto mark = static_cast<Mark>(state.bits >> 8 * place);
    return mark == 0 ? kPythonAsciiMark : mark;
  }
  void designate(unsigned int place, Mark mark) {
    state.bits &= ~(0xFFu << 8 * place);
    if (mark != kPythonAsciiMark) state.bits |= std::uint32_t{mark} << 8 * place;
  }
  OpenSet openIn(unsigned int place) {
    const Designation* const designation = designationOf(scheme, markIn(place));
    return open(designation == nullptr ? &kAsciiSet : designation->set);
  }
  OpenSet open(const GraphicSet* set) { return OpenSet(set, isOutOfMemory); }
  // The set that is called.
  OpenSet openCalled() { return openIn(state.shiftedOut ? 1 : 0); }

  bool fail() {
    Base::out.latchFailure();
    Base::p = Base::end;
    return true;
  }
};

// ---- Reading ----

struct Reader : Direction<UnitReader> {
  using Direction::Direction;
  OpenSet called = openCalled();

  bool step() {
    if (isOutOfMemory) return fail();
    const unsigned char* const stop = readable();
    while (p < stop) {
      const unsigned char* const before = p;
      if (state.set == kPythonInEscape) {
        copyEscape(stop);
      } else if (called.isAscii()) {
        const unsigned char shiftOut = scheme.hasShifts ? kShiftOut : kEscape;
        const unsigned char shiftIn = scheme.hasShifts ? kShiftIn : kEscape;
        const unsigned char newline = state.shiftedOut ? '\n' : kEscape;
        copyAsciiBut(stop, kEscape, shiftOut, shiftIn, newline);
      } else if (called.isPairs()) {
        ::copyPairs(*this, called, stop);
      }
      if (p == before || room() < kMinRoom) return p == end || readUnit();
    }
    return true;
  }
  void finish() { state = {.replaced = state.replaced}; }

  // As far as it is no sequence of ISO 2022, whatever the bytes are.
  void copyEscape(const unsigned char* stop) {
    while (p < stop && state.set == kPythonInEscape) {
      if (isFinal(*p)) state.set = 0;
      putUnit(*p++);
    }
  }

  // What the loops leave. False when what follows decides.
  bool readUnit() {
    const unsigned char byte = *p;
    if (state.set == kPythonInEscape) return true;
    if (byte == kEscape) return readEscape();
    if (scheme.hasShifts && (byte == kShiftOut || byte == kShiftIn)) {
      shift(byte == kShiftOut);
      ++p;
      return true;
    }
    if (byte == '\n') shift(false);
    if (byte < 0x20 || (byte < 0x80 && called.isAscii())) {
      putUnit(*p++);
      return true;
    }
    return byte < 0x80 ? readCharacter() : refuse(1);
  }
  void shift(bool isOut) {
    state.shiftedOut = isOut;
    called = openCalled();
  }
  // Malformed is all that is left, if nothing follows.
  bool refuseRest() { return last && refuse(static_cast<unsigned int>(left())); }

  bool readCharacter() {
    const unsigned int length = called.set->length;
    if (left() < static_cast<std::ptrdiff_t>(length)) return refuseRest();
    // Sets of 96 are for a single shift only.
    const bool isLacking = called.set->has96 || p[length - 1] >= 0x80;
    return putCode(isLacking ? CodeTable::kNothing : called.entryOf(p, length), length);
  }
  bool putCode(CodeTable::Entry entry, unsigned int length, const OpenSet& set) {
    const CodeTable::Entry kind = entry & CodeTable::kKind;
    if (entry == CodeTable::kNothing || kind == CodeTable::kNode) return refuse(length);
    putEntry(*set.table, entry);
    p += length;
    return true;
  }
  bool putCode(CodeTable::Entry entry, unsigned int length) {
    return putCode(entry, length, called);
  }

  bool readEscape() {
    if (left() < 2) return refuseRest();
    if (std::string_view("()$.&").find(static_cast<char>(p[1])) != std::string_view::npos) {
      return readDesignation();
    }
    if (scheme.singleShiftBytes != 0 && p[1] == 'N') return readSingleShift();
    state.set = kPythonInEscape;
    putUnit(*p++);
    return true;
  }

  bool readDesignation() {
    constexpr std::ptrdiff_t kLongest = Codec::kMaxRest - 1;
    std::ptrdiff_t length = 2;
    for (;; ++length) {
      if (length > kLongest) return refuse(1);
      if (length > left()) return refuseRest();
      if (isFinal(p[length - 1])) break;
      if (hasEdition() && length < left() && p[length - 1] == '&' && p[length] == '@') length += 2;
    }
    const auto count = static_cast<unsigned int>(length);
    const std::string_view sequence(reinterpret_cast<const char*>(p), count);
    unsigned int place = 0;
    const Mark mark = readMark(sequence.substr(1), place);
    if (mark == 0) return refuse(count);
    if (mark != kPythonAsciiMark && designationOf(scheme, mark) == nullptr) return refuse(count);
    designate(place, mark);
    called = openCalled();
    p += count;
    return true;
  }
  bool hasEdition() const { return !scheme.hasShifts; }
  // 0 for none.
  Mark readMark(std::string_view tail, unsigned int& place) const {
    if (hasEdition() && tail.size() == 5 && tail.substr(2) == "\x1B$B") return 'B' | kPairsBit;
    const bool isShort = tail.size() == 2;
    if (!isShort && (tail.size() != 3 || tail[0] != '$')) return 0;
    const char before = tail[tail.size() - 2];
    if (isShort && before == '$') return markOf(tail);
    place = before == '(' ? 0 : before == ')' ? 1 : 2;
    const bool hasThird = isShort && before == '.' && scheme.singleShiftBytes != 0;
    return place < 2 || hasThird ? markOf(tail) : Mark{0};
  }

  // ASCII in G2 stands there from the beginning.
  bool readSingleShift() {
    constexpr unsigned int kLength = 3;
    if (left() < std::ptrdiff_t{kLength}) return refuseRest();
    const OpenSet set = openIn(2);
    if (isOutOfMemory) return fail();
    if (!set.isAscii() && !set.set->has96) return refuse(kLength);
    if (p[2] >= 0x80) return refuse(kLength);
    if (set.isAscii() || p[2] < 0x20) {
      putUnit(p[2] | (set.isAscii() ? 0u : 0x80u));
      p += kLength;
      return true;
    }
    return putCode(set.entryOf(p + 2, 1), kLength, set);
  }
};

// ---- Writing ----

struct Writer : Direction<UnitWriter> {
  using Direction::Direction;
  OpenSet called = openCalled();
  // The set that has characters of several scalar values, and how it is designated.
  const Designation* const composes = findComposing();
  const OpenSet composing = composes != nullptr ? open(composes->set) : OpenSet{};

  const Designation* findComposing() const {
    for (std::size_t i = 0; i < scheme.designationCount; ++i) {
      if (scheme.designations[i].set->hasSequences) return &scheme.designations[i];
    }
    return nullptr;
  }

  bool step() {
    if (isOutOfMemory) return fail();
    const unsigned char* const stop = writable();
    while (p < stop) {
      const unsigned char* const before = p;
      if (called.isAscii()) {
        copyAscii(stop);
      } else if (called.set == scheme.designations[0].set) {
        // What the first set has is written in no other.
        ::copyPairs(*this, called, stop, [this](std::uint32_t unit) {
          return composing.table != nullptr &&
                 (composing.table->loadCode(unit) & CodeTable::kBegins) != 0;
        });
      }
      if (p == before || room() < kMinRoom) return p == end || writeUnit();
    }
    return true;
  }
  void finish() {
    shift(false);
    enterAscii();
  }

  bool write(const Designation& designation, const OpenSet& set, std::uint32_t code,
             unsigned int length) {
    call(designation, set);
    putCode(set.codeIn(code));
    p += length;
    return true;
  }

  // False when what follows decides.
  bool writeUnit() {
    const Character character = characterAt(p);
    if (character.length == 0) return false;
    if (!character.isScalar) return refuseAs(character.length);
    if (character.scalar < 0x80) {
      enterAscii();
      shift(false);
      put(*p);
      p += 2;
      return true;
    }
    if (composing.table != nullptr) {
      bool isCut = false;
      unsigned int length = 0;
      const auto* const sequence = sequenceAt(*composing.table, length, isCut);
      if (isCut && !last) return false;
      if (sequence != nullptr) return write(*composes, composing, sequence->code, length);
    }
    for (std::size_t i = 0; i < scheme.designationCount; ++i) {
      const Designation& designation = scheme.designations[i];
      if (!designation.isWritten) continue;
      const OpenSet set = open(designation.set);
      if (isOutOfMemory) return fail();
      const std::uint32_t code = set.table->codeOf(character.scalar);
      if (set.codeIn(code) != 0) return write(designation, set, code, character.length);
    }
    return refuseAs(character.length);
  }

  void call(const Designation& designation, const OpenSet& set) {
    const Mark mark = markOf(designation.escape);
    if (designation.place == 0) shift(false);
    if (markIn(designation.place) != mark) {
      put(kEscape);
      for (const char byte : designation.escape) put(static_cast<unsigned char>(byte));
      designate(designation.place, mark);
    }
    if (designation.place == 1) shift(true);
    called = set;
  }
  void shift(bool isOut) {
    if (state.shiftedOut == isOut) return;
    put(isOut ? kShiftOut : kShiftIn);
    state.shiftedOut = isOut;
    called = openCalled();
  }
  void enterAscii() {
    if (markIn(0) == kPythonAsciiMark) return;
    put(kEscape);
    put('(', 'B');
    designate(0, kPythonAsciiMark);
    called = openCalled();
  }

  bool refuseAs(unsigned int length) {
    enterAscii();
    shift(false);
    return refuse(length, '?');
  }
};

}  // namespace

unsigned int readPythonIso2022(const void* parameters, const unsigned char* data,
                               unsigned int length, bool last, CodecState& state, DataBuffer& out,
                               ReplacementSink* sink) {
  return runCodec<Reader>(parameters, data, length, last, state, out, sink);
}

unsigned int writePythonIso2022(const void* parameters, const unsigned char* data,
                                unsigned int length, bool last, CodecState& state, DataBuffer& out,
                                ReplacementSink* sink) {
  return runCodec<Writer>(parameters, data, length, last, state, out, sink);
}

// A text may designate any set in G0 and G1, of single bytes in G2; it is written in one place
// each.
bool isPythonIso2022State(const void* parameters, const CodecState& state, bool isWriting) {
  const auto& scheme = *static_cast<const Iso2022*>(parameters);
  const auto markIn = [&](unsigned int place) {
    return static_cast<Mark>(state.bits >> 8 * place);
  };
  const auto mayStand = [&](unsigned int place) {
    const Mark mark = markIn(place);
    if (mark == 0) return true;
    const Designation* const designation = designationOf(scheme, mark);
    if (designation == nullptr) return false;
    if (isWriting) return designation->isWritten && designation->place == place;
    return place < 2 || (place == 2 && scheme.singleShiftBytes != 0 && (mark & kPairsBit) == 0);
  };
  const bool mayBeOut = scheme.hasShifts && (!isWriting || markIn(1) != 0);
  return mayStand(0) && mayStand(1) && mayStand(2) && mayStand(3) &&
         (mayBeOut || !state.shiftedOut) && state.set <= (isWriting ? 0 : kPythonInEscape) &&
         hasOnly(state, {.set = state.set, .shiftedOut = state.shiftedOut, .bits = state.bits});
}
