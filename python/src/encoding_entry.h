// EncodingEntry: what is looked up once of an encoding that Python names.
#ifndef PYTHON_SRC_ENCODING_ENTRY_H_
#define PYTHON_SRC_ENCODING_ENTRY_H_

#include "python/src/interpreter.h"

#include "encoding/plan.h"
#include "encoding/stream/stream_converter.h"

// The encodings of the units that strings are made of on this machine.
struct HostUnits {
  int bytes;  // of Latin-1, which a byte a character is
  int utf16;
  int utf32;
};
extern const HostUnits kHostUnits;

// Made on first use, and kept for as long as the process lives. The interpreter lock guards all of
// this.
struct EncodingEntry {
  int codePage = 0;
  const EncodingRow* row = nullptr;
  bool isSingleByte = false;  // a table: one byte a character, each on its own
  bool isStateless = false;   // text may be read on from any character
  bool readsAscii = false;    // bytes below 80 are ASCII, wherever they stand
  bool writesAscii = false;   // and the other way round; known once it was opened for writing
  bool mayHavePairs = false;  // text may have characters above U+FFFF
  bool hasMark = false;       // text may begin with a byte order mark
  const fast::Plan* reading = nullptr;        // to UTF-16; null before the first use
  const fast::Plan* readingLatin1 = nullptr;  // to Latin-1, of a table of single bytes
  const fast::Plan* writing1 = nullptr;       // from Latin-1
  const fast::Plan* writing2 = nullptr;       // from UTF-16

  // False, with an exception, when the encoding cannot be read or written, or memory is short.
  bool openReading() { return reading != nullptr || openReadingFirst(); }
  bool openWriting() { return writing2 != nullptr || openWritingFirst(); }

 private:
  bool openReadingFirst();
  bool openWritingFirst();
};

// The entry of a name, or of the number of a code page. Null, with LookupError, for others.
EncodingEntry* findEntry(PyObject* encoding);

// A stream that is used for one call and then by others: what it allocated is kept. To be made and
// destroyed under the interpreter lock.
class BorrowedStream {
 public:
  BorrowedStream();
  ~BorrowedStream();
  BorrowedStream(const BorrowedStream&) = delete;
  BorrowedStream& operator=(const BorrowedStream&) = delete;

  StreamConverter& operator*() const { return *m_stream; }
  StreamConverter* operator->() const { return m_stream; }

 private:
  StreamConverter* m_stream;
};

#endif  // PYTHON_SRC_ENCODING_ENTRY_H_
