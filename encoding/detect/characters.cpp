#include "encoding/detect/characters.h"

#include <algorithm>
#include <iterator>

namespace detection {
namespace {

struct Range {
  char16_t first;
  Script script;
};

// Each range ends where the next one begins.
constexpr Range kRanges[] = {
    {0x0000, Script::kControl},  {0x0009, Script::kNone},     {0x000B, Script::kControl},
    {0x000C, Script::kNone},     {0x000E, Script::kControl},  {0x001A, Script::kNone},
    {0x001C, Script::kControl},  {0x0020, Script::kNone},     {0x0041, Script::kLatin},
    {0x005B, Script::kNone},     {0x0061, Script::kLatin},    {0x007B, Script::kNone},
    {0x007F, Script::kControl},  {0x0085, Script::kNone},     {0x0086, Script::kControl},
    {0x00A0, Script::kNone},     {0x00AA, Script::kLatin},    {0x00AB, Script::kNone},
    {0x00B5, Script::kLatin},    {0x00B6, Script::kNone},     {0x00BA, Script::kLatin},
    {0x00BB, Script::kNone},     {0x00C0, Script::kLatin},    {0x00D7, Script::kNone},
    {0x00D8, Script::kLatin},    {0x00F7, Script::kNone},     {0x00F8, Script::kLatin},
    {0x02B0, Script::kNone},     {0x0300, Script::kLatin},    {0x0370, Script::kGreek},
    {0x0400, Script::kCyrillic}, {0x0530, Script::kArmenian}, {0x0590, Script::kHebrew},
    {0x0600, Script::kArabic},   {0x0780, Script::kOdd},      {0x0900, Script::kIndic},
    {0x0E00, Script::kThai},     {0x0E80, Script::kIndic},    {0x10A0, Script::kGeorgian},
    {0x1100, Script::kHangul},   {0x1200, Script::kEthiopic}, {0x13A0, Script::kOdd},
    {0x1780, Script::kIndic},    {0x1800, Script::kOdd},      {0x1C80, Script::kCyrillic},
    {0x1C90, Script::kGeorgian}, {0x1CC0, Script::kOdd},      {0x1E00, Script::kLatin},
    {0x1F00, Script::kGreek},    {0x2000, Script::kNone},     {0x2070, Script::kRare},
    {0x20A0, Script::kNone},     {0x20C1, Script::kRare},     {0x2116, Script::kNone},
    {0x2117, Script::kRare},     {0x2122, Script::kNone},     {0x2123, Script::kRare},
    {0x2190, Script::kRare},     {0x2200, Script::kRare},     {0x2500, Script::kRare},
    {0x2C00, Script::kOdd},      {0x2E00, Script::kRare},     {0x3000, Script::kNone},
    {0x3020, Script::kRare},     {0x3041, Script::kKana},     {0x3100, Script::kHan},
    {0x3130, Script::kHangul},   {0x3190, Script::kRare},     {0x31F0, Script::kKana},
    {0x3200, Script::kRare},     {0x3400, Script::kHan},      {0xA000, Script::kOdd},
    {0xAC00, Script::kHangul},   {0xD7A4, Script::kOdd},      {0xD800, Script::kRare},
    {0xE000, Script::kOdd},      {0xF900, Script::kHan},      {0xFB00, Script::kRare},
    {0xFB1D, Script::kHebrew},   {0xFB50, Script::kArabic},   {0xFE00, Script::kRare},
    {0xFE70, Script::kArabic},   {0xFEFF, Script::kRare},     {0xFF01, Script::kNone},
    {0xFF21, Script::kRare},     {0xFF5B, Script::kNone},     {0xFF66, Script::kHalfKana},
    {0xFFA0, Script::kRare},     {0xFFF0, Script::kOdd},      {0xFFFD, Script::kRare},
    {0xFFFE, Script::kOdd},
};
static_assert(std::ranges::is_sorted(kRanges, {}, &Range::first));

bool isUpperOfPair(char16_t unit) {
  const bool isOddPair = (unit >= 0x139 && unit <= 0x148) || (unit >= 0x179 && unit <= 0x17E);
  return (unit & 1) == (isOddPair ? 1 : 0);
}

}  // namespace

Script scriptOf(char16_t unit) {
  return std::prev(std::ranges::upper_bound(kRanges, unit, {}, &Range::first))->script;
}

char16_t lowerOf(char16_t unit) {
  const auto moved = [unit](int by) { return static_cast<char16_t>(unit + by); };
  if (unit < 0x80) return unit >= 'A' && unit <= 'Z' ? moved(32) : unit;
  if (unit >= 0xC0 && unit <= 0xDE && unit != 0xD7) return moved(32);
  if (unit == 0x178) return 0xFF;
  if ((unit >= 0x100 && unit <= 0x17E && unit != 0x130 && unit != 0x131 && unit != 0x138) ||
      (unit >= 0x218 && unit <= 0x21B) || (unit >= 0x490 && unit <= 0x491)) {
    return isUpperOfPair(unit) ? moved(1) : unit;
  }
  if (unit == 0x1A0 || unit == 0x1AF) return moved(1);
  if (unit >= 0x391 && unit <= 0x3AB) return moved(32);
  if (unit == 0x386) return 0x3AC;
  if (unit >= 0x388 && unit <= 0x38A) return moved(37);
  if (unit == 0x38C) return 0x3CC;
  if (unit == 0x38E || unit == 0x38F) return moved(63);
  if (unit >= 0x410 && unit <= 0x42F) return moved(32);
  if (unit >= 0x400 && unit <= 0x40F) return moved(80);
  return unit;
}

}  // namespace detection
