// Many threads, each with its own converter, from a cold start: the tables are built by whoever
// comes first, and everybody gets what one thread alone would have got.
#include <algorithm>
#include <atomic>
#include <numeric>
#include <random>
#include <thread>
#include <utility>
#include <vector>

#include "encoding/codecs/encoding_row.h"
#include "tests/stream_support.h"

namespace {

struct Task {
  int from, to;
  std::string input;
};

// Each code page decoded and encoded, with input that it cannot convert among the rest.
std::vector<Task> allTasks() {
  std::string bytes;
  for (int byte = 0; byte < 256; ++byte) bytes += {'a', static_cast<char>(byte)};
  const std::string text =
      "A \xC3\xA9 \xD0\xBF \xCE\xBB \xD8\xA7 \xD9\xA3 \xE6\x97\xA5\xE6\x9C\xAC \xEA\xB0\x80 "
      "\xE1\xBA\xA0 \xE2\x82\xAC \xFF \xF0\x9F\x98\x80";
  std::vector<Task> tasks;
  for (const EncodingRow& row : encodingRows()) {
    tasks.push_back({row.number, 65001, bytes});
    tasks.push_back({65001, row.number, text});
  }
  return tasks;
}

// What the engine does, and the stream.
using Done = std::pair<ConversionResult, StreamResult>;

Done run(EncodingConvert& converter, const Task& task) {
  return {convert(converter, task.from, task.to, task.input),
          stream(settingsFor(task.from, task.to, "drop"), task.input)};
}

void configure(EncodingConvert& converter) {
  converter.setErrorAction(1);
  converter.setDefBytes(bytesOf("?"), 1);
}

// The threads go first: some tables are built once in the life of a process.
TEST(Threads, AgreeWithOneThreadFromAColdStart) {
  const std::vector<Task> tasks = allTasks();
  for (unsigned int round = 0; round < 3; ++round) {
    std::vector<std::vector<Done>> done(8, std::vector<Done>(tasks.size()));
    std::atomic<int> started = 0;
    std::vector<std::thread> threads;
    for (unsigned int number = 0; number < 8; ++number) {
      threads.emplace_back([&, number] {
        std::mt19937 random(round * 8 + number);
        std::vector<std::size_t> order(tasks.size());
        std::iota(order.begin(), order.end(), std::size_t{0});
        // Half of the threads go the same way, so that they meet at the tables.
        if (number % 2 == 0) std::shuffle(order.begin(), order.end(), random);
        EncodingConvert converter;
        configure(converter);
        ++started;
        while (started < 8) std::this_thread::yield();
        for (const std::size_t i : order) done[number][i] = run(converter, tasks[i]);
      });
    }
    for (std::thread& thread : threads) thread.join();
    EncodingConvert alone;
    configure(alone);
    for (std::size_t i = 0; i < tasks.size(); ++i) {
      const Done expected = run(alone, tasks[i]);
      for (const std::vector<Done>& one : done) {
        EXPECT_EQ(one[i], expected) << tasks[i].from << " to " << tasks[i].to << ", " << round;
      }
    }
    EncodingConvert::cleanupMemory();
  }
}

}  // namespace
