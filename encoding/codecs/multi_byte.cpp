#include "encoding/codecs/multi_byte.h"

#include "encoding/codecs/mapped_tables.h"
#include "encoding/codecs/unit_text.h"
#include "encoding/kernels/cpu_dispatch.h"

namespace {

using Entry = CodeTable::Entry;

constexpr bool isNode(Entry entry) { return (entry & CodeTable::kKind) == CodeTable::kNode; }

// How many bytes of codes go without a kernel once it has stopped: those that no kernel takes come
// in groups. The more of them there are, the longer these are.
class Group {
 public:
  // Of how many bytes the kernel has come further.
  void note(std::ptrdiff_t progress) {
    m_bytes = progress < kLeast ? std::min(2 * m_bytes, kMost) : kLeast;
  }
  std::ptrdiff_t bytes() const { return m_bytes; }

 private:
  static constexpr std::ptrdiff_t kLeast = 128, kMost = 2048;
  std::ptrdiff_t m_bytes = kLeast;
};

// What drives both directions.
struct Rules {
  const CodeTable& table;
  PieceRule pieceRule;        // null: as the table says
  std::uint32_t lastWritten;  // the highest code
  const LongForms* longForms;
};

struct Reader : UnitReader {
  using UnitReader::UnitReader;
  const CodeTable& table = static_cast<const Rules*>(parameters)->table;
  const PieceRule pieceRule = static_cast<const Rules*>(parameters)->pieceRule;
  const LongForms* const longForms = static_cast<const Rules*>(parameters)->longForms;
  const fast::DoubleByteDecoder* const pairs = table.isAscii() ? table.pairDecoder() : nullptr;
  Group group;

  bool step() {
    const unsigned char* const stop = readable();
    while (p < stop) {
      if (pairs != nullptr) {
        const auto done = fast::kernels().doubleByteToUtf16(*pairs, p, end, dest, destEnd);
        group.note(done.in - p);
        p = done.in;
        dest = done.out;
      }
      if (table.isAscii()) copyAscii(stop);
      if (p < stop && !copyCodes(stop)) return readOne();
    }
    return true;
  }
  void finish() {}

  // Codes of any length that are one value, up to ASCII; where there is a kernel for the others, a
  // few only: those for which it stops come in groups. False for none.
  bool copyCodes(const unsigned char* stop) {
    const Entry* const root = table.root();
    const auto below = [root](Entry node) { return root + (node & ~CodeTable::kKind) * 256; };
    const fast::DoubleByteDecoder* const flat = pairs;
    const bool isAscii = table.isAscii();
    const unsigned char* in = p;
    unsigned char* to = dest;
    const unsigned char* const runStop = std::min(stop, end - (CodeTable::kMaxBytes - 1));
    stop = std::min(runStop, pairs != nullptr ? p + group.bytes() : stop);
    while (in < stop && !(isAscii && *in < 0x80)) {
      // Of what a byte begins a wrong guess is seen earlier in the byte than in what it leads to.
      if (flat != nullptr && flat->isLead(*in)) {
        if (const std::uint16_t unit = flat->units[loadLow<std::uint16_t>(in)]) {
          storeLow(to, unit);
          to += 2;
          in += 2;
          continue;
        }
      }
      Entry entry = root[in[0]];
      unsigned int length = 1;
      if (isNode(entry)) entry = below(entry)[in[length++]];
      if (entry - CodeTable::kScalar <= 0xFFFF) {
        storeLow(to, static_cast<std::uint16_t>(entry));
        to += 2;
        in += length;
        continue;
      }
      while (isNode(entry)) entry = below(entry)[in[length++]];
      if (entry == CodeTable::kCounted) {
        if (copySupplementary(in, to, runStop)) continue;
        const char32_t scalar = table.countedScalar(in);
        if (scalar == 0) break;
        entry = CodeTable::kScalar | scalar;
        length = CodeTable::kMaxBytes;
      }
      if ((entry & CodeTable::kKind) != CodeTable::kScalar) break;
      const std::uint32_t scalar = entry & ~CodeTable::kKind;
      // Both units of a pair, or one and what comes next is written over.
      const std::uint32_t first = scalar > 0xFFFF ? highSurrogateOf(scalar) : scalar;
      storeLow(to, first | std::uint32_t{lowSurrogateOf(scalar)} << 16);
      to += scalar > 0xFFFF ? 4 : 2;
      in += length;
    }
    const bool isCopied = in != p;
    p = in;
    dest = to;
    return isCopied;
  }

  // A run of codes that count up beyond U+FFFF, as emoji are, with single bytes of ASCII between
  // them. False for none.
  bool copySupplementary(const unsigned char*& in, unsigned char*& to,
                         const unsigned char* stop) const {
    const unsigned char* const before = in;
    const auto offsetAt = [](const unsigned char* code) {
      return CodeTable::supplementaryOffset(code);
    };
    for (; in < stop; in += CodeTable::kMaxBytes, to += 4) {
      std::uint32_t offset = offsetAt(in);
      if (offset > 0xFFFFF) {
        if (*in >= 0x80 || !table.isAscii() || stop - in < 2) break;
        offset = offsetAt(in + 1);
        if (offset > 0xFFFFF) break;
        storeLow(to, std::uint16_t{*in++});
        to += 2;
      }
      storeLow(to, 0xDC00D800u + (offset >> 10) + ((offset & 0x3FF) << 16));
    }
    return in != before;
  }

  // What the loops leave: one code of any kind. False when what follows decides.
  bool readOne() {
    const auto known =
        static_cast<std::size_t>(std::min<std::ptrdiff_t>(left(), CodeTable::kMaxBytes));
    Entry entry = CodeTable::kNode;
    for (unsigned int i = 0; i < CodeTable::kMaxBytes; ++i) {
      if (i == known) return refusePiece(known, true);
      entry = table.node(entry)[p[i]];
      if (entry == CodeTable::kCounted) return readCounted(known);
      if (entry == CodeTable::kNothing) break;
      if (isNode(entry)) continue;
      putEntry(table, entry);
      p += i + 1;
      return true;
    }
    return refusePiece(known, false);
  }

  // isCut: what can be seen may begin a code. False when what follows decides.
  bool refusePiece(std::size_t known, bool isCut) {
    if (longForms != nullptr) {
      char32_t scalar = 0;
      const unsigned int length =
          longForms->read(p, static_cast<std::size_t>(left()), last, scalar);
      if (length == LongForms::kUndecided) return false;
      if (length != 0) {
        p += length;
        putScalar(scalar);
        return true;
      }
    }
    if (pieceRule != nullptr) {
      const unsigned int length = pieceRule(p, known, last);
      return length != 0 && refuse(length);
    }
    if (isCut) return last && refuse(1);
    // All that can belong to the piece has to be seen before its length can be told.
    if (!last && table.mayBeLonger(p, known)) return false;
    return refuse(table.malformedLength(p, known));
  }

  bool readCounted(std::size_t known) {
    const char32_t scalar = known < CodeTable::kMaxBytes ? U'\0' : table.countedScalar(p);
    if (scalar != 0) {
      p += CodeTable::kMaxBytes;
      putScalar(scalar);
      return true;
    }
    if (pieceRule != nullptr) return refusePiece(known, false);
    const auto isSecondLead = [](unsigned char byte) { return byte >= 0x81 && byte <= 0xFE; };
    if (known > 2 && !isSecondLead(p[2])) return refuse(1);
    if (known < CodeTable::kMaxBytes) return last && refuse(1);
    return refuse(p[3] < 0x30 || p[3] > 0x39 ? 1 : CodeTable::kMaxBytes);
  }
};

struct Writer : UnitWriter {
  using UnitWriter::UnitWriter;
  const CodeTable& table = static_cast<const Rules*>(parameters)->table;
  const std::uint32_t lastWritten = static_cast<const Rules*>(parameters)->lastWritten;
  const LongForms* const longForms = static_cast<const Rules*>(parameters)->longForms;
  // Marks are above all codes.
  const std::uint32_t highestCopied =
      table.sequences().isEmpty() ? lastWritten : std::min(lastWritten, CodeTable::kFollows - 1);
  // To kernels U+0000 is byte 00.
  const fast::DoubleByteEncoder* const pairs =
      table.root()[0] == CodeTable::kScalar ? table.pairEncoder() : nullptr;
  Group group;

  bool step() {
    const unsigned char* const stop = writable();
    while (p < stop) {
      if (pairs != nullptr) {
        const auto done = fast::kernels().utf16ToDoubleByte(*pairs, p, end, dest, destEnd);
        group.note(done.in - p);
        p = done.in;
        dest = done.out;
      }
      if (table.isAscii()) copyAscii(stop);
      if (p < stop && !copyCodes(stop)) return writeOne();
    }
    return true;
  }
  void finish() {}

  // Characters that have a code and stand in no sequence, as the reader does it.
  bool copyCodes(const unsigned char* stop) {
    const CodeTable::Codes codes = table.codes();
    const std::uint32_t highest = highestCopied;
    const bool isAscii = table.isAscii();
    const unsigned char* in = p;
    unsigned char* to = dest;
    const unsigned char* const runStop = stop;
    if (pairs != nullptr) stop = std::min(stop, p + group.bytes());
    while (stop - in >= 4) {
      const std::uint32_t unit = loadLow<std::uint16_t>(in);
      if (isAscii && unit < 0x80) break;
      std::uint32_t code = codes.load(unit);
      if (code - 1 < highest) {
        to = putCode(to, code);
        in += 2;
        continue;
      }
      const bool isPair = isHighSurrogate(unit);
      if (isPair && copySupplementary(in, to, runStop)) continue;
      const std::uint32_t low = loadLow<std::uint16_t>(in + 2);
      if (isPair && !isLowSurrogate(low)) break;
      code = isPair ? codeOfPair(joinSurrogates(unit, low)) : codeAt(table, in, stop);
      if (code - 1 >= highest) break;
      to = putCode(to, code);
      in += isPair ? 4 : 2;
    }
    const bool isCopied = in != p;
    p = in;
    dest = to;
    return isCopied;
  }

  // A run of characters beyond U+FFFF that have their codes by counting, with single ones of ASCII
  // between them. False for none.
  bool copySupplementary(const unsigned char*& in, unsigned char*& to,
                         const unsigned char* stop) const {
    if (!table.hasCounted() || CodeTable::countedCode(0x10FFFF) > highestCopied) return false;
    const unsigned char* const before = in;
    for (; stop - in >= 6; in += 4, to += 4) {
      std::uint32_t high = loadLow<std::uint16_t>(in);
      const bool isBehindAscii = high < 0x80 && table.isAscii();
      *to = static_cast<unsigned char>(high);
      if (isBehindAscii) high = loadLow<std::uint16_t>(in + 2);
      const std::uint32_t low = loadLow<std::uint16_t>(in + (isBehindAscii ? 4 : 2));
      if (!isHighSurrogate(high) || !isLowSurrogate(low)) break;
      const char32_t scalar = joinSurrogates(high, low);
      if (table.hasBlock(scalar >> 8)) break;
      if (isBehindAscii) in += 2, ++to;
      storeBig(to, CodeTable::countedCode(scalar));
    }
    return in != before;
  }

  // The code of a character beyond U+FFFF; 0 for none, and kBegins for one that may begin a
  // sequence.
  std::uint32_t codeOfPair(char32_t scalar) const {
    const std::uint32_t code = table.loadCode(scalar);
    return code == 0 && table.hasCounted() ? CodeTable::countedCode(scalar) : code;
  }

  // One character, or sequence. False when what follows decides.
  bool writeOne() {
    const Character character = characterAt(p);
    if (character.length == 0) return false;
    if (!character.isScalar) return refuse(character.length, table.codeOf('?'));
    bool isCut = false;
    unsigned int length = 0;
    const CodeTable::Sequence* const sequence = sequenceAt(table, length, isCut);
    if (isCut && !last) return false;
    if (sequence == nullptr) return writeCode(character, table.codeOf(character.scalar));
    p += length;
    putCode(sequence->code);
    return true;
  }

  bool writeCode(const Character& character, std::uint32_t code) {
    bool isHeld = table.holds(character.scalar);
    if (!isHeld && character.scalar > 0xFFFF) {
      code = codeOfPair(character.scalar);
      isHeld = code != 0;
    }
    if (!isHeld && longForms != nullptr) {
      const unsigned int length = longForms->write(character.scalar, dest);
      dest += length;
      p += length != 0 ? character.length : 0;
      if (length != 0) return true;
    }
    if (!isHeld || code > lastWritten) return refuse(character.length, table.codeOf('?'));
    p += character.length;
    putCode(code);
    return true;
  }
};

template <typename Direction>
unsigned int run(const RuledMapping& by, const unsigned char* data, unsigned int length, bool last,
                 CodecState& state, DataBuffer& out, ReplacementSink* sink) {
  if (const CodeTable* const table = CodeTable::open(by.mapping)) {
    const std::uint32_t lastWritten = 0xFFFFFFFFu >> 8 * (CodeTable::kMaxBytes - by.longestWritten);
    const Rules rules = {*table, by.pieceRule, lastWritten, by.longForms};
    return runCodec<Direction>(&rules, data, length, last, state, out, sink);
  }
  out.latchFailure();
  return length;
}

RuledMapping unruled(const void* parameters) {
  return {*static_cast<const Mapping*>(parameters), nullptr};
}

}  // namespace

unsigned int eucJpPiece(const unsigned char* bytes, std::size_t known, bool last) {
  constexpr unsigned char kShift2 = 0x8E, kShift3 = 0x8F;
  const auto isCell = [](unsigned char byte) { return byte >= 0xA1 && byte <= 0xFE; };
  if (!isCell(bytes[0]) && bytes[0] != kShift2 && bytes[0] != kShift3) return 1;
  const std::size_t length = bytes[0] == kShift3 ? 3 : 2;
  const std::size_t seen = std::min(known, length);
  if (!std::all_of(bytes + 1, bytes + seen, isCell)) return 1;
  if (seen < length) return last ? 1 : 0;
  return static_cast<unsigned int>(length);
}

unsigned int readMultiByte(const void* parameters, const unsigned char* data, unsigned int length,
                           bool last, CodecState& state, DataBuffer& out, ReplacementSink* sink) {
  return run<Reader>(unruled(parameters), data, length, last, state, out, sink);
}

unsigned int writeMultiByte(const void* parameters, const unsigned char* data, unsigned int length,
                            bool last, CodecState& state, DataBuffer& out, ReplacementSink* sink) {
  return run<Writer>(unruled(parameters), data, length, last, state, out, sink);
}

unsigned int readRuled(const void* parameters, const unsigned char* data, unsigned int length,
                       bool last, CodecState& state, DataBuffer& out, ReplacementSink* sink) {
  const auto& by = *static_cast<const RuledMapping*>(parameters);
  return run<Reader>(by, data, length, last, state, out, sink);
}

unsigned int writeRuled(const void* parameters, const unsigned char* data, unsigned int length,
                        bool last, CodecState& state, DataBuffer& out, ReplacementSink* sink) {
  const auto& by = *static_cast<const RuledMapping*>(parameters);
  return run<Writer>(by, data, length, last, state, out, sink);
}

std::uint32_t approximateMultiByte(const void* parameters, std::uint32_t scalar) {
  const CodeTable* const table = CodeTable::open(*static_cast<const Mapping*>(parameters));
  return table == nullptr ? 0 : table->approximationOf(scalar);
}

std::uint32_t approximateRuled(const void* parameters, std::uint32_t scalar) {
  return approximateMultiByte(&static_cast<const RuledMapping*>(parameters)->mapping, scalar);
}

void visitMultiByte(const void* parameters, MappingVisitor& visitor) {
  visitor.visit(*static_cast<const Mapping*>(parameters));
}

void visitRuled(const void* parameters, MappingVisitor& visitor) {
  visitor.visit(static_cast<const RuledMapping*>(parameters)->mapping);
}
