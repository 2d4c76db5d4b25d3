// Turns: work on the pieces of a text by several threads, with an order where there must be one.
#ifndef APPS_ENCCONV_TURNS_H_
#define APPS_ENCCONV_TURNS_H_

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <span>
#include <string_view>
#include <vector>

namespace tool {

// Where a text comes from and goes. Called by one thread at a time, readText() also while another
// thread is in one of the others.
class TextClient {
 public:
  virtual ~TextClient() = default;
  // Sets count to how many bytes were read; 0 at the end. False: it failed.
  virtual bool readText(std::span<unsigned char> buffer, std::size_t& count) = 0;
  // The rest in the order of the text. False: it failed.
  virtual bool writeText(std::string_view bytes) = 0;
  // So many bytes of the input are done.
  virtual void onTextDone(std::size_t bytes) = 0;
};

// Pieces are read one by one, converted by any number of threads at once, and written one by one in
// the order in which they were read. What a piece is, classes derived from this know: there are
// pieceCount() of them, which are filled again and again.
class Turns {
 public:
  explicit Turns(unsigned int threads);
  Turns(const Turns&) = delete;
  Turns& operator=(const Turns&) = delete;
  virtual ~Turns() = default;

 protected:
  // One for each thread to convert, and as many that wait for their turn.
  std::size_t pieceCount() const { return m_isReady.size(); }
  // Returns when all is written, or nothing more is to be. Throws what a thread throws.
  void runThreads();

 private:
  // False: nothing follows this piece.
  virtual bool readPiece(std::size_t index) = 0;
  virtual void convertPiece(std::size_t index) = 0;
  // False: nothing more is to be written.
  virtual bool writePiece(std::size_t index) = 0;
  // Told behind these, for what threads share: one thread at a time is in either of them.
  virtual void onPieceRead(std::size_t index) = 0;
  virtual void onPieceWritten(std::size_t index) = 0;

  enum class Next : unsigned char { kRead, kWrite, kWait, kEnd };
  Next chooseNext() const;
  void readNext(std::unique_lock<std::mutex>& lock);
  void writeNext(std::unique_lock<std::mutex>& lock);
  void work();

  const unsigned int m_threads;
  std::mutex m_mutex;  // of all that follows
  std::condition_variable m_changed;
  std::vector<char> m_isReady;       // whether a piece may be written, by its index
  std::vector<std::size_t> m_free;   // pieces to be filled; the last is in the cache still
  std::deque<std::size_t> m_queued;  // those that are read, in the order of the text
  bool m_isReading = false, m_isWriting = false;
  bool m_isAllRead = false, m_hasEnded = false;
  bool m_hasThrown = false;  // a thread, which is gone
};

}  // namespace tool

#endif  // APPS_ENCCONV_TURNS_H_
