// Helpers that the engine's tests share.
#ifndef TESTS_TEST_SUPPORT_H_
#define TESTS_TEST_SUPPORT_H_

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "encoding/codecs/encoding_row.h"
#include "encoding/encoding_convert.h"
#include "support/zv_base.h"

inline const unsigned char* bytesOf(std::string_view text) {
  return reinterpret_cast<const unsigned char*>(text.data());
}

inline std::string textOf(const DataBuffer& buffer) {
  return {reinterpret_cast<const char*>(buffer.getData2()), buffer.getSize()};
}

// The rows that have a table text.
inline std::vector<EncodingRow> tableRows() {
  std::vector<EncodingRow> rows;
  for (const EncodingRow& row : encodingRows()) {
    if (hasTable(row) && row.mapping == nullptr) rows.push_back(row);
  }
  return rows;
}

// "41 00 E9": bytes that a failed comparison can be read in.
inline std::string hex(std::string_view bytes) {
  static constexpr char kDigits[] = "0123456789ABCDEF";
  std::string text;
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    if (!text.empty()) text += ' ';
    text += kDigits[byte >> 4];
    text += kDigits[byte & 15];
  }
  return text;
}
inline std::string hex(const DataBuffer& buffer) { return hex(textOf(buffer)); }

// The bytes of "41 00 E9", or of "4100E9".
inline std::string unhex(std::string_view digits) {
  std::string bytes;
  for (std::size_t i = 0; i + 1 < digits.size(); i += 2) {
    while (digits[i] == ' ') ++i;
    bytes.push_back(static_cast<char>(std::stoi(std::string(digits.substr(i, 2)), nullptr, 16)));
  }
  return bytes;
}

// What one conversion did.
struct ConversionResult {
  bool ok = false;
  bool foundErrors = false;
  std::string out;
  bool operator==(const ConversionResult&) const = default;
};
inline std::ostream& operator<<(std::ostream& stream, const ConversionResult& outcome) {
  return stream << (outcome.ok ? "true" : "false") << (outcome.foundErrors ? ", errors" : "")
                << " [" << hex(outcome.out) << "]";
}

inline ConversionResult convert(EncodingConvert& converter, int from, int to,
                                std::string_view input) {
  LogBase log;
  DataBuffer out;
  const bool ok = converter.EncConvert(from, to, bytesOf(input),
                                       static_cast<unsigned int>(input.size()), out, log);
  return {ok, converter.m_foundErrors, textOf(out)};
}
inline ConversionResult convert(int from, int to, std::string_view input) {
  EncodingConvert converter;
  return convert(converter, from, to, input);
}

// Answers as a big-endian host for as long as it lives; tables built meanwhile are released.
class BigEndianHost {
 public:
  BigEndianHost() { switchTo(true); }
  ~BigEndianHost() { switchTo(m_native); }
  BigEndianHost(const BigEndianHost&) = delete;
  BigEndianHost& operator=(const BigEndianHost&) = delete;

 private:
  static void switchTo(bool bigEndian) {
    EncodingConvert::cleanupMemory();
    zvSetBigEndianForTesting(bigEndian);
  }
  bool m_native = zvIsBigEndian();
};

#endif  // TESTS_TEST_SUPPORT_H_
