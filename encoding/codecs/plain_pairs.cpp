#include "encoding/codecs/plain_pairs.h"

#include "encoding/codecs/unit_text.h"

namespace {

using Entry = CodeTable::Entry;

// What drives both directions.
struct OpenPairs {
  const CodeTable& table;
  const PlainPairs& set;
};

struct Reader : UnitReader {
  using UnitReader::UnitReader;
  const OpenPairs& pairs = *static_cast<const OpenPairs*>(parameters);
  const unsigned char high = static_cast<unsigned char>(pairs.set.bits);

  bool step() {
    const unsigned char* const stop = readable();
    while (p < stop) {
      if (left() < 2) return last && refuse(1);
      const Entry entry = entryAt(p);
      // A pair of the set that is not assigned is one piece; else the second byte may begin
      // another.
      if (entry == CodeTable::kNothing) return refuse(isOfSet(p[0]) && isOfSet(p[1]) ? 2 : 1);
      putEntry(pairs.table, entry);
      p += 2;
    }
    return true;
  }
  void finish() {}

  bool isOfSet(unsigned char byte) const { return unsigned{byte} - pairs.set.first < 94; }
  Entry entryAt(const unsigned char* at) const {
    if (!isOfSet(at[0]) || !isOfSet(at[1])) return CodeTable::kNothing;
    const Entry row = pairs.table.root()[at[0] | high];
    if ((row & CodeTable::kKind) != CodeTable::kNode) return CodeTable::kNothing;
    const Entry entry = pairs.table.node(row)[at[1] | high];
    return (entry & CodeTable::kKind) == CodeTable::kNode ? CodeTable::kNothing : entry;
  }
};

struct Writer : UnitWriter {
  using UnitWriter::UnitWriter;
  const OpenPairs& pairs = *static_cast<const OpenPairs*>(parameters);

  bool step() {
    const unsigned char* const stop = writable();
    while (p < stop) {
      const Character character = characterAt(p);
      if (character.length == 0) return false;
      const std::uint32_t code = character.isScalar ? pairs.table.codeOf(character.scalar) : 0;
      if (code <= 0xFF || code > 0xFFFF) return refuse(character.length, 0x2121);
      putCode(code & ~pairs.set.bits);
      p += character.length;
    }
    return true;
  }
  void finish() {}
};

template <typename Direction>
unsigned int run(const void* parameters, const unsigned char* data, unsigned int length, bool last,
                 CodecState& state, DataBuffer& out, ReplacementSink* sink) {
  const auto& pairs = *static_cast<const PlainPairs*>(parameters);
  if (const CodeTable* const table = CodeTable::open(pairs.mapping)) {
    const OpenPairs opened = {*table, pairs};
    return runCodec<Direction>(&opened, data, length, last, state, out, sink);
  }
  out.latchFailure();
  return length;
}

}  // namespace

unsigned int readPlainPairs(const void* parameters, const unsigned char* data, unsigned int length,
                            bool last, CodecState& state, DataBuffer& out, ReplacementSink* sink) {
  return run<Reader>(parameters, data, length, last, state, out, sink);
}

unsigned int writePlainPairs(const void* parameters, const unsigned char* data, unsigned int length,
                             bool last, CodecState& state, DataBuffer& out, ReplacementSink* sink) {
  return run<Writer>(parameters, data, length, last, state, out, sink);
}

void visitPlainPairs(const void* parameters, MappingVisitor& visitor) {
  visitor.visit(static_cast<const PlainPairs*>(parameters)->mapping);
}
