#include "encoding/codecs/iso2022.h"

#include "encoding/codecs/escape_sequence.h"
#include "encoding/codecs/iso2022_sets.h"

namespace {

using Entry = CodeTable::Entry;

constexpr std::uint8_t kPlaces = 4;
constexpr std::uint32_t kRight = 0x8080;  // the high bits of a character of eight bits

// What stands in a place: the number of a designation plus 1, or one of these.
using InPlace = std::uint8_t;
constexpr InPlace kInitial = 0;     // ASCII in G0, nothing in the others
constexpr InPlace kUnknown = 0xFE;  // a set of single bytes that is not known
constexpr InPlace kUnknownPairs = 0xFF;

constexpr bool isLineEnd(unsigned int character) { return character == '\n' || character == '\r'; }
constexpr bool isControl(unsigned int character) { return character < 0x20 || character == 0x7F; }

// CodecState::bits has what stands in the places, G0 in its low byte; shiftedOut says that G1 is
// called.
constexpr InPlace inPlaceOf(const CodecState& state, unsigned int place) {
  return static_cast<InPlace>(state.bits >> 8 * place);
}

// What both directions do.
template <class Base>
struct Direction : Base {
  using Base::Base;
  using Base::state;
  const Iso2022& scheme = *static_cast<const Iso2022*>(Base::parameters);
  bool isOutOfMemory = false;
  OpenSet kept[2];  // what was called last of G0 and G1

  InPlace inPlace(unsigned int place) const { return inPlaceOf(state, place); }
  void designate(unsigned int place, InPlace what) {
    state.bits &= ~(0xFFu << 8 * place);
    state.bits |= std::uint32_t{what} << 8 * place;
  }
  // Whether something stands in G1 to G3 that the end of a line takes away.
  bool hasOthers() const { return state.bits > 0xFF && scheme.right == nullptr; }
  void forgetOthers() {
    if (scheme.right == nullptr) state.bits &= 0xFF;
  }

  const GraphicSet* setIn(unsigned int place) const {
    const InPlace what = inPlace(place);
    if (what == kInitial) return place == 0 ? &kAsciiSet : place == 1 ? scheme.right : nullptr;
    return what > scheme.designationCount ? nullptr : scheme.designations[what - 1].set;
  }
  OpenSet open(const GraphicSet* set) { return OpenSet(set, isOutOfMemory); }
  // The set that is called. Texts go to and fro between the same two at every line end: these are
  // kept.
  const OpenSet* openCalled() {
    const unsigned int place = state.shiftedOut ? 1 : 0;
    const GraphicSet* const set = setIn(place);
    if (kept[place].set != set) kept[place] = open(set);
    return &kept[place];
  }

  void endText() {
    state.bits = 0;
    state.shiftedOut = false;
  }
};

// ---- Reading ----

struct Reader : Direction<UnitReader> {
  using Direction::Direction;
  const OpenSet* called = openCalled();

  bool step() {
    if (isOutOfMemory) return fail();
    const unsigned char* stop = readable();
    while (p < stop) {
      const unsigned char* const before = p;
      // Control characters come several in a row, where sets change.
      if (*p >= 0x20) copySet(stop);
      if (p != before) continue;
      if (!readUnit()) return false;
      if (isOutOfMemory || room() < kMinRoom) return true;
      stop = readable();
    }
    return true;
  }
  void copySet(const unsigned char* stop) {
    if (called->isAscii()) {
      copyText(stop);
    } else if (called->isPairs()) {
      ::copyPairs(*this, *called, stop);
    }
  }
  void finish() { Direction::endText(); }

  bool fail() {
    out.latchFailure();
    p = end;
    return true;
  }

  // ASCII, with a look at the ends of lines only where they mean something.
  void copyText(const unsigned char* stop) {
    const unsigned char newline = hasOthers() ? '\n' : kEscape;
    const unsigned char shiftOut = scheme.hasShifts ? kShiftOut : kEscape;
    const unsigned char shiftIn = scheme.hasShifts ? kShiftIn : kEscape;
    copyAsciiBut(stop, kEscape, shiftOut, shiftIn, newline);
  }

  // What the loops leave. False when what follows decides.
  bool readUnit() {
    const unsigned char byte = *p;
    if (byte >= 0x80) return readRight();
    if (byte == kEscape) return readEscape();
    if (scheme.hasShifts && (byte == kShiftOut || byte == kShiftIn)) return readShift();
    if (isLineEnd(byte)) return readLineEnd();
    if (!called->isGraphic(byte)) return passUnit();
    return readGraphic();
  }
  bool passUnit() {
    putUnit(*p++);
    return true;
  }

  // A character of G1 in text of eight bits.
  bool readRight() {
    if (scheme.right == nullptr || *p < 0xA0) return refuse(1);
    const OpenSet from = open(setIn(1));
    if (isOutOfMemory) return fail();
    const auto isOfSet = [&](unsigned char byte) {
      return byte >= 0x80 && from.isGraphic(byte & 0x7F);
    };
    const bool isPair = from.set != nullptr ? from.set->length == 2 : inPlace(1) != kUnknown;
    if (isPair && left() < 2 && !last) return false;
    if (!isOfSet(*p) || (isPair && (left() < 2 || !isOfSet(p[1])))) return refuse(1);
    return readCharacter(from, 0, isPair ? 2 : 1);
  }

  // Lines begin in a set of letters, whatever the one before has forgotten.
  bool readLineEnd() {
    if (scheme.right != nullptr) return passUnit();
    if (*p == '\n') forgetOthers();
    state.shiftedOut = false;
    const GraphicSet* const first = setIn(0);
    if (first == nullptr || !first->isLatin) designate(0, kInitial);
    called = openCalled();
    return passUnit();
  }

  bool readGraphic() {
    if (called->isAscii()) return passUnit();
    const bool isPair = called->set != nullptr ? called->set->length == 2
                                               : inPlace(state.shiftedOut ? 1 : 0) != kUnknown;
    if (isPair && left() < 2 && !last) return false;
    if (isPair && (left() < 2 || !called->isGraphic(p[1]))) return refuse(1);
    return readCharacter(*called, 0, isPair ? 2 : 1);
  }

  // A character whose bytes follow a shift.
  bool readCharacter(const OpenSet& from, unsigned int shift, unsigned int length) {
    const bool isKnown = from.set != nullptr && from.set->length == length;
    const Entry entry = isKnown ? from.entryOf(p + shift, length) : CodeTable::kNothing;
    const Entry kind = entry & CodeTable::kKind;
    if (entry == CodeTable::kNothing || kind == CodeTable::kNode) return refuse(shift + length);
    putEntry(*from.table, entry);
    p += shift + length;
    return true;
  }

  // What is called without a designation is not known.
  bool readShift() {
    const bool isOut = *p == kShiftOut;
    const bool isLacking = isOut && inPlace(1) == kInitial;
    if (isLacking) designate(1, kUnknownPairs);
    state.shiftedOut = isOut;
    called = openCalled();
    if (isLacking) return refuse(1);
    ++p;
    return true;
  }

  bool readEscape() {
    for (std::size_t i = 0; i < scheme.designationCount; ++i) {
      const std::string_view escape = scheme.designations[i].escape;
      if (matchEscape(p + 1, end, escape) == EscapeMatch::kYes) {
        return readDesignation(i, escape.size());
      }
    }
    bool isCut = left() < 2;
    for (std::size_t i = 0; i < scheme.designationCount; ++i) {
      const unsigned int length = matchDesignation(scheme.designations[i].escape, isCut);
      if (length != 0) return readDesignation(i, length);
    }
    if (scheme.singleShiftBytes != 0 && !isCut && (p[1] == 'N' || p[1] == 'O')) {
      return readSingleShift(p[1] == 'N' ? 2 : 3);
    }
    // The edition of the set that is designated next, which changes nothing.
    if (left() > 2 && p[1] == '&' && p[2] >= 0x40 && p[2] < 0x7F) {
      p += 3;
      return true;
    }
    isCut = isCut || (left() == 2 && p[1] == '&');
    const unsigned int unknown = designationLength(p + 1, end, isCut);
    if (isCut && !last) return false;
    return unknown == 0 ? passUnit() : readUnknown(unknown);
  }
  bool readDesignation(std::size_t index, std::size_t length) {
    designate(scheme.designations[index].place, static_cast<InPlace>(index + 1));
    called = openCalled();
    p += 1 + length;
    return true;
  }
  // How many bytes behind the ESC are a designation, which sets of pairs in G0 have two forms of.
  unsigned int matchDesignation(std::string_view escape, bool& isCut) const {
    const auto match = [&](std::string_view tail) {
      const EscapeMatch result = matchEscape(p + 1, end, tail);
      isCut = isCut || result == EscapeMatch::kMaybe;
      return result == EscapeMatch::kYes;
    };
    if (match(escape)) return static_cast<unsigned int>(escape.size());
    if (escape.size() != 2 || escape[0] != '$') return 0;
    const char regular[] = {'$', '(', escape[1]};
    return match({regular, sizeof regular}) ? sizeof regular : 0;
  }
  // A designation of a set that is not known: what follows must not be taken for another's.
  bool readUnknown(unsigned int length) {
    const bool isPairs = p[1] == '$';
    const unsigned char intermediate = p[length - 1];
    const bool is96 = intermediate >= 0x2D;
    const unsigned int place = intermediate < 0x28 ? 0
                               : is96              ? intermediate - 0x2Cu
                                                   : (intermediate - 0x28u) % kPlaces;
    designate(place, isPairs ? kUnknownPairs : kUnknown);
    called = openCalled();
    return refuse(1 + length);
  }

  bool readSingleShift(unsigned int place) {
    const OpenSet from = open(setIn(place));
    if (isOutOfMemory) return fail();
    const unsigned int length = scheme.singleShiftBytes;
    const auto rest = static_cast<std::size_t>(left());
    unsigned int known = 0;
    while (known < length && known + 2 < rest && from.isGraphic(p[2 + known])) ++known;
    if (known < length && known + 2 == rest && !last) return false;
    return known < length ? refuse(2 + known) : readCharacter(from, 2, length);
  }
};

// ---- Writing ----

struct Writer : Direction<UnitWriter> {
  using Direction::Direction;
  const OpenSet* called = openCalled();
  const OpenSet composing = openComposing();

  bool step() {
    if (isOutOfMemory) {
      out.latchFailure();
      p = end;
      return true;
    }
    const unsigned char* stop = writable();
    while (p < stop) {
      const unsigned char* const before = p;
      copySet(stop);
      if (p != before) continue;
      if (!writeUnit()) return false;
      if (isOutOfMemory || room() < kMinRoom) return true;
      stop = writable();
    }
    return true;
  }
  void copySet(const unsigned char* stop) {
    if (stop - p < 2) return;
    const bool isLow = p[1] == 0;
    if (isLow && isControl(*p)) return;
    if (called->isAscii()) {
      if (isLow) copyText(stop);
    } else if (called->isPairs()) {
      copyPairs(stop);
    }
  }
  void finish() {
    enterAscii();
    restoreRight();
    Direction::endText();
  }
  // So that another text can follow, which begins with what G1 is at the beginning.
  void restoreRight() {
    if (setIn(1) == scheme.right) return;
    for (std::size_t i = 0; i < scheme.designationCount && scheme.right != nullptr; ++i) {
      if (scheme.designations[i].set != scheme.right) continue;
      return call(static_cast<InPlace>(i + 1));
    }
  }

  // The set whose table has the sequences, if any.
  OpenSet openComposing() {
    for (std::size_t i = 0; i < scheme.designationCount; ++i) {
      if (scheme.designations[i].set->hasSequences) return open(scheme.designations[i].set);
    }
    return {};
  }
  bool beginsSequence(char32_t scalar) const {
    return composing.table != nullptr &&
           (composing.table->loadCode(scalar) & CodeTable::kBegins) != 0;
  }

  // ASCII, with a look at the ends of lines only where they mean something.
  void copyText(const unsigned char* stop) {
    const bool isLineLoud = hasOthers();
    const unsigned char lineFeed = isLineLoud ? '\n' : kEscape;
    const unsigned char carriageReturn = isLineLoud ? '\r' : kEscape;
    const unsigned char shiftOut = scheme.hasShifts ? kShiftOut : kEscape;
    const unsigned char shiftIn = scheme.hasShifts ? kShiftIn : kEscape;
    copyAsciiBut(stop, kEscape, shiftOut, shiftIn, lineFeed, carriageReturn);
  }

  // Units that the set at hand has.
  void copyPairs(const unsigned char* stop) {
    const OpenSet set = *called;
    if (composing.table == nullptr) {
      ::copyPairs(*this, set, stop, [](std::uint32_t) { return false; });
    } else {
      ::copyPairs(*this, set, stop, [this](std::uint32_t unit) { return beginsSequence(unit); });
    }
  }

  // False when what follows decides.
  bool writeUnit() {
    const Character character = characterAt(p);
    if (character.length == 0) return false;
    if (!character.isScalar) return refuseAs(character.length);
    if (isControl(character.scalar)) return writeControl(static_cast<unsigned char>(*p));
    if (character.scalar < 0x80) return writeAscii(static_cast<unsigned char>(*p));
    if (beginsSequence(character.scalar)) {
      bool isCut = false;
      unsigned int length = 0;
      const auto* const sequence = sequenceAt(*composing.table, length, isCut);
      if (isCut && !last) return false;
      if (sequence != nullptr) return writeSequence(sequence->code, length);
    }
    return writeScalar(character.scalar, character.length);
  }

  // In the set that is called if that has the character, else in another of its standard, else in
  // the first one that has it.
  bool writeScalar(char32_t scalar, unsigned int length) {
    if (writeIn(*called, scalar, length)) return true;
    if (scheme.right != nullptr && writeIn(open(setIn(1)), scalar, length, kRight)) return true;
    if (isOutOfMemory) return true;
    for (const bool isAkin : {true, false}) {
      if (isAkin && called->isAscii()) continue;
      for (std::size_t i = 0; i < scheme.designationCount; ++i) {
        const Designation& designation = scheme.designations[i];
        if (!designation.isWritten) continue;
        if (isAkin && designation.set->mapping != called->set->mapping) continue;
        const std::uint32_t code = codeIn(*designation.set, scalar);
        if (code == 0) continue;
        call(static_cast<InPlace>(i + 1));
        const bool isRight = scheme.right != nullptr && designation.place == 1;
        return putCharacter(code, length, isRight ? kRight : 0);
      }
      if (isOutOfMemory) return true;
    }
    return refuseAs(length);
  }
  std::uint32_t codeIn(const GraphicSet& set, char32_t scalar) {
    if (set.mapping == nullptr) return 0;
    const CodeTable* const table = CodeTable::open(*set.mapping);
    isOutOfMemory = isOutOfMemory || table == nullptr;
    return table != nullptr ? ::codeIn(set, table->codeOf(scalar)) : 0;
  }
  bool writeIn(const OpenSet& set, char32_t scalar, unsigned int length,
               std::uint32_t highBits = 0) {
    const std::uint32_t code =
        set.table != nullptr ? set.codeIn(set.table->codeOf(scalar)) : std::uint32_t{0};
    return code != 0 && putCharacter(code, length, highBits);
  }
  // highBits: those that the bytes have besides.
  bool putCharacter(std::uint32_t code, unsigned int length, std::uint32_t highBits) {
    putCode(code | (code > 0xFF ? highBits : highBits & 0xFF));
    p += length;
    return true;
  }
  bool writeSequence(std::uint32_t code, unsigned int length) {
    for (std::size_t i = 0; i < scheme.designationCount && !called->set->hasSequences; ++i) {
      const Designation& designation = scheme.designations[i];
      if (designation.set->hasSequences) call(static_cast<InPlace>(i + 1));
    }
    putCode(called->codeIn(code));
    p += length;
    return true;
  }

  // Makes the next bytes mean a character of the set of a designation.
  void call(InPlace what) {
    const Designation& designation = scheme.designations[what - 1];
    const unsigned int place = designation.place;
    if (place == 0) shift(false);
    if (inPlace(place) != what) {
      unsigned char* to = dest;
      *to++ = kEscape;
      for (const char byte : designation.escape) *to++ = static_cast<unsigned char>(byte);
      dest = to;
      designate(place, what);
    }
    if (place == 1 && scheme.right != nullptr) return;
    if (place == 1) shift(true);
    if (place >= 2) return put(kEscape, place == 2 ? 'N' : 'O');
    called = openCalled();
  }
  void shift(bool isOut) {
    if (state.shiftedOut == isOut) return;
    put(isOut ? kShiftOut : kShiftIn);
    state.shiftedOut = isOut;
  }
  void enterAscii() {
    shift(false);
    if (!openCalled()->isAscii()) put(kEscape), put('(', 'B');
    designate(0, kInitial);
    called = openCalled();
  }

  bool writeAscii(unsigned char byte) {
    const bool isSame = !state.shiftedOut && called->set->isLatin && called->table != nullptr &&
                        byte != ' ' && called->table->codeOf(byte) == byte;
    if (!isSame) enterAscii();
    put(byte);
    p += 2;
    return true;
  }

  // Text must not turn into shifts on the way.
  bool writeControl(unsigned char byte) {
    if (scheme.hasShifts && (byte == kShiftOut || byte == kShiftIn)) return refuseAs(2);
    if (byte == kEscape) {
      const Character next = characterAt(p + 2);
      if (next.length == 0 && !last) return false;
      const bool isCode = next.length != 0 && next.isScalar;
      if (isCode && mayFollowEscape(next.scalar)) return refuseAs(2);
    }
    enterAscii();
    put(byte);
    p += 2;
    if (isLineEnd(byte)) forgetOthers();
    return true;
  }
  bool mayFollowEscape(char32_t scalar) const {
    if (scalar == 'N' || scalar == 'O') return scheme.singleShiftBytes != 0;
    return scalar == '$' || scalar == '&' || (scalar >= '(' && scalar <= '/');
  }

  bool refuseAs(unsigned int length) {
    enterAscii();
    return refuse(length, '?');
  }
};

}  // namespace

unsigned int readIso2022(const void* parameters, const unsigned char* data, unsigned int length,
                         bool last, CodecState& state, DataBuffer& out, ReplacementSink* sink) {
  return runCodec<Reader>(parameters, data, length, last, state, out, sink);
}

unsigned int writeIso2022(const void* parameters, const unsigned char* data, unsigned int length,
                          bool last, CodecState& state, DataBuffer& out, ReplacementSink* sink) {
  return runCodec<Writer>(parameters, data, length, last, state, out, sink);
}

// What is called is not nothing; what is unknown is only read.
bool isIso2022State(const void* parameters, const CodecState& state, bool isWriting) {
  const auto& scheme = *static_cast<const Iso2022*>(parameters);
  for (unsigned int place = 0; place < kPlaces; ++place) {
    const InPlace what = inPlaceOf(state, place);
    if (what == kInitial || (!isWriting && what >= kUnknown)) continue;
    if (what > scheme.designationCount) return false;
    const Designation& designation = scheme.designations[what - 1];
    if (designation.place != place || (isWriting && !designation.isWritten)) return false;
  }
  const bool mayBeOut = scheme.hasShifts && inPlaceOf(state, 1) != kInitial;
  return (mayBeOut || !state.shiftedOut) &&
         hasOnly(state, {.shiftedOut = state.shiftedOut, .bits = state.bits});
}

void visitIso2022(const void* parameters, MappingVisitor& visitor) {
  const auto& scheme = *static_cast<const Iso2022*>(parameters);
  const auto visit = [&](const GraphicSet* set) {
    if (set != nullptr && set->mapping != nullptr) visitor.visit(*set->mapping);
  };
  visit(scheme.right);
  for (std::size_t i = 0; i < scheme.designationCount; ++i) visit(scheme.designations[i].set);
}
