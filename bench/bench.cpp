// Measures one pair of encodings: the contestants convert the same texts in turns.
//
//   encconv_bench MODE ROUNDS SECONDS FROM TO FILE...
//
// FROM and TO are four arguments each: the code page and the names that iconv, ICU and encoding_rs
// have for it, an empty name for a peer that is not asked. At least ROUNDS rounds and SECONDS
// seconds are run. Prints "result", the contestant and a number for each text, tabs between them:
// the seconds of its best round, or bytes of memory; and "note" with what is remarkable. The modes
// are those of contestants.h.
//
// The loop is its own: contestants must take turns within a fraction of a second, so that a
// neighbour's load or a change of clock hits all of them alike, and the best of many turns counts.
// Google Benchmark can only shuffle whole repetitions of all its benchmarks.
#include <fcntl.h>
#include <malloc.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <iterator>
#include <limits>
#include <map>
#include <vector>

#include "contestants.h"

namespace {

constexpr std::size_t kCallsPerText = 60;  // of a round of short texts

struct Job {
  unsigned mode;
  unsigned long rounds;
  double seconds;
  Task task;
  std::vector<std::string> texts;

  // Short texts are timed together.
  std::size_t laps() const { return mode == kShort ? 1 : texts.size(); }
};

struct Contestant {
  const Entry* entry;
  Convert convert;
  std::vector<double> bestSeconds;
};

std::string readFile(const char* name) {
  std::ifstream file(name, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// The processor time of this program: what others do on the machine counts as little as can be. But
// processes are waited for.
double now(const Job& job) {
  timespec time{};
  const bool isWaiting = (job.mode & (kFile | kStart)) != 0;
  clock_gettime(isWaiting ? CLOCK_MONOTONIC : CLOCK_PROCESS_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

// Everybody of the mode who knows the pair, ready to convert.
std::vector<Contestant> openContestants(const Job& job) {
  std::vector<Contestant> all;
  for (const auto entries : {ownEntries(), peerEntries()}) {
    for (const Entry& entry : entries) {
      Task task = job.task;
      if (*entry.treatment != '\0') task.treatment = entry.treatment;
      Convert convert = (entry.modes & job.mode) != 0 ? entry.open(task) : Convert();
      if (convert) {
        all.push_back({&entry, std::move(convert),
                       std::vector(job.laps(), std::numeric_limits<double>::infinity())});
      }
    }
  }
  return all;
}

// Converts once with each: touches the buffers, builds the tables, and leaves out who fails. Each
// is compared with the first one of the same treatment, which is ours. A peer may differ in a few
// characters, which is noted, but not in the amount of output.
void leaveOutUnfit(std::vector<Contestant>& contestants, const Job& job) {
  std::map<std::string, std::string> references;
  std::erase_if(contestants, [&](const Contestant& contestant) {
    const Entry& entry = *contestant.entry;
    std::string output;
    for (const std::string& text : job.texts) {
      if (contestant.convert(text, &output)) continue;
      std::printf("note\t%s stops at a character\n", entry.name);
      return true;
    }
    if (entry.treatment == kOwnOutput) return false;
    const auto [place, isFirst] = references.try_emplace(entry.treatment, output);
    const std::string& reference = place->second;
    if (output == reference) return false;
    const double ratio = static_cast<double>(output.size()) / static_cast<double>(reference.size());
    const bool isAlike = ratio > 0.9 && ratio < 1.1;
    std::printf("note\t%s %s\n", entry.name, isAlike ? "differs" : "writes something else");
    return !isAlike;
  });
}

void runLap(const Contestant& contestant, const Job& job, std::size_t lap) {
  if (job.mode != kShort) {
    contestant.convert(job.texts[lap], nullptr);
    return;
  }
  for (std::size_t i = 0; i < kCallsPerText; ++i) {
    for (const std::string& text : job.texts) contestant.convert(text, nullptr);
  }
}

// Lets the contestants run in turns, each round from another starter, and keeps each one's best.
void race(const Job& job) {
  std::vector<Contestant> contestants = openContestants(job);
  leaveOutUnfit(contestants, job);
  const double start = now(job);
  for (std::size_t round = 0; round < job.rounds || now(job) - start < job.seconds; ++round) {
    for (std::size_t turn = 0; turn < contestants.size(); ++turn) {
      Contestant& contestant = contestants[(round + turn) % contestants.size()];
      for (std::size_t lap = 0; lap < job.laps(); ++lap) {
        const double begin = now(job);
        runLap(contestant, job, lap);
        contestant.bestSeconds[lap] = std::min(contestant.bestSeconds[lap], now(job) - begin);
      }
    }
  }
  const std::size_t calls = job.mode == kShort ? kCallsPerText * job.texts.size() : 1;
  for (const Contestant& contestant : contestants) {
    std::printf("result\t%s", contestant.entry->name);
    for (const double best : contestant.bestSeconds) {
      std::printf("\t%.6g", best / static_cast<double>(calls));
    }
    std::printf("\n");
  }
}

// The first text of a pair, from nothing at all. The contestants share nothing with each other.
void measureFirst(const Job& job) {
  for (const auto entries : {ownEntries(), peerEntries()}) {
    for (const Entry& entry : entries) {
      if ((entry.modes & kFirst) == 0) continue;
      std::string output;
      const double begin = now(job);
      const Convert convert = entry.open(job.task);
      if (convert && convert(job.texts[0], &output)) {
        std::printf("result\t%s\t%.6g\n", entry.name, now(job) - begin);
      }
    }
  }
}

// A line of what the system knows of this process: memory in bytes.
long long statusOf(const char* key) {
  std::ifstream status("/proc/self/status");
  for (std::string word; status >> word;) {
    long long kibibytes = 0;
    if (word == key && status >> kibibytes) return kibibytes * 1024;
  }
  return 0;
}

void measureMemory(const Job& job) {
  const std::string& text = job.texts.front();
  for (const Contestant& contestant : openContestants(job)) {
    contestant.convert(std::string_view(text).substr(0, 4096), nullptr);  // builds the tables
    malloc_trim(0);
    std::ofstream("/proc/self/clear_refs") << "5";  // the peak begins anew
    const long long before = statusOf("VmRSS:");
    contestant.convert(text, nullptr);
    long long used = statusOf("VmHWM:") - before;
    std::string output;
    contestant.convert(text, &output);
    if (contestant.entry->holdsOutput) used -= static_cast<long long>(output.size());
    std::printf("result\t%s\t%lld\n", contestant.entry->name, used);
  }
}

void repeat(const Job& job) {
  const std::vector<Contestant> contestants = openContestants(job);
  for (unsigned long i = 0; i < job.rounds; ++i) contestants.front().convert(job.texts[0], nullptr);
}

}  // namespace

Convert openProcess(std::initializer_list<std::string> command) {
  return [words = std::vector(command)](std::string_view, std::string* copy) mutable {
    std::vector<char*> arguments;
    for (std::string& word : words) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    const std::string sink = copy != nullptr ? std::string("output") : "/dev/null";
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, sink.c_str(),
                                     O_WRONLY | O_CREAT | O_TRUNC, 0600);
    pid_t process = 0;
    int status = posix_spawnp(&process, arguments[0], &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (status == 0) waitpid(process, &status, 0);
    if (copy != nullptr) {
      copy->append(readFile(sink.c_str()));
      unlink(sink.c_str());
    }
    return status == 0;
  };
}

int main(int argc, char** argv) {
  if (argc < 13) return 2;
  const auto encoding = [&](int i) {
    return Encoding{static_cast<int>(std::strtol(argv[i], nullptr, 10)), argv[i + 1], argv[i + 2],
                    argv[i + 3]};
  };
  constexpr struct {
    const char* name;
    Mode mode;
    void (*measure)(const Job&) = race;
  } kModes[] = {{"speed", kSpeed},
                {"large", kLarge},
                {"short", kShort},
                {"drop", kDrop},
                {"bad", kBad},
                {"file", kFile},
                {"start", kStart},
                {"first", kFirst, measureFirst},
                {"count", kCount, repeat},
                {"memory", kMemory, measureMemory}};
  const auto* const mode = std::ranges::find_if(
      kModes, [&](const auto& known) { return std::string_view(known.name) == argv[1]; });
  if (mode == std::end(kModes)) return 2;
  Job job{mode->mode,
          std::strtoul(argv[2], nullptr, 10),
          std::strtod(argv[3], nullptr),
          {encoding(4), encoding(8), mode->mode == kDrop ? "drop" : "stop", 0, argv[12]},
          {}};
  for (int i = 12; i < argc; ++i) {
    job.texts.push_back(readFile(argv[i]));
    job.task.longest = std::max(job.task.longest, job.texts.back().size());
  }
  mode->measure(job);
  return 0;
}
