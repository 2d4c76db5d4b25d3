// BlockConverter: carries the text of a stream from its source to its target, block by block.
#ifndef ENCODING_STREAM_BLOCK_CONVERTER_H_
#define ENCODING_STREAM_BLOCK_CONVERTER_H_

#include <cstdint>
#include <memory>

#include "encoding/stream/source.h"
#include "encoding/stream/stream_converter.h"
#include "encoding/stream/target.h"
#include "encoding/stream/treatments.h"

class BlockConverter {
 public:
  // legs must outlive the object; the ends are its own.
  BlockConverter(std::unique_ptr<StreamSource> source, std::unique_ptr<StreamTarget> target,
                 EngineLegs& legs);

  StreamStatus prepare(const StreamSettings& settings);

  // Converts as much of data as can be told without what follows, and returns how many bytes those
  // were. offset is where data stands in the stream. Any status but kGood is the end.
  std::size_t convert(const unsigned char* data, std::size_t length, bool last,
                      std::uint64_t offset, DataBuffer& out);
  // Writes what waited, and leaves the shift state of the target.
  void finish(DataBuffer& out);

  StreamStatus status() const { return m_status; }
  std::uint64_t errorCount() const { return m_errorCount; }
  const StreamError& firstError() const { return m_firstError; }

 private:
  // Text on its way to the target, as units or as bytes of the code page that both ends share.
  // The first elements may be older than the block: their places are in m_waitingPlaces then.
  template <typename Element>
  struct Text {
    const Element* elements;
    std::uint32_t count;
    const StreamError* places;  // of the first placeCount elements
    std::uint32_t placeCount;
    bool isTreatment;     // the other elements were written by a treatment
    std::uint32_t first;  // else: the index in the block of the first of them

    Text slice(std::uint32_t begin, std::uint32_t end) const;
  };

  bool takeBlock(const unsigned char* data, std::uint32_t length, bool last, std::uint32_t& used,
                 DataBuffer& out);
  template <typename Element>
  void writeBlock(const Element* elements, std::uint32_t count, DataBuffer& out);
  template <typename Element>
  void emit(const Text<Element>& text, Behind behind, DataBuffer& out);
  template <typename Element>
  void emitJoined(const Text<Element>& text, Behind behind, DataBuffer& out);
  template <typename Element>
  void keepWaiting(const Text<Element>& text, std::uint32_t from);
  template <typename Element>
  bool encode(const Text<Element>& text, Behind behind, DataBuffer& out, EncodeResult& result);
  void flush(DataBuffer& out);

  StreamError malformed(const BadPiece& piece);
  template <typename Element>
  StreamError placeOf(const Text<Element>& text, std::uint32_t index);
  void fillBytes(StreamError& error) const;
  std::uint64_t lineOf(std::uint32_t unit);

  void treat(const StreamError& error, const unsigned char* piece, std::uint32_t length,
             DataBuffer& out);
  void write(const Treatment::Replacement& replacement, DataBuffer& out);

  template <typename Element>
  Rows<Element>& waiting();

  EngineLegs& m_legs;
  std::unique_ptr<StreamSource> m_source;
  std::unique_ptr<StreamTarget> m_target;
  Treatment m_treatment;
  bool m_inBytes;  // both ends speak bytes of the same code page
  bool m_stops = true;
  bool m_drops = false;
  StreamErrorHandler* m_errorHandler = nullptr;
  StreamDrain* m_drain = nullptr;

  StreamStatus m_status = StreamStatus::kGood;
  std::uint64_t m_errorCount = 0;
  StreamError m_firstError;

  const unsigned char* m_data = nullptr;  // of the block
  std::uint64_t m_offset = 0;             // where it stands in the stream
  SourceBlock m_block;
  std::uint64_t m_lines = 1;  // the line of the unit below
  std::uint32_t m_lineUnit = 0;

  // What the target cannot write yet, with the places that it came from.
  Rows<std::uint16_t> m_waitingUnits;
  Rows<unsigned char> m_waitingBytes;
  Rows<StreamError> m_waitingPlaces;
  DataBuffer m_textBytes;  // a treatment's text in the shared code page
};

#endif  // ENCODING_STREAM_BLOCK_CONVERTER_H_
