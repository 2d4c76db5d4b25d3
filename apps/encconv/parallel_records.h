// ParallelRecords: the conversion of one file of records by several threads, with the output and
// the problems that one RecordConversion has.
#ifndef APPS_ENCCONV_PARALLEL_RECORDS_H_
#define APPS_ENCCONV_PARALLEL_RECORDS_H_

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "apps/encconv/record_conversion.h"
#include "apps/encconv/turns.h"
#include "encoding/stream/stream_converter.h"

namespace tool {

// The file is read in pieces of whole records, each of which is converted on its own, ahead of its
// turn. Where descriptor words are damaged there is no telling where another piece may begin: from
// there on one conversion takes all that follows, in turn.
class ParallelRecords : private Turns {
 public:
  // Whether the parts of a file, converted each on its own, give what the whole file gives.
  static bool canServe(const Options& options);

  // Takes pieces of about pieceBytes, or of one record that is longer; keeps a few for each thread,
  // with what they became. isFirst and the handler as for RecordConversion, which must be possible;
  // the handler is called as the client's writeText() is. options and client must outlive the
  // object.
  ParallelRecords(const Options& options, int fromCodePage, bool isFirst, unsigned int threads,
                  std::size_t pieceBytes, TextClient& client, RecordConversion::Handler handler);
  ~ParallelRecords() override;

  // As ParallelStream::run().
  StreamStatus run(std::span<const unsigned char> begun);

 private:
  struct Piece;

  void fill(Piece& piece, std::size_t size);
  std::optional<std::size_t> findCut(const Piece& piece) const;
  std::unique_ptr<RecordConversion> begin(const Piece& piece, RecordConversion::Handler tell) const;
  bool push(RecordConversion& conversion, const Piece& piece, std::string& out,
            const std::function<bool()>& onStep) const;
  void tell(encconv::RecordProblem problem, std::uint64_t records, std::uint64_t offset) const;
  void give(const Piece& piece);
  void convertInTurn(const Piece& piece);
  bool readPiece(std::size_t index) override;
  void convertPiece(std::size_t index) override;
  bool writePiece(std::size_t index) override;
  void onPieceRead(std::size_t index) override;
  void onPieceWritten(std::size_t index) override;

  const Options& m_options;
  const int m_from;
  const bool m_isFirst;
  const std::size_t m_pieceBytes;
  TextClient& m_client;
  const RecordConversion::Handler m_handler;

  // Of the thread that reads.
  std::vector<unsigned char> m_carried;  // bytes behind the last cut
  std::uint64_t m_readOffset = 0;        // of the next piece
  bool m_isAtCut = true;                 // it begins with a record
  bool m_hasReadFailed = false;

  // Of the thread that writes.
  std::uint64_t m_records = 0;               // that are written
  std::unique_ptr<RecordConversion> m_rest;  // of all that follows a place without cuts
  std::string m_out;
  StreamStatus m_written = StreamStatus::kGood;

  // Shared by the threads.
  std::vector<std::unique_ptr<Piece>> m_pieces;
  bool m_hasRest = false;
};

}  // namespace tool

#endif  // APPS_ENCCONV_PARALLEL_RECORDS_H_
