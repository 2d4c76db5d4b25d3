// Decimal: exact decimal numbers as text and as integers.
#include "interface/records/decimal.h"

#include <algorithm>
#include <charconv>
#include <limits>

namespace encconv {
namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

// Takes the digits at the beginning of text.
std::string_view takeDigits(std::string_view& text) {
  std::size_t count = 0;
  while (count < text.size() && isDigit(text[count])) ++count;
  const std::string_view digits = text.substr(0, count);
  text.remove_prefix(count);
  return digits;
}

bool takeAny(std::string_view& text, std::string_view characters) {
  if (text.empty() || characters.find(text[0]) == std::string_view::npos) return false;
  text.remove_prefix(1);
  return true;
}

// Takes "E5", "e-3" or nothing.
bool takeExponent(std::string_view& text, int& exponent) {
  exponent = 0;
  if (!takeAny(text, "eE")) return true;
  const bool isNegative = text.starts_with('-');
  takeAny(text, "+-");
  const std::string_view digits = takeDigits(text);
  constexpr int kMost = 999;
  const auto [rest, error] =
      std::from_chars(digits.data(), digits.data() + digits.size(), exponent);
  if (digits.empty() || error != std::errc() || exponent > kMost) return false;
  if (isNegative) exponent = -exponent;
  return true;
}

}  // namespace

void stripZeros(std::string& digits) {
  const std::size_t first = digits.find_first_not_of('0');
  digits.erase(0, first == std::string::npos ? digits.size() - 1 : first);
}

bool rescale(Decimal& number, int scale) {
  if (number.digits == "0") {
    number.scale = scale;
    return true;
  }
  if (scale >= number.scale) {
    number.digits.append(static_cast<std::size_t>(scale - number.scale), '0');
  } else {
    const auto excess = static_cast<std::size_t>(number.scale - scale);
    const std::size_t last = number.digits.find_last_not_of('0');
    if (excess > number.digits.size() - last - 1) return false;
    number.digits.erase(number.digits.size() - excess);
  }
  number.scale = scale;
  return true;
}

std::string Decimal::text() const {
  std::string text;
  if (negative) text += '-';
  const auto decimals = static_cast<std::size_t>(std::max(scale, 0));
  if (digits.size() <= decimals) {
    text += "0.";
    text.append(decimals - digits.size(), '0');
    text += digits;
  } else {
    const std::string_view all = digits;
    text += all.substr(0, all.size() - decimals);
    if (decimals != 0) text += '.';
    text += all.substr(all.size() - decimals);
  }
  return text;
}

std::optional<std::int64_t> Decimal::integer() const {
  if (scale > 0) return std::nullopt;
  std::uint64_t size = 0;
  const char* const end = digits.data() + digits.size();
  const auto [rest, error] = std::from_chars(digits.data(), end, size);
  constexpr auto kMost = std::uint64_t{std::numeric_limits<std::int64_t>::max()};
  if (error != std::errc() || rest != end || size > kMost + negative) return std::nullopt;
  return static_cast<std::int64_t>(negative ? 0 - size : size);
}

std::optional<Decimal> parse_decimal(std::string_view text) {
  Decimal number;
  number.negative = text.starts_with('-');
  takeAny(text, "+-");
  std::string digits(takeDigits(text));
  std::string_view decimals;
  if (takeAny(text, ".")) decimals = takeDigits(text);
  digits += decimals;
  int exponent = 0;
  if (digits.empty() || !takeExponent(text, exponent) || !text.empty()) return std::nullopt;
  stripZeros(digits);
  number.digits = std::move(digits);
  number.scale = static_cast<int>(decimals.size()) - exponent;
  if (number.scale < 0) rescale(number, 0);
  return number;
}

}  // namespace encconv
