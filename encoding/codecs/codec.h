// Codec: an encoding that is read and written by computing, mostly with a state, and not by table.
#ifndef ENCODING_CODECS_CODEC_H_
#define ENCODING_CODECS_CODEC_H_

#include <array>
#include <cstdint>

#include "encoding/codecs/cut_rules.h"
#include "encoding/codecs/mapping_visitor.h"
#include "support/data_buffer.h"
#include "support/replacement_sink.h"

// What a text in pieces carries from one piece to the next; the initial value begins a text. One
// state serves one direction. It may be copied, to go on from the same place twice.
struct CodecState {
  std::uint8_t set = 0;        // the codec's own number of the character set or mode in use
  bool shiftedOut = false;     // ISO-2022: SO is in force
  bool headerWritten = false;  // writing ISO-2022-KR: the designation is out
  bool replaced = false;       // something had no form in the output; only ever set
  std::uint8_t bitCount = 0;   // base64: how many bits are pending
  std::uint32_t bits = 0;      // and which; or what else the codec says
  std::array<std::uint32_t, 8> windows{};  // SCSU: where they begin
  bool operator==(const CodecState&) const = default;
};

// Whether nothing of a state differs from the initial one but `replaced`, and members that are as
// these.
constexpr bool hasOnly(CodecState state, const CodecState& members) {
  state.replaced = members.replaced;
  return state == members;
}

// One encoding in both directions. Both functions append the form of a piece of text, as far as it
// can be told without what follows, and return how many bytes of the piece that was; the caller
// puts the rest, fewer than kMaxRest bytes, in front of the next piece. With last set nothing is
// left, the text is ended (in ASCII) and the state is initial again, but for `replaced` and what a
// reader of the output still knows (a set that stays designated). Output, state and reports do not
// depend on how the text is cut.
//
// What has no form becomes a mark in the output, is reported to sink, unless that is null, and sets
// state.replaced. A mark is two bytes: the geta mark of the double-byte encodings, U+FFFD in
// UTF-16; but one byte, "?", in GSM 03.38, and three in UTF-8. When memory is short the failure is
// latched in out and the whole piece counts as used. No codec keeps anything between calls but the
// state: any thread may call.
struct Codec {
  static constexpr unsigned int kMaxRest = 17;

  // One direction: an algorithm, and what drives it, which is constant and of a type that the
  // algorithm knows (the mapping tables of this encoding, its escape sequences), or null.
  class Convert {
   public:
    using Function = unsigned int (*)(const void* parameters, const unsigned char* data,
                                      unsigned int length, bool last, CodecState& state,
                                      DataBuffer& out, ReplacementSink* sink);
    constexpr Convert() = default;
    constexpr Convert(Function function, const void* parameters = nullptr)
        : m_function(function), m_parameters(parameters) {}

    unsigned int operator()(const unsigned char* data, unsigned int length, bool last,
                            CodecState& state, DataBuffer& out, ReplacementSink* sink) const {
      return m_function(m_parameters, data, length, last, state, out, sink);
    }
    constexpr const void* parameters() const { return m_parameters; }
    constexpr explicit operator bool() const { return m_function != nullptr; }
    bool operator==(const Convert&) const = default;

   private:
    Function m_function = nullptr;
    const void* m_parameters = nullptr;
  };

  // Of the text on the other side: 932, 949, 936, 1200 (UTF-16 little endian, on every host, whose
  // surrogates need not be pairs) or 65001.
  int codePage = 0;
  Convert read = {};   // from the encoding
  Convert write = {};  // into the encoding
  // Writing: makes the state behind an ended text fit to go on behind it, in the same output. left
  // is the state before its last piece, wrote says whether that had any content. May be null.
  void (*resume)(const CodecState& left, bool wrote, CodecState& state) = nullptr;
  // Every piece of a text means the same wherever it stands.
  bool isStateless = false;
  // Reading by streams, where these take for malformed what read() copies; none: as read().
  Convert readStrictly = {};
  // Writing: the character that streams write for one without a form, and tell of; it has a form.
  // 0 for none. Parameters are those of write. May be null.
  std::uint32_t (*approximate)(const void* parameters, std::uint32_t scalar) = nullptr;
  // Reading: the most units of UTF-16 that a text has for each byte.
  std::uint8_t unitsPerByte = 1;
  // Reading: surrogates come in pairs only, and both halves at once.
  bool readsPairs = false;
  // Reading: where a text can be cut; by the parameters of read. Null: nowhere, since nothing in a
  // text shows what has come before.
  CutRule cut = nullptr;
  // Tells all mappings that read and write look up; parameters are those of read. Null for none.
  void (*mappings)(const void* parameters, MappingVisitor& visitor) = nullptr;
  // Whether reading a text, or writing one, can leave this state, which is not the initial one; to
  // be asked of states that come from outside, since read and write take any for their own.
  // Parameters are those of read. Null: there is no other state.
  bool (*isState)(const void* parameters, const CodecState& state, bool isWriting) = nullptr;
};

// Whether a state is one of the codec, in one of the directions.
inline bool isStateOf(const Codec& codec, const CodecState& state, bool isWriting) {
  return hasOnly(state, {}) ||
         (codec.isState != nullptr && codec.isState(codec.read.parameters(), state, isWriting));
}

// The codec, of which texts can be cut by a rule.
constexpr Codec cutBy(CutRule rule, Codec codec) {
  codec.cut = rule;
  return codec;
}

// Converts a whole text. False when something had no form or memory is short; a length of 0 or less
// is no text.
inline bool convertWhole(Codec::Convert convert, const unsigned char* data, std::int64_t length,
                         DataBuffer& out) {
  if (length <= 0) return true;
  CodecState state;
  convert(data, static_cast<unsigned int>(length), true, state, out, nullptr);
  return !state.replaced && !out.hasFailed();
}

// Whether a text can be written whole. scratch is overwritten; false, latched there, when memory is
// short.
inline bool codecHolds(const Codec& codec, const unsigned char* data, std::uint32_t length,
                       DataBuffer& scratch) {
  scratch.clear();
  return convertWhole(codec.write, data, length, scratch);
}

#endif  // ENCODING_CODECS_CODEC_H_
