#include "encoding/codecs/iscii.h"

#include <algorithm>
#include <iterator>

#include "encoding/codecs/mapping_list.h"
#include "encoding/codecs/unit_text.h"

namespace {

using Entry = CodeTable::Entry;

constexpr unsigned char kAttribute = 0xEF;  // ATR
constexpr unsigned char kExtension = 0xF0;  // EXT: the next byte is a Vedic sign
constexpr unsigned char kVirama = 0xE8, kNukta = 0xE9;

// A script: its code behind ATR, and what its letters are. In a mapping a byte that changes the
// letter in front of it stands before that letter, with 00 behind it when it is by itself.
struct Script {
  unsigned char code;
  const Mapping& mapping;
};
constexpr Script kScripts[] = {
    {0x42, kMap_iscii_devanagari}, {0x43, kMap_iscii_bengali}, {0x4B, kMap_iscii_gurmukhi},
    {0x4A, kMap_iscii_gujarati},   {0x47, kMap_iscii_oriya},   {0x44, kMap_iscii_tamil},
    {0x45, kMap_iscii_telugu},     {0x48, kMap_iscii_kannada}, {0x49, kMap_iscii_malayalam},
    {0x46, kMap_iscii_bengali},
};
constexpr unsigned char kDefaultCode = 0x40;  // that of the lines' beginnings
constexpr bool isDisplayAttribute(unsigned char code) { return code >= 0x21 && code <= 0x3F; }

constexpr char32_t kFirstBlock = 0x900, kBlockSize = 0x80, kBlocks = 9;
constexpr char32_t kAddak = 0x0A71;  // doubles the next consonant of Gurmukhi
constexpr bool isConsonant(unsigned char byte) { return byte >= 0xB3 && byte <= 0xD8; }

constexpr bool isNode(Entry entry) { return (entry & CodeTable::kKind) == CodeTable::kNode; }
constexpr bool isScalar(Entry entry) { return (entry & CodeTable::kKind) == CodeTable::kScalar; }
constexpr bool isLineEnd(std::uint32_t character) { return character == '\n' || character == '\r'; }

// CodecState::set is 0 in the script that lines begin in, else the number of the script plus 1.
template <class Base>
struct Direction : Base {
  using Base::Base;
  using Base::state;
  const unsigned char first =
      static_cast<unsigned char>(static_cast<const IsciiSettings*>(Base::parameters)->script);
  const CodeTable* table = open();

  unsigned char script() const {
    return state.set == 0 ? first : static_cast<unsigned char>(state.set - 1);
  }
  const CodeTable* open() const { return CodeTable::open(kScripts[script()].mapping); }
  void enter(unsigned char number) {
    if (number == script()) return;
    state.set = number == first ? std::uint8_t{0} : static_cast<std::uint8_t>(number + 1);
    table = open();
  }
  bool isGurmukhi() const { return script() == static_cast<unsigned char>(IsciiScript::kGurmukhi); }

  bool fail() {
    this->out.latchFailure();
    this->p = this->end;
    return true;
  }
  void finish() {
    state.set = 0;
    state.bits = 0;
  }
};

struct Reader : Direction<UnitReader> {
  using Direction::Direction;

  bool step() {
    if (table == nullptr) return fail();
    const unsigned char* const stop = readable();
    while (p < stop) {
      if (state.set == 0) copyAscii(stop);
      if (p < stop) return readOne();
    }
    return true;
  }

  // False when what follows decides.
  bool readOne() {
    const unsigned char byte = *p;
    if (byte < 0x80) {
      if (isLineEnd(byte)) enter(first);
      putUnit(byte);
      ++p;
      return true;
    }
    if (left() < 2 && !last) return false;
    const unsigned char next = left() < 2 ? 0 : p[1];
    if (byte == kAttribute) return readAttribute(next);
    if (byte == kExtension) return readCode(std::uint32_t{byte} << 8 | next, 2);
    if (isGurmukhi() && isConsonant(byte) && next == kVirama) {
      if (left() < 3 && !last) return false;
      if (left() >= 3 && p[2] == byte) return readDoubled(byte);
    }
    if (isNode(table->root()[next])) {
      const Entry changed = table->find(std::uint32_t{next} << 8 | byte);
      if (changed != CodeTable::kNothing && next != kExtension) return put(changed, 2);
    }
    return readCode(isNode(table->root()[byte]) ? std::uint32_t{byte} << 8 : byte, 1);
  }
  bool readCode(std::uint32_t code, unsigned int length) {
    const Entry entry = table->find(code);
    // The byte behind an extension may be a letter.
    return entry == CodeTable::kNothing ? refuse(1) : put(entry, length);
  }
  bool put(Entry entry, unsigned int length) {
    putEntry(*table, entry);
    p += length;
    return true;
  }
  bool readDoubled(unsigned char consonant) {
    const Entry entry = table->root()[consonant];
    if (!isScalar(entry)) return refuse(1);
    putScalar(kAddak);
    return put(entry, 3);
  }

  bool readAttribute(unsigned char code) {
    const Script* const found =
        std::find_if(std::begin(kScripts), std::end(kScripts),
                     [&](const Script& script) { return script.code == code; });
    if (found != std::end(kScripts)) {
      enter(static_cast<unsigned char>(found - kScripts));
    } else if (code == kDefaultCode) {
      enter(first);
    } else if (!isDisplayAttribute(code)) {
      return refuse(1);
    }
    p += 2;
    return table != nullptr || fail();
  }
};

// CodecState::bits has the last two bytes, as far as the next one may change what they mean.
struct Writer : Direction<UnitWriter> {
  using Direction::Direction;

  bool step() {
    if (table == nullptr) return fail();
    const unsigned char* const stop = writable();
    while (p < stop) {
      if (state.set == 0 && stop - p >= 2 && p[1] == 0 && p[0] < 0x80) {
        copyAscii(stop);
        state.bits = 0;
      }
      if (p < stop) return writeOne();
    }
    return true;
  }

  // False when what follows decides.
  bool writeOne() {
    const Character character = characterAt(p);
    if (character.length == 0) return false;
    if (!character.isScalar) return refuseAs(character.length);
    if (character.scalar < 0x80) return writeAscii(static_cast<unsigned char>(character.scalar));
    const unsigned char number = scriptOf(character.scalar);
    const CodeTable* const its =
        number == script() ? table : CodeTable::open(kScripts[number].mapping);
    if (its == nullptr) return fail();
    if (character.scalar == kAddak) return writeDoubled(*its, number, character.length);
    bool isCut = false;
    unsigned int length = 0;
    const CodeTable::Sequence* const sequence = sequenceAt(*its, length, isCut);
    if (isCut && !last) return false;
    if (sequence == nullptr) length = character.length;
    const std::uint32_t code = sequence != nullptr ? sequence->code : its->codeOf(character.scalar);
    if (code == 0) return refuseAs(length);
    putLetter(number, code);
    p += length;
    return true;
  }
  bool writeAscii(unsigned char byte) {
    if (isLineEnd(byte)) enter(first);
    state.bits = 0;
    CodecRun::put(byte);
    p += 2;
    return true;
  }

  // The script that has a character; the one at hand for what all have.
  unsigned char scriptOf(char32_t scalar) const {
    const char32_t block = (scalar - kFirstBlock) / kBlockSize;
    const bool isDanda = scalar == 0x0964 || scalar == 0x0965;
    if (scalar < kFirstBlock || block >= kBlocks || isDanda) return script();
    const Mapping* const its = &kScripts[block].mapping;
    if (its == &kScripts[script()].mapping) return script();
    return its == &kScripts[first].mapping ? first : static_cast<unsigned char>(block);
  }

  void putLetter(unsigned char number, std::uint32_t code) {
    const auto high = static_cast<unsigned char>(code >> 8);
    const auto low = static_cast<unsigned char>(code);
    if (high == 0 || low == 0) return putByte(number, high == 0 ? low : high);
    putByte(number, high == kExtension ? high : low);
    CodecRun::put(high == kExtension ? low : high);
    state.bits = 0;
  }
  void putByte(unsigned char number, unsigned char byte) {
    if (number != script() || changes(byte)) {
      CodecRun::put(kAttribute, kScripts[number].code);
      enter(number);
      state.bits = 0;
    }
    CodecRun::put(byte);
    const bool isPair = byte == kNukta && isConsonant(static_cast<unsigned char>(state.bits));
    state.bits = isPair ? 0 : (state.bits & 0xFF) << 8 | byte;
  }
  // Whether a byte would be read together with those in front of it. The nukta is to be, at
  // consonants: that is the same letter in Unicode, and what others write.
  bool changes(unsigned char byte) const {
    const std::uint32_t before = state.bits & 0xFF;
    if (before == 0) return false;
    if (isGurmukhi() && state.bits == (std::uint32_t{byte} << 8 | kVirama)) return true;
    if (byte == kNukta && isConsonant(static_cast<unsigned char>(before))) return false;
    return byte != kExtension && isNode(table->root()[byte]) &&
           table->find(std::uint32_t{byte} << 8 | before) != CodeTable::kNothing;
  }

  // The sign that doubles a consonant: the consonant, the virama, the consonant.
  bool writeDoubled(const CodeTable& its, unsigned char number, unsigned int length) {
    const Character next = characterAt(p + length);
    if (next.length == 0 && !last) return false;
    const std::uint32_t code = next.length != 0 && next.isScalar ? its.codeOf(next.scalar) : 0;
    if (code > 0xFF || !isConsonant(static_cast<unsigned char>(code))) return refuseAs(length);
    putByte(number, static_cast<unsigned char>(code));
    CodecRun::put(kVirama, static_cast<unsigned char>(code));
    state.bits = 0;
    p += length + next.length;
    return true;
  }

  bool refuseAs(unsigned int length) {
    state.bits = 0;
    return refuse(length, '?');
  }
};

}  // namespace

unsigned int readIscii(const void* parameters, const unsigned char* data, unsigned int length,
                       bool last, CodecState& state, DataBuffer& out, ReplacementSink* sink) {
  return runCodec<Reader>(parameters, data, length, last, state, out, sink);
}

unsigned int writeIscii(const void* parameters, const unsigned char* data, unsigned int length,
                        bool last, CodecState& state, DataBuffer& out, ReplacementSink* sink) {
  return runCodec<Writer>(parameters, data, length, last, state, out, sink);
}

std::uint32_t approximateIscii(const void*, std::uint32_t scalar) {
  const char32_t block = (scalar - kFirstBlock) / kBlockSize;
  if (scalar < kFirstBlock || block >= kBlocks) return 0;
  const CodeTable* const table = CodeTable::open(kScripts[block].mapping);
  return table == nullptr ? 0 : table->approximationOf(scalar);
}

bool isIsciiState(const void* parameters, const CodecState& state, bool isWriting) {
  const auto first =
      static_cast<std::size_t>(static_cast<const IsciiSettings*>(parameters)->script);
  constexpr std::uint32_t kMostBytes = 0xFFFF;
  return state.set <= std::size(kScripts) && state.set != first + 1 &&
         state.bits <= (isWriting ? kMostBytes : 0) &&
         hasOnly(state, {.set = state.set, .bits = state.bits});
}

// A text may change to any script.
void visitIscii(const void*, MappingVisitor& visitor) {
  for (const auto& script : kScripts) visitor.visit(script.mapping);
}
