// What the tool says on standard error: messages and the progress line.
#ifndef APPS_ENCCONV_CONSOLE_H_
#define APPS_ENCCONV_CONSOLE_H_

#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>

namespace tool {

// "1.4 GiB", "312 KiB", "17 bytes".
std::string formatBytes(std::uint64_t bytes);
// "0.43 ms", "1.73 s", "2 min 05 s".
std::string formatDuration(double seconds);

// A text, such as the name of a file, as it can be shown on a line and does nothing to a terminal:
// control characters, those of the direction of writing too, become \n, \t, \r or \xHH for each
// byte. Bytes that are no UTF-8 stay, but for 80 to 9F.
std::string printable(std::string_view text);

// Any thread may call.
class Console {
 public:
  // The progress line appears only when wanted and only on a terminal.
  explicit Console(bool wantsProgress);
  // Removes the progress line.
  ~Console();
  Console(const Console&) = delete;
  Console& operator=(const Console&) = delete;

  // "encconv: MESSAGE" on a line of its own; control characters in it are shown as printable()
  // does.
  void report(const std::string& message);
  // Writes text for people, in UTF-8, to standard output. Returns the exit status; says why when it
  // could not be written.
  int print(std::string_view text);
  // Text as it is; it ends with a line end.
  void write(const std::string& text);

  // Announces input bytes still to come; negative when their number is not known.
  void expectInput(std::int64_t bytes);
  // Input bytes that are done; redraws the progress line now and then.
  void advance(std::uint64_t bytes);

 private:
  using Clock = std::chrono::steady_clock;

  void draw(Clock::time_point now);
  void erase();

  std::mutex m_mutex;
  const bool m_showsProgress;
  std::size_t m_drawn = 0;  // columns of the progress line
  bool m_totalKnown = true;
  std::uint64_t m_total = 0;
  std::atomic<std::uint64_t> m_done = 0;
  const Clock::time_point m_start = Clock::now();
  std::atomic<Clock::rep> m_nextDraw;
};

}  // namespace tool

#endif  // APPS_ENCCONV_CONSOLE_H_
