#include "apps/encconv/file_conversion.h"

#include <algorithm>

#include "apps/encconv/detect.h"
#include "apps/encconv/error_report.h"

namespace tool {
namespace {

constexpr std::size_t kPieceBytes = 256u << 10;

// A text in an encoding; empty when it has no place there.
std::string encodeText(const std::string& utf8, int codePage) {
  StreamSettings settings;
  settings.from = 65001;
  settings.to = codePage;
  StreamConverter stream;
  DataBuffer out;
  const auto* data = reinterpret_cast<const unsigned char*>(utf8.data());
  if (stream.begin(settings) != StreamStatus::kGood ||
      stream.push(data, utf8.size(), out) != StreamStatus::kGood ||
      stream.finish(out) != StreamStatus::kGood) {
    return {};
  }
  return {reinterpret_cast<const char*>(out.getData2()), out.getSize()};
}

// A character as it stands within a text, behind what an encoding may begin with; empty when it has
// no place, or none that can be found again.
std::string encode(const std::string& utf8, int codePage) {
  const EncodingRow* const row = findEncodingRow(codePage);
  if (row != nullptr && row->hidesLineEnds) return {};
  const std::string once = encodeText(utf8, codePage);
  const std::string twice = encodeText(utf8 + utf8, codePage);
  return twice.substr(once.size());
}

}  // namespace

FileConversion::FileConversion(const Options& options, Console& console, PlaceReport* report,
                               unsigned int threads)
    : m_options(options),
      m_console(console),
      m_settings(options.treatment),
      m_report(report),
      m_threads(threads),
      m_afterWriting(mapAfterWriting(options.toCodePage, options.ebcdicNewline)),
      m_buffer(options.fromCodePage == kCodePageAuto ? kDetectionSample : kPieceBytes) {
  m_settings.from = options.fromCodePage;
  m_settings.to = options.toCodePage;
  m_settings.pdfPassthrough = options.pdfPassthrough;
  m_settings.drain = this;
  if (report != nullptr || m_settings.stopsAtMalformed) m_settings.errorHandler = this;
  m_mapsOutput = m_afterWriting != mapAfterWriting(options.toCodePage, EbcdicNewline::kKeep);
}

ConversionResult FileConversion::fail(const std::string& message) {
  m_console.report(message);
  return {kUsage, false};
}

bool FileConversion::checkSettings() {
  const int from = m_options.fromCodePage == kCodePageAuto ? 65001 : m_options.fromCodePage;
  return prepare(from, true);
}

bool FileConversion::prepare(int fromCodePage, bool isFirst) {
  m_settings.from = fromCodePage;
  m_settings.writeMark = isFirst && m_options.mark == MarkUse::kAdd;
  m_settings.keepMark = isFirst && m_options.mark == MarkUse::kKeep;
  // Within the output a mark would be a character that nobody sees.
  m_settings.dropMark = !isFirst || m_options.mark == MarkUse::kRemove;
  m_inconvertible = m_approximated = m_damaged = {};
  m_totals = {};
  const StreamStatus status = m_stream.begin(m_settings);
  if (status != StreamStatus::kGood) {
    m_console.report(describeStatus(status, m_settings));
    return false;
  }
  m_beforeReading = mapBeforeReading(fromCodePage, m_options.ebcdicNewline);
  // Records are mapped one by one: not all of their bytes are text.
  m_mapsInput =
      !m_options.records && m_beforeReading != mapBeforeReading(fromCodePage, EbcdicNewline::kKeep);
  return prepareRecords(fromCodePage, isFirst) && prepareNewlines();
}

bool FileConversion::prepareRecords(int fromCodePage, bool isFirst) {
  if (!m_options.usesRecords()) return true;
  const auto tell = [this](const encconv::RecordProblem& problem) { onRecordProblem(problem); };
  std::string why;
  m_records = RecordConversion::make(m_options, fromCodePage, isFirst, tell, why);
  if (m_records == nullptr) m_console.report(why);
  return m_records != nullptr;
}

bool FileConversion::prepareNewlines() {
  m_newlines.reset();
  if (m_options.newline == Newline::kKeep) return true;
  const int to = m_options.toCodePage;
  NewlineFilter::Settings settings;
  settings.lineFeed = encode("\n", to);
  settings.carriageReturn = encode("\r", to);
  if (settings.lineFeed.empty() || settings.lineFeed.size() != settings.carriageReturn.size()) {
    m_console.report("--newline: no line can be ended in " + describeCodePage(to));
    return false;
  }
  if (m_options.newline != Newline::kLf) settings.newline = settings.carriageReturn;
  if (m_options.newline != Newline::kCr) settings.newline += settings.lineFeed;
  // GSM writes a form feed as an escape and a line feed.
  const std::string formFeed = encode("\f", to);
  if (formFeed.size() == 2 && formFeed.substr(1) == settings.lineFeed) {
    settings.escape = static_cast<unsigned char>(formFeed[0]);
  }
  m_newlines.emplace(std::move(settings));
  return true;
}

// Finds out the encoding from the beginning of the input, which is in the buffer.
bool FileConversion::chooseEncoding(const InputFile& input, bool isWhole) {
  const std::span<const unsigned char> sample = std::span(m_buffer).first(m_buffered);
  constexpr std::string_view kPdf = "%PDF-1";
  const std::string_view text(reinterpret_cast<const char*>(sample.data()), sample.size());
  m_settings.from = 65001;
  if (m_options.pdfPassthrough && text.starts_with(kPdf)) return true;
  const ChosenSource source = chooseSource(sample, isWhole, m_options.guess);
  if (source.codePage == 0) {
    m_console.report(input.label() + ": " + source.reason);
    return false;
  }
  if (m_options.verbose) {
    m_console.report(input.label() + ": read as " + describeCodePage(source.codePage) + ": " +
                     source.reason);
  }
  m_settings.from = source.codePage;
  return true;
}

ConversionResult FileConversion::convert(InputFile& input, OutputFile& output, bool isFirst) {
  m_begin = std::chrono::steady_clock::now();
  m_bytesRead = m_bytesWritten = 0;
  m_input = &input;
  m_output = &output;
  bool isWhole = false;
  m_buffered = 0;
  if (m_options.fromCodePage == kCodePageAuto) {
    if (!input.readFully(m_buffer, m_buffered)) return fail(input.error());
    isWhole = m_buffered < m_buffer.size();
    if (!chooseEncoding(input, isWhole)) return {kNotConverted, false};
  }
  if (!prepare(m_settings.from, isFirst)) return {kUsage, false};
  return pump(input, output, isWhole, isFirst);
}

StreamStatus FileConversion::convertPiece(std::span<const unsigned char> piece, bool isLast) {
  if (m_records != nullptr) {
    const std::string_view bytes(reinterpret_cast<const char*>(piece.data()), piece.size());
    m_fromRecords.clear();
    const bool goesOn = m_records->push(bytes, isLast, m_fromRecords);
    if (!emit(m_fromRecords)) return StreamStatus::kDrainFailed;
    return goesOn ? StreamStatus::kGood : StreamStatus::kStopped;
  }
  StreamStatus status = m_stream.push(piece.data(), piece.size(), m_converted);
  if (status == StreamStatus::kGood && isLast) status = m_stream.finish(m_converted);
  return status;
}

bool FileConversion::onStreamOutput(DataBuffer& out) {
  const bool isWritten = emit({reinterpret_cast<const char*>(out.getData2()), out.getSize()});
  out.clear();
  return isWritten;
}

bool FileConversion::emit(std::string_view bytes) {
  if (!m_newlines) return write(bytes);
  m_newlines->push(bytes, m_ended);
  return write({reinterpret_cast<const char*>(m_ended.data()), m_ended.size()});
}

bool FileConversion::write(std::string_view bytes) {
  if (m_mapsOutput && !m_options.toRecords) {
    m_mapped.resize(bytes.size());
    std::transform(bytes.begin(), bytes.end(), m_mapped.begin(),
                   [this](char c) { return m_afterWriting[static_cast<unsigned char>(c)]; });
    bytes = {reinterpret_cast<const char*>(m_mapped.data()), m_mapped.size()};
  }
  m_bytesWritten += bytes.size();
  return m_output->write(bytes);
}

void FileConversion::onStreamError(const StreamError& error) {
  if (error.kind != StreamErrorKind::kApproximated) m_lastError = error;
  if (m_report != nullptr) m_report->add(m_input->name(), error, m_settings);
}

// The encodings that a problem is about: a field may have one of its own.
StreamSettings FileConversion::settingsFor(const encconv::RecordProblem& problem) const {
  StreamSettings settings = m_settings;
  for (const encconv::Field& field : m_options.layout.fields) {
    if (field.name != problem.field || !field.code_page) continue;
    (m_options.records ? settings.from : settings.to) = *field.code_page;
  }
  return settings;
}

void FileConversion::onRecordProblem(const encconv::RecordProblem& problem) {
  const bool isApproximated = problem.text && problem.text->approximated;
  const StreamSettings settings = settingsFor(problem);
  Tally& tally = isApproximated ? m_approximated : problem.text ? m_inconvertible : m_damaged;
  if (tally.count++ == 0) tally.first = describeProblem(problem, settings);
  if (!isApproximated) m_lastProblem = problem;
  if (m_report != nullptr) m_report->add(m_input->name(), problem, settings);
}

// Takes over what streams counted.
void FileConversion::tellTotals() {
  m_inconvertible.count = m_totals.errors;
  m_approximated.count = m_totals.approximations;
  if (m_totals.errors != 0) m_inconvertible.first = describeError(m_totals.firstError, m_settings);
  if (m_totals.approximations != 0) {
    m_approximated.first = describeError(m_totals.firstApproximation, m_settings);
  }
}

// For --verbose: what was done.
void FileConversion::tellStory(const InputFile& input, bool isComplete) const {
  const double seconds =
      std::chrono::duration<double>(std::chrono::steady_clock::now() - m_begin).count();
  std::string story = input.label() + ": " + describeCodePage(m_settings.from) + " to " +
                      describeCodePage(m_settings.to) + ", " + formatBytes(m_bytesRead) + " to " +
                      formatBytes(m_bytesWritten) + " in " + formatDuration(seconds);
  if (seconds > 0) {
    const double rate = static_cast<double>(m_bytesRead) / seconds;
    story += ", " + formatBytes(static_cast<std::uint64_t>(rate)) + "/s";
  }
  const std::uint64_t count = m_inconvertible.count + m_damaged.count;
  if (count != 0 && isComplete) {
    story += "; " + m_options.treatmentName + ": " + std::to_string(count) +
             (count == 1 ? " place" : " places");
  }
  m_console.report(story);
}

ConversionResult FileConversion::pump(InputFile& input, OutputFile& output, bool isWhole,
                                      bool isFirst) {
  StreamStatus status = StreamStatus::kGood;
  const bool isPumped =
      isForThreads(input, isWhole) ? pumpInParallel(isFirst, status) : pumpStream(isWhole, status);
  if (!isPumped) return fail(input.error().empty() ? output.error() : input.error());
  if (m_newlines) {
    m_newlines->finish(m_ended);
    if (!write({reinterpret_cast<const char*>(m_ended.data()), m_ended.size()})) {
      return fail(output.error());
    }
  }
  if (m_records == nullptr) tellTotals();
  if (m_options.verbose) tellStory(input, status == StreamStatus::kGood);
  return conclude(input, status);
}

// False when reading or writing failed.
bool FileConversion::pumpStream(bool isWhole, StreamStatus& status) {
  std::size_t count = m_buffered;
  bool isLast = isWhole;
  m_converted.clear();
  while (status == StreamStatus::kGood) {
    if (count == 0 && !isWhole) {
      if (!readText(m_buffer, count)) return false;
      isLast = count == 0;
    } else {
      mapInput(std::span(m_buffer).first(count));
    }
    status = convertPiece(std::span(m_buffer).first(count), isLast);
    if (status == StreamStatus::kDrainFailed || !onStreamOutput(m_converted)) return false;
    onTextDone(count);
    if (isLast) break;
    count = 0;
  }
  m_totals.add(m_stream, 0, 0);
  return true;
}

// ---- A file on several threads. ----

// Only of a file it is known that there is enough of it, and that no one waits for the beginning of
// the output before he writes on.
bool FileConversion::isForThreads(const InputFile& input, bool isWhole) const {
  constexpr std::int64_t kLeastPieces = 4;
  const auto least = kLeastPieces * static_cast<std::int64_t>(m_options.pieceBytes);
  if (m_threads < 2 || isWhole || input.size() < least) return false;
  return m_records == nullptr ? !m_options.pdfPassthrough : ParallelRecords::canServe(m_options);
}

bool FileConversion::pumpInParallel(bool isFirst, StreamStatus& status) {
  const std::span<unsigned char> begun = std::span(m_buffer).first(m_buffered);
  mapInput(begun);
  if (m_records != nullptr) {
    const auto tell = [this](const encconv::RecordProblem& problem) { onRecordProblem(problem); };
    ParallelRecords records(m_options, m_settings.from, isFirst, m_threads, m_options.pieceBytes,
                            *this, tell);
    status = records.run(begun);
  } else {
    ParallelStream text(m_settings, m_threads, m_options.pieceBytes, *this);
    status = text.run(begun);
    m_totals = text.totals();
  }
  return m_input->error().empty() && status != StreamStatus::kDrainFailed;
}

bool FileConversion::readText(std::span<unsigned char> buffer, std::size_t& count) {
  if (!m_input->read(buffer, count)) return false;
  mapInput(buffer.first(count));
  return true;
}

void FileConversion::mapInput(std::span<unsigned char> bytes) const {
  if (!m_mapsInput) return;
  for (unsigned char& byte : bytes) byte = m_beforeReading[byte];
}

bool FileConversion::writeText(std::string_view bytes) { return emit(bytes); }
void FileConversion::onTextError(const StreamError& error) { onStreamError(error); }
void FileConversion::onTextDone(std::size_t bytes) {
  m_bytesRead += bytes;
  m_console.advance(bytes);
}

// What the closing line says: how many places were treated or approximated, and the first of each.
std::string FileConversion::describeTreated() const {
  std::string text;
  const auto add = [&](const Tally& tally, const char* one, const char* several) {
    if (tally.count == 0) return;
    if (!text.empty()) text += "; ";
    text += std::to_string(tally.count) + (tally.count == 1 ? one : several) + "; the first at " +
            tally.first;
  };
  add(m_damaged, " place was damaged or did not fit", " places were damaged or did not fit");
  add(m_inconvertible, " place was not convertible", " places were not convertible");
  add(m_approximated, " character was approximated", " characters were approximated");
  return text;
}

// What ended the file, and what to do about it.
std::string FileConversion::describeEnd() const {
  if (m_records != nullptr) {
    const StreamSettings settings = settingsFor(m_lastProblem);
    return describeProblem(m_lastProblem, settings) + "; " + adviceFor(m_lastProblem, settings);
  }
  // With a handler the place that ended the stream is the last, and not always the first.
  const StreamError& end = m_settings.errorHandler != nullptr ? m_lastError : m_totals.firstError;
  return describeError(end, m_settings) + "; " + adviceFor(end, m_settings);
}

ConversionResult FileConversion::conclude(const InputFile& input, StreamStatus status) {
  if (status != StreamStatus::kGood && status != StreamStatus::kStopped) {
    return fail(input.label() + ": " + describeStatus(status, m_settings));
  }
  if (status == StreamStatus::kStopped) {
    m_console.report(input.label() + ": " + describeEnd());
    return {kNotConverted, false};
  }
  if (m_inconvertible.count + m_approximated.count + m_damaged.count == 0) return {};
  if (!m_options.quiet) m_console.report(input.label() + ": " + describeTreated());
  return {m_options.strict ? kNotConverted : kDone, true};
}

}  // namespace tool
