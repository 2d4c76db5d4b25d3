#include "apps/encconv/turns.h"

#include <numeric>

#include "apps/encconv/threads.h"

namespace tool {

Turns::Turns(unsigned int threads)
    : m_threads(threads), m_isReady(2 * std::size_t{threads}), m_free(m_isReady.size()) {
  std::iota(m_free.begin(), m_free.end(), std::size_t{0});
}

Turns::Next Turns::chooseNext() const {
  if (m_hasEnded || m_hasThrown) return Next::kEnd;
  if (m_queued.empty() && m_isAllRead && !m_isReading) return Next::kEnd;
  if (!m_isWriting && !m_queued.empty() && m_isReady[m_queued.front()]) return Next::kWrite;
  return !m_isReading && !m_isAllRead && !m_free.empty() ? Next::kRead : Next::kWait;
}

void Turns::writeNext(std::unique_lock<std::mutex>& lock) {
  m_isWriting = true;
  const std::size_t index = m_queued.front();
  lock.unlock();
  const bool goesOn = writePiece(index);
  lock.lock();
  m_isWriting = false;
  m_hasEnded = !goesOn;
  m_queued.pop_front();
  m_free.push_back(index);
  onPieceWritten(index);
}

void Turns::readNext(std::unique_lock<std::mutex>& lock) {
  m_isReading = true;
  const std::size_t index = m_free.back();
  m_free.pop_back();
  lock.unlock();
  const bool goesOn = readPiece(index);
  lock.lock();
  m_isReading = false;
  m_isAllRead = !goesOn;
  m_isReady[index] = false;
  onPieceRead(index);
  m_queued.push_back(index);
  m_changed.notify_all();
  lock.unlock();
  convertPiece(index);
  lock.lock();
  m_isReady[index] = true;
}

void Turns::work() {
  std::unique_lock lock(m_mutex);
  for (Next next = chooseNext(); next != Next::kEnd; next = chooseNext()) {
    if (next == Next::kWait) {
      m_changed.wait(lock);
      continue;
    }
    next == Next::kWrite ? writeNext(lock) : readNext(lock);
    m_changed.notify_all();
  }
}

void Turns::runThreads() {
  runOnThreads(m_threads, [this] {
    try {
      work();
    } catch (...) {
      // Nobody waits for what this thread was doing.
      const std::scoped_lock lock(m_mutex);
      m_hasThrown = true;
      m_changed.notify_all();
      throw;
    }
  });
}

}  // namespace tool
