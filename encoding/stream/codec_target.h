// CodecTarget: the last step of a stream into an encoding with a codec: text of the codec's code
// page into the encoding.
#ifndef ENCODING_STREAM_CODEC_TARGET_H_
#define ENCODING_STREAM_CODEC_TARGET_H_

#include <cstdint>

#include "encoding/codecs/codec.h"
#include "encoding/output.h"
#include "encoding/stream/stream_converter.h"
#include "support/rows.h"

// What stands behind a text that is to be written.
enum class Behind : unsigned char {
  kMore,     // not known yet
  kMisfit,   // a character that has no place; what becomes of it is not known yet, but no mark
             // behind it joins a letter in front of it
  kNothing,  // nothing that this text may be read together with
};

// Whether a character has a place may depend on what follows it, so a few characters wait, with the
// places that they came from. Texts are whole characters of the codec's code page. The functions
// return false when there is no room for output or memory is short; out.isFull tells which.
class CodecTarget {
 public:
  class Client {
   public:
    // Where the character at a byte of the segment last written came from; asked in ascending
    // order.
    virtual StreamError placeAt(std::uint32_t byte) = 0;
    // Reports and treats a character that has no place. False when that ends the stream.
    virtual bool treatMisfit(const StreamError& error) = 0;

   protected:
    ~Client() = default;
  };

  CodecTarget(const Codec& codec, Client& client) : m_codec(codec), m_client(client) {}

  // Writes a segment of the stream's text.
  bool write(const unsigned char* bytes, std::uint32_t count, Behind behind, Output& out) {
    return emit({bytes, count, nullptr, 0, false, 0}, behind, out);
  }
  // Writes a treatment's own text, of which nothing is treated again.
  bool writeTreatment(const unsigned char* bytes, std::uint32_t count, Output& out) {
    return emit({bytes, count, nullptr, 0, true, 0}, Behind::kMisfit, out);
  }
  // Writes the letter that waits for marks, since what would have stood between them was taken out.
  bool close(Output& out) { return m_waiting.getSize() == 0 || writeTreatment(nullptr, 0, out); }
  // Writes what waits: nothing follows that it may be read together with.
  bool flush(Output& out) { return emit({nullptr, 0, nullptr, 0, true, 0}, Behind::kNothing, out); }
  // The same, and leaves any shift. What follows is the end, or bytes that are no business
  // of this object.
  bool leave(Output& out);

  // What the encoding carries in front of what waits; and the place of that, null where nothing
  // waits.
  const CodecState& state() const { return m_state; }
  const StreamError* firstWaiting() const {
    return m_waitingPlaces.isEmpty() ? nullptr : m_waitingPlaces.data();
  }
  void resume(const CodecState& state) { m_state = state; }

  // Whether a text can be written from the beginning to the end. Changes no state. False when
  // memory is short.
  bool holds(const unsigned char* bytes, std::uint32_t count, bool& fits) const;

 private:
  // A text on its way. The first bytes may be older than the segment: their places are known.
  struct Text {
    const unsigned char* bytes;
    std::uint32_t count;
    const StreamError* places;  // of the first placeCount bytes
    std::uint32_t placeCount;
    bool isTreatment;     // the other bytes were written by a treatment
    std::uint32_t first;  // else: the index in the segment of the first of them

    Text slice(std::uint32_t begin, std::uint32_t end) const;
  };
  // Nothing is written where there are misfits.
  struct Result {
    std::uint32_t used = 0;
    Rows<ReplacedInput> misfits;
  };

  bool emit(const Text& text, Behind behind, Output& out);
  bool emitJoined(const Text& text, Behind behind, Output& out);
  bool keepWaiting(const Text& text, std::uint32_t from);
  StreamError placeOf(const Text& text, std::uint32_t index);
  bool encode(const unsigned char* bytes, std::uint32_t count, Behind behind, Output& out,
              Result& result);
  std::uint32_t run(const unsigned char* bytes, std::uint32_t count, bool last, DataBuffer& written,
                    Result& result);
  void closeRest(const unsigned char* bytes, std::uint32_t count, DataBuffer& written,
                 Result& result);

  const Codec& m_codec;
  Client& m_client;
  CodecState m_state;
  DataBuffer m_written;  // by the call at hand, where it needs a place of its own
  // What cannot be written yet, with the places that it came from.
  DataBuffer m_waiting;
  Rows<StreamError> m_waitingPlaces;
};

#endif  // ENCODING_STREAM_CODEC_TARGET_H_
