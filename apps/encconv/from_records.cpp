// Conversions whose input is divided into records.
#include <algorithm>
#include <utility>

#include "apps/encconv/ebcdic.h"
#include "apps/encconv/error_report.h"
#include "apps/encconv/record_support.h"

namespace tool {
namespace {

using encconv::RecordForm;
using encconv::RecordProblem;
using encconv::RecordStep;

// Reads records; what becomes of each is told by the classes below.
class FromRecords : public RecordConversion {
 public:
  explicit FromRecords(const RecordTask& task)
      : m_reader(*task.options.records),
        m_problems(task),
        m_ignoresRest(task.options.records->form == RecordForm::fixed &&
                      task.options.fields.empty()) {}

  bool push(std::string_view piece, bool isLast, std::string& out) final {
    m_reader.push(piece);
    if (isLast) m_reader.finish();
    for (;;) {
      switch (m_reader.next()) {
        case RecordStep::record:
          if (!takeRecord(out)) return false;
          break;
        case RecordStep::damaged:
          if (!takeWaiting(out)) return false;
          tellDamage(m_reader.problem());
          break;
        case RecordStep::more:
          return takeWaiting(out);
        case RecordStep::end:
          if (!takeWaiting(out)) return false;
          finish(out);
          return !m_problems.hasEnded;
      }
      if (m_problems.hasEnded) return false;
    }
  }
  std::uint64_t count() const final { return m_reader.number(); }

 protected:
  // Appends what the record becomes. False when a problem ends the conversion.
  virtual bool takeRecord(std::string& out) = 0;
  // The same of records that were kept to be converted together.
  virtual bool takeWaiting(std::string& /*out*/) { return true; }
  virtual void finish(std::string& /*out*/) {}

  encconv::RecordReader m_reader;
  RecordProblems m_problems;

 private:
  // A shorter rest of fixed records is a record like others, unless it has fields.
  void tellDamage(const RecordProblem& problem) {
    if (!m_ignoresRest || problem.kind != encconv::RecordProblemKind::cut) m_problems.tell(problem);
  }

  const bool m_ignoresRest;
};

// Records as text, each on its own.
class FromTextRecords : public FromRecords {
 public:
  explicit FromTextRecords(const RecordTask& task)
      : FromRecords(task),
        m_text(task.from, task.to, task.text),
        m_map(mapBeforeReading(task.from, task.options.ebcdicNewline)),
        m_maps(m_map != mapBeforeReading(task.from, EbcdicNewline::kKeep)),
        m_blank(task.options.trim ? characterIn(" ", task.from) : "") {
    m_text.on_problem([this](const encconv::Problem& problem) {
      const auto index = static_cast<std::size_t>(problem.offset);
      if (m_kept != nullptr) {
        m_problems.tellText(problem, m_kept->number, m_kept->offset + index);
      } else {
        m_problems.tellText(problem, m_reader.number(), m_reader.offset_of(index));
      }
    });
  }

 protected:
  // A record that the reader has left.
  struct Kept {
    std::uint64_t number;
    std::uint64_t offset;  // of its data, which was in one piece
    std::size_t begin;     // in the text of those that are kept
    std::size_t end;
  };
  // The record with its line ends and blanks as they are wanted.
  std::string_view shaped() {
    std::string_view record = m_reader.record();
    if (m_blank.size() == 1) {
      while (!record.empty() && record.back() == m_blank[0]) record.remove_suffix(1);
    } else if (!m_blank.empty()) {
      while (record.ends_with(m_blank)) record.remove_suffix(m_blank.size());
    }
    if (!m_maps) return record;
    m_mapped.resize(record.size());
    std::transform(record.begin(), record.end(), m_mapped.begin(), [this](char c) {
      return static_cast<char>(m_map[static_cast<unsigned char>(c)]);
    });
    return m_mapped;
  }

  encconv::RecordText m_text;
  const Kept* m_kept = nullptr;  // the record that is converted, if it is one of these

 private:
  const ByteMap m_map;
  const bool m_maps;
  const std::string m_blank;
  std::string m_mapped;
};

// Whether texts are the same converted one by one and together: there are neither states nor marks.
bool isStateless(int codePage, bool isTarget) {
  const EncodingRow* const row = findEncodingRow(codePage);
  if (row == nullptr || row->reordersMacArabic) return false;
  return row->form == EncodingForm::kSingleByte || row->form == EncodingForm::kDoubleByte ||
         (isTarget && row->form == EncodingForm::kUtf8);
}

class RecordsToLines final : public FromTextRecords {
 public:
  RecordsToLines(const RecordTask& task, std::string newline, const char* newlineText)
      : FromTextRecords(task),
        m_from(task.from),
        m_to(task.to),
        m_newline(std::move(newline)),
        m_sourceNewline(characterIn(newlineText, task.from)),
        m_keeps(!m_sourceNewline.empty() && task.from != task.to && isStateless(task.from, false) &&
                isStateless(task.to, true)),
        m_together(task.from, task.to) {
    const MarkUse use = task.options.mark;
    m_mayWriteMark = task.isFirst && (use == MarkUse::kAdd || use == MarkUse::kKeep);
    m_mark = markOf(*findEncodingRow(task.to));
    m_keptMark = use == MarkUse::kKeep ? markOf(*findEncodingRow(task.from)) : std::string_view();
    m_isWithin = !task.isFirst;
  }

 private:
  bool takeRecord(std::string& out) override {
    const std::string_view record = shaped();
    if (m_mayWriteMark && record.starts_with(m_keptMark)) out += m_mark;
    m_mayWriteMark = false;
    const std::uint64_t offset = m_reader.offset_of(0);
    const bool isInOne = m_reader.offset_of(record.size()) == offset + record.size();
    if (!m_keeps || !isInOne) return takeWaiting(out) && convert(record, out);
    const std::size_t begin = m_lines.size();
    m_lines += record;
    m_waiting.push_back({m_reader.number(), offset, begin, m_lines.size()});
    m_lines += m_sourceNewline;
    return m_lines.size() < kTogether || takeWaiting(out);
  }

  // Together, which is faster; one by one if there is anything to tell of them.
  bool takeWaiting(std::string& out) override {
    if (m_waiting.empty()) return true;
    const std::size_t begin = out.size();
    bool isGood = m_together.begin(m_from, m_to) && m_together.push(m_lines, out) &&
                  m_together.finish(out) && m_together.approximation_count() == 0;
    if (!isGood) {
      out.resize(begin);
      isGood = true;
      for (const Kept& kept : m_waiting) {
        m_kept = &kept;
        const std::string_view lines = m_lines;
        isGood = convert(lines.substr(kept.begin, kept.end - kept.begin), out);
        if (!isGood || m_problems.hasEnded) break;
      }
      m_kept = nullptr;
    }
    m_waiting.clear();
    m_lines.clear();
    return isGood && !m_problems.hasEnded;
  }

  bool convert(std::string_view record, std::string& out) {
    const std::size_t begin = out.size();
    const bool isConverted = m_text.convert(record, out);
    const std::string_view opening = m_text.opening();
    // What the target begins with stands once.
    if (m_isWithin && !opening.empty() &&
        std::string_view(out).substr(begin).starts_with(opening)) {
      out.erase(begin, opening.size());
    }
    m_isWithin = true;
    if (!isConverted) return false;
    out += m_newline;
    return true;
  }

  static constexpr std::size_t kTogether = 16u << 10;

  const int m_from, m_to;
  const std::string m_newline;
  const std::string m_sourceNewline;
  const bool m_keeps;
  encconv::StreamConverter m_together;
  std::vector<Kept> m_waiting;
  std::string m_lines;  // those with their line ends
  std::string_view m_mark, m_keptMark;
  bool m_mayWriteMark;
  bool m_isWithin;  // the output has begun
};

class RecordsToRecords final : public FromTextRecords {
 public:
  explicit RecordsToRecords(const RecordTask& task)
      : FromTextRecords(task),
        m_limit(task.options.toRecords->max_length()),
        m_writer(*task.options.toRecords, m_text.blank()) {}

 private:
  bool takeRecord(std::string& out) override {
    m_record.clear();
    const std::string_view record = shaped();
    const auto fit = m_text.fit(record, m_limit, m_record);
    if (fit == encconv::RecordText::Fit::too_long) {
      RecordProblem problem;
      problem.kind = encconv::RecordProblemKind::too_long;
      problem.record = m_reader.number();
      problem.offset = m_reader.offset_of(0);
      problem.length = record.size();
      problem.bytes = record.substr(0, 16);
      problem.reason = "the record is longer than " + std::to_string(m_limit) + " bytes";
      m_problems.tell(problem);
    }
    return fit != encconv::RecordText::Fit::stopped && !m_problems.hasEnded &&
           m_writer.write(m_record, out);
  }
  void finish(std::string& out) override { m_writer.finish(out); }

  const std::size_t m_limit;
  encconv::RecordWriter m_writer;
  std::string m_record;
};

class RecordsToTable final : public FromRecords {
 public:
  explicit RecordsToTable(const RecordTask& task)
      : FromRecords(task),
        m_decoder(task.options.layout,
                  {task.from, task.text, task.options.trim, *task.options.records}),
        m_writer(task.options.layout, task.options.tableFormat),
        m_output(65001, task.to, outputOptions(task)) {
    const auto tell = [this](const RecordProblem& problem) { m_problems.tell(problem); };
    m_decoder.on_problem(tell);
    m_output.on_problem([this](const encconv::Problem& problem) {
      m_problems.tellText(problem, m_reader.number(), m_reader.offset_of(0));
    });
    if (task.isFirst) m_writer.header(m_rows);
  }

  const std::string& error() const { return m_decoder.error(); }

 private:
  static encconv::Options outputOptions(const RecordTask& task) {
    encconv::Options options = task.text;
    options.byte_order_mark = task.isFirst && task.options.mark == MarkUse::kAdd;
    return options;
  }

  // Row by row, so that a problem has its record.
  bool takeRecord(std::string& out) override {
    const bool isDecoded = m_decoder.decode(m_reader, m_values);
    if (!isDecoded || m_problems.hasEnded) {
      finish(out);
      return false;
    }
    m_writer.row(m_values, m_rows);
    const bool isWritten = m_output.push(m_rows, out);
    m_rows.clear();
    return isWritten;
  }
  void finish(std::string& out) override {
    if (m_output.push(m_rows, out)) m_output.finish(out);
  }

  encconv::FieldDecoder m_decoder;
  encconv::TableWriter m_writer;
  encconv::StreamConverter m_output;
  std::vector<encconv::Value> m_values;
  std::string m_rows;
};

// What ends a line.
const char* lineEnd(const RecordTask& task) {
  const bool isNextLine = task.options.ebcdicNewline == EbcdicNewline::kNl && isEbcdic(task.from);
  return isNextLine ? "\u0085" : "\n";
}

}  // namespace

bool RecordConversion::canDivide(const Options& options) {
  if (!options.fields.empty()) return isStateless(options.toCodePage, true);
  return !options.toRecords || options.toRecords->form != RecordForm::bdw;
}

std::unique_ptr<RecordConversion> convertFromRecords(const RecordTask& task, std::string& why) {
  const Options& options = task.options;
  if (!options.fields.empty()) {
    auto conversion = std::make_unique<RecordsToTable>(task);
    why = conversion->error().empty() ? "" : "--fields: " + conversion->error();
    return why.empty() ? std::move(conversion) : nullptr;
  }
  const std::string blank = characterIn(" ", task.from);
  const std::uint32_t length = options.records->length;
  if (options.records->form == RecordForm::fixed && !blank.empty() && length % blank.size() != 0) {
    why = "--records: " + std::to_string(length) + " bytes cut a character of " +
          describeCodePage(task.from) + " in two";
    return nullptr;
  }
  if (options.trim && blank.empty()) {
    why = "--trim: there is no blank in " + describeCodePage(task.from);
    return nullptr;
  }
  if (options.toRecords) return std::make_unique<RecordsToRecords>(task);
  std::string newline = characterIn(lineEnd(task), task.to);
  if (newline.empty()) {
    why = "--records: no line can be ended in " + describeCodePage(task.to);
    return nullptr;
  }
  return std::make_unique<RecordsToLines>(task, std::move(newline), lineEnd(task));
}

}  // namespace tool
