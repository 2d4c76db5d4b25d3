#include "encoding/codecs/multi_byte.h"

#include "encoding/codecs/mapped_tables.h"
#include "encoding/codecs/unit_text.h"
#include "encoding/kernels/cpu_dispatch.h"

namespace {

using Entry = CodeTable::Entry;

// What drives both directions.
struct Rules {
  const CodeTable& table;
  PieceRule pieceRule;        // null: as the table says
  std::uint32_t lastWritten;  // the highest code
};

struct Reader : UnitReader {
  using UnitReader::UnitReader;
  const CodeTable& table = static_cast<const Rules*>(parameters)->table;
  const PieceRule pieceRule = static_cast<const Rules*>(parameters)->pieceRule;
  const fast::DoubleByteDecoder* const pairs = table.isAscii() ? table.pairDecoder() : nullptr;

  bool step() {
    const unsigned char* const stop = readable();
    while (p < stop) {
      if (pairs != nullptr) {
        const auto done = fast::kernels().doubleByteToUtf16(*pairs, p, end, dest, destEnd);
        p = done.in;
        dest = done.out;
      }
      if (table.isAscii()) copyAscii(stop);
      copyCodes(stop);
      if (p < stop && (*p >= 0x80 || !table.isAscii())) return readOne();
    }
    return true;
  }
  void finish() {}

  // Codes of one or two bytes that are one unit.
  void copyCodes(const unsigned char* stop) {
    const Entry* const root = table.root();
    const bool isAscii = table.isAscii();
    const unsigned char* in = p;
    unsigned char* to = dest;
    for (; in < stop && end - in > 1; to += 2) {
      if (isAscii && *in < 0x80) break;
      Entry entry = root[in[0]];
      const bool isPair = (entry & CodeTable::kKind) == CodeTable::kNode;
      if (isPair) entry = table.node(entry)[in[1]];
      if (entry - CodeTable::kScalar > 0xFFFF) break;
      storeLow(to, static_cast<std::uint16_t>(entry));
      in += isPair ? 2 : 1;
    }
    p = in;
    dest = to;
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
      if ((entry & CodeTable::kKind) == CodeTable::kNode) continue;
      putEntry(table, entry);
      p += i + 1;
      return true;
    }
    return refusePiece(known, false);
  }

  // isCut: what can be seen may begin a code. False when what follows decides.
  bool refusePiece(std::size_t known, bool isCut) {
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
  // To kernels U+0000 is byte 00.
  const fast::DoubleByteEncoder* const pairs =
      table.root()[0] == CodeTable::kScalar ? table.pairEncoder() : nullptr;

  bool step() {
    const unsigned char* const stop = writable();
    while (p < stop) {
      if (pairs != nullptr) {
        const auto done = fast::kernels().utf16ToDoubleByte(*pairs, p, end, dest, destEnd);
        p = done.in;
        dest = done.out;
      }
      if (table.isAscii()) copyAscii(stop);
      copyCodes(stop);
      const bool isAscii = left() >= 2 && p[1] == 0 && p[0] < 0x80 && table.isAscii();
      if (p < stop && !isAscii) return writeOne();
    }
    return true;
  }
  void finish() {}

  // Units that have a code of one or two bytes and stand in no sequence.
  void copyCodes(const unsigned char* stop) {
    const bool isAscii = table.isAscii();
    const unsigned char* in = p;
    unsigned char* to = dest;
    for (; stop - in >= 2; in += 2) {
      const std::uint32_t unit = loadLow<std::uint16_t>(in);
      if (isAscii && unit < 0x80) break;
      const std::uint32_t code = codeAt(table, in, stop);
      if (code - 1 >= 0xFFFF) break;
      const unsigned int isPair = code > 0xFF ? 1 : 0;
      to[0] = static_cast<unsigned char>(code >> 8 * isPair);
      to[1] = static_cast<unsigned char>(code);
      to += 1 + isPair;
    }
    p = in;
    dest = to;
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
    if (!isHeld && character.scalar > 0xFFFF && table.hasCounted()) {
      code = CodeTable::countedCode(character.scalar);
      isHeld = true;
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
    const Rules rules = {*table, by.pieceRule, lastWritten};
    return runCodec<Direction>(&rules, data, length, last, state, out, sink);
  }
  out.latchFailure();
  return length;
}

RuledMapping unruled(const void* parameters) {
  return {*static_cast<const Mapping*>(parameters), nullptr};
}

}  // namespace

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
