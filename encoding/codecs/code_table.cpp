#include "encoding/codecs/code_table.h"

#include <algorithm>
#include <array>
#include <bit>
#include <iterator>

#include "encoding/codecs/encoding_row.h"
#include "encoding/codecs/mapped_tables.h"
#include "encoding/codecs/mapping_files.h"
#include "encoding/tables/texts/table_image.h"
#include "support/publish.h"
#include "support/utf.h"

namespace {

constexpr unsigned char kImageEnd = 0xFF;
enum Kind : unsigned int { kBoth, kRead, kWrite, kRemove };

// What new nodes, and new rows of codes, are filled with.
constexpr std::array<std::uint32_t, 256> kEmptyRow{};

// What the packed numbers of an image say.
class ImageReader {
 public:
  explicit ImageReader(const char* image) : m_p(reinterpret_cast<const unsigned char*>(image)) {}

  unsigned char byte() { return *m_p++; }
  std::uint32_t number() {
    std::uint32_t number = 0;
    for (unsigned int shift = 0;; shift += 7) {
      const unsigned char byte = *m_p++;
      number |= (byte & 0x7Fu) << shift;
      if (byte < 0x80) return number;
    }
  }
  std::uint32_t difference() {
    const std::uint32_t folded = number();
    return folded >> 1 ^ (0 - (folded & 1));
  }

 private:
  const unsigned char* m_p;
};

constexpr std::uint32_t kCountedBmp = 39420;  // codes up to 8431A439

bool isBefore(const CodeTable::OneWay& a, const CodeTable::OneWay& b) {
  return a.scalar < b.scalar;
}

unsigned char byteOf(std::uint32_t code, unsigned int length, unsigned int i) {
  return static_cast<unsigned char>(code >> 8 * (length - 1 - i));
}

}  // namespace

// ---- Looking up. ----

CodeTable::Entry CodeTable::find(std::uint32_t code) const {
  const unsigned int length = code > 0xFFFFFF ? 4 : code > 0xFFFF ? 3 : code > 0xFF ? 2 : 1;
  unsigned char bytes[kMaxBytes];
  for (unsigned int i = 0; i < length; ++i) bytes[i] = byteOf(code, length, i);
  Entry entry = kNode;
  for (unsigned int i = 0; i < length; ++i) {
    if ((entry & kKind) != kNode) return kNothing;
    entry = node(entry)[bytes[i]];
    if (entry == kCounted && length == kMaxBytes) {
      const char32_t scalar = countedScalar(bytes);
      return scalar == 0 ? kNothing : kScalar | scalar;
    }
  }
  return (entry & kKind) == kNode ? kNothing : entry;
}

char32_t CodeTable::approximationOf(char32_t scalar) const {
  const OneWay* const end = m_approximations.data() + m_approximations.size();
  const OneWay* const found =
      std::lower_bound(m_approximations.data(), end, scalar,
                       [](const OneWay& row, char32_t wanted) { return row.scalar < wanted; });
  if (found == end || found->scalar != scalar) return 0;
  const Entry entry = find(found->code);
  return (entry & kKind) == kScalar ? static_cast<char32_t>(entry & ~kKind) : char32_t{0};
}

const CodeTable::Sequence* CodeTable::findSequence(const char32_t* scalars, std::size_t count,
                                                   bool& isCut) const {
  isCut = count < 2;
  if (isCut) return nullptr;
  for (std::uint32_t slot = slotOf(scalars[0], scalars[1]);; ++slot) {
    const std::uint32_t place = m_sequenceSlots[slot & m_lastSlot];
    if (place == 0) return nullptr;
    const Sequence& sequence = m_sequences[place - 1];
    const std::size_t length = sequence.length();
    if (!std::equal(scalars, scalars + std::min(count, length), sequence.scalars)) continue;
    if (count >= length) return &sequence;
    isCut = true;
  }
}

// Whether the first bytes, count of them, may be those of a code of a length.
bool CodeTable::isForm(const unsigned char* bytes, std::size_t count, unsigned int length) const {
  const ByteRange* const form = m_forms[length - 1];
  for (std::size_t i = 0; i < count; ++i) {
    if (!form[i].contains(bytes[i])) return false;
  }
  return true;
}

unsigned int CodeTable::malformedLength(const unsigned char* bytes, std::size_t known) const {
  for (unsigned int length = kMaxBytes; length > 1; --length) {
    if (known >= length && bytes[length - 1] >= 0x80 && isForm(bytes, length, length))
      return length;
  }
  return 1;
}

bool CodeTable::mayBeLonger(const unsigned char* bytes, std::size_t known) const {
  for (auto length = static_cast<unsigned int>(known) + 1; length <= kMaxBytes; ++length) {
    if (m_forms[length - 1][length - 1].last >= 0x80 && isForm(bytes, known, length)) return true;
  }
  return false;
}

// ---- Building. ----

constinit std::atomic<const CodeTable*> CodeTable::s_tables[kMaxMappings];

const CodeTable* CodeTable::make(const Mapping& mapping) {
  return publish(s_tables[mapping.index], [&](CodeTable& made) {
    if (!made.build(mapping)) return false;
    made.derive();
    return !made.hasFailed();
  });
}

CodeTable::~CodeTable() {
  release(m_singleDecoder);
  release(m_singleEncoder);
  release(m_pairDecoder);
  release(m_pairEncoder);
}

template <class Table>
const Table* CodeTable::makeFlat(std::atomic<const Table*>& slot) const {
  return publish(slot, [this](Table& table) {
    fast::fillExactly(*this, table);
    return true;
  });
}
template const fast::SingleByteDecoder* CodeTable::makeFlat(
    std::atomic<const fast::SingleByteDecoder*>& slot) const;
template const fast::SingleByteEncoder* CodeTable::makeFlat(
    std::atomic<const fast::SingleByteEncoder*>& slot) const;
template const fast::DoubleByteDecoder* CodeTable::makeFlat(
    std::atomic<const fast::DoubleByteDecoder*>& slot) const;
template const fast::DoubleByteEncoder* CodeTable::makeFlat(
    std::atomic<const fast::DoubleByteEncoder*>& slot) const;

void releaseCodeTables() {
  for (auto& slot : CodeTable::s_tables) release(slot);
}

bool CodeTable::hasFailed() const {
  return m_nodes.hasFailed() || m_codes.hasFailed() || m_sequences.hasFailed() ||
         m_sequenceSlots.hasFailed() || m_approximations.hasFailed() || m_counted.hasFailed();
}

bool CodeTable::build(const Mapping& mapping) {
  if (mapping.base != nullptr) {
    if (!build(*mapping.base)) return false;
  } else {
    m_nodes.add(kEmptyRow.data(), kEmptyRow.size());
    m_codes.add(kEmptyRow.data(), kEmptyRow.size());
    if (hasFailed() || (mapping.basePage != 0 && !applyPage(mapping.basePage))) return false;
    if (mapping.baseText != nullptr && !applyPieces(mapping.baseText)) return false;
  }
  const char* const image = imageOf(mapping);
  if (image == nullptr || !apply(image)) return false;
  m_hasCounted = m_hasCounted || mapping.hasGb18030Rest;
  return !hasFailed();
}

bool CodeTable::applyPage(int number) {
  const EncodingRow* const row = findEncodingRow(number);
  if (row == nullptr || !hasTable(*row)) return false;
  const bool isGood =
      row->appendText != nullptr ? applyPieces(row->appendText) : applyText(row->text, false);
  return isGood && (row->onlyReadText == nullptr || applyText(row->onlyReadText, true));
}

bool CodeTable::applyPieces(void (*appendText)(StringBuffer& out)) {
  StringBuffer text;
  appendText(text);
  return !text.hasFailed() && applyText(text.getString(), false);
}

// The pairs of a table text (docs/code-pages.md).
bool CodeTable::applyText(const char* tableText, bool isOnlyRead) {
  DataBuffer image;
  unpackTableImage(tableText, image);
  if (image.hasFailed() || image.getSize() == 0) return false;
  const unsigned char* p = image.getData2();
  if (p[0] == 'a' && !isOnlyRead) {
    for (char32_t ascii = 0; ascii < 0x80; ++ascii) applyEntry(kBoth, 1, ascii, &ascii, 1);
  }
  const bool isAsciiPage = p[0] == 'a';
  std::uint32_t code = 0, unit = 0;
  const auto add = [&](unsigned int length) {
    const char32_t scalar = unit & 0xFFFF;
    code &= length == 1 ? 0xFF : 0xFFFF;
    Entry& entry = place(length, code);
    // Of several units that have one code the one is read that docs/code-pages.md says.
    const bool isTaken = (entry & kKind) == kScalar;
    const auto former = static_cast<char32_t>(entry & ~kKind);
    const bool isPrivateNow = scalar >= 0xE000 && scalar <= 0xF8FF;
    const bool wasPrivate = former >= 0xE000 && former <= 0xF8FF;
    const bool isBetter =
        length == 1 ? !(isAsciiPage && code < 0x80) : !isTaken || (wasPrivate && !isPrivateNow);
    if (isBetter) setEntry(length, code, kScalar | scalar);
    if (!isOnlyRead) setCode(scalar, code);
  };
  if (!isAsciiPage && !isOnlyRead) setEntry(1, 0, kScalar);
  for (p += 2; p[0] != 0; p += 3) {
    code += p[0];
    unit += loadImageU16(p + 1);
    add(1);
  }
  code = unit = 0;
  for (++p; loadImageU16(p) != 0; p += 4) {
    code += loadImageU16(p);
    unit += loadImageU16(p + 2);
    add(2);
  }
  if (!isOnlyRead) setOneWaysApart();
  return !hasFailed();
}

// In a table text, values that are written as the code of another one look like any others.
void CodeTable::setOneWaysApart() {
  for (std::uint32_t block = 0; block < 0x100; ++block) {
    if (!hasBlock(block)) continue;
    for (char32_t scalar = block * 256; scalar <= block * 256 + 255; ++scalar) {
      const std::uint32_t code = codeOf(scalar);
      if (code == 0 || find(code) == (kScalar | scalar)) continue;
      m_approximations.add({scalar, code});
      setCode(scalar, 0);
    }
  }
}

bool CodeTable::apply(const char* image) {
  ImageReader in(image);
  const std::uint32_t former = m_approximations.size();
  Rows<std::uint32_t> stated;  // codes with a line, which takes the place of all that they were
  for (unsigned char head = in.byte(); head != kImageEnd; head = in.byte()) {
    const unsigned int kind = head & 3, length = head >> 2 & 7, count = head >> 5;
    std::uint32_t code = 0, expected = 0;
    for (std::uint32_t runs = in.number(); runs != 0; --runs) {
      code += in.number();
      for (std::uint32_t left = in.number(); left != 0; --left, ++code) {
        char32_t scalars[kMaxScalars] = {};
        for (unsigned int i = 0; i < count; ++i) {
          scalars[i] = expected + in.difference();
          expected = scalars[i] + 1;
        }
        applyEntry(kind, length, code, scalars, count);
        if (former != 0 && kind != kWrite) stated.add(code);
      }
      --code;
    }
  }
  if (former != 0) keepOneWays(former, stated);
  return !stated.hasFailed() && !hasFailed();
}

// Keeps those of the former one-way entries whose code has no line now, and whose value no code.
void CodeTable::keepOneWays(std::uint32_t former, Rows<std::uint32_t>& stated) {
  std::uint32_t* const codes = stated.isEmpty() ? nullptr : &stated.at(0);
  std::sort(codes, codes + stated.size());
  OneWay* const all = &m_approximations.at(0);
  const std::uint32_t size = m_approximations.size();
  std::sort(all + former, all + size, isBefore);
  std::uint32_t kept = 0;
  for (std::uint32_t i = 0; i < size; ++i) {
    const OneWay& oneWay = all[i];
    const bool isReplaced = std::binary_search(codes, codes + stated.size(), oneWay.code) ||
                            std::binary_search(all + former, all + size, oneWay, isBefore);
    if (i >= former || (!isReplaced && codeOf(oneWay.scalar) == 0)) all[kept++] = oneWay;
  }
  m_approximations.truncate(kept);
}

void CodeTable::applyEntry(unsigned int kind, unsigned int length, std::uint32_t code,
                           const char32_t* scalars, std::size_t count) {
  if (kind == kWrite) {
    setCode(scalars[0], 0);
    m_approximations.add({scalars[0], code});
    return;
  }
  forget(length, code);
  if (kind == kRemove) return;
  if (count > 1) {
    Sequence sequence{{}, kind == kBoth ? code : 0};
    std::copy_n(scalars, count, sequence.scalars);
    setEntry(length, code, kSequence | m_sequences.size());
    m_sequences.add(sequence);
    return;
  }
  setEntry(length, code, kScalar | scalars[0]);
  if (kind == kBoth) setCode(scalars[0], code);
}

// What the code stood for is no longer written as it.
void CodeTable::forget(unsigned int length, std::uint32_t code) {
  Entry& entry = place(length, code);
  if ((entry & kKind) == kScalar) {
    const auto scalar = static_cast<char32_t>(entry & ~kKind);
    if (loadCode(scalar) == code) setCode(scalar, 0);
  }
  if ((entry & kKind) == kSequence) m_sequences.at(entry & ~kKind) = {};
  setEntry(length, code, kNothing);
}

// Where the entry of a code stands; nodes on the way are made. The root when memory is short.
CodeTable::Entry& CodeTable::place(unsigned int length, std::uint32_t code) {
  std::uint32_t at = byteOf(code, length, 0);
  for (unsigned int i = 1; i < length; ++i) {
    Entry entry = m_nodes[at];
    if ((entry & kKind) != kNode) {
      entry = kNode | m_nodes.size() / 256;
      m_nodes.add(kEmptyRow.data(), kEmptyRow.size());
      if (m_nodes.hasFailed()) return m_nodes.at(0);
      m_nodes.at(at) = entry;
    }
    at = (entry & ~kKind) * 256 + byteOf(code, length, i);
  }
  return m_nodes.at(at);
}

void CodeTable::setEntry(unsigned int length, std::uint32_t code, Entry entry) {
  place(length, code) = entry;
}

void CodeTable::setCode(char32_t scalar, std::uint32_t code) {
  std::uint16_t& row = m_rowOf[scalar >> 8];
  if (row == 0) {
    if (code == 0) return;
    const std::uint32_t made = m_codes.size() / 256;
    m_codes.add(kEmptyRow.data(), kEmptyRow.size());
    if (m_codes.hasFailed()) return;
    row = static_cast<std::uint16_t>(made);
  }
  m_codes.at(row * 256u + (scalar & 0xFF)) = code;
}

// Gives every scalar value that has no code the next of the codes of four bytes. Codes that the
// mapping lists are passed over, since they are taken.
void CodeTable::countRest() {
  constexpr char32_t kLastScalar = 0xFFFF;
  char32_t scalar = 0x80;
  for (std::uint32_t count = 0; count < kCountedBmp; ++count) {
    const std::uint32_t code = codeAtCount(count);
    if (const Entry listed = find(code); listed != kNothing) {
      m_counted.add(static_cast<std::uint16_t>(listed & ~kKind));
      continue;
    }
    while (scalar <= kLastScalar && (isSurrogate(scalar) || codeOf(scalar) != 0)) ++scalar;
    if (scalar > kLastScalar) break;
    m_counted.add(static_cast<std::uint16_t>(scalar));
    setCode(scalar++, code);
  }
  if (m_counted.hasFailed()) return;
  for (unsigned int first = 0x81; first <= 0xE3; ++first) {
    if (first > 0x84 && first < 0x90) continue;
    for (unsigned int digit = 0x30; digit <= 0x39; ++digit) {
      place(2, first << 8 | digit) = kCounted;
    }
  }
}

void CodeTable::derive() {
  if (m_hasCounted) countRest();
  if (hasFailed()) return;
  m_isAscii = true;
  for (Entry ascii = 0; ascii < 0x80; ++ascii) {
    m_isAscii = m_isAscii && root()[ascii] == (kScalar | ascii);
  }
  m_isAsciiText = true;
  for (Entry text = 0x20; text < 0x7F; ++text) {
    m_isAsciiText = m_isAsciiText && root()[text] == (kScalar | text) && codeOf(text) == text;
  }
  if (!m_approximations.isEmpty()) {
    OneWay* const oneWays = &m_approximations.at(0);
    std::sort(oneWays, oneWays + m_approximations.size(), isBefore);
  }
  if (const Entry zero = root()[0]; (zero & kKind) == kScalar && codeOf(zero & ~kKind) == 0) {
    m_zero = zero & ~kKind;
  }
  std::uint8_t bytes[kMaxBytes];
  noteForms(kNode, 0, bytes);
  const Sequence* const sequences = m_sequences.data();
  const bool areForgotten = std::all_of(sequences, sequences + m_sequences.size(),
                                        [](const Sequence& s) { return s.scalars[0] == 0; });
  if (areForgotten) m_sequences.truncate(0);
  if (!m_sequences.isEmpty()) indexSequences();
}

void CodeTable::indexSequences() {
  m_lastSlot = std::bit_ceil(2 * m_sequences.size()) - 1;
  for (std::uint32_t slot = 0; slot <= m_lastSlot; ++slot) m_sequenceSlots.add(0);
  if (hasFailed()) return;
  for (std::size_t length = kMaxScalars; length > 1; --length) {
    for (std::uint32_t i = 0; i < m_sequences.size(); ++i) {
      const Sequence& sequence = m_sequences[i];
      if (sequence.code != 0 && sequence.length() == length) noteSequence(sequence, i + 1);
    }
  }
  m_codeBits = ~kMarks;
}

void CodeTable::noteSequence(const Sequence& sequence, std::uint32_t place) {
  const char32_t first = sequence.scalars[0], second = sequence.scalars[1];
  const char32_t unit = second > 0xFFFF ? highSurrogateOf(second) : second;
  setCode(first, loadCode(first) | kBegins);
  setCode(unit, loadCode(unit) | kFollows);
  std::uint32_t slot = slotOf(first, second);
  while (m_sequenceSlots[slot & m_lastSlot] != 0) ++slot;
  m_sequenceSlots.at(slot & m_lastSlot) = place;
}

// Notes the bytes of all codes below a node, at which these bytes lead to it.
void CodeTable::noteForms(Entry index, unsigned int depth, std::uint8_t (&bytes)[kMaxBytes]) {
  for (unsigned int byte = 0; byte < 256; ++byte) {
    const Entry entry = node(index)[byte];
    if (entry == kNothing || entry == kCounted) continue;
    bytes[depth] = static_cast<std::uint8_t>(byte);
    if ((entry & kKind) == kNode) {
      if (depth + 1 < kMaxBytes) noteForms(entry, depth + 1, bytes);
      continue;
    }
    for (unsigned int i = 0; i <= depth; ++i) {
      ByteRange& range = m_forms[depth][i];
      range.first = std::min(range.first, bytes[i]);
      range.last = std::max(range.last, bytes[i]);
    }
  }
}
