// Looks for the input that costs most, for each kind of pair and each error action: prints the
// processor time of clean text and of the worst input found, in nanoseconds a byte of input, the
// same for the worst input in nanoseconds a byte of input or output, the most bytes of output for a
// byte of input, and whether twice the input takes twice the time.
#include <algorithm>
#include <cstdio>
#include <ctime>
#include <random>
#include <string>
#include <vector>

#include "encoding/encoding_convert.h"

namespace {

constexpr std::size_t kSize = 32 * 1024;

struct Pair {
  int from, to;
};
constexpr Pair kPairs[] = {
    {1252, 65001},  {65001, 1252},  {1252, 1250},   {37, 20297},    {1200, 65001},  {65001, 1200},
    {1200, 1251},   {1252, 1201},   {932, 65001},   {65001, 932},   {932, 936},     {949, 1252},
    {10001, 65001}, {65001, 1258},  {65001, 12001}, {12000, 65001}, {65000, 65001}, {65001, 65000},
    {50220, 65001}, {65001, 50220}, {50225, 936},   {65001, 50225}, {55000, 65001}, {65001, 55000},
    {10004, 65001}, {20127, 932}};

struct Action {
  const char* name;
  int number, alternate, defBytes;
};
constexpr Action kActions[] = {
    {"0", 0, 0, 0}, {"1 (1 byte)", 1, 0, 1},    {"1 (100 bytes)", 1, 0, 100},
    {"2", 2, 0, 0}, {"6 (65001)", 6, 65001, 0}, {"6 (932)", 6, 932, 0},
    {"7", 7, 0, 0}};

double now() {
  timespec time{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) * 1e9 + static_cast<double>(time.tv_nsec);
}

const unsigned char* bytesOf(const std::string& text) {
  return reinterpret_cast<const unsigned char*>(text.data());
}

std::string repeated(const std::string& piece, std::size_t size) {
  std::string text;
  while (text.size() < size) text += piece;
  text.resize(size);
  return text;
}

std::string convert(int from, int to, const std::string& text) {
  LogBase log;
  DataBuffer out;
  EncodingConvert().EncConvert(from, to, bytesOf(text), static_cast<unsigned int>(text.size()), out,
                               log);
  return {reinterpret_cast<const char*>(out.getData2()), out.getSize()};
}

struct Cost {
  double time, output;  // a byte of input: nanoseconds, bytes
};

Cost measure(const Pair& pair, const Action& action, const std::string& text, int runs) {
  static const std::string substitute = repeated("?\x82\xA0", 100);
  EncodingConvert converter;
  converter.setErrorAction(action.number);
  converter.setAltDestCodepage(action.alternate);
  converter.setDefBytes(bytesOf(substitute), action.defBytes);
  LogBase log;
  Cost best{1e30, 0};
  const auto size = static_cast<double>(text.size());
  for (int run = 0; run < runs; ++run) {
    DataBuffer out;
    const double start = now();
    converter.EncConvert(pair.from, pair.to, bytesOf(text), static_cast<unsigned int>(text.size()),
                         out, log);
    best.time = std::min(best.time, (now() - start) / size);
    best.output = static_cast<double>(out.getSize()) / size;
  }
  return best;
}

const char* const kScripts =
    "plain \xC3\xA9\xC3\xA0 \xD0\xBF\xD1\x80 \xE6\x97\xA5\xE6\x9C\xAC \xEA\xB0\x80 "
    "\xF0\x9F\x98\x80";

std::vector<std::string> candidates(const Pair& pair) {
  const std::string pieces[] = {"\xFF",
                                "\x80",
                                std::string(1, '\0'),
                                "\x81\xFF",
                                "\xFF\x61",
                                "a\xFF",
                                "\x81\x20",
                                "\xC9\xFF",
                                "\xED\xA0\x80",
                                "\xE4\xB8",
                                "\xF0\x9F\x98",
                                "\xC0\x80",
                                "\xE4\xB8\x80",
                                "a\xE4\xB8\x80",
                                "\xF0\x9F\x98\x80",
                                "\xE1\xBA\xA0",
                                "\xEE\xBF\xBD",
                                std::string("a\0", 2),
                                std::string("\0\xD8", 2),
                                std::string("\0\xD8\0\xDC", 4),
                                "\x3D\xD8\x01\xDE",
                                std::string("\0\x4E", 2),
                                "\x1B$B\xFF\x1B(B",
                                "\x1B",
                                "\x1B$B!",
                                "\x0E\x0F",
                                "+",
                                "+A",
                                "+AAA-",
                                "\xA1\x20",
                                "\xC7\xA1",
                                std::string("\xFF\xFF\xFF\xFF", 4),
                                "\x1B(I\x7E\x1B$B\x7E\x7E"};
  std::vector<std::string> texts;
  for (const std::string& piece : pieces) texts.push_back(repeated(piece, kSize));
  std::mt19937 random(1);
  std::string noise;
  while (noise.size() < kSize) noise.push_back(static_cast<char>(random()));
  texts.push_back(noise);
  for (const char* piece :
       {"\xE4\xB8\x80", "\xF0\x9F\x98\x80", "\xD0\xAF", "\xE1\xBA\xA0", kScripts}) {
    const std::string coded =
        pair.from == 65001 ? std::string(piece) : convert(65001, pair.from, piece);
    if (!coded.empty()) texts.push_back(repeated(coded, kSize));
    if (!coded.empty()) texts.push_back(convert(65001, pair.from, repeated(piece, kSize)));
  }
  return texts;
}

// Text that passes without an error: every script that both sides have.
std::string cleanText(const Pair& pair) {
  const std::string there = convert(65001, pair.to, repeated(kScripts, kSize));
  return convert(pair.to, pair.from, there);
}

std::string describe(const std::string& text) {
  std::string digits;
  char two[4];
  for (std::size_t i = 0; i < std::min<std::size_t>(text.size(), 6); ++i) {
    std::snprintf(two, sizeof two, "%02X", static_cast<unsigned char>(text[i]));
    digits += two;
  }
  return digits;
}

}  // namespace

int main() {
  std::printf(
      "| Pair | Action | Clean | Worst | Factor | In and out | Factor | Output | Twice | Input "
      "|\n|---|---|---|---|---|---|---|---|---|---|\n");
  for (const Pair& pair : kPairs) {
    const std::string clean = cleanText(pair);
    const std::vector<std::string> texts = candidates(pair);
    for (const Action& action : kActions) {
      const Cost cleanCost = measure(pair, action, clean, 15);
      Cost worst{0, 0};
      double output = 0, ofBoth = 0;
      const std::string* input = &clean;
      for (const std::string& text : texts) {
        if (text.empty()) continue;
        const Cost cost = measure(pair, action, text, 2);
        output = std::max(output, cost.output);
        ofBoth = std::max(ofBoth, cost.time / (1 + cost.output));
        if (cost.time <= worst.time) continue;
        worst = cost;
        input = &text;
      }
      worst = measure(pair, action, *input, 4);
      const double twice = measure(pair, action, *input + *input, 3).time * 2 / worst.time;
      const double cleanOfBoth = cleanCost.time / (1 + cleanCost.output);
      std::printf("| %d to %d | %s | %.2f | %.1f | %.0f | %.1f | %.0f | %.1f | %.1f | %s |\n",
                  pair.from, pair.to, action.name, cleanCost.time, worst.time,
                  worst.time / cleanCost.time, ofBoth, ofBoth / cleanOfBoth, output, twice,
                  describe(*input).c_str());
      std::fflush(stdout);
    }
  }
}
