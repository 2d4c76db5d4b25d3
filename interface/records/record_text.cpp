// RecordText: one stream that serves any number of texts, and cuts those that are too long.
#include <algorithm>
#include <utility>

#include "encconv/records.h"
#include "encoding/plan.h"
#include "interface/outputs.h"
#include "interface/stream_settings.h"

namespace encconv {
namespace {

constexpr int kUtf8 = 65001;

const unsigned char* bytesOf(std::string_view text) {
  return reinterpret_cast<const unsigned char*>(text.data());
}

// One conversion with settings that were found good.
StreamStatus convertOnce(::StreamConverter& stream, const StreamSettings& settings,
                         std::string_view text, std::string& output) {
  TextOutput<std::string> out(output);
  StreamStatus status = beginStream(stream, settings);
  if (status == StreamStatus::kGood) {
    status = stream.finish(bytesOf(text), text.size(), out);
    if (!out.flush() && status == StreamStatus::kGood) status = StreamStatus::kNoMemory;
  }
  return status;
}

// Where the characters of UTF-8 end, 0 included.
std::vector<std::size_t> characterEnds(std::string_view utf8) {
  std::vector<std::size_t> ends = {0};
  for (std::size_t i = 1; i <= utf8.size(); ++i) {
    const bool isWithin = i < utf8.size() && (static_cast<unsigned char>(utf8[i]) & 0xC0u) == 0x80u;
    if (!isWithin) ends.push_back(i);
  }
  return ends;
}

}  // namespace

struct RecordText::State : StreamErrorHandler {
  State(Encoding from, Encoding to, const Options& options)
      : settings(settingsOf(from, to, options)) {
    settings.writeMark = settings.pdfPassthrough = false;
    // A short text needs no stream when nothing of it is to be treated, and marks stay marks.
    isPlain = options.on_error != OnError::alternate && !options.substitute;
    status = statusOf(beginStream(stream, settings));
    if (status == Status::ok) findForms(to);
  }

  void onStreamError(const StreamError& error) override {
    if (handler) handler(problemOf(error));
  }

  // Finds blank and opening: what one character adds to another, and what the first has in front.
  void findForms(Encoding to) {
    for (const char* const character : {" ", "\u3000"}) {
      const Result once = from_utf8(character, to);
      const Result twice = from_utf8(std::string(character) + character, to);
      if (!once || !twice || once.approximation_count != 0) continue;
      const std::size_t size = twice.text.size() - once.text.size();
      blank = twice.text.substr(once.text.size());
      opening = once.text.substr(0, once.text.size() - size);
      return;
    }
    blank.clear();
  }

  bool convert(std::string_view text, std::string& output);
  bool fitCharacters(std::string_view utf8, std::size_t limit, std::string& output);

  StreamSettings settings;
  ::StreamConverter stream;
  Status status;
  bool isPlain;
  std::function<void(const Problem&)> handler;
  std::string blank;
  std::string opening;
};

bool RecordText::State::convert(std::string_view text, std::string& output) {
  if (status != Status::ok) return false;
  if (isPlain) {
    unsigned char room[fast::kShortOutput];
    const unsigned char* const end =
        fast::convertShort(settings.from, settings.to, text.data(), text.size(), room);
    if (end != nullptr) {
      output.append(reinterpret_cast<const char*>(room), static_cast<std::size_t>(end - room));
      return true;
    }
  }
  settings.errorHandler = handler ? this : nullptr;
  const StreamStatus ended = convertOnce(stream, settings, text, output);
  if (ended != StreamStatus::kGood && ended != StreamStatus::kStopped) status = statusOf(ended);
  return ended == StreamStatus::kGood;
}

// Appends as many characters as there is room for. Problems were told before.
bool RecordText::State::fitCharacters(std::string_view utf8, std::size_t limit,
                                      std::string& output) {
  StreamSettings quiet = settings;
  quiet.from = kUtf8;
  quiet.errorHandler = nullptr;
  const std::vector<std::size_t> ends = characterEnds(utf8);
  const auto converted = [&](std::size_t characters) {
    std::string text;
    convertOnce(stream, quiet, utf8.substr(0, ends[characters]), text);
    return text;
  };
  // A character more never takes less room.
  std::size_t good = 0, bad = ends.size();
  std::string best = converted(0);
  if (best.size() > limit) best.clear();
  while (bad - good > 1) {
    const std::size_t middle = good + (bad - good) / 2;
    std::string text = converted(middle);
    if (text.size() <= limit) {
      good = middle;
      best = std::move(text);
    } else {
      bad = middle;
    }
  }
  output += best;
  return true;
}

RecordText::RecordText(Encoding from, Encoding to, const Options& options)
    : m_state(std::make_unique<State>(from, to, options)) {}
RecordText::~RecordText() = default;
RecordText::RecordText(RecordText&&) noexcept = default;
RecordText& RecordText::operator=(RecordText&&) noexcept = default;

Status RecordText::status() const { return m_state->status; }

void RecordText::on_problem(std::function<void(const Problem&)> handler) {
  m_state->handler = std::move(handler);
}

bool RecordText::convert(std::string_view text, std::string& output) {
  return m_state->convert(text, output);
}

RecordText::Fit RecordText::fit(std::string_view text, std::size_t limit, std::string& output) {
  const std::size_t size = output.size();
  if (!m_state->convert(text, output)) {
    output.resize(size);
    return Fit::stopped;
  }
  if (output.size() - size <= limit) return Fit::whole;
  output.resize(size);
  std::string utf8(text);
  if (m_state->settings.from != kUtf8) {
    StreamSettings reading = m_state->settings;
    reading.to = kUtf8;
    reading.errorHandler = nullptr;
    utf8.clear();
    convertOnce(m_state->stream, reading, text, utf8);
  }
  m_state->fitCharacters(utf8, limit, output);
  return Fit::too_long;
}

std::string_view RecordText::blank() const { return m_state->blank; }

std::string_view RecordText::opening() const { return m_state->opening; }

}  // namespace encconv
