// The source for UTF-7 (RFC 2152).
#include <new>

#include "encoding/stream/source.h"
#include "encoding/stream/utf7_alphabet.h"

namespace {

// What stands between two characters of the text.
struct Utf7State {
  bool inRun = false;
  std::uint32_t bits = 0;      // the last bitCount of them are pending
  std::uint32_t bitCount = 0;  // below 16
};

// Reads the units of a text one by one.
class Utf7Cursor {
 public:
  enum class Kind : unsigned char {
    kText,
    kBad,
    kWait,  // the end of the data, or too near it to tell
  };
  struct Character {
    Kind kind;
    std::uint32_t offset;
    std::uint32_t length;
    std::uint16_t units[2];
    std::uint32_t unitCount;
    std::int32_t codePoint;  // of an unpaired surrogate
  };

  Utf7Cursor() = default;
  Utf7Cursor(const unsigned char* data, std::uint32_t length, bool last, const Utf7State& state)
      : m_data(data), m_length(length), m_last(last), m_state(state) {}

  // The next character, with its surrogates joined. Stays where it is when it has to wait.
  Character next() {
    const Utf7Cursor before = *this;
    Character first = nextUnit();
    if (first.kind == Kind::kWait) {
      if (!m_last) *this = before;
      return first;
    }
    if (first.kind == Kind::kBad || !isSurrogate(first.units[0])) return first;
    if (isHighSurrogate(first.units[0])) {
      Utf7Cursor ahead = *this;
      const Character second = ahead.nextUnit();
      if (second.kind == Kind::kWait && !m_last) {
        *this = before;
        return second;
      }
      if (second.kind == Kind::kText && isLowSurrogate(second.units[0])) {
        *this = ahead;
        first.length = second.offset + second.length - first.offset;
        first.units[1] = second.units[0];
        first.unitCount = 2;
        return first;
      }
    }
    return {Kind::kBad, first.offset, first.length, {}, 0, first.units[0]};
  }

  std::uint32_t offset() const { return m_offset; }
  const Utf7State& state() const { return m_state; }

 private:
  static Character bad(std::uint32_t offset, std::uint32_t length) {
    return {Kind::kBad, offset, length, {}, 0, -1};
  }
  static Character text(std::uint32_t offset, std::uint32_t length, std::uint32_t unit) {
    return {Kind::kText, offset, length, {static_cast<std::uint16_t>(unit), 0}, 1, -1};
  }
  Character wait() const { return {Kind::kWait, m_offset, 0, {}, 0, -1}; }

  bool isAtEnd() const { return m_offset == m_length; }

  Character nextUnit() {
    while (true) {
      if (m_state.inRun) {
        bool runEnded = false;
        const Character found = nextOfRun(runEnded);
        if (!runEnded || found.kind != Kind::kWait) return found;
        continue;
      }
      if (isAtEnd()) return wait();
      const std::uint32_t begin = m_offset;
      const unsigned char byte = m_data[begin];
      if (byte != '+') {
        ++m_offset;
        return byte < 0x80 ? text(begin, 1, byte) : bad(begin, 1);
      }
      if (begin + 1 == m_length) {
        if (!m_last) return wait();
        ++m_offset;
        return bad(begin, 1);
      }
      ++m_offset;
      if (m_data[begin + 1] == '-') {
        ++m_offset;
        return text(begin, 2, '+');
      }
      if (base64Value(m_data[begin + 1]) < 0) return bad(begin, 1);
      m_state = {true, 0, 0};
    }
  }

  // The next unit of a run, or what is wrong at its end; waits, with runEnded set, when the run
  // ended well.
  Character nextOfRun(bool& runEnded) {
    const std::uint32_t begin = m_offset;
    while (!isAtEnd()) {
      const int value = base64Value(m_data[m_offset]);
      if (value < 0) return endRun(begin, runEnded);
      ++m_offset;
      m_state.bits = (m_state.bits << 6) | static_cast<std::uint32_t>(value);
      m_state.bitCount += 6;
      if (m_state.bitCount < 16) continue;
      // The bits behind the unit are judged at the end of the run, together with this place.
      if (isAtEnd() && !m_last) return wait();
      m_state.bitCount -= 16;
      return text(begin, m_offset - begin, (m_state.bits >> m_state.bitCount) & 0xFFFF);
    }
    return m_last ? endRun(begin, runEnded) : wait();
  }

  // Fewer than six bits may be left, all of them zero; anything else was cut off or mangled.
  Character endRun(std::uint32_t begin, bool& runEnded) {
    const std::uint32_t end = m_offset;
    const bool isPadding = m_state.bitCount < 6;
    const bool isZero = (m_state.bits & ((1u << m_state.bitCount) - 1)) == 0;
    m_state = {};
    runEnded = true;
    if (!isAtEnd() && m_data[m_offset] == '-') ++m_offset;
    if (isPadding && isZero) return wait();
    // What is left of mangled padding is part of the last digit of the unit before it.
    return isPadding ? bad(end == 0 ? 0 : end - 1, 1) : bad(begin, end - begin);
  }

  const unsigned char* m_data = nullptr;
  std::uint32_t m_length = 0;
  bool m_last = false;
  std::uint32_t m_offset = 0;
  Utf7State m_state;
};

class Utf7Source final : public StreamSource {
 public:
  std::uint32_t take(const unsigned char* data, std::uint32_t length, bool last,
                     SourceBlock& block) override {
    Utf7Cursor cursor(data, length, last, m_state);
    m_walk = cursor;
    m_walkUnit = 0;
    while (true) {
      const Utf7Cursor::Character found = cursor.next();
      if (found.kind == Utf7Cursor::Kind::kWait) break;
      if (found.kind == Utf7Cursor::Kind::kText) {
        block.units.add(found.units, found.unitCount);
      } else {
        block.bad.add({found.offset, found.length, block.units.size(), 0, 0, found.codePoint});
      }
    }
    m_state = cursor.state();
    return cursor.offset();
  }

  SourcePlace locateUnit(std::uint32_t unit) override {
    while (true) {
      const Utf7Cursor before = m_walk;
      const Utf7Cursor::Character found = m_walk.next();
      if (found.kind == Utf7Cursor::Kind::kWait) return {found.offset, 0, m_walkUnit};
      if (m_walkUnit + found.unitCount > unit) {
        m_walk = before;
        return {found.offset, found.length, m_walkUnit};
      }
      m_walkUnit += found.unitCount;
    }
  }
  SourcePlace locateByte(std::uint32_t /*byte*/) override { return {0, 0, 0}; }  // has no bytes

 private:
  Utf7State m_state;
  Utf7Cursor m_walk;
  std::uint32_t m_walkUnit = 0;
};

}  // namespace

std::unique_ptr<StreamSource> makeUtf7Source() {
  return std::unique_ptr<StreamSource>(new (std::nothrow) Utf7Source());
}
