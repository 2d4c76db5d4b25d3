// Measures one pair of encodings: this engine and its peers convert the same texts in turns.
//
//   encconv_bench MODE ROUNDS SECONDS FROM TO FILE...
//
// FROM and TO are four arguments each: the code page and the names that iconv, ICU and encoding_rs
// have for it, an empty name for a peer that is not asked. At least ROUNDS rounds and SECONDS
// seconds are run. Prints a line "result CONTESTANT NUMBER" for each contestant and "note TEXT" for
// what is remarkable. The modes:
//   speed     one text, in MB/s, against the peers and memcpy
//   short     nanoseconds a text, the converters reused; reopened: made anew for each text
//   pair      MB/s of this engine for a first and a second text; bad: with error action 1
//   memory    bytes that this engine allocates beside input and output
//   repeat    converts the text ROUNDS times, for instruction counts
//
// The loop is its own: contestants must take turns within a fraction of a second, so that a
// neighbour's load or a change of clock hits all of them alike, and the best of many turns counts.
// Google Benchmark can only shuffle whole repetitions of all its benchmarks.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fstream>
#include <functional>
#include <limits>
#include <string>

#include "converters.h"

namespace {

struct Job {
  std::string mode;
  unsigned long rounds;
  double seconds;
  Encoding from;
  Encoding to;
  std::vector<std::string> texts;
};

struct Contestant {
  std::string name;
  std::function<void()> run;
  double bestSeconds = std::numeric_limits<double>::infinity();
};

// The processor time of this program: what others do on the machine counts as little as can be.
double now() {
  timespec time;
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

// Lets the contestants run in turns, each round from another starter, and keeps each one's best.
void race(std::vector<Contestant>& contestants, const Job& job) {
  const double start = now();
  for (std::size_t round = 0; round < job.rounds || now() - start < job.seconds; ++round) {
    for (std::size_t turn = 0; turn < contestants.size(); ++turn) {
      Contestant& contestant = contestants[(round + turn) % contestants.size()];
      const double begin = now();
      contestant.run();
      contestant.bestSeconds = std::min(contestant.bestSeconds, now() - begin);
    }
  }
}

void printResult(const std::string& name, double value) {
  std::printf("result %s %.6g\n", name.c_str(), value);
}
void printSpeed(const Contestant& contestant, const std::string& text) {
  printResult(contestant.name, static_cast<double>(text.size()) / contestant.bestSeconds / 1e6);
}

using Converters = std::vector<std::unique_ptr<Converter>>;

// Converts once with each: touches the buffers, builds the tables, and leaves out who fails. A peer
// may differ in a few characters, which is noted, but not in the amount of output.
Converters openForText(const Job& job) {
  const std::string& text = job.texts.front();
  Converters fit;
  for (auto& converter : openConverters(job.from, job.to, text.size() * 4 + 64)) {
    if (!converter->convert(text)) {
      std::printf("note %s stops at a character\n", converter->name);
      continue;
    }
    if (!fit.empty() && converter->output() != fit.front()->output()) {
      const double ratio = static_cast<double>(converter->output().size()) /
                           static_cast<double>(fit.front()->output().size());
      const bool isAlike = ratio > 0.9 && ratio < 1.1;
      std::printf("note %s %s\n", converter->name, isAlike ? "differs" : "writes something else");
      if (!isAlike) continue;
    }
    fit.push_back(std::move(converter));
  }
  return fit;
}

void measureSpeed(const Job& job) {
  const std::string& text = job.texts.front();
  const Converters converters = openForText(job);
  std::vector<Contestant> contestants;
  for (const auto& converter : converters) {
    contestants.push_back({converter->name, [&] { converter->convert(text); }});
  }
  const auto copy = std::make_unique<char[]>(text.size());
  contestants.push_back({"memcpy", [&] { std::memcpy(copy.get(), text.data(), text.size()); }});
  race(contestants, job);
  for (const Contestant& contestant : contestants) printSpeed(contestant, text);
}

void measureShort(const Job& job) {
  const std::size_t calls = job.texts.size() * 60;
  const bool reopens = job.mode == "reopened";
  const Converters converters = openForText(job);
  std::vector<Contestant> contestants;
  for (const auto& converter : converters) {
    contestants.push_back({converter->name, [&, reopens, calls] {
                             for (std::size_t i = 0; i < calls; ++i) {
                               if (reopens) converter->reopen();
                               converter->convert(job.texts[i % job.texts.size()]);
                             }
                           }});
  }
  race(contestants, job);
  for (const Contestant& contestant : contestants) {
    printResult(contestant.name, contestant.bestSeconds * 1e9 / static_cast<double>(calls));
  }
}

void measurePair(const Job& job) {
  const auto engine = openEngine(job.from, job.to, job.mode == "bad" ? 1 : 0);
  engine->convert(job.texts[1]);
  std::vector<Contestant> contestants = {{"first", [&] { engine->convert(job.texts[0]); }},
                                         {"second", [&] { engine->convert(job.texts[1]); }}};
  race(contestants, job);
  for (std::size_t i = 0; i < 2; ++i) printSpeed(contestants[i], job.texts[i]);
}

// The most memory that this program ever had in use, in bytes.
long long peakMemory() {
  std::ifstream status("/proc/self/status");
  for (std::string word; status >> word;) {
    long long kibibytes = 0;
    if (word == "VmHWM:" && status >> kibibytes) return kibibytes * 1024;
  }
  return 0;
}

void measureMemory(const Job& job) {
  const auto engine = openEngine(job.from, job.to, 0);
  engine->convert(job.texts[0].substr(0, 4096));  // builds the tables
  const long long before = peakMemory();
  engine->convert(job.texts[0]);
  const auto output = static_cast<long long>(engine->output().size());
  printResult("encconv", static_cast<double>(peakMemory() - before - output));
}

void repeat(const Job& job) {
  const auto engine = openEngine(job.from, job.to, 0);
  for (unsigned long i = 0; i < job.rounds; ++i) engine->convert(job.texts[0]);
}

std::string readFile(const char* name) {
  std::ifstream file(name, std::ios::binary | std::ios::ate);
  std::string content(static_cast<std::size_t>(file.tellg()), '\0');
  file.seekg(0).read(content.data(), static_cast<std::streamsize>(content.size()));
  return content;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 13) return 2;
  const auto codePage = [&](int i) { return static_cast<int>(std::strtol(argv[i], nullptr, 10)); };
  Job job{argv[1],
          std::strtoul(argv[2], nullptr, 10),
          std::strtod(argv[3], nullptr),
          {codePage(4), argv[5], argv[6], argv[7]},
          {codePage(8), argv[9], argv[10], argv[11]},
          {}};
  for (int i = 12; i < argc; ++i) job.texts.push_back(readFile(argv[i]));
  const std::pair<const char*, void (*)(const Job&)> methods[] = {
      {"speed", measureSpeed}, {"short", measureShort}, {"reopened", measureShort},
      {"pair", measurePair},   {"bad", measurePair},    {"memory", measureMemory},
      {"repeat", repeat}};
  for (const auto& [mode, method] : methods) {
    if (job.mode == mode) return method(job), 0;
  }
  return 2;
}
