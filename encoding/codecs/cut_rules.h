// Where the text of an encoding can be cut: in front of which bytes another piece can begin that
// is read on its own, from the initial state, without anything of what stands before it.
//
// A rule looks at a window of a text that it knows nothing else of, and gives the first place that
// is one for certain, if the text is clean. What rules cannot see is left to who asks: characters
// that belong together, such as a letter and its mark, although each has bytes of its own.
#ifndef ENCODING_CODECS_CUT_RULES_H_
#define ENCODING_CODECS_CUT_RULES_H_

#include <array>
#include <cstddef>
#include <cstdint>

class CodeTable;

// A part of a text, in which a cut is looked for from an offset on.
class CutWindow {
 public:
  // Says no where a place that the rule allows is none for another reason.
  class Filter {
   public:
    virtual ~Filter() = default;
    virtual bool allows(const CutWindow& window, std::size_t place) = 0;
  };

  const unsigned char* data = nullptr;  // not owned
  std::size_t size = 0;
  std::size_t offset = 0;      // cuts before it are not wanted
  std::uint64_t position = 0;  // of the first byte in the text
  bool isAtCut = false;        // a piece can begin at the first byte
  Filter* filter = nullptr;    // may be null

  // Whether a place, which the rule of the encoding allows, is what is looked for.
  bool takes(std::size_t place) const {
    return place >= offset && (filter == nullptr || filter->allows(*this, place));
  }
  static constexpr std::size_t kNone = SIZE_MAX;
};

// The first cut in a window, less than its size; kNone when there is none in sight. The parameters
// are those by which the codec reads.
using CutRule = std::size_t (*)(const void* parameters, const CutWindow& window);

// ---- Encodings without a state. ----

// At which places in codes of one to four bytes a byte may stand.
class CutBytes {
 public:
  // All places of a code of count bytes (1 to 4) of which the byte may be the one at index.
  static constexpr std::uint16_t place(unsigned int count, unsigned int index) {
    return static_cast<std::uint16_t>(1u << (count * (count - 1) / 2 + index));
  }
  void add(unsigned int byte, unsigned int count, unsigned int index) {
    m_places[byte] |= place(count, index);
  }
  void addRange(unsigned int first, unsigned int last, unsigned int count, unsigned int index) {
    for (unsigned int byte = first; byte <= last; ++byte) add(byte, count, index);
  }
  // Those of a mapping.
  void add(const CodeTable& table);

  // Follows all codes that the bytes of the window may be part of, and so sees where only one way
  // to read them is left, and a code begins.
  std::size_t find(const CutWindow& window) const;

 private:
  static constexpr std::uint16_t kFirst = 0b0001001011, kLast = 0b1000100101, kAll = 0b1111111111;
  std::array<std::uint16_t, 256> m_places{};
};

// Everywhere; everywhere at a multiple of unitSize bytes of the text.
std::size_t cutAnywhere(const CutWindow& window);
std::size_t cutAligned(const CutWindow& window, unsigned int unitSize);
template <unsigned int unitSize>
std::size_t cutUnits(const void*, const CutWindow& window) {
  return cutAligned(window, unitSize);
}

// UTF-8 and its variants. Halves of a pair in the form of three bytes each belong together.
std::size_t cutUtf8(const void*, const CutWindow& window);
// The parameters are a Mapping, a RuledMapping, an AccentScheme, ShiftedSets without singles.
std::size_t cutMultiByte(const void* parameters, const CutWindow& window);
std::size_t cutRuled(const void* parameters, const CutWindow& window);
std::size_t cutAccents(const void* parameters, const CutWindow& window);
// In front of ASCII.
std::size_t cutTscii(const void*, const CutWindow& window);
// GSM 03.38, one septet a byte and packed.
std::size_t cutGsm(const void*, const CutWindow& window);
std::size_t cutPackedGsm(const void*, const CutWindow& window);

// ---- Encodings with a state: where it is the initial one. ----

// The parameters are ShiftedSets, an Iso2022.
std::size_t cutShifted(const void* parameters, const CutWindow& window);
std::size_t cutIso2022(const void* parameters, const CutWindow& window);
std::size_t cutIso2022Jp(const void*, const CutWindow& window);
std::size_t cutIso2022Kr(const void*, const CutWindow& window);
std::size_t cutWebIso2022Jp(const void*, const CutWindow& window);
std::size_t cutHz(const void*, const CutWindow& window);
std::size_t cutMarc8(const void*, const CutWindow& window);
std::size_t cutUtf7(const void*, const CutWindow& window);
std::size_t cutImapUtf7(const void*, const CutWindow& window);
std::size_t cutBocu1(const void*, const CutWindow& window);
// Behind line ends.
std::size_t cutIscii(const void*, const CutWindow& window);

#endif  // ENCODING_CODECS_CUT_RULES_H_
