// Conversion: one descriptor of iconv.
#ifndef ICONV_CONVERSION_H_
#define ICONV_CONVERSION_H_

#include <cstddef>
#include <cstdint>

#include "encoding/codecs/codec.h"
#include "encoding/plan.h"
#include "encoding/pump.h"
#include "iconv/route.h"

namespace iconv_layer {

// Converts text in as many calls as the caller likes, into as little room as there is: after each
// call, in stands behind the last character that is written (or kept, where what follows decides
// about it), and out behind its last byte. Clean text goes through the kernels, block by block;
// what they stop at, and what is left of the room at the end, character by character.
//
// Nothing is allocated, but a treatment of characters without a place may ask for a table. One
// thread uses an object at a time.
class Conversion {
 public:
  explicit Conversion(const Route& route)
      : m_route(route), m_plan(route.plan), m_shortWay(shortWay()) {}

  enum class Status : unsigned char {
    kGood,
    kIgnored,  // all is converted, but for what //IGNORE had left out
    kFull,     // the next character does not fit
    kCut,      // the input ends within a character
    kBad,      // malformed, or a character without a place, at in
  };
  struct Place {
    const unsigned char* in;
    const unsigned char* inEnd;
    unsigned char* out;
    unsigned char* outEnd;

    std::size_t left() const { return static_cast<std::size_t>(inEnd - in); }
    std::size_t room() const { return static_cast<std::size_t>(outEnd - out); }
  };

  // What most calls are, a short clean text and room for it, without a look at anything else. Else
  // false; then what is left is for convert().
  bool convertShort(Place& place, Status& status) {
    status = Status::kGood;
    if (m_shortWay == ShortWay::kWindow) return takeOnly(place, status);
    if (m_shortWay != ShortWay::kWhole || place.left() - 1 >= fast::kShortBytes) return false;
    unsigned char* const end = takeWhole(place.in, place.left(), place.out, place.room());
    if (end == nullptr) return false;
    place.in = place.inEnd;
    place.out = end;
    return true;
  }
  // Adds the characters that were not written as they are to irreversible.
  Status convert(Place& place, std::size_t& irreversible);
  // Writes what waits and leaves any shift; then the object is as new. kFull: nothing is done.
  Status finish(Place& place);
  // As new, and what waits is lost.
  void restart();

  const Route& route() const { return m_route; }
  Suffixes& suffixes() { return m_route.suffixes; }

 private:
  struct Character;
  struct Written;
  struct Text {
    const unsigned char* bytes;
    std::size_t size;
  };
  // What became of the characters of one call.
  struct Outcome {
    std::size_t irreversible = 0;
    bool ignoredSome = false;
    // Where text begins of which nothing is written, shifts and what is left out, while nothing is
    // written behind it.
    const unsigned char* unwritten = nullptr;
    CodecState beforeUnwritten;
  };

  const Codec* reader() const { return m_plan->source->codec; }
  // How the reader reads for streams.
  const Codec::Convert& strictReader() const {
    const Codec& codec = *reader();
    return codec.readStrictly ? codec.readStrictly : codec.read;
  }
  const Codec* writer() const { return m_plan->target->codec; }
  // Whether what a window leaves of all there is waits for more.
  bool waitsBehindWindow() const { return reader() != nullptr && !m_route.to.isWide; }
  bool isPlain() const {
    return reader() == nullptr && writer() == nullptr && !m_route.from.isUcs2 && !m_route.to.isUcs2;
  }

  // How the whole of a short text is converted: by the plan, or in one window of the codecs.
  enum class ShortWay : unsigned char { kNone, kWhole, kWindow };
  ShortWay shortWay() const {
    if (m_route.from.hasMark || m_route.to.hasMark) return ShortWay::kNone;
    if (!isPlain()) return ShortWay::kWindow;
    return m_plan->whole != nullptr ? ShortWay::kWhole : ShortWay::kNone;
  }

  Status beginSource(Place& place);
  Status writeMark(Place& place);
  bool takeOnly(Place& place, Status& status);
  bool takeClean(Place& place, Outcome& outcome);
  void narrowWindow(std::size_t length);
  void takePlain(Place& place, Outcome& outcome);
  void takePlainWindows(Place& place, Outcome& outcome);
  unsigned char* takeWhole(const unsigned char* in, std::size_t length, unsigned char* out,
                           std::size_t room) const;
  bool takeShort(Place& place, std::size_t length) const;
  void takeByPump(Place& place, std::size_t length, Outcome* outcome) const;
  bool takeWindow(Place& place, std::size_t length);
  bool takeReadWindow(Place& place, std::size_t length);
  bool takeWrittenWindow(Place& place, std::size_t length);
  bool putRead(Text text, Place& place);
  bool isEncodedAtOnce() const;
  bool isEncodedInSteps() const;
  bool encodeAtOnce(Text text, Place& place) const;
  std::size_t makeSegment(Text text, DataBuffer& segment) const;
  bool isDecodedOnly() const;
  bool putSegment(Text segment, Place& place);
  bool writeText(Text text, Place& place);
  static bool hasSurrogate(Text text, bool bigEndian);
  Status takeCharacter(Place& place, Outcome& outcome);
  void noteUnwritten(const Place& place, Outcome& outcome) const;
  Status writeCharacter(Place& place, const Character& character, Outcome& outcome);
  Status takeWaiting(Place& place, Outcome& outcome);
  Status writeWaiting(Place& place);
  bool keepWaiting(Place& place);

  void read(const Place& place, Character& character) const;
  void readPlain(const unsigned char* in, std::size_t left, Character& character) const;
  void readByCodec(const unsigned char* in, std::size_t left, Character& character) const;
  bool takeRead(const DataBuffer& text, Character& character) const;
  CodecState stateBehind(const unsigned char* in, unsigned int length) const;
  bool write(const unsigned char* units, std::size_t bytes, Written& written) const;
  bool writeSegment(const unsigned char* segment, std::size_t bytes, Written& written) const;
  bool writeSimilar(std::uint32_t scalar, Written& written) const;
  bool passOne(fast::Pump& pump, Output& out, Outcome& outcome) const;
  bool passUnmappable(fast::Pump& pump, Output& out, Outcome& outcome) const;
  const fast::Plan* writingPlan() const;
  Status put(const Written& written, Place& place);

  Route m_route;
  const fast::Plan* m_plan;  // that of the route, or that of the other byte order, as a mark says
  ShortWay m_shortWay;
  CodecState m_reading;
  CodecState m_writing;
  std::uint32_t m_plainWindow = kLargestPlainWindow;  // the same where none are
  std::uint16_t m_window = kFirstWindow;  // how much is tried at once where codecs are concerned
  std::uint8_t m_steps = 0;               // characters to take before it is tried again
  std::uint8_t m_heldBytes = 0;
  std::uint8_t m_waitingBytes = 0;
  std::uint8_t m_tooFew = 0;  // bytes to be read next that no character can be told from
  bool m_hasBegun = false;    // the beginning of the source was looked at for a mark
  bool m_hasMark = false;     // the mark of the target is written
  // What the writer cannot write before it sees more, as text of the code page behind it.
  static constexpr std::size_t kMostHeld = 32;
  unsigned char m_held[kMostHeld] = {};
  // What is read and cannot be told yet, as text of the source: a letter that an accent may follow.
  static constexpr std::size_t kMostWaiting = 16;
  unsigned char m_waiting[kMostWaiting] = {};

  static constexpr std::uint32_t kLeastPlainWindow = 32;
  static constexpr std::uint32_t kLargestPlainWindow = 64 * 1024;
  static constexpr std::uint16_t kFirstWindow = 256;
  static constexpr std::uint16_t kLargestWindow = 2048;
  static constexpr std::uint16_t kLeastWindow = 16;
  // More than a window becomes in any step.
  static constexpr unsigned int kWindowStorage = 8 * kLargestWindow;
};

}  // namespace iconv_layer

#endif  // ICONV_CONVERSION_H_
