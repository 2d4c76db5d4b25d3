// Sets libencconv_iconv beside the C library's iconv, on every encoding of the benchmark that both
// know, from and to UTF-8: a text of 4 MiB, 20 bytes with an open descriptor, and opening, 20
// bytes, closing.
//
//   iconv_bench LIBRARY SAMPLES ENCODINGS [TEXT]
//
// SAMPLES and ENCODINGS are samples.txt and encodings.txt; TEXT selects the encodings whose names
// have it. Ends with status 1 when a pair misses a goal.
#include <dlfcn.h>
#include <iconv.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace {

constexpr double kGoalLarge = 3, kGoalShort = 1, kGoalOpen = 2;
constexpr std::size_t kLargeBytes = 4 << 20, kShortBytes = 20;
constexpr int kRounds = 7;

// The calls of one of the two.
struct Calls {
  decltype(&::iconv_open) open = ::iconv_open;
  decltype(&::iconv) convert = ::iconv;
  decltype(&::iconv_close) close = ::iconv_close;
};

Calls callsOf(const char* library) {
  void* const handle = dlopen(library, RTLD_NOW | RTLD_LOCAL);
  if (handle == nullptr) {
    std::fprintf(stderr, "%s\n", dlerror());
    std::exit(2);
  }
  Calls calls;
  calls.open = reinterpret_cast<decltype(calls.open)>(dlsym(handle, "iconv_open"));
  calls.convert = reinterpret_cast<decltype(calls.convert)>(dlsym(handle, "iconv"));
  calls.close = reinterpret_cast<decltype(calls.close)>(dlsym(handle, "iconv_close"));
  return calls;
}

const auto kNone = reinterpret_cast<iconv_t>(-1);  // NOLINT: as iconv_open says

// Converts a text as a whole; false when something is in the way.
bool run(const Calls& calls, iconv_t cd, const std::string& text, std::string& out) {
  char* in = const_cast<char*>(text.data());
  char* next = out.data();
  std::size_t left = text.size(), room = out.size();
  return calls.convert(cd, &in, &left, &next, &room) != static_cast<std::size_t>(-1);
}

bool convert(const Calls& calls, const char* to, const char* from, const std::string& text,
             std::string& out) {
  const iconv_t cd = calls.open(to, from);
  if (cd == kNone) return false;
  out.assign(text.size() * 4 + 256, 0);
  char* in = const_cast<char*>(text.data());
  char* next = out.data();
  std::size_t left = text.size(), room = out.size();
  const auto bad = static_cast<std::size_t>(-1);
  const bool good = calls.convert(cd, &in, &left, &next, &room) != bad &&
                    calls.convert(cd, nullptr, nullptr, &next, &room) != bad;
  out.resize(out.size() - room);
  calls.close(cd);
  return good;
}

// The shortest of several rounds, in seconds for one time.
template <typename Work>
double measure(int times, Work work) {
  double best = 1e9;
  for (int round = 0; round < kRounds; ++round) {
    const auto begin = std::chrono::steady_clock::now();
    for (int i = 0; i < times; ++i) work();
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begin;
    best = std::min(best, taken.count() / times);
  }
  return best;
}

struct Times {
  double large, shortText, opened;
  bool isWhole;  // the text is converted to its end
};

Times measureAll(const Calls& calls, const char* to, const char* from, const std::string& large,
                 const std::string& shortText) {
  std::string out(large.size() * 4 + 256, 0);
  const iconv_t cd = calls.open(to, from);
  Times times{};
  times.isWhole = run(calls, cd, large, out);
  times.large = measure(1, [&] { run(calls, cd, large, out); });
  times.shortText = measure(5000, [&] { run(calls, cd, shortText, out); });
  times.opened = measure(2000, [&] {
    const iconv_t anew = calls.open(to, from);
    run(calls, anew, shortText, out);
    calls.close(anew);
  });
  calls.close(cd);
  return times;
}

// The sentences of each language, in the order of the file.
std::vector<std::string> readSamples(const char* path) {
  std::ifstream file(path);
  std::vector<std::string> texts;
  for (std::string line; std::getline(file, line);) {
    if (line.empty() || line[0] == '#') continue;
    if (line[0] == '[') {
      texts.emplace_back();
    } else if (!texts.empty()) {
      texts.back() += line + "\n";
    }
  }
  return texts;
}

std::vector<std::string> readEncodings(const char* path, const std::string& wanted) {
  std::ifstream file(path);
  std::vector<std::string> names;
  for (std::string line; std::getline(file, line);) {
    std::istringstream words(line);
    std::string page, family, name, iconvName;
    if (line.empty() || line[0] == '#' || !(words >> page >> family >> name >> iconvName)) continue;
    if (iconvName != "-" && iconvName.find(wanted) != std::string::npos) names.push_back(iconvName);
  }
  return names;
}

// As much text as 4 MiB have, of the language that an encoding holds and that needs it most.
bool findText(const Calls& calls, const std::string& encoding,
              const std::vector<std::string>& samples, std::string& utf8, std::string& text) {
  const std::string* best = nullptr;
  std::string out;
  std::ptrdiff_t most = -1;
  for (const std::string& sample : samples) {
    if (!convert(calls, encoding.c_str(), "UTF-8", sample, out)) continue;
    const auto high = std::count_if(sample.begin(), sample.end(), [](char c) { return c < 0; });
    if (high * 1000 / static_cast<std::ptrdiff_t>(sample.size()) <= most) continue;
    most = high * 1000 / static_cast<std::ptrdiff_t>(sample.size());
    best = &sample;
  }
  if (best == nullptr) return false;
  utf8.clear();
  while (utf8.size() + best->size() < kLargeBytes) utf8 += *best;
  return convert(calls, encoding.c_str(), "UTF-8", utf8, text);
}

// The first bytes, and no part of a character.
std::string cutShort(const Calls& calls, const char* from, const std::string& text) {
  const iconv_t cd = calls.open("UTF-8", from);
  char out[256];
  char* in = const_cast<char*>(text.data());
  char* next = out;
  std::size_t left = std::min(kShortBytes, text.size()), room = sizeof out;
  calls.convert(cd, &in, &left, &next, &room);
  calls.close(cd);
  return text.substr(0, static_cast<std::size_t>(in - text.data()));
}

// Prints one pair; whether it reaches the goals.
bool report(const Calls& theirs, const Calls& ours, const std::string& from, const std::string& to,
            const std::string& text) {
  const std::string shortText = cutShort(theirs, from.c_str(), text);
  const Times a = measureAll(theirs, to.c_str(), from.c_str(), text, shortText);
  const Times b = measureAll(ours, to.c_str(), from.c_str(), text, shortText);
  if (!a.isWhole || !b.isWhole) {
    std::printf("%-14s %-14s not measured: %s does not convert the text\n", from.c_str(),
                to.c_str(), a.isWhole ? "this library" : "the C library");
    return false;
  }
  const double large = a.large / b.large, few = a.shortText / b.shortText,
               opened = a.opened / b.opened;
  const bool good = large >= kGoalLarge && few >= kGoalShort && opened >= kGoalOpen;
  const double megabytes = static_cast<double>(text.size()) / 1e6;
  std::printf("%-14s %-14s %7.0f MB/s %6.1fx  %6.0f ns %5.2fx  %6.0f ns %5.1fx%s\n", from.c_str(),
              to.c_str(), megabytes / b.large, large, b.shortText * 1e9, few, b.opened * 1e9,
              opened, good ? "" : "  below a goal");
  std::fflush(stdout);
  return good;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 4) {
    std::fprintf(stderr, "usage: iconv_bench LIBRARY SAMPLES ENCODINGS [TEXT]\n");
    return 2;
  }
  const Calls theirs, ours = callsOf(argv[1]);
  const std::vector<std::string> samples = readSamples(argv[2]);
  std::printf("%-14s %-14s %20s  %16s  %16s\n", "from", "to", "4 MiB", "20 bytes",
              "open, 20, close");
  int missed = 0;
  for (const std::string& name : readEncodings(argv[3], argc > 4 ? argv[4] : "")) {
    std::string utf8, text;
    if (name == "UTF-8" || !findText(theirs, name, samples, utf8, text)) continue;
    missed += report(theirs, ours, name, "UTF-8", text) ? 0 : 1;
    missed += report(theirs, ours, "UTF-8", name, utf8) ? 0 : 1;
  }
  if (missed != 0) std::printf("%d pairs miss a goal\n", missed);
  return missed == 0 ? 0 : 1;
}
