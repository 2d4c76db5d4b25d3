// ParallelStream: the conversion of one text by several threads, with the output and the reports
// that one stream has.
#ifndef APPS_ENCCONV_PARALLEL_STREAM_H_
#define APPS_ENCCONV_PARALLEL_STREAM_H_

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "apps/encconv/turns.h"
#include "encoding/stream/cut_finder.h"
#include "encoding/stream/stream_converter.h"
#include "encoding/stream/stream_place.h"

namespace tool {

// What streams have counted, one behind the other in one text.
struct StreamTotals {
  std::uint64_t errors = 0;
  StreamError firstError;
  std::uint64_t approximations = 0;
  StreamError firstApproximation;

  // Of a stream that begins at an offset of the text, behind so many line ends.
  void add(const StreamConverter& stream, std::uint64_t offset, std::uint64_t lines);
};

// The text is read in pieces, from one place where it can be cut to the next. Threads convert
// pieces ahead of their turn, each by a stream that begins in the state that the text was in behind
// the piece before it, as far as can be guessed. When its turn comes, that is compared with the
// state that the text is in really. Where they differ, as they may in damaged text, or where the
// encoding shows no places to cut it at, the piece is converted in its turn, by the stream of what
// stands before it. So all is as if one stream had converted the text.
class ParallelStream : private Turns {
 public:
  class Client : public TextClient {
   public:
    // As StreamErrorHandler, if the settings have one.
    virtual void onTextError(const StreamError& error) = 0;
  };

  // Takes pieces of about pieceBytes; keeps a few for each thread, with what they became. The
  // settings have no drain. client must outlive the object.
  ParallelStream(const StreamSettings& settings, unsigned int threads, std::size_t pieceBytes,
                 Client& client);
  ~ParallelStream() override;

  // Converts the text that begins with these bytes, which are read already, up to its end. kGood,
  // or why it ended before that; kDrainFailed when reading or writing failed. Throws what a thread
  // throws: std::bad_alloc, or what the client does.
  StreamStatus run(std::span<const unsigned char> begun);
  const StreamTotals& totals() const { return m_totals; }

 private:
  struct Piece;
  class Told;

  bool read(Piece& piece);
  std::size_t findCut(const Piece& piece);
  void convertAhead(Piece& piece);
  void write(Piece& piece);
  void writeInTurn(Piece& piece);
  bool isAsGuessed(const Piece& piece) const;
  void goOnWith(Piece& piece);
  bool emit(const DataBuffer& out);
  bool readPiece(std::size_t index) override;
  void convertPiece(std::size_t index) override;
  bool writePiece(std::size_t index) override;
  void onPieceRead(std::size_t index) override;
  void onPieceWritten(std::size_t index) override;

  const StreamSettings m_settings;  // with no handler
  const bool m_isTold;              // errors are wanted
  const std::size_t m_pieceBytes;
  Client& m_client;
  CutFinder m_cuts;

  // The stream of what is written, where its source begins in the text, and how many line ends
  // stand before that.
  std::unique_ptr<StreamConverter> m_stream;
  std::uint64_t m_offset = 0;
  std::uint64_t m_lines = 0;
  StreamStatus m_written = StreamStatus::kGood;
  std::unique_ptr<Told> m_told;  // its handler
  DataBuffer m_out;
  StreamTotals m_totals;

  // Of the thread that reads.
  std::vector<unsigned char> m_carried;  // bytes behind the last cut
  std::uint64_t m_readOffset = 0;        // of the next piece
  bool m_isAtCut = false;                // it begins where the text can be cut

  bool m_hasReadFailed = false;

  // Shared by the threads.
  std::vector<std::unique_ptr<Piece>> m_pieces;
  std::uint64_t m_readPieces = 0;
  StreamPlace m_guess;
  unsigned int m_misses = 0;  // pieces one behind the other that were not as guessed
};

}  // namespace tool

#endif  // APPS_ENCCONV_PARALLEL_STREAM_H_
