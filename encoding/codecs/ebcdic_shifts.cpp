#include "encoding/codecs/ebcdic_shifts.h"

#include "encoding/codecs/mapped_tables.h"
#include "encoding/codecs/unit_text.h"
#include "encoding/kernels/cpu_dispatch.h"

namespace {

using Entry = CodeTable::Entry;

constexpr unsigned char kShiftOut = 0x0E;
constexpr unsigned char kShiftIn = 0x0F;
constexpr unsigned char kFirstOfPairs = 0x40;  // bytes below are controls

constexpr bool isShift(unsigned int byte) { return (byte | 1) == kShiftIn; }
constexpr bool isInPair(unsigned int byte) { return byte >= kFirstOfPairs && byte != 0xFF; }

// Up to the first shift.
const unsigned char* findShift(const unsigned char* text, const unsigned char* end) {
  for (; end - text >= std::ptrdiff_t{kVector}; text += kVector) {
    if (topBits(equal(Bytes16::load(text) | 1, kShiftIn)) != 0) break;
  }
  return std::find_if(text, end, isShift);
}

// Longer runs of single bytes are worth a kernel's while. What these have for U+000E and U+000F are
// shifts, which no character may be taken for.
constexpr std::ptrdiff_t kShortRun = 16;

// Whether bits say that a text turns from one set to the other so often that no branch should have
// to guess where.
constexpr bool isManyTurns(std::uint64_t turns) {
  constexpr int kFew = 4;
  for (int i = 0; i < kFew; ++i) turns &= turns - 1;
  return turns != 0;
}

struct Tables {
  const CodeTable* singles;  // null: all is pairs
  const CodeTable* pairs;
  // What the loops look up: the flat tables of the two sets.
  const fast::SingleByteDecoder* singleDecoder = nullptr;
  const fast::DoubleByteDecoder* pairDecoder = nullptr;
  const fast::SingleByteEncoder* singleEncoder = nullptr;
  const fast::DoubleByteEncoder* pairEncoder = nullptr;

  bool openDecoders() {
    if (singles != nullptr) singleDecoder = singles->singleDecoder();
    pairDecoder = pairs->pairDecoder();
    return pairDecoder != nullptr && (singles == nullptr || singleDecoder != nullptr);
  }
  bool openEncoders() {
    if (singles != nullptr) singleEncoder = singles->singleEncoder();
    pairEncoder = pairs->pairEncoder();
    return pairEncoder != nullptr && (singles == nullptr || singleEncoder != nullptr);
  }
};

struct Reader : UnitReader {
  using UnitReader::UnitReader;
  const Tables& tables = *static_cast<const Tables*>(parameters);
  const unsigned char* unusualEnd = p;  // of the last block that copyTurns() left

  bool step() {
    const unsigned char* const stop = readable();
    while (p < stop) {
      if (tables.singles != nullptr && p >= unusualEnd) copyTurns(stop);
      const bool isAmongPairs = tables.singles == nullptr || state.shiftedOut;
      isAmongPairs ? copyPairs(stop) : copySingles(stop);
      if (p < stop) {
        if (tables.singles != nullptr && isShift(*p)) {
          if (!readShift()) return refuse(1);
          continue;
        }
        return isAmongPairs ? readPair() : readSingle();
      }
    }
    return true;
  }
  void finish() {}

  // Short runs of both sets in turns, in blocks. Bits say where the shifts stand, and whether all
  // was characters is asked of the whole block: a branch for the end of each word would be guessed
  // wrong. Stops in front of a block with longer runs, or with anything else in it.
  void copyTurns(const unsigned char* stop) {
    constexpr std::ptrdiff_t kBlock = 4 * kVector, kGroup = 8;
    while (stop - p >= kBlock + kGroup) {
      std::uint64_t shifts = 0;
      for (unsigned int i = 0; i < kBlock; i += kVector) {
        shifts |= std::uint64_t{topBits(equal(Bytes16::load(p + i) | 1, kShiftIn))} << i;
      }
      if (!isManyTurns(shifts)) return;
      if (!copyBlock(shifts, p + kBlock)) {
        unusualEnd = p + kBlock;
        return;
      }
    }
  }
  // False, and nothing is done, where not all of it is such text.
  bool copyBlock(std::uint64_t shifts, const unsigned char* blockEnd) {
    const unsigned char* in = p;
    unsigned char* to = dest;
    bool isOut = state.shiftedOut, isUsual = true;
    for (; shifts != 0; ++in) {
      const int count = std::countr_zero(shifts);
      shifts = shifts >> count >> 1;
      isUsual &= !(isOut && count % 2 != 0);
      isOut ? copyPairs(count, in, to) : copySingles(count, in, to);
      isUsual &= (*in == kShiftOut) != isOut;
      isOut = !isOut;
    }
    const std::ptrdiff_t rest = blockEnd - in;
    isOut ? copyPairs(rest - rest % 2, in, to) : copySingles(rest, in, to);
    if (!isUsual || hasZeroUnit(dest, to)) return false;
    p = in;
    dest = to;
    state.shiftedOut = isOut;
    return true;
  }
  // Both convert some more at the end, which is written over.
  void copyPairs(std::ptrdiff_t count, const unsigned char*& in, unsigned char*& to) const {
    const std::uint16_t* const units = tables.pairDecoder->units;
    std::ptrdiff_t done = 0;
    do {
      for (const std::ptrdiff_t end = done + 8; done != end; done += 2) {
        storeLow(to + done, units[loadLow<std::uint16_t>(in + done)]);
      }
    } while (done < count);
    in += count;
    to += count;
  }
  void copySingles(std::ptrdiff_t count, const unsigned char*& in, unsigned char*& to) const {
    const std::uint16_t* const units = tables.singleDecoder->units;
    std::ptrdiff_t done = 0;
    do {
      for (const std::ptrdiff_t end = done + 4; done != end; ++done) {
        storeLow(to + 2 * done, units[in[done]]);
      }
    } while (done < count);
    in += count;
    to += 2 * count;
  }
  // Also says so of a text that is shorter than a vector.
  static bool hasZeroUnit(const unsigned char* text, const unsigned char* textEnd) {
    const auto zeros = [](const unsigned char* at) { return equal(fast::Units16::load(at), 0); };
    if (textEnd - text < std::ptrdiff_t{kVector}) return true;
    auto found = zeros(textEnd - kVector);
    for (; textEnd - text > std::ptrdiff_t{kVector}; text += kVector) found = found | zeros(text);
    return found.any();
  }

  void copySingles(const unsigned char* stop) {
    const auto& decoder = *tables.singleDecoder;
    const unsigned char* const runStop = p + std::min(stop - p, kShortRun);
    for (; p < runStop; ++p) {
      const std::uint16_t unit = decoder.units[*p];
      if (unit == 0 || isShift(*p)) return;
      putUnit(unit);
    }
    if (p == stop) return;
    const unsigned char* const shift = findShift(p, stop);
    const auto done = fast::kernels().singleByteToUtf16(decoder, p, shift, dest, destEnd);
    p = done.in;
    dest = done.out;
  }

  void copyPairs(const unsigned char* stop) {
    const std::uint16_t* const units = tables.pairDecoder->units;
    const unsigned char* in = p;
    unsigned char* to = dest;
    for (; stop - in >= 8; in += 8, to += 8) {
      const auto pairs = loadLow<std::uint64_t>(in);
      const std::uint64_t first = units[pairs & 0xFFFF], second = units[pairs >> 16 & 0xFFFF];
      const std::uint64_t third = units[pairs >> 32 & 0xFFFF], fourth = units[pairs >> 48];
      if (first == 0 || second == 0 || third == 0 || fourth == 0) break;
      storeLow(to, first | second << 16 | third << 32 | fourth << 48);
    }
    for (; in < stop && end - in > 1; in += 2, to += 2) {
      const std::uint16_t unit = units[loadLow<std::uint16_t>(in)];
      if (unit == 0) break;
      storeLow(to, unit);
    }
    p = in;
    dest = to;
  }

  // False for a shift to where the text is.
  bool readShift() {
    const bool isOut = *p == kShiftOut;
    if (state.shiftedOut == isOut) return false;
    state.shiftedOut = isOut;
    ++p;
    return true;
  }

  bool readSingle() {
    const Entry entry = tables.singles->root()[*p];
    if (entry == CodeTable::kNothing) return refuse(1);
    ++p;
    putEntry(*tables.singles, entry);
    return true;
  }

  // False when what follows decides.
  bool readPair() {
    if (tables.singles != nullptr && !isInPair(*p)) {
      if (isLineEnd(*p)) state.shiftedOut = false;
      return refuse(1);
    }
    if (left() < 2) return last && refuse(1);
    // Where all is pairs, the next one begins behind the second byte in any case.
    if (tables.singles != nullptr && !isInPair(p[1])) return refuse(1);
    const Entry first = tables.pairs->root()[*p];
    const bool isNode = (first & CodeTable::kKind) == CodeTable::kNode;
    const Entry entry = isNode ? tables.pairs->node(first)[p[1]] : CodeTable::kNothing;
    if (entry == CodeTable::kNothing) return refuse(2);
    p += 2;
    putEntry(*tables.pairs, entry);
    return true;
  }

  bool isLineEnd(unsigned char byte) const {
    const Entry entry = tables.singles->root()[byte];
    return entry == (CodeTable::kScalar | 0x0A) || entry == (CodeTable::kScalar | 0x0D) ||
           entry == (CodeTable::kScalar | 0x85);
  }
};

struct Writer : UnitWriter {
  using UnitWriter::UnitWriter;
  const Tables& tables = *static_cast<const Tables*>(parameters);
  const unsigned char* unusualEnd = p;  // of the last group that copyTurns() left

  bool step() {
    const unsigned char* const stop = writable();
    while (p < stop) {
      if (tables.singles != nullptr && p >= unusualEnd) copyTurns(stop);
      const bool isAmongPairs = tables.singles == nullptr || state.shiftedOut;
      isAmongPairs ? copyPairs(stop) : copySingles(stop);
      if (p < stop && !turn(stop)) return writeOne();
    }
    return true;
  }
  void finish() { shift(false); }

  static constexpr std::ptrdiff_t kGroup = 2 * std::ptrdiff_t{kVector};  // bytes of the text

  // Characters of both sets in turns, in groups, without a branch that would have to guess which
  // set the next one is of. Stops in front of a group with longer runs, or with anything else in
  // it.
  void copyTurns(const unsigned char* stop) {
    while (stop - p >= kGroup) {
      const std::uint32_t others = topBits(loadUnits(p));
      if (!isManyTurns((others ^ others >> 1) & (fast::Vector16::kAllBits >> 1))) return;
      if (!copyGroup()) {
        unusualEnd = p + kGroup;
        return;
      }
    }
  }
  // False, and nothing is done, where not all of it is such text. What both sets have is not: it is
  // written in the set at hand.
  bool copyGroup() {
    const std::uint8_t* const bytes = tables.singleEncoder->bytes;
    const std::uint16_t* const codes = tables.pairEncoder->codes;
    unsigned char* to = dest;
    std::uint32_t isOut = state.shiftedOut ? 1 : 0;
    bool isUsual = true;
    const unsigned char* const groupEnd = p + kGroup;
    for (const unsigned char* in = p; in != groupEnd; in += 2) {
      const std::uint32_t unit = loadLow<std::uint16_t>(in);
      const std::uint32_t single = bytes[unit], pair = codes[unit];
      const std::uint32_t isPair = single == 0 ? 1 : 0;
      const std::uint32_t code = single | pair;
      isUsual &= (single == 0) != (pair == 0) && !isShift(single);
      *to = static_cast<unsigned char>(kShiftIn - isPair);
      to += isPair ^ isOut;
      isOut = isPair;
      storeLow(to, static_cast<std::uint16_t>(code));
      to += 1 + isPair;
    }
    if (!isUsual) return false;
    p = groupEnd;
    dest = to;
    state.shiftedOut = isOut != 0;
    return true;
  }

  // Goes over to the set of the next character, if it is one that the loops know.
  bool turn(const unsigned char* stop) {
    if (tables.singles == nullptr || stop - p < 2) return false;
    const std::uint32_t unit = loadLow<std::uint16_t>(p);
    const std::uint8_t code = tables.singleEncoder->bytes[unit];
    const bool isSingle = code != 0 && !isShift(code);
    if (isSingle != state.shiftedOut) return false;
    if (!isSingle && tables.pairEncoder->codes[unit] == 0) return false;
    shift(!isSingle);
    return true;
  }

  void copySingles(const unsigned char* stop) {
    const auto& encoder = *tables.singleEncoder;
    const unsigned char* const runStop = p + std::min(stop - p, 2 * kShortRun);
    for (; runStop - p >= 2; p += 2) {
      const std::uint8_t code = encoder.bytes[loadLow<std::uint16_t>(p)];
      if (code == 0 || isShift(code)) return;
      put(code);
    }
    if (p == stop) return;
    const auto done = fast::kernels().utf16ToSingleByte(encoder, p, stop, dest, destEnd);
    const std::ptrdiff_t count = findShift(dest, done.out) - dest;
    p += 2 * count;
    dest += count;
  }

  void copyPairs(const unsigned char* stop) {
    const std::uint16_t* const codes = tables.pairEncoder->codes;
    const unsigned char* in = p;
    unsigned char* to = dest;
    for (; stop - in >= 2; in += 2, to += 2) {
      std::uint32_t code = codes[loadLow<std::uint16_t>(in)];
      if (code == 0) {
        code = codeAt(*tables.pairs, in, stop);
        if (code - 1 >= 0xFFFF) break;
        code = code >> 8 | code << 8;
      }
      storeLow(to, static_cast<std::uint16_t>(code));
    }
    p = in;
    dest = to;
  }

  void shift(bool isOut) {
    if (tables.singles == nullptr || state.shiftedOut == isOut) return;
    state.shiftedOut = isOut;
    put(isOut ? kShiftOut : kShiftIn);
  }

  // One character, or sequence, with the shift in front of it. False when what follows decides.
  bool writeOne() {
    const Character character = characterAt(p);
    if (character.length == 0) return false;
    if (!character.isScalar) return refuse(character.length);
    if (tables.singles != nullptr) {
      const std::uint32_t code = tables.singles->codeOf(character.scalar);
      if (tables.singles->holds(character.scalar) && !isShift(code)) {
        shift(false);
        p += character.length;
        put(static_cast<unsigned char>(code));
        return true;
      }
    }
    bool isCut = false;
    unsigned int length = 0;
    const CodeTable::Sequence* const sequence = sequenceAt(*tables.pairs, length, isCut);
    if (isCut && !last) return false;
    const std::uint32_t code =
        sequence != nullptr ? sequence->code : tables.pairs->codeOf(character.scalar);
    if (code == 0) return refuse(character.length);
    shift(true);
    p += sequence != nullptr ? length : character.length;
    put(static_cast<unsigned char>(code >> 8), static_cast<unsigned char>(code));
    return true;
  }

  // The mark is SUB, as a single byte, or the pair that stands for it.
  bool refuse(unsigned int length) {
    constexpr unsigned char kSubstitute = 0x3F;
    constexpr unsigned char kSubstitutePair = 0xFE;
    shift(false);
    report(p, length);
    p += length;
    if (tables.singles != nullptr) {
      put(kSubstitute);
    } else {
      put(kSubstitutePair, kSubstitutePair);
    }
    return true;
  }
};

template <typename Direction, bool (Tables::*open)()>
unsigned int run(const void* parameters, const unsigned char* data, unsigned int length, bool last,
                 CodecState& state, DataBuffer& out, ReplacementSink* sink) {
  const auto& sets = *static_cast<const ShiftedSets*>(parameters);
  Tables tables = {sets.singles != nullptr ? CodeTable::open(*sets.singles) : nullptr,
                   CodeTable::open(*sets.pairs)};
  if (tables.pairs != nullptr && (tables.singles != nullptr || sets.singles == nullptr) &&
      (tables.*open)()) {
    return runCodec<Direction>(&tables, data, length, last, state, out, sink);
  }
  out.latchFailure();
  return length;
}

}  // namespace

unsigned int readShifted(const void* parameters, const unsigned char* data, unsigned int length,
                         bool last, CodecState& state, DataBuffer& out, ReplacementSink* sink) {
  return run<Reader, &Tables::openDecoders>(parameters, data, length, last, state, out, sink);
}

unsigned int writeShifted(const void* parameters, const unsigned char* data, unsigned int length,
                          bool last, CodecState& state, DataBuffer& out, ReplacementSink* sink) {
  return run<Writer, &Tables::openEncoders>(parameters, data, length, last, state, out, sink);
}

std::uint32_t approximateShifted(const void* parameters, std::uint32_t scalar) {
  const auto& sets = *static_cast<const ShiftedSets*>(parameters);
  for (const Mapping* const mapping : {sets.singles, sets.pairs}) {
    const CodeTable* const table = mapping == nullptr ? nullptr : CodeTable::open(*mapping);
    const char32_t other = table == nullptr ? char32_t{0} : table->approximationOf(scalar);
    if (other != 0) return other;
  }
  return 0;
}

void visitShifted(const void* parameters, MappingVisitor& visitor) {
  const auto& sets = *static_cast<const ShiftedSets*>(parameters);
  if (sets.singles != nullptr) visitor.visit(*sets.singles);
  visitor.visit(*sets.pairs);
}
