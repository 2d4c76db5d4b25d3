// Conversions whose output is divided into records: of lines, and of the rows of a table.
#include <algorithm>
#include <deque>
#include <utility>

#include "apps/encconv/error_report.h"
#include "apps/encconv/record_support.h"

namespace tool {
namespace {

using encconv::RecordProblem;
using encconv::RecordProblemKind;
using encconv::RecordStep;

constexpr int kUtf8 = 65001;

// The input as UTF-8, with the way back to where it came from.
class SourceText {
 public:
  SourceText(const RecordTask& task, RecordProblems& problems)
      : m_isUtf8(task.from == kUtf8),
        m_lineFeed(characterIn("\n", task.from)),
        m_stream(task.from, kUtf8, task.text) {
    m_stream.on_problem([&problems](const encconv::Problem& problem) {
      problems.tellText(problem, 0, problem.offset);
    });
  }

  // Appends the text of the next bytes. False when a problem ends it.
  bool push(std::string_view piece, bool isLast, std::string& utf8) {
    const std::size_t begin = utf8.size();
    // Line by line, so that each has its place.
    while (!piece.empty()) {
      const std::string_view line = piece.substr(0, lineLength(piece));
      m_lines.push_back({m_textBytes + (utf8.size() - begin), m_sourceBytes});
      m_sourceBytes += line.size();
      piece.remove_prefix(line.size());
      if (!m_stream.push(line, utf8)) return false;
      takeMarkOff(utf8);
    }
    const bool isGood = !isLast || m_stream.finish(utf8);
    m_textBytes += utf8.size() - begin;
    return isGood;
  }

  // Where a byte of the text, or the line that it is in, begins in the input. Lines before that one
  // are forgotten.
  std::uint64_t sourceOffset(std::uint64_t textOffset) {
    while (m_lines.size() > 1 && m_lines[1].text <= textOffset) m_lines.pop_front();
    if (m_lines.empty()) return 0;
    return m_lines[0].source + (m_isUtf8 ? textOffset - m_lines[0].text : 0);
  }

 private:
  struct Line {
    std::uint64_t text;
    std::uint64_t source;
  };

  // The mark at the beginning is no part of the text. (From UTF-8 to UTF-8 the stream keeps it.)
  void takeMarkOff(std::string& utf8) {
    constexpr std::string_view kMark = "\xEF\xBB\xBF";
    if (!m_isUtf8 || m_isBegun || utf8.empty()) return;
    m_isBegun = true;
    if (!utf8.starts_with(kMark)) return;
    utf8.erase(0, kMark.size());
    m_lines.back() = {0, kMark.size()};
  }

  std::size_t lineLength(std::string_view piece) const {
    const std::size_t width = m_lineFeed.size();
    std::size_t at = width == 0 ? std::string_view::npos : piece.find(m_lineFeed);
    while (at != std::string_view::npos && (m_sourceBytes + at) % width != 0) {
      at = piece.find(m_lineFeed, at + 1);
    }
    return at == std::string_view::npos ? piece.size() : at + width;
  }

  const bool m_isUtf8;
  bool m_isBegun = false;  // some text has come
  const std::string m_lineFeed;
  encconv::StreamConverter m_stream;
  std::deque<Line> m_lines;  // from the last that was asked for
  std::uint64_t m_textBytes = 0;
  std::uint64_t m_sourceBytes = 0;
};

class LinesToRecords final : public RecordConversion {
 public:
  explicit LinesToRecords(const RecordTask& task)
      : m_problems(task),
        m_source(task, m_problems),
        m_text(kUtf8, task.to, task.text),
        m_limit(task.options.toRecords->max_length()),
        m_trims(task.options.trim),
        m_writer(*task.options.toRecords, m_text.blank()) {
    m_text.on_problem([this](const encconv::Problem& problem) {
      m_problems.tellText(problem, m_number, m_source.sourceOffset(m_begin + problem.offset));
    });
  }

  bool push(std::string_view piece, bool isLast, std::string& out) override {
    m_utf8.clear();
    const bool isRead = m_source.push(piece, isLast, m_utf8);
    std::string_view text = m_utf8;
    for (std::size_t end = text.find('\n'); end != std::string_view::npos; end = text.find('\n')) {
      if (!endLine(text.substr(0, end), 1, out)) return false;
      text.remove_prefix(end + 1);
    }
    // No line beyond this fits into a record; the rest of it is not needed.
    constexpr std::size_t kMostLine = 16u << 20;
    m_line += text.substr(0, kMostLine - std::min(kMostLine, m_line.size()));
    m_passedOver += text.size();
    m_source.sourceOffset(m_begin);
    if (!isRead || m_problems.hasEnded) return false;
    if (!isLast) return true;
    if (!m_line.empty() && !endLine({}, 0, out)) return false;
    m_writer.finish(out);
    return true;
  }
  std::uint64_t count() const override { return m_number; }

 private:
  // The line that has come ends with rest and its line end.
  bool endLine(std::string_view rest, std::size_t lineEnd, std::string& out) {
    std::string_view line = rest;
    if (!m_line.empty()) {
      m_line += rest;
      line = m_line;
    }
    const std::uint64_t length = m_passedOver + rest.size() + lineEnd;
    if (line.ends_with('\r') && lineEnd != 0) line.remove_suffix(1);
    while (m_trims && line.ends_with(' ')) line.remove_suffix(1);
    ++m_number;
    const bool isWritten = write(line, out);
    m_begin += length;
    m_line.clear();
    m_passedOver = 0;
    return isWritten;
  }

  bool write(std::string_view line, std::string& out) {
    m_record.clear();
    const auto fit = m_text.fit(line, m_limit, m_record);
    if (fit == encconv::RecordText::Fit::too_long) {
      RecordProblem problem;
      problem.kind = RecordProblemKind::too_long;
      problem.record = m_number;
      problem.offset = m_source.sourceOffset(m_begin);
      problem.length = line.size();
      problem.bytes = line.substr(0, 16);
      problem.reason = "the line is longer than a record of " + std::to_string(m_limit) + " bytes";
      m_problems.tell(problem);
    }
    return fit != encconv::RecordText::Fit::stopped && !m_problems.hasEnded &&
           m_writer.write(m_record, out);
  }

  RecordProblems m_problems;
  SourceText m_source;
  encconv::RecordText m_text;
  const std::size_t m_limit;
  const bool m_trims;
  encconv::RecordWriter m_writer;
  std::uint64_t m_number = 0;
  std::uint64_t m_begin = 0;  // of the line in the text
  std::string m_utf8;
  std::string m_line;              // the part of the line that earlier pieces had
  std::uint64_t m_passedOver = 0;  // bytes of that part
  std::string m_record;
};

class TableToRecords final : public RecordConversion {
 public:
  explicit TableToRecords(const RecordTask& task)
      : m_problems(task),
        m_source(task, m_problems),
        m_reader(task.options.layout, task.options.tableFormat),
        m_encoder(task.options.layout,
                  {task.to, task.text, task.options.trim, *task.options.toRecords}),
        m_writer(*task.options.toRecords, m_encoder.blank()) {
    m_encoder.on_problem([this](const RecordProblem& inRecord) {
      RecordProblem problem = inRecord;
      problem.record = m_reader.number();
      problem.offset = m_source.sourceOffset(m_reader.offset());
      if (problem.text) problem.text->offset = problem.offset;
      m_problems.tell(problem);
    });
  }

  const std::string& error() const { return m_encoder.error(); }

  bool push(std::string_view piece, bool isLast, std::string& out) override {
    m_utf8.clear();
    const bool isRead = m_source.push(piece, isLast, m_utf8);
    m_reader.push(m_utf8);
    if (isLast && isRead) m_reader.finish();
    while (!m_problems.hasEnded) {
      switch (m_reader.next()) {
        case RecordStep::record:
          if (!m_encoder.encode(m_reader.row(), m_record)) return false;
          if (m_problems.hasEnded || !m_writer.write(m_record, out)) return false;
          break;
        case RecordStep::damaged: {
          RecordProblem problem = m_reader.problem();
          problem.offset = m_source.sourceOffset(problem.offset);
          m_problems.tell(problem);
          break;
        }
        case RecordStep::more:
          m_source.sourceOffset(m_reader.offset());
          return isRead;
        case RecordStep::end:
          m_writer.finish(out);
          return true;
      }
    }
    return false;
  }
  std::uint64_t count() const override { return m_reader.number(); }

 private:
  RecordProblems m_problems;
  SourceText m_source;
  encconv::TableReader m_reader;
  encconv::FieldEncoder m_encoder;
  encconv::RecordWriter m_writer;
  std::string m_utf8;
  std::string m_record;
};

}  // namespace

std::unique_ptr<RecordConversion> convertToRecords(const RecordTask& task, std::string& why) {
  const Options& options = task.options;
  const std::string blank = characterIn(" ", task.to);
  const encconv::RecordFormat& format = *options.toRecords;
  if (format.form == encconv::RecordForm::fixed && !blank.empty() &&
      format.length % blank.size() != 0) {
    why = "--to-records: " + std::to_string(format.length) + " bytes cut a character of " +
          describeCodePage(task.to) + " in two";
    return nullptr;
  }
  if (options.fields.empty()) return std::make_unique<LinesToRecords>(task);
  auto conversion = std::make_unique<TableToRecords>(task);
  why = conversion->error().empty() ? "" : "--fields: " + conversion->error();
  return why.empty() ? std::move(conversion) : nullptr;
}

}  // namespace tool
