// CodeTable: a mapping, unpacked for looking up in both directions.
#ifndef ENCODING_CODECS_CODE_TABLE_H_
#define ENCODING_CODECS_CODE_TABLE_H_

#include <atomic>
#include <cstddef>
#include <cstdint>

#include "support/rows.h"

namespace fast {
struct SingleByteDecoder;
struct SingleByteEncoder;
struct DoubleByteDecoder;
struct DoubleByteEncoder;
}  // namespace fast

class StringBuffer;
struct EncodingRow;
struct MappingFile;

// A mapping file as the build packed it (tools/pack_mappings.cpp).
//
// The image consists of sections and a byte FF. A section begins with a byte: the kind of its
// entries in bits 0 and 1 (both ways, only read, only written, removed), the bytes of a code in
// bits 2 to 4, the values of a code in bits 5 to 7. Numbers follow, seven bits a byte, low ones
// first, the high bit set in all but the last byte: how many runs there are; for each run the
// distance of its first code from the last one of the run before, and how many codes it has, each
// one higher than the one before; for each value its distance from the value before plus 1, folded
// so that small ones of either sign are small.
struct Mapping {
  const char* image;    // null where the image is in a file of its own
  std::uint16_t index;  // among all mappings
  const Mapping* base;  // what this one changes, or null
  int basePage;         // the code page that it changes, or 0
  bool hasGb18030Rest;  // scalar values without a code have one of four bytes, by counting
  void (*baseText)(StringBuffer& out);  // appends the table text that it changes, or null
  const MappingFile* file = nullptr;    // has the image; see mapping_files.h
};

// Built complete, then read by any number of threads.
class CodeTable {
 public:
  CodeTable() = default;
  CodeTable(const CodeTable&) = delete;
  CodeTable& operator=(const CodeTable&) = delete;
  ~CodeTable();

  // What the bytes of a code so far stand for: nothing, a value, several values, or the number of
  // the node that says what the next byte makes of it.
  using Entry = std::uint32_t;
  static constexpr Entry kNothing = 0;
  static constexpr Entry kKind = 0xC0000000u;
  static constexpr Entry kScalar = 0x40000000u;
  static constexpr Entry kSequence = 0x80000000u;  // an index of sequences()
  static constexpr Entry kNode = 0xC0000000u;
  // A node's entry where four bytes count up: the two that follow make the value.
  static constexpr Entry kCounted = 0x80000000u | 0x3FFFFFFFu;

  static constexpr std::size_t kMaxScalars = 4;
  struct Sequence {
    char32_t scalars[kMaxScalars];  // filled up with 0
    std::uint32_t code;

    std::size_t length() const { return scalars[3] != 0 ? 4 : scalars[2] != 0 ? 3 : 2; }
  };
  struct OneWay {
    char32_t scalar;
    std::uint32_t code;
  };
  // Of the bytes at one place in codes of one length.
  struct ByteRange {
    std::uint8_t first = 0xFF, last = 0;
    bool contains(unsigned int byte) const { return byte >= first && byte <= last; }
  };
  static constexpr unsigned int kMaxBytes = 4;
  static constexpr unsigned int kMaxMappings = 1024;

  // Null when memory is short, when the image does not make a table, or is in a file that was not
  // provided (mapping_files.h). Built on first use and kept
  // until releaseCodeTables(). Any thread may call.
  static const CodeTable* open(const Mapping& mapping) {
    const CodeTable* const table = s_tables[mapping.index].load(std::memory_order_acquire);
    return table != nullptr ? table : make(mapping);
  }

  // The 256 entries of a node; the first one is for the first byte of a code.
  const Entry* node(Entry index) const { return m_nodes.data() + (index & ~kKind) * 256; }
  const Entry* root() const { return m_nodes.data(); }
  // The entry of a whole code.
  Entry find(std::uint32_t code) const;

  // What flat tables can say (mapped_tables.h) of the codes of one and two bytes, but for what is
  // only written. Made on first use; null when memory is short. Any thread may call.
  const fast::SingleByteDecoder* singleDecoder() const { return flatTable(m_singleDecoder); }
  const fast::SingleByteEncoder* singleEncoder() const { return flatTable(m_singleEncoder); }
  const fast::DoubleByteDecoder* pairDecoder() const { return flatTable(m_pairDecoder); }
  const fast::DoubleByteEncoder* pairEncoder() const { return flatTable(m_pairEncoder); }

  // The code of a scalar value, its bytes from the highest that is not 0 on; 0 for none, and for
  // what byte 00 stands for.
  std::uint32_t codeOf(char32_t scalar) const { return codes().of(scalar); }
  // The same, with marks where the table has sequences with codes of their own: kBegins for values
  // that begin one, kFollows for values whose first unit is the second in one.
  static constexpr std::uint32_t kBegins = 0x80000000u;
  static constexpr std::uint32_t kFollows = 0x40000000u;
  static constexpr std::uint32_t kMarks = kBegins | kFollows;
  std::uint32_t loadCode(char32_t scalar) const { return codes().load(scalar); }
  // Both, for a loop that writes bytes: these might be the table's, for all that a compiler knows,
  // which would read the table's own members again for each.
  struct Codes {
    const std::uint16_t* rowOf;
    const std::uint32_t* rows;
    std::uint32_t bits;
    std::uint32_t load(char32_t scalar) const {
      return rows[rowOf[scalar >> 8] * 256u + (scalar & 0xFF)];
    }
    // Of a unit, little endian.
    std::uint32_t loadAt(const unsigned char* unit) const {
      return rows[rowOf[unit[1]] * 256u + unit[0]];
    }
    std::uint32_t of(char32_t scalar) const { return load(scalar) & bits; }
  };
  Codes codes() const { return {m_rowOf, m_codes.data(), m_codeBits}; }
  // Whether a value has a code.
  bool holds(char32_t scalar) const { return codeOf(scalar) != 0 || scalar == m_zero; }
  // Whether some of the 256 values from block * 256 on may have a code.
  bool hasBlock(std::uint32_t block) const { return m_rowOf[block] != 0; }
  // The value that is written for one without a code; 0 for none.
  char32_t approximationOf(char32_t scalar) const;
  const Rows<OneWay>& approximations() const { return m_approximations; }

  // Codes that stand for several values. There are few. Tables that have some have no codes of four
  // bytes.
  const Rows<Sequence>& sequences() const { return m_sequences; }
  // The longest sequence that these values begin with, which is written; null for none. The first
  // one must have the mark kBegins. isCut says whether there may be a longer one when more values
  // follow.
  const Sequence* findSequence(const char32_t* scalars, std::size_t count, bool& isCut) const;
  // The code of the first two of three values, the first of which has the mark kBegins; 0 for none,
  // and where a longer sequence begins with all three.
  std::uint32_t codeOfPair(char32_t first, char32_t second, char32_t third) const {
    for (std::uint32_t slot = slotOf(first, second);; ++slot) {
      const std::uint32_t place = m_sequenceSlots[slot & m_lastSlot];
      if (place == 0) return 0;
      const Sequence& sequence = m_sequences[place - 1];
      if (sequence.scalars[0] != first || sequence.scalars[1] != second) continue;
      if (sequence.scalars[2] == 0) return sequence.code;
      if (sequence.scalars[2] == third) return 0;
    }
  }

  // The value of a code of four bytes that is found by counting; 0 for none.
  char32_t countedScalar(const unsigned char* code) const {
    const std::uint32_t third = code[2] - 0x81u, fourth = code[3] - 0x30u;
    if (third > 0x7D || fourth > 9) return 0;
    const std::uint32_t count =
        (((code[0] - 0x81u) * 10 + code[1] - 0x30u) * 126 + third) * 10 + fourth;
    if (count < m_counted.size()) return m_counted[count];
    const char32_t scalar = 0x10000 + count - kSupplementaryCount;
    return scalar >= 0x10000 && scalar <= 0x10FFFF ? scalar : char32_t{0};
  }
  // The same for those beyond U+FFFF, as the distance from U+10000, which is above FFFFF for none.
  static constexpr std::uint32_t supplementaryOffset(const unsigned char* code) {
    const std::uint32_t second = code[1] - 0x30u, third = code[2] - 0x81u, fourth = code[3] - 0x30u;
    const std::uint32_t offset = (((code[0] - 0x90u) * 10 + second) * 126 + third) * 10 + fourth;
    return second > 9 || third > 0x7D || fourth > 9 ? 0xFFFFFFFFu : offset;
  }
  // And the code of a value beyond U+FFFF.
  static constexpr std::uint32_t countedCode(char32_t scalar) {
    return codeAtCount(kSupplementaryCount + scalar - 0x10000);
  }
  bool hasCounted() const { return m_hasCounted; }

  bool isAscii() const { return m_isAscii; }
  // Whether 20 to 7E are those of ASCII, in both directions.
  bool isAsciiText() const { return m_isAsciiText; }
  // How many bytes the malformed piece has that begins with these, of which `known` can be seen:
  // all bytes of a form that some code has, as far as no byte below 80 is lost, or one.
  unsigned int malformedLength(const unsigned char* bytes, std::size_t known) const;
  // Whether it might be longer if more could be seen.
  bool mayBeLonger(const unsigned char* bytes, std::size_t known) const;

 private:
  friend void releaseCodeTables();
  static const CodeTable* make(const Mapping& mapping);
  // Of codes of four bytes that count up the second and the fourth byte are digits.
  static constexpr std::uint32_t kSupplementaryCount = (0x90 - 0x81) * 12600;
  static constexpr std::uint32_t codeAtCount(std::uint32_t count) {
    const std::uint32_t first = count / 12600, behindFirst = count - first * 12600;
    const std::uint32_t second = behindFirst / 1260, behindSecond = behindFirst - second * 1260;
    const std::uint32_t third = behindSecond / 10, fourth = behindSecond - third * 10;
    return 0x81308130 + (first << 24 | second << 16 | third << 8 | fourth);
  }

  bool isForm(const unsigned char* bytes, std::size_t count, unsigned int length) const;
  bool build(const Mapping& mapping);
  bool applyPage(int number);
  bool applyPieces(void (*appendText)(StringBuffer& out));
  bool applyText(const char* tableText, bool isOnlyRead);
  void setOneWaysApart();
  bool apply(const char* image);
  void keepOneWays(std::uint32_t former, Rows<std::uint32_t>& stated);
  void applyEntry(unsigned int kind, unsigned int length, std::uint32_t code,
                  const char32_t* scalars, std::size_t count);
  void forget(unsigned int length, std::uint32_t code);
  void setEntry(unsigned int length, std::uint32_t code, Entry entry);
  void setCode(char32_t scalar, std::uint32_t code);
  Entry& place(unsigned int length, std::uint32_t code);
  void countRest();
  void derive();
  static std::uint32_t slotOf(char32_t first, char32_t second) {
    return static_cast<std::uint32_t>(first * 37 + second);
  }
  void indexSequences();
  void noteSequence(const Sequence& sequence, std::uint32_t place);
  void noteForms(Entry node, unsigned int depth, std::uint8_t (&bytes)[kMaxBytes]);
  bool hasFailed() const;
  template <class Table>
  const Table* flatTable(std::atomic<const Table*>& slot) const {
    const Table* const table = slot.load(std::memory_order_acquire);
    return table != nullptr ? table : makeFlat(slot);
  }
  template <class Table>
  const Table* makeFlat(std::atomic<const Table*>& slot) const;

  static std::atomic<const CodeTable*> s_tables[kMaxMappings];

  Rows<Entry> m_nodes;
  std::uint16_t m_rowOf[0x1100] = {};
  Rows<std::uint32_t> m_codes;  // rows of 256; the first one is empty
  Rows<Sequence> m_sequences;
  // Places of sequences that are written, plus 1, by what their first two values hash to: each in
  // the first free slot from there on, long ones before short ones. 0 in free slots, which are half
  // of them at least.
  Rows<std::uint32_t> m_sequenceSlots;
  std::uint32_t m_lastSlot = 0;
  Rows<OneWay> m_approximations;            // in ascending order of scalar
  Rows<std::uint16_t> m_counted;            // values of the counted codes up to U+FFFF
  ByteRange m_forms[kMaxBytes][kMaxBytes];  // by length - 1 and place
  std::uint32_t m_codeBits = 0xFFFFFFFFu;   // of m_codes
  char32_t m_zero = 0xFFFFFFFFu;            // what byte 00 stands for, and is written for
  bool m_hasCounted = false;
  bool m_isAscii = false;
  bool m_isAsciiText = false;
  mutable std::atomic<const fast::SingleByteDecoder*> m_singleDecoder{nullptr};
  mutable std::atomic<const fast::SingleByteEncoder*> m_singleEncoder{nullptr};
  mutable std::atomic<const fast::DoubleByteDecoder*> m_pairDecoder{nullptr};
  mutable std::atomic<const fast::DoubleByteEncoder*> m_pairEncoder{nullptr};
};

// Destroys all tables. Must not overlap any conversion.
void releaseCodeTables();

#endif  // ENCODING_CODECS_CODE_TABLE_H_
