// EUC-JP to and from UTF-16: ASCII, JIS X 0208 in two bytes, half-width katakana behind 8E, and
// JIS X 0212 in two bytes behind 8F.
//
// The planes are those of the standards, as other converters have them: row 13 and the rows of NEC
// and IBM are those of code page 51932. Controls from 80 up are themselves, but for the two that
// shift. A pair that is not assigned is one malformed piece, and so are three bytes behind 8F; a
// byte that cannot end a character is read again as itself.
#include "encoding/codecs/euc_jp.h"

#include <atomic>
#include <memory>
#include <new>

#include "encoding/codecs/unit_text.h"
#include "encoding/tables/texts/table_image.h"
#include "encoding/tables/texts/table_texts.h"
#include "support/utf.h"

namespace {

constexpr unsigned char kKatakanaShift = 0x8E;  // single shift two
constexpr unsigned char kJis0212Shift = 0x8F;   // single shift three
constexpr std::uint16_t kFirstKatakana = 0xFF61;
constexpr unsigned char kLastKatakanaByte = 0xDF;
constexpr unsigned int kCells = 94;

constexpr bool isCell(unsigned int byte) { return byte >= 0xA1 && byte <= 0xFE; }
constexpr bool isControl(unsigned int byte) {
  return byte >= 0x80 && byte <= 0x9F && byte != kKatakanaShift && byte != kJis0212Shift;
}
// Of two cells.
constexpr unsigned int cellIndex(const unsigned char* pair) {
  return (pair[0] - 0xA1u) * kCells + pair[1] - 0xA1u;
}

// ---- The tables, made once for all threads. ----

struct Tables {
  std::uint16_t jis0208[kCells * kCells];  // units; 0: not assigned
  std::uint16_t jis0212[kCells * kCells];
  // By unit from 80 up: one byte; two, the first in the low half; or, where the second is below 80,
  // three behind 8F. 0: no code.
  std::uint16_t codes[65536];
};
std::atomic<const Tables*> g_tables;

// Adds a plane from its text, whose codes are of 7 bits. cellBit: the high bit of second bytes in
// `codes`. False when memory is short.
bool addPlane(void (*appendText)(StringBuffer& out), unsigned int cellBit,
              std::uint16_t (&units)[kCells * kCells], Tables& tables) {
  StringBuffer text;
  DataBuffer image;
  appendText(text);
  unpackTableImage(text.getString(), image);
  if (text.hasFailed() || image.hasFailed()) return false;
  const unsigned char* p = image.getData2() + 2 + 1;  // behind the flags, and no single bytes
  unsigned int code = 0, unit = 0;
  for (; loadImageU16(p) != 0; p += 4) {
    code = (code + loadImageU16(p)) & 0xFFFF;
    unit = (unit + loadImageU16(p + 2)) & 0xFFFF;
    const unsigned int row = code >> 8, cell = code & 0xFF;
    units[(row - 0x21) * kCells + cell - 0x21] = static_cast<std::uint16_t>(unit);
    tables.codes[unit] = static_cast<std::uint16_t>(row | 0x80 | (cell | cellBit) << 8);
  }
  return true;
}

bool fill(Tables& tables) {
  // What both planes have is written in two bytes.
  if (!addPlane(GetJisX0212, 0, tables.jis0212, tables)) return false;
  if (!addPlane(GetJisX0208, 0x80, tables.jis0208, tables)) return false;
  for (unsigned int byte = 0x80; byte < 0xA0; ++byte) {
    if (isControl(byte)) tables.codes[byte] = static_cast<std::uint16_t>(byte);
  }
  for (unsigned int byte = 0xA1; byte <= kLastKatakanaByte; ++byte) {
    tables.codes[kFirstKatakana + byte - 0xA1] =
        static_cast<std::uint16_t>(kKatakanaShift | byte << 8);
  }
  return true;
}

// Null when memory is short.
const Tables* openTables() {
  const Tables* published = g_tables.load(std::memory_order_acquire);
  if (published != nullptr) return published;
  std::unique_ptr<Tables> made(new (std::nothrow) Tables());
  if (made == nullptr || !fill(*made)) return nullptr;
  // Of two threads that come here together one publishes its tables and the other takes those.
  const bool isFirst = g_tables.compare_exchange_strong(
      published, made.get(), std::memory_order_acq_rel, std::memory_order_acquire);
  return isFirst ? made.release() : published;
}

// ---- Reading ----

struct Reader : UnitReader {
  using UnitReader::UnitReader;

  bool step() {
    const Tables& tables = *g_tables.load(std::memory_order_relaxed);
    const unsigned char* const stop = readable();
    while (p < stop) {
      copyAscii(stop);
      copyPairs(tables, stop);
      if (p < stop && *p >= 0x80 && !readUnit(tables)) return false;
    }
    return true;
  }
  void finish() {}

  void copyPairs(const Tables& tables, const unsigned char* stop) {
    const unsigned char* in = p;
    unsigned char* to = dest;
    for (; in < stop && end - in > 1 && isCell(in[0]) && isCell(in[1]); in += 2, to += 2) {
      const std::uint16_t unit = tables.jis0208[cellIndex(in)];
      if (unit == 0) break;
      storeLow(to, unit);
    }
    p = in;
    dest = to;
  }

  // What the loops leave: one character of any other kind. False when what follows decides.
  bool readUnit(const Tables& tables) {
    if (isControl(*p)) {
      putUnit(*p++);
      return true;
    }
    if (*p == 0xA0 || *p == 0xFF) return refuse(1);
    // Decided as early as it can be: what is read together has no more than one place.
    if (left() < 2) return last && refuse(1);
    if (!isCell(p[1])) return refuse(1);
    if (*p == kJis0212Shift) {
      if (left() < 3) return last && refuse(1);
      if (!isCell(p[2])) return refuse(1);
      return accept(3, tables.jis0212[cellIndex(p + 1)]);
    }
    const bool isKatakana = *p == kKatakanaShift && p[1] <= kLastKatakanaByte;
    return isKatakana ? accept(2, kFirstKatakana + p[1] - 0xA1u) : refuse(2);
  }
  bool accept(unsigned int length, unsigned int unit) {
    if (unit == 0) return refuse(length);
    p += length;
    putUnit(unit);
    return true;
  }
};

// ---- Writing ----

struct Writer : UnitWriter {
  using UnitWriter::UnitWriter;

  bool step() {
    const Tables& tables = *g_tables.load(std::memory_order_relaxed);
    const unsigned char* const stop = writable();
    while (p < stop) {
      copyAscii(stop);
      copyCodes(tables, stop);
      if (p < stop && !writeOther()) return false;
    }
    return true;
  }
  void finish() {}

  void copyCodes(const Tables& tables, const unsigned char* stop) {
    for (; p < stop && left() > 1; p += 2) {
      const unsigned int unit = loadLow<std::uint16_t>(p);
      const unsigned int code = unit < 0x80 ? unit : tables.codes[unit];
      const auto first = static_cast<unsigned char>(code);
      const auto second = static_cast<unsigned char>(code >> 8);
      if (second >= 0x80) {
        put(first, second);
      } else if (second != 0) {
        put(kJis0212Shift);
        put(first, static_cast<unsigned char>(second | 0x80));
      } else if (code != 0 || unit == 0) {
        put(first);
      } else {
        return;
      }
    }
  }

  // A character without a code, a surrogate, or half a unit. False when what follows decides.
  bool writeOther() {
    if (left() < 2) return last && geta(1);
    const std::uint32_t unit = loadLow<std::uint16_t>(p);
    if (!isHighSurrogate(unit)) return geta(2);
    if (left() < 4) return last && geta(2);
    return geta(isLowSurrogate(loadLow<std::uint16_t>(p + 2)) ? 4 : 2);
  }
  bool geta(unsigned int length) { return mark(length, 0xA2, 0xAE); }
};

// The characters of JIS X 0201 for which ASCII has others.
std::uint32_t approximate(const void* /*parameters*/, std::uint32_t scalar) {
  constexpr std::uint32_t kYenSign = 0xA5, kOverline = 0x203E;
  return scalar == kYenSign ? '\\' : scalar == kOverline ? '~' : 0;
}

template <typename Direction>
unsigned int run(const void* parameters, const unsigned char* data, unsigned int length, bool last,
                 CodecState& state, DataBuffer& out, ReplacementSink* sink) {
  if (openTables() != nullptr) {
    return runCodec<Direction>(parameters, data, length, last, state, out, sink);
  }
  out.latchFailure();
  return length;
}

}  // namespace

extern const Codec kEucJpCodec = {.codePage = 1200,
                                  .read = run<Reader>,
                                  .write = run<Writer>,
                                  .isStateless = true,
                                  .approximate = approximate};

void releaseEucJpTables() { delete g_tables.exchange(nullptr, std::memory_order_acq_rel); }
