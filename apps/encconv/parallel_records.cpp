#include "apps/encconv/parallel_records.h"

#include <algorithm>
#include <utility>

namespace tool {
namespace {

// The end of a piece, in which a cut is looked for.
constexpr std::size_t kCutWindow = 64u << 10;
// A piece without a cut grows up to this: fixed records and blocks fit several times.
constexpr std::size_t kMostPiece = 8u << 20;
// Bytes that are converted between two looks at how much they became.
constexpr std::size_t kStep = 16u << 10;
// A piece that becomes so many times its size, or has so many problems, is better converted in its
// turn.
constexpr std::size_t kMostGrowth = 16;
constexpr std::size_t kMostProblems = 1u << 12;

}  // namespace

struct ParallelRecords::Piece {
  std::string_view bytes() const { return {reinterpret_cast<const char*>(text.data()), size}; }

  std::vector<unsigned char> text;  // and room for more
  std::size_t size = 0;             // of the text
  std::uint64_t offset = 0;
  bool isLast = false;
  bool isWhole = false;  // begins and ends with whole records
  bool isKept = false;   // what follows is what it became, not only how many records it has
  bool goesOn = false;
  std::uint64_t records = 0;
  std::string out;
  std::vector<encconv::RecordProblem> problems;
};

bool ParallelRecords::canServe(const Options& options) {
  return options.records && RecordConversion::canDivide(options);
}

ParallelRecords::ParallelRecords(const Options& options, int fromCodePage, bool isFirst,
                                 unsigned int threads, std::size_t pieceBytes, TextClient& client,
                                 RecordConversion::Handler handler)
    : Turns(threads),
      m_options(options),
      m_from(fromCodePage),
      m_isFirst(isFirst),
      m_pieceBytes(pieceBytes),
      m_client(client),
      m_handler(std::move(handler)) {
  while (m_pieces.size() < pieceCount()) m_pieces.push_back(std::make_unique<Piece>());
}

ParallelRecords::~ParallelRecords() = default;

// ---- Reading. ----

// Reads on until the piece has so many bytes, or there are no more.
void ParallelRecords::fill(Piece& piece, std::size_t size) {
  if (piece.text.size() < size) piece.text.resize(size);
  while (!m_hasReadFailed && !piece.isLast && piece.size < size) {
    std::size_t count = 0;
    const auto room = std::span(piece.text).subspan(piece.size, size - piece.size);
    m_hasReadFailed = !m_client.readText(room, count);
    piece.isLast = !m_hasReadFailed && count == 0;
    piece.size += count;
  }
}

std::optional<std::size_t> ParallelRecords::findCut(const Piece& piece) const {
  const encconv::CutOptions where{.position = piece.offset, .at_cut = true};
  const std::size_t offset = piece.size - std::min(kCutWindow, piece.size / 2);
  const auto cut = encconv::find_record_cut(piece.bytes(), *m_options.records, offset, where);
  if (!cut || *cut > piece.size) return std::nullopt;
  return static_cast<std::size_t>(*cut);
}

bool ParallelRecords::readPiece(std::size_t index) {
  Piece& piece = *m_pieces[index];
  piece.offset = m_readOffset;
  piece.isLast = false;
  std::size_t size = std::max(m_pieceBytes, m_carried.size());
  piece.text.resize(std::max(piece.text.size(), size));
  std::ranges::copy(m_carried, piece.text.begin());
  piece.size = m_carried.size();
  m_carried.clear();
  fill(piece, size);
  piece.isWhole = m_isAtCut && !m_hasReadFailed;
  while (piece.isWhole && !piece.isLast) {
    if (const auto cut = findCut(piece)) {
      m_carried.assign(piece.text.data() + *cut, piece.text.data() + piece.size);
      piece.size = *cut;
      break;
    }
    piece.isWhole = m_isAtCut = size < kMostPiece;
    if (m_isAtCut) fill(piece, size *= 2);
    piece.isWhole = piece.isWhole && !m_hasReadFailed;
  }
  m_readOffset += piece.size;
  return !m_hasReadFailed && !piece.isLast;
}

// ---- Converting. ----

std::unique_ptr<RecordConversion> ParallelRecords::begin(const Piece& piece,
                                                         RecordConversion::Handler tell) const {
  std::string why;
  return RecordConversion::make(m_options, m_from, m_isFirst && piece.offset == 0, std::move(tell),
                                why);
}

// Bit by bit, with a look at what came of each. False when a problem, or the look, ends it.
bool ParallelRecords::push(RecordConversion& conversion, const Piece& piece, std::string& out,
                           const std::function<bool()>& onStep) const {
  for (std::string_view bytes = piece.bytes(); !bytes.empty();) {
    const std::string_view step = bytes.substr(0, kStep);
    bytes.remove_prefix(step.size());
    const bool goesOn = conversion.push(step, false, out);
    const bool isWanted = onStep();
    if (!goesOn || !isWanted) return false;
  }
  return true;
}

void ParallelRecords::convertPiece(std::size_t index) {
  Piece& piece = *m_pieces[index];
  piece.out.clear();
  piece.problems.clear();
  if (!piece.isWhole) return;
  piece.isKept = true;
  bool isOpen = false;
  bool isAtEnd = false;
  const auto conversion = begin(piece, [&](const encconv::RecordProblem& problem) {
    isOpen = isOpen || (isAtEnd && !problem.text);
    if (piece.problems.size() == kMostProblems) piece.isKept = false;
    if (piece.isKept) piece.problems.push_back(problem);
  });
  const std::size_t most = std::max(kMostGrowth * piece.size, kStep);
  piece.goesOn = push(*conversion, piece, piece.out, [&] {
    piece.isKept = piece.isKept && piece.out.size() <= most;
    if (!piece.isKept) piece.out.clear();
    return true;
  });
  isAtEnd = true;
  if (piece.goesOn) piece.goesOn = conversion->push({}, true, piece.out);
  piece.records = conversion->count();
  // A record that lacks its end may go on behind the piece, as damaged segments do. One that the
  // output could begin with may be the first.
  const bool isEmptyFirst = piece.offset == 0 && piece.records == 0;
  if (!piece.isLast && (isOpen || isEmptyFirst)) piece.isWhole = false;
}

// ---- Writing, in turn. ----

void ParallelRecords::tell(encconv::RecordProblem problem, std::uint64_t records,
                           std::uint64_t offset) const {
  problem.record += records;
  problem.offset += offset;
  if (problem.text) problem.text->offset = problem.offset;
  m_handler(problem);
}

void ParallelRecords::give(const Piece& piece) {
  for (const encconv::RecordProblem& problem : piece.problems)
    tell(problem, m_records, piece.offset);
  m_records += piece.records;
  if (!m_client.writeText(piece.out)) {
    m_written = StreamStatus::kDrainFailed;
  } else if (!piece.goesOn) {
    m_written = StreamStatus::kStopped;
  }
}

void ParallelRecords::convertInTurn(const Piece& piece) {
  const bool isAlone = m_rest == nullptr && piece.isWhole;
  if (m_rest == nullptr) {
    m_rest = begin(piece,
                   [this, records = m_records, offset = piece.offset](
                       const encconv::RecordProblem& problem) { tell(problem, records, offset); });
  }
  const auto write = [this] {
    if (!m_client.writeText(std::exchange(m_out, {}))) m_written = StreamStatus::kDrainFailed;
    return m_written == StreamStatus::kGood;
  };
  bool goesOn = push(*m_rest, piece, m_out, write);
  if (goesOn && (isAlone || piece.isLast)) goesOn = m_rest->push({}, true, m_out) && write();
  if (!goesOn && m_written == StreamStatus::kGood) m_written = StreamStatus::kStopped;
  if (!isAlone) return;
  m_records += m_rest->count();
  m_rest.reset();
}

bool ParallelRecords::writePiece(std::size_t index) {
  const Piece& piece = *m_pieces[index];
  const bool isDone = m_rest == nullptr && piece.isWhole && piece.isKept;
  isDone ? give(piece) : convertInTurn(piece);
  m_client.onTextDone(piece.size);
  return m_written == StreamStatus::kGood;
}

// ---- The threads. ----

void ParallelRecords::onPieceRead(std::size_t index) {
  if (m_hasRest) m_pieces[index]->isWhole = false;
}

void ParallelRecords::onPieceWritten(std::size_t /*index*/) { m_hasRest = m_rest != nullptr; }

StreamStatus ParallelRecords::run(std::span<const unsigned char> begun) {
  m_carried.assign(begun.begin(), begun.end());
  runThreads();
  if (m_written == StreamStatus::kGood && m_hasReadFailed) m_written = StreamStatus::kDrainFailed;
  return m_written;
}

}  // namespace tool
