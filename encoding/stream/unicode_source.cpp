// Sources in UTF-8, UTF-16, UTF-32 and US-ASCII.
#include <new>

#include "encoding/special_code_pages.h"
#include "encoding/stream/source.h"
#include "support/zv_base.h"

namespace {

// ---- UTF-8 ----

// The three-byte form of a high surrogate.
bool isHighForm(const unsigned char* p) {
  return p[0] == 0xED && p[1] >= 0xA0 && p[1] < 0xB0 && isContinuation(p[2]);
}

std::uint32_t sequenceLength(unsigned char lead) {
  if (lead < 0x80) return 1;
  if (lead < 0xE0) return 2;
  return lead < 0xF0 ? 3 : 4;
}

// The front of data that ends with a whole sequence and with a whole pair of surrogate forms.
std::uint32_t wholeUtf8Length(const unsigned char* data, std::uint32_t length) {
  std::uint32_t end = length;
  for (std::uint32_t back = 1; back <= 3 && back <= length; ++back) {
    const unsigned char byte = data[length - back];
    if (isContinuation(byte)) continue;
    if (byte >= 0xC0 && sequenceLength(byte) > back) end = length - back;
    break;
  }
  // What waits may turn out to be the low half.
  return end >= 3 && isHighForm(data + end - 3) ? end - 3 : end;
}

// The engine reads and writes unpaired surrogates in a three-byte form of their own, which no one
// else calls UTF-8; here they are bad, while two forms that make a pair are read as the pair.
class Utf8Source final : public SteppingSource {
 public:
  explicit Utf8Source(EngineLegs& legs) : m_decoder(kUtf8, legs) {}

  std::uint32_t take(const unsigned char* data, std::uint32_t length, bool last,
                     SourceBlock& block) override {
    const std::uint32_t whole = last ? length : wholeUtf8Length(data, length);
    if (!decodeAround({}, m_decoder, data, whole, block)) block.bad.latchFailure();
    startWalk(data, whole, block);
    return whole;
  }
  int bytesCodePage() const override { return kUtf8; }

 private:
  Step step(const unsigned char* p, std::uint32_t left) const override {
    const Utf8Sequence sequence = decodeScalar(p, left);
    return {sequence.length, sequence.value < 0x10000 ? 1u : 2u};
  }

  TextDecoder m_decoder;
};

// ---- UTF-16 ----

class Utf16Source final : public SteppingSource {
 public:
  explicit Utf16Source(bool bigEndian) : m_bigEndian(bigEndian) {}

  std::uint32_t take(const unsigned char* data, std::uint32_t length, bool last,
                     SourceBlock& block) override {
    std::uint32_t count = length / 2;
    // A high surrogate waits for its other half.
    if (!last && count != 0 && isHighSurrogate(unitAt(data, count - 1))) --count;
    std::uint32_t used = count * 2;
    std::uint16_t* units = block.units.reserve(count + 1);  // never null for want of rows
    if (units == nullptr) return 0;
    for (std::uint32_t i = 0; i < count; ++i) {
      units[i] = static_cast<std::uint16_t>(unitAt(data, i));
    }
    block.units.commit(count);
    if (hasUnpairedSurrogate(units, count)) takeOutLoneSurrogates(count, block);
    if (last && used < length) {
      block.bad.add({used, 1, block.units.size(), used, 1, -1});
      ++used;
    }
    startWalk(data, used, block);
    return used;
  }

 private:
  std::uint32_t unitAt(const unsigned char* data, std::uint32_t index) const {
    const unsigned char* p = data + index * 2;
    return zvLoadHostUnit(p, m_bigEndian);
  }

  static void takeOutLoneSurrogates(std::uint32_t count, SourceBlock& block) {
    std::uint32_t kept = 0;
    for (std::uint32_t i = 0; i < count; ++i) {
      const std::uint16_t unit = block.units[i];
      if (!isSurrogate(unit)) {
        block.units.at(kept++) = unit;
      } else if (isHighSurrogate(unit) && i + 1 < count && isLowSurrogate(block.units[i + 1])) {
        block.units.at(kept++) = unit;
        block.units.at(kept++) = block.units[++i];
      } else {
        block.bad.add({i * 2, 2, kept, i * 2, 2, unit});
      }
    }
    block.units.truncate(kept);
  }

  Step step(const unsigned char* p, std::uint32_t left) const override {
    if (left >= 4 && isHighSurrogate(unitAt(p, 0))) return {4, 2};
    return {2, 1};
  }

  bool m_bigEndian;
};

// ---- UTF-32 ----

class Utf32Source final : public SteppingSource {
 public:
  explicit Utf32Source(bool bigEndian) : m_bigEndian(bigEndian) {}

  std::uint32_t take(const unsigned char* data, std::uint32_t length, bool last,
                     SourceBlock& block) override {
    std::uint32_t used = length & ~3u;
    std::uint16_t* units = block.units.reserve(used / 2 + 1);  // two for a character at most
    if (units == nullptr) return 0;
    std::uint32_t count = 0;
    for (std::uint32_t i = 0; i < used; i += 4) {
      const std::uint32_t value = valueAt(data + i);
      if (value < 0x10000 && !isSurrogate(value)) {
        units[count++] = static_cast<std::uint16_t>(value);
      } else if (value - 0x10000 < 0x100000) {
        units[count++] = static_cast<std::uint16_t>(0xD7C0 + (value >> 10));
        units[count++] = static_cast<std::uint16_t>(0xDC00 | (value & 0x3FF));
      } else {
        const bool isUnit = value < 0x10000;
        block.bad.add({i, 4, count, i, 4, isUnit ? static_cast<std::int32_t>(value) : -1});
      }
    }
    block.units.commit(count);
    if (last && used < length) {
      block.bad.add({used, length - used, count, used, length - used, -1});
      used = length;
    }
    startWalk(data, used, block);
    return used;
  }

 private:
  std::uint32_t valueAt(const unsigned char* p) const {
    const std::uint32_t first = zvLoadHostUnit(p, m_bigEndian);
    const std::uint32_t second = zvLoadHostUnit(p + 2, m_bigEndian);
    return m_bigEndian ? first << 16 | second : second << 16 | first;
  }

  Step step(const unsigned char* p, std::uint32_t /*left*/) const override {
    return {4, valueAt(p) >= 0x10000 ? 2u : 1u};
  }

  bool m_bigEndian;
};

// ---- US-ASCII ----

class AsciiSource final : public SteppingSource {
 public:
  std::uint32_t take(const unsigned char* data, std::uint32_t length, bool /*last*/,
                     SourceBlock& block) override {
    std::uint16_t* units = block.units.reserve(length + 1);
    if (units == nullptr) return 0;
    std::uint32_t count = 0;
    for (std::uint32_t i = 0; i < length; ++i) {
      if (data[i] < 0x80) {
        units[count++] = data[i];
      } else {
        block.bad.add({i, 1, count, i, 1, -1});
      }
    }
    block.units.commit(count);
    block.bytes = data;
    block.byteCount = length;
    startWalk(data, length, block);
    return length;
  }
  int bytesCodePage() const override { return kUsAscii; }

 private:
  Step step(const unsigned char* /*p*/, std::uint32_t /*left*/) const override { return {1, 1}; }
};

}  // namespace

std::unique_ptr<StreamSource> makeUtf8Source(EngineLegs& legs) {
  return std::unique_ptr<StreamSource>(new (std::nothrow) Utf8Source(legs));
}
std::unique_ptr<StreamSource> makeUtf16Source(bool bigEndian) {
  return std::unique_ptr<StreamSource>(new (std::nothrow) Utf16Source(bigEndian));
}
std::unique_ptr<StreamSource> makeUtf32Source(bool bigEndian) {
  return std::unique_ptr<StreamSource>(new (std::nothrow) Utf32Source(bigEndian));
}
std::unique_ptr<StreamSource> makeAsciiSource() {
  return std::unique_ptr<StreamSource>(new (std::nothrow) AsciiSource());
}
