#include "python/src/text_builder.h"

#include <algorithm>
#include <cstring>

#include "encoding/kernels/kernels.h"
#include "support/huge_pages.h"
#include "support/utf.h"

namespace {

constexpr Py_UCS4 kLargest[] = {0x7F, 0xFF, 0xFFFF, 0x10FFFF};  // by width

template <typename Unit>
Unit bitsOf(const Unit* units, std::size_t count) {
  Unit bits = 0;
  for (std::size_t i = 0; i < count; ++i) bits |= units[i];
  return bits;
}

void narrow(const std::uint16_t* units, std::size_t count, unsigned char* to) {
  for (std::size_t i = 0; i < count; ++i) to[i] = static_cast<unsigned char>(units[i]);
}

template <typename To, typename From>
void copyWidened(const void* from, std::size_t count, void* to) {
  const auto* const source = static_cast<const From*>(from);
  auto* const target = static_cast<To*>(to);
  for (std::size_t i = 0; i < count; ++i) target[i] = source[i];
}

// Joins pairs, a half that waits with the first unit; returns the end of what was written.
Py_UCS4* joinPairs(const std::uint16_t* units, std::size_t count, Py_UCS4* to, std::uint16_t& half,
                   bool& hasWide, bool& hasLone) {
  for (std::size_t i = 0; i < count; ++i) {
    const std::uint16_t unit = units[i];
    if (half != 0 && isLowSurrogate(unit)) {
      *to++ = static_cast<Py_UCS4>(joinSurrogates(half, unit));
      hasWide = true;
      half = 0;
      continue;
    }
    if (half != 0) {
      *to++ = half;
      hasLone = true;
      half = 0;
    }
    if (isHighSurrogate(unit)) {
      half = unit;
    } else {
      hasLone = hasLone || isLowSurrogate(unit);
      *to++ = unit;
    }
  }
  return to;
}

}  // namespace

// By numbers of sixteen bits: as many of them stand in a register as units.
bool hasSurrogates(const std::uint16_t* units, std::size_t count) {
  std::uint16_t found = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const auto fromFirst = static_cast<std::uint16_t>(units[i] - 0xD800);
    found = static_cast<std::uint16_t>(found | (fromFirst < 0x800 ? 1 : 0));
  }
  return found != 0;
}

PyObject* textOfUnits(const std::uint16_t* units, std::size_t count, bool mayHavePairs) {
  if (mayHavePairs && hasSurrogates(units, count)) {
    int order = PY_BIG_ENDIAN ? 1 : -1;
    return PyUnicode_DecodeUTF16(reinterpret_cast<const char*>(units), pySize(count * 2),
                                 "surrogatepass", &order);
  }
  const std::uint16_t bits = bitsOf(units, count);
  const Py_UCS4 largest = bits < 0x80 ? 0x7F : bits < 0x100 ? 0xFF : 0xFFFF;
  PyObject* const text = PyUnicode_New(pySize(count), largest);
  if (text == nullptr || count == 0) return text;
  if (bits < 0x100) {
    narrow(units, count, PyUnicode_1BYTE_DATA(text));
  } else {
    std::memcpy(PyUnicode_2BYTE_DATA(text), units, count * 2);
  }
  return text;
}

TextBuilder::~TextBuilder() {
  const HeldLock held(m_lock);
  Py_XDECREF(m_text);
}

unsigned char* TextBuilder::place(std::size_t character) const {
  return static_cast<unsigned char*>(PyUnicode_DATA(m_text)) +
         character * static_cast<std::size_t>(PyUnicode_KIND(m_text));
}

// Makes room for more characters of a width.
bool TextBuilder::widen(Width width, std::size_t more) {
  const Width target = std::max(width, m_width);
  if (m_text != nullptr && target == m_width && m_capacity - m_size >= more) return true;
  const bool isFirst = m_text == nullptr;
  const std::size_t least = m_size + more;
  std::size_t capacity = std::max({least, m_expected, m_capacity});
  if (!isFirst && least > m_capacity) capacity = std::max(least, m_capacity + m_capacity / 2 + 64);
  PyObject* made = nullptr;
  {
    const HeldLock held(m_lock);
    made = PyUnicode_New(pySize(capacity), kLargest[target]);
    if (made == nullptr && capacity != least) {
      PyErr_Clear();
      made = PyUnicode_New(pySize(capacity = least), kLargest[target]);
    }
  }
  if (made == nullptr) return false;
  unsigned char* const to = static_cast<unsigned char*>(PyUnicode_DATA(made));
  const auto unitBytes = static_cast<std::size_t>(PyUnicode_KIND(made));
  preferHugePages(to, capacity * unitBytes);
  if (m_size != 0) {
    const unsigned char* const from = place(0);
    const auto oldBytes = static_cast<std::size_t>(PyUnicode_KIND(m_text));
    if (oldBytes == unitBytes) {
      std::memcpy(to, from, m_size * unitBytes);
    } else if (unitBytes == 2) {
      copyWidened<Py_UCS2, Py_UCS1>(from, m_size, to);
    } else if (oldBytes == 1) {
      copyWidened<Py_UCS4, Py_UCS1>(from, m_size, to);
    } else {
      copyWidened<Py_UCS4, Py_UCS2>(from, m_size, to);
    }
  }
  const HeldLock held(m_text != nullptr ? m_lock : nullptr);
  Py_XDECREF(m_text);
  m_text = made;
  m_capacity = capacity;
  m_width = target;
  return true;
}

// Takes the units of a block over into the str, as narrow as they may be.
bool TextBuilder::takeBlock(const unsigned char* bytes, std::size_t count) {
  const auto* const units = reinterpret_cast<const std::uint16_t*>(bytes);
  const bool isWide =
      m_width == kScalars || m_half != 0 || (m_mayHavePairs && hasSurrogates(units, count));
  if (isWide) {
    if (!widen(kScalars, count + 1)) return false;
    bool hasLone = false;
    auto* const to = reinterpret_cast<Py_UCS4*>(place(m_size));
    m_size +=
        static_cast<std::size_t>(joinPairs(units, count, to, m_half, m_hasWide, hasLone) - to);
    m_mayBeTooWide = m_mayBeTooWide || hasLone;
    return true;
  }
  const std::uint16_t bits = m_width >= kUnits ? std::uint16_t{0xFFFF} : bitsOf(units, count);
  if (!widen(bits < 0x80 ? kAscii : bits < 0x100 ? kLatin1 : kUnits, count)) return false;
  if (m_width == kUnits) {
    std::memcpy(place(m_size), bytes, count * 2);
  } else {
    narrow(units, count, place(m_size));
  }
  m_size += count;
  return true;
}

void TextBuilder::openWindow() {
  constexpr std::size_t kWindow = 2 * kBlockBytes;
  const std::size_t room = m_width == kUnits ? (m_capacity - m_size) * 2 : 0;
  if (room >= kMaxRequest + fast::kKernelSlack && m_half == 0) {
    m_begin = next = place(m_size);
    end = next + std::min(room, kWindow);
  } else {
    m_begin = next = m_block;
    end = m_block + sizeof m_block;
  }
}

bool TextBuilder::flush() {
  const auto units = static_cast<std::size_t>(next - m_begin) / 2;
  const bool isBlock = m_begin == m_block;
  const unsigned char* const begin = m_begin;
  m_begin = next = end = nullptr;
  if (units == 0) return true;
  if (isBlock) return takeBlock(begin, units);
  const auto* const written = reinterpret_cast<const std::uint16_t*>(begin);
  if (!m_mayHavePairs || !hasSurrogates(written, units)) {
    m_size += units;
    return true;
  }
  // What is in the place of the str has to leave it to become wider.
  constexpr std::size_t kUnitsAtOnce = kBlockBytes / 2;
  PyObject* const narrower = m_text;
  {
    const HeldLock held(m_lock);
    Py_INCREF(narrower);
  }
  bool isTaken = true;
  for (std::size_t done = 0; done < units && isTaken; done += kUnitsAtOnce) {
    const std::size_t part = std::min(kUnitsAtOnce, units - done);
    std::memcpy(m_block, begin + done * 2, part * 2);
    isTaken = takeBlock(m_block, part);
  }
  const HeldLock held(m_lock);
  Py_DECREF(narrower);
  return isTaken;
}

bool TextBuilder::grow(std::size_t /*count*/, std::uint64_t /*expected*/) {
  if (!flush()) return false;
  openWindow();
  return true;
}

bool TextBuilder::append(PyObject* text) {
  const auto count = static_cast<std::size_t>(PyUnicode_GET_LENGTH(text));
  if (count == 0) return true;
  const int kind = PyUnicode_KIND(text);
  const Width width = PyUnicode_IS_ASCII(text)       ? kAscii
                      : kind == PyUnicode_1BYTE_KIND ? kLatin1
                      : kind == PyUnicode_2BYTE_KIND ? kUnits
                                                     : kScalars;
  if (!widen(width, count)) return false;
  if (PyUnicode_CopyCharacters(m_text, pySize(m_size), text, 0, pySize(count)) < 0) return false;
  m_hasWide = m_hasWide || width == kScalars;
  m_size += count;
  return true;
}

bool TextBuilder::appendLatin1(const unsigned char* bytes, std::size_t count, bool isAscii) {
  const bool mayWiden = !isAscii && m_width == kAscii;
  const unsigned int bits = mayWiden ? bitsOf(bytes, count) : 0;
  if (!widen(bits < 0x80 ? kAscii : kLatin1, count)) return false;
  if (m_width <= kLatin1) {
    std::memcpy(place(m_size), bytes, count);
  } else if (m_width == kUnits) {
    copyWidened<Py_UCS2, Py_UCS1>(bytes, count, place(m_size));
  } else {
    copyWidened<Py_UCS4, Py_UCS1>(bytes, count, place(m_size));
  }
  m_size += count;
  return true;
}

bool TextBuilder::takesLatin1() const {
  return m_width <= kLatin1 && m_capacity - m_size >= 4 * fast::kKernelSlack;
}

std::span<unsigned char> TextBuilder::latin1Window() {
  if (!takesLatin1()) return m_block;
  return {place(m_size), std::min(m_capacity - m_size, kBlockBytes)};
}

bool TextBuilder::takeLatin1(std::size_t count) {
  if (!takesLatin1()) return appendLatin1(m_block, count);
  const unsigned char* const bytes = place(m_size);
  if (m_width == kLatin1 || bitsOf(bytes, count) < 0x80) {
    m_size += count;
    return true;
  }
  std::memcpy(m_block, bytes, count);  // a wider str takes the place of this one
  return appendLatin1(m_block, count);
}

void TextBuilder::truncate(std::size_t size) {
  m_begin = next = end = nullptr;
  m_half = 0;
  m_mayBeTooWide = m_mayBeTooWide || size != m_size;
  m_size = size;
}

PyObject* TextBuilder::finish() {
  if (!flush()) return nullptr;
  if (m_half != 0) {
    if (!widen(kScalars, 1)) return nullptr;
    *reinterpret_cast<Py_UCS4*>(place(m_size++)) = m_half;
    m_half = 0;
    m_mayBeTooWide = true;
  }
  if (m_text == nullptr || m_size == 0) return PyUnicode_New(0, 0);
  if (m_mayBeTooWide)
    return PyUnicode_FromKindAndData(PyUnicode_KIND(m_text), place(0), pySize(m_size));
  if (m_size != m_capacity && PyUnicode_Resize(&m_text, pySize(m_size)) != 0) return nullptr;
  PyObject* const text = m_text;
  m_text = nullptr;
  return text;
}
