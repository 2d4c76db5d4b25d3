// Packed, zoned and binary numbers.
#include "interface/records/numbers.h"

#include <charconv>
#include <cstdint>

#include "interface/records/decimal.h"

namespace encconv {
namespace {

constexpr unsigned int kPositive = 0xC, kNegative = 0xD, kUnsigned = 0xF;

char hexDigit(unsigned int value) { return "0123456789ABCDEF"[value & 0xFu]; }

std::string hexByte(unsigned int value) { return {hexDigit(value >> 4), hexDigit(value)}; }

unsigned int byteAt(std::string_view bytes, std::size_t index) {
  return static_cast<unsigned char>(bytes[index]);
}

bool refuse(std::string& why, std::string reason) {
  why = std::move(reason);
  return false;
}

// ---- Signs of packed and of zoned EBCDIC numbers: a half byte. ----

bool readSign(unsigned int half, bool& isNegative) {
  constexpr unsigned int kOtherNegative = 0xB;
  isNegative = half == kNegative || half == kOtherNegative;
  return half >= 0xA;
}

unsigned int signOf(const Field& field, const Decimal& number) {
  if (!field.is_signed) return kUnsigned;
  return number.negative ? kNegative : kPositive;
}

// ---- Packed. ----

bool readPacked(std::string_view bytes, Decimal& number, std::string& why) {
  number.digits.clear();
  const std::size_t last = bytes.size() * 2 - 1;
  for (std::size_t i = 0; i < last; ++i) {
    const unsigned int half = byteAt(bytes, i / 2) >> (i % 2 == 0 ? 4 : 0) & 0xFu;
    if (half > 9)
      return refuse(why, std::string("no packed number: no digit is ") + hexDigit(half));
    number.digits += hexDigit(half);
  }
  const unsigned int sign = byteAt(bytes, bytes.size() - 1) & 0xFu;
  if (readSign(sign, number.negative)) return true;
  return refuse(why, std::string("no packed number: no sign is ") + hexDigit(sign));
}

void writePacked(const Field& field, const Decimal& number, char* bytes) {
  const std::string halves = std::string(field.length * 2 - 1 - number.digits.size(), '0') +
                             number.digits + hexDigit(signOf(field, number));
  for (std::size_t i = 0; i < field.length; ++i) {
    unsigned char byte = 0;
    std::from_chars(&halves[i * 2], &halves[i * 2] + 2, byte, 16);
    bytes[i] = static_cast<char>(byte);
  }
}

// ---- Zoned. ----

// The bytes that a sign of its own has.
char separateSign(bool isAscii, bool isNegative) {
  if (isAscii) return isNegative ? '-' : '+';
  return isNegative ? '\x60' : '\x4E';
}

// The letter that a digit with a sign is: what EBCDIC's bytes are as text.
constexpr std::string_view kPlusLetters = "{ABCDEFGHI", kMinusLetters = "}JKLMNOPQR";
// Another custom for negative numbers.
constexpr std::string_view kOtherMinusLetters = "pqrstuvwxy";

// Reads a digit; with a sign where it may have one.
bool readZonedDigit(unsigned int byte, bool isAscii, bool maySign, bool& isNegative, char& digit) {
  const auto c = static_cast<char>(byte);
  if (!isAscii) {
    digit = hexDigit(byte);
    const unsigned int zone = byte >> 4;
    return (byte & 0xFu) <= 9 && (zone == 0xF || (maySign && readSign(zone, isNegative)));
  }
  if (c >= '0' && c <= '9') {
    digit = c;
    return true;
  }
  if (!maySign) return false;
  for (const std::string_view letters : {kPlusLetters, kMinusLetters, kOtherMinusLetters}) {
    const std::size_t found = letters.find(c);
    if (found == std::string_view::npos) continue;
    digit = static_cast<char>('0' + found);
    isNegative = letters != kPlusLetters;
    return true;
  }
  return false;
}

bool readZoned(const Field& field, bool isAscii, std::string_view bytes, Decimal& number,
               std::string& why) {
  number.negative = false;
  number.digits.clear();
  const std::size_t signPlace = field.leading ? 0 : bytes.size() - 1;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const unsigned int byte = byteAt(bytes, i);
    if (field.separate && i == signPlace) {
      number.negative = bytes[i] == separateSign(isAscii, true);
      if (number.negative || bytes[i] == separateSign(isAscii, false)) continue;
      return refuse(why, "no zoned number: no sign is " + hexByte(byte));
    }
    char digit = 0;
    if (!readZonedDigit(byte, isAscii, i == signPlace, number.negative, digit)) {
      return refuse(why, "no zoned number: no digit is " + hexByte(byte));
    }
    number.digits += digit;
  }
  return true;
}

void writeZoned(const Field& field, bool isAscii, const Decimal& number, char* bytes) {
  std::string text = std::string(digitRoom(field) - number.digits.size(), '0') + number.digits;
  if (!isAscii) {
    for (char& c : text) c = static_cast<char>(0xF0u | (static_cast<unsigned int>(c) & 0xFu));
  }
  if (field.separate) {
    text.insert(field.leading ? 0 : text.size(), 1, separateSign(isAscii, number.negative));
  } else if (field.is_signed) {
    char& carrier = field.leading ? text.front() : text.back();
    const unsigned int digit = static_cast<unsigned char>(carrier) & 0xFu;
    carrier = isAscii ? (number.negative ? kMinusLetters : kPlusLetters)[digit]
                      : static_cast<char>(signOf(field, number) << 4 | digit);
  }
  text.copy(bytes, text.size());
}

// ---- Binary. ----

void readBinary(const Field& field, std::string_view bytes, Decimal& number) {
  std::uint64_t value = 0;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    value = value << 8 | byteAt(bytes, field.little_endian ? bytes.size() - 1 - i : i);
  }
  const std::uint64_t signBit = std::uint64_t{1} << (bytes.size() * 8 - 1);
  number.negative = field.is_signed && (value & signBit) != 0;
  if (number.negative) value = signBit - (value & (signBit - 1));
  number.digits = std::to_string(value);
}

bool writeBinary(const Field& field, const Decimal& number, char* bytes) {
  std::uint64_t value = 0;
  const char* const end = number.digits.data() + number.digits.size();
  const bool isRead = std::from_chars(number.digits.data(), end, value).ec == std::errc();
  const unsigned int bits = field.length * 8 - (field.is_signed ? 1 : 0);
  const std::uint64_t most = (bits == 64 ? UINT64_MAX : (std::uint64_t{1} << bits) - 1) +
                             (field.is_signed && number.negative ? 1 : 0);
  if (!isRead || value > most) return false;
  if (number.negative) value = 0 - value;
  for (std::size_t i = 0; i < field.length; ++i) {
    bytes[field.little_endian ? i : field.length - 1 - i] = static_cast<char>(value >> (8 * i));
  }
  return true;
}

}  // namespace

std::size_t digitRoom(const Field& field) {
  switch (field.type) {
    case FieldType::packed:
      return field.length * std::size_t{2} - 1;
    case FieldType::zoned:
      return field.length - (field.separate ? 1u : 0u);
    default:
      return 0;
  }
}

bool readNumber(const Field& field, bool isAscii, std::string_view bytes, Decimal& number,
                std::string& why) {
  number.scale = field.scale;
  if (field.type == FieldType::binary) {
    readBinary(field, bytes, number);
    return true;
  }
  const bool isRead = field.type == FieldType::packed
                          ? readPacked(bytes, number, why)
                          : readZoned(field, isAscii, bytes, number, why);
  if (!isRead) return false;
  stripZeros(number.digits);
  if (number.negative && !field.is_signed) {
    return refuse(why, "a negative number in a field that is unsigned");
  }
  return true;
}

bool writeNumber(const Field& field, bool isAscii, Decimal number, char* bytes, std::string& why) {
  const std::string text = number.text();
  const bool isZero = number.digits == "0";
  if (number.negative && !field.is_signed && !isZero) {
    return refuse(why, text + " is negative, and the field is unsigned");
  }
  if (!rescale(number, field.scale)) {
    return refuse(why, text + " has more than " + std::to_string(field.scale) + " decimals");
  }
  const std::size_t room = field.digits != 0 ? field.digits : digitRoom(field);
  const bool isTooLong = room != 0 && number.digits.size() > room;
  if (isTooLong || (field.type == FieldType::binary && !writeBinary(field, number, bytes))) {
    return refuse(why, text + " is too large for the field");
  }
  if (field.type == FieldType::packed) writePacked(field, number, bytes);
  if (field.type == FieldType::zoned) writeZoned(field, isAscii, number, bytes);
  return true;
}

}  // namespace encconv
