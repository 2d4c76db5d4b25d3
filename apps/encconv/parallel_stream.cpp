#include "apps/encconv/parallel_stream.h"

#include <algorithm>
#include <utility>

namespace tool {
namespace {

// The end of a piece, in which a cut is looked for; and what stands before that, for a look.
constexpr std::size_t kCutWindows[] = {4u << 10, 64u << 10};
constexpr std::size_t kCutContext = 512;
// Bytes that are converted between two looks at how much they became.
constexpr std::size_t kStep = 64u << 10;
// A piece that becomes so many times its size, or has so many errors to be told, is better
// converted in its turn.
constexpr std::size_t kMostGrowth = 8;
constexpr std::size_t kMostErrors = 1u << 15;
// After so many misses guessing is given up, but for a trial now and then.
constexpr unsigned int kMostMisses = 4;
constexpr std::uint64_t kTrials = 32;

StreamError inText(StreamError error, std::uint64_t offset, std::uint64_t lines) {
  error.offset += offset;
  error.line += lines;
  return error;
}

}  // namespace

void StreamTotals::add(const StreamConverter& stream, std::uint64_t offset, std::uint64_t lines) {
  if (errors == 0 && stream.errorCount() != 0) {
    firstError = inText(stream.firstError(), offset, lines);
  }
  if (approximations == 0 && stream.approximationCount() != 0) {
    firstApproximation = inText(stream.firstApproximation(), offset, lines);
  }
  errors += stream.errorCount();
  approximations += stream.approximationCount();
}

struct ParallelStream::Piece final : StreamErrorHandler {
  void onStreamError(const StreamError& error) override {
    if (errors.size() < kMostErrors) {
      errors.push_back(error);
    } else {
      isAhead = false;
    }
  }

  std::vector<unsigned char> text;  // and room for more
  std::size_t size = 0;             // of the text
  std::uint64_t offset = 0;
  bool isLast = false;
  bool isMissed = false;  // was converted ahead, and had to be converted anew
  bool isAhead = false;   // is converted, or is to be, ahead of its turn; from the place `from` on
  StreamPlace from;
  std::unique_ptr<StreamConverter> stream = std::make_unique<StreamConverter>();
  StreamStatus status = StreamStatus::kGood;
  DataBuffer out;
  std::vector<StreamError> errors;
};

// Tells the client of errors of the stream in whose turn it is.
class ParallelStream::Told final : public StreamErrorHandler {
 public:
  explicit Told(const ParallelStream& owner) : m_owner(owner) {}
  void onStreamError(const StreamError& error) override {
    m_owner.m_client.onTextError(inText(error, m_owner.m_offset, m_owner.m_lines));
  }

 private:
  const ParallelStream& m_owner;
};

ParallelStream::ParallelStream(const StreamSettings& settings, unsigned int threads,
                               std::size_t pieceBytes, Client& client)
    : Turns(threads),
      m_settings([&] {
        StreamSettings made = settings;
        made.errorHandler = nullptr;
        made.drain = nullptr;
        return made;
      }()),
      m_isTold(settings.errorHandler != nullptr),
      m_pieceBytes(pieceBytes),
      m_client(client),
      m_cuts(settings.from),
      m_stream(std::make_unique<StreamConverter>()),
      m_told(std::make_unique<Told>(*this)) {
  while (m_pieces.size() < pieceCount()) m_pieces.push_back(std::make_unique<Piece>());
}

ParallelStream::~ParallelStream() = default;

// ---- Reading. ----

// Where to cut a piece, which is followed by more: behind a line end if there is one, because there
// most encodings are in their first state. Its size, if there is no place.
std::size_t ParallelStream::findCut(const Piece& piece) {
  const std::size_t size = piece.size;
  for (const bool isBehindLine : {true, false}) {
    for (const std::size_t window : kCutWindows) {
      const std::size_t offset = size - std::min(window, size / 2);
      const std::size_t skipped = offset - std::min(kCutContext, offset);
      const CutSettings settings = {piece.offset + skipped, false, isBehindLine};
      const std::size_t cut =
          m_cuts.find(piece.text.data() + skipped, size - skipped, offset - skipped, settings);
      if (cut != CutWindow::kNone) return skipped + cut;
    }
  }
  return size;
}

// False when reading failed; what was read until then is in the piece.
bool ParallelStream::read(Piece& piece) {
  piece.offset = m_readOffset;
  piece.isAhead = std::exchange(m_isAtCut, false);
  if (piece.text.size() < std::max(m_pieceBytes, m_carried.size())) {
    piece.text.resize(std::max(m_pieceBytes, m_carried.size()));
  }
  std::ranges::copy(m_carried, piece.text.begin());
  piece.size = m_carried.size();
  m_carried.clear();
  bool isGood = true;
  piece.isLast = false;
  while (isGood && !piece.isLast && piece.size < m_pieceBytes) {
    std::size_t count = 0;
    const std::size_t room = m_pieceBytes - piece.size;
    isGood = m_client.readText(std::span(piece.text).subspan(piece.size, room), count);
    piece.isLast = isGood && count == 0;
    piece.size += count;
  }
  if (isGood && !piece.isLast) {
    const std::size_t cut = findCut(piece);
    m_isAtCut = cut != piece.size;
    m_carried.assign(piece.text.data() + cut, piece.text.data() + piece.size);
    piece.size = cut;
  }
  m_readOffset += piece.size;
  return isGood;
}

// ---- Converting ahead. ----

void ParallelStream::convertAhead(Piece& piece) {
  piece.out.clear();
  piece.errors.clear();
  if (!piece.isAhead) return;
  StreamSettings settings = m_settings;
  if (m_isTold) settings.errorHandler = &piece;
  piece.status = piece.stream->begin(settings, piece.from);
  const std::size_t most = std::max(kMostGrowth * piece.size, kStep);
  for (std::size_t done = 0; done < piece.size && piece.status == StreamStatus::kGood;) {
    const std::size_t count = std::min(kStep, piece.size - done);
    piece.status = piece.stream->push(piece.text.data() + done, count, piece.out);
    done += count;
    if (piece.out.getSize() > most) piece.isAhead = false;
    if (!piece.isAhead) return;
  }
  if (piece.status != StreamStatus::kGood && piece.status != StreamStatus::kStopped) {
    piece.isAhead = false;  // in its turn it may go better
  }
}

// ---- Writing, in turn. ----

bool ParallelStream::emit(const DataBuffer& out) {
  return m_client.writeText({reinterpret_cast<const char*>(out.getData2()), out.getSize()});
}

// Whether the text in front of a piece has been converted to its end, and is in the state that the
// piece was begun in.
bool ParallelStream::isAsGuessed(const Piece& piece) const {
  StreamPlace place = m_stream->place();
  if (m_offset + place.settled != piece.offset) return false;
  place.settled = piece.from.settled;
  return place == piece.from;
}

// From here on a piece's own stream is that of the text.
void ParallelStream::goOnWith(Piece& piece) {
  m_totals.add(*m_stream, m_offset, m_lines);
  m_lines += m_stream->line() - 1;
  m_offset = piece.offset;
  for (const StreamError& error : piece.errors) m_told->onStreamError(error);
  m_stream.swap(piece.stream);
  if (m_isTold) m_stream->setErrorHandler(m_told.get());
  m_written = piece.status;
  if (!emit(piece.out)) m_written = StreamStatus::kDrainFailed;
}

void ParallelStream::writeInTurn(Piece& piece) {
  for (std::size_t done = 0; done < piece.size && m_written == StreamStatus::kGood;) {
    const std::size_t count = std::min(kStep, piece.size - done);
    m_out.clear();
    m_written = m_stream->push(piece.text.data() + done, count, m_out);
    if (!emit(m_out)) m_written = StreamStatus::kDrainFailed;
    done += count;
  }
}

void ParallelStream::write(Piece& piece) {
  const bool isHit = piece.isAhead && isAsGuessed(piece);
  isHit ? goOnWith(piece) : writeInTurn(piece);
  piece.isMissed = piece.isAhead && !isHit;
  m_client.onTextDone(piece.size);
}

// ---- The threads. ----

bool ParallelStream::readPiece(std::size_t index) {
  m_hasReadFailed = !read(*m_pieces[index]);
  return !m_hasReadFailed && !m_pieces[index]->isLast;
}

void ParallelStream::onPieceRead(std::size_t index) {
  Piece& piece = *m_pieces[index];
  piece.from = m_guess;
  const bool isTried = m_misses < kMostMisses || ++m_readPieces % kTrials == 0;
  piece.isAhead = piece.isAhead && isTried;
}

void ParallelStream::convertPiece(std::size_t index) { convertAhead(*m_pieces[index]); }

bool ParallelStream::writePiece(std::size_t index) {
  write(*m_pieces[index]);
  return m_written == StreamStatus::kGood;
}

void ParallelStream::onPieceWritten(std::size_t index) {
  const Piece& piece = *m_pieces[index];
  if (piece.isMissed) {
    ++m_misses;
  } else if (piece.isAhead) {
    m_misses = 0;
  }
  m_guess = m_stream->place();
}

StreamStatus ParallelStream::run(std::span<const unsigned char> begun) {
  StreamSettings settings = m_settings;
  if (m_isTold) settings.errorHandler = m_told.get();
  m_written = m_stream->begin(settings);
  if (m_written != StreamStatus::kGood) return m_written;
  m_carried.assign(begun.begin(), begun.end());
  // The state behind a first piece is the guess for others.
  const bool isMore = readPiece(0);
  write(*m_pieces[0]);
  m_guess = m_stream->place();
  if (isMore && m_written == StreamStatus::kGood) runThreads();
  if (m_written == StreamStatus::kGood && m_hasReadFailed) m_written = StreamStatus::kDrainFailed;
  if (m_written == StreamStatus::kGood) {
    m_out.clear();
    m_written = m_stream->finish(m_out);
    if (!emit(m_out)) m_written = StreamStatus::kDrainFailed;
  }
  m_totals.add(*m_stream, m_offset, m_lines);
  return m_written;
}

}  // namespace tool
