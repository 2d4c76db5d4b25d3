// TextBuilder: makes a str of UTF-16 that a conversion writes, in the width that the text needs in
// the end.
#ifndef PYTHON_SRC_TEXT_BUILDER_H_
#define PYTHON_SRC_TEXT_BUILDER_H_

#include <cstddef>
#include <cstdint>
#include <span>

#include "encoding/output.h"
#include "python/src/interpreter.h"

// The str is as narrow as what came so far, and made anew, twice or three times at most, where
// something wider comes. Text goes through a block in the nearest cache and is narrowed from there,
// but that of two bytes a character is written where it stays.
class TextBuilder final : public Output {
 public:
  // A guess at how many characters will come; whether some may be above U+FFFF. lock is the
  // interpreter lock, which is taken back for a moment when the str is made; null: it is held.
  TextBuilder(std::size_t expected, bool mayHavePairs, ReleasedLock* lock = nullptr)
      : m_expected(expected), m_lock(lock), m_mayHavePairs(mayHavePairs) {}
  ~TextBuilder();

  // Takes over what was written so far. False, as with all below, when memory is short, with an
  // exception to be told by whoever holds the lock.
  bool flush();
  // To be called when all is taken over, and with the lock.
  bool append(PyObject* text);
  // Bytes that are characters of Latin-1; of ASCII, where that is known of all of them.
  bool appendLatin1(const unsigned char* bytes, std::size_t count, bool isAscii = false);
  // Where such bytes may be written to become a part of the str by takeLatin1(); as long as it is
  // as narrow as they are and has room, that is its own place.
  std::span<unsigned char> latin1Window();
  bool takeLatin1(std::size_t count);
  std::size_t size() const { return m_size; }
  void truncate(std::size_t size);
  // The str; null with an exception. Nothing may be done with the object afterwards.
  PyObject* finish();

 private:
  enum Width : unsigned char { kAscii, kLatin1, kUnits, kScalars };
  static constexpr std::size_t kBlockBytes = 16 * 1024;

  bool grow(std::size_t count, std::uint64_t expected) override;
  void openWindow();
  bool takeBlock(const unsigned char* bytes, std::size_t units);
  bool takesLatin1() const;
  bool widen(Width width, std::size_t more);
  unsigned char* place(std::size_t character) const;

  PyObject* m_text = nullptr;
  std::size_t m_size = 0;      // characters
  std::size_t m_capacity = 0;  // of the str
  std::size_t m_expected;
  ReleasedLock* m_lock;
  Width m_width = kAscii;
  bool m_mayHavePairs;
  bool m_hasWide = false;            // a character above U+FFFF
  bool m_mayBeTooWide = false;       // something was taken away, or surrogates stand alone
  std::uint16_t m_half = 0;          // an upper half that waits for its lower one
  unsigned char* m_begin = nullptr;  // of the window
  alignas(32) unsigned char m_block[kBlockBytes];
};

// Whether a unit is a surrogate.
bool hasSurrogates(const std::uint16_t* units, std::size_t count);

// A str of units that may hold characters above U+FFFF, or not. Null with an exception.
PyObject* textOfUnits(const std::uint16_t* units, std::size_t count, bool mayHavePairs);

#endif  // PYTHON_SRC_TEXT_BUILDER_H_
