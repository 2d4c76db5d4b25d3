#include "apps/encconv/file_conversion.h"

#include <algorithm>

#include "apps/encconv/detect.h"
#include "apps/encconv/error_report.h"
#include "encoding/encoding_convert.h"
#include "support/text_log.h"

namespace tool {
namespace {

constexpr std::size_t kPieceBytes = 256u << 10;

// A character in an encoding; empty when it has no place there.
std::string encode(std::string_view utf8, int codePage) {
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

}  // namespace

FileConversion::FileConversion(const Options& options, Console& console)
    : m_options(options),
      m_console(console),
      m_settings(options.treatment),
      m_afterWriting(mapAfterWriting(options.toCodePage, options.ebcdicNewline)),
      m_buffer(options.fromCodePage == kCodePageAuto ? kDetectionSample : kPieceBytes) {
  m_settings.from = options.fromCodePage;
  m_settings.to = options.toCodePage;
  m_settings.pdfPassthrough = options.pdfPassthrough;
  m_settings.drain = this;
  if (options.recordLength != 0) m_settings.errorHandler = this;
  m_mapsOutput = m_afterWriting != mapAfterWriting(options.toCodePage, EbcdicNewline::kKeep);
}

ConversionResult FileConversion::fail(const std::string& message) {
  m_console.report(message);
  return {kUsage, false};
}

bool FileConversion::checkSettings() {
  const int from = m_options.fromCodePage == kCodePageAuto ? 65001 : m_options.fromCodePage;
  return prepare(from, m_options.writeMark);
}

bool FileConversion::prepare(int fromCodePage, bool withMark) {
  m_settings.from = fromCodePage;
  m_settings.writeMark = withMark && m_options.writeMark;
  m_firstError = UINT64_MAX;
  const StreamStatus status = m_stream.begin(m_settings);
  if (status != StreamStatus::kGood) {
    m_console.report(describeStatus(status, m_settings));
    return false;
  }
  m_beforeReading = mapBeforeReading(fromCodePage, m_options.ebcdicNewline);
  m_mapsInput = m_beforeReading != mapBeforeReading(fromCodePage, EbcdicNewline::kKeep);
  m_records.reset();
  if (m_options.recordLength == 0) return true;

  RecordFilter::Settings records{m_options.recordLength, m_options.trim, encode("\n", fromCodePage),
                                 encode(" ", fromCodePage)};
  EbcdicLineEnds lineEnds;
  if (m_options.ebcdicNewline == EbcdicNewline::kNl && findEbcdicLineEnds(fromCodePage, lineEnds)) {
    records.newline.assign(1, static_cast<char>(lineEnds.nextLine));
  }
  if (records.newline.empty() || records.blank.empty()) {
    m_console.report("--record-length: no line can be ended in " + describeCodePage(fromCodePage));
    return false;
  }
  if (m_options.recordLength % records.newline.size() != 0) {
    m_console.report("--record-length: " + std::to_string(m_options.recordLength) +
                     " bytes cut a character of " + describeCodePage(fromCodePage) + " in two");
    return false;
  }
  m_records = std::make_unique<RecordFilter>(std::move(records));
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

ConversionResult FileConversion::convert(InputFile& input, OutputFile& output, bool withMark) {
  bool isWhole = false;
  m_buffered = 0;
  if (m_options.fromCodePage == kCodePageAuto) {
    if (!input.readFully(m_buffer, m_buffered)) return fail(input.error());
    isWhole = m_buffered < m_buffer.size();
    if (!chooseEncoding(input, isWhole)) return {kNotConverted, false};
  }
  if (!prepare(m_settings.from, withMark)) return {kUsage, false};
  return pump(input, output, isWhole);
}

StreamStatus FileConversion::convertPiece(std::span<const unsigned char> piece, bool isLast) {
  if (m_records != nullptr) {
    m_lines.clear();
    m_records->push(piece, m_lines);
    if (isLast) m_records->finish(m_lines);
    piece = m_lines;
  }
  StreamStatus status = m_stream.push(piece.data(), piece.size(), m_converted);
  if (status == StreamStatus::kGood && isLast) status = m_stream.finish(m_converted);
  return status;
}

bool FileConversion::onStreamOutput(DataBuffer& out) {
  std::string_view bytes(reinterpret_cast<const char*>(out.getData2()), out.getSize());
  if (m_mapsOutput) {
    m_mapped.resize(bytes.size());
    std::transform(bytes.begin(), bytes.end(), m_mapped.begin(),
                   [this](char c) { return m_afterWriting[static_cast<unsigned char>(c)]; });
    bytes = {reinterpret_cast<const char*>(m_mapped.data()), m_mapped.size()};
  }
  const bool written = m_output->write(bytes);
  out.clear();
  return written;
}

// At once, while it is still known which record the place is in.
void FileConversion::onStreamError(const StreamError& error) {
  if (error.offset >= m_firstError) return;
  m_firstError = error.offset;
  m_firstOffset = m_records->inputOffset(error.offset);
}

// The stream goes its own, faster ways through the engine. What the engine says is what it does
// when it is given the text at once.
void FileConversion::showEngineLog(std::span<const unsigned char> piece) {
  EncodingConvert engine;
  TextLog log(true);
  DataBuffer out;
  engine.EncConvert(m_settings.from, m_settings.to, piece.data(),
                    static_cast<unsigned int>(piece.size()), out, log);
  m_console.write(log.text());
}

ConversionResult FileConversion::pump(InputFile& input, OutputFile& output, bool isWhole) {
  StreamStatus status = StreamStatus::kGood;
  std::size_t count = m_buffered;
  bool isFirst = true;
  bool isLast = isWhole;
  m_output = &output;
  m_converted.clear();
  while (status == StreamStatus::kGood) {
    if (count == 0 && !isWhole) {
      if (!input.read(m_buffer, count)) return fail(input.error());
      isLast = count == 0;
    }
    const std::span<unsigned char> piece = std::span(m_buffer).first(count);
    if (m_mapsInput) {
      for (unsigned char& byte : piece) byte = m_beforeReading[byte];
    }
    if (m_options.verbose && isFirst) showEngineLog(piece);
    isFirst = false;
    status = convertPiece(piece, isLast);
    if (status == StreamStatus::kDrainFailed || !onStreamOutput(m_converted)) {
      return fail(output.error());
    }
    m_console.advance(count);
    if (isLast) break;
    count = 0;
  }
  return conclude(input, status);
}

StreamError FileConversion::firstError() const {
  StreamError error = m_stream.firstError();
  if (m_records != nullptr) error.offset = m_firstOffset;
  return error;
}

ConversionResult FileConversion::conclude(const InputFile& input, StreamStatus status) {
  if (status != StreamStatus::kGood && status != StreamStatus::kStopped) {
    return fail(input.label() + ": " + describeStatus(status, m_settings));
  }
  if (m_stream.errorCount() == 0) return {};
  const StreamError error = firstError();
  if (status == StreamStatus::kStopped) {
    m_console.report(input.label() + ": " + describeError(error, m_settings) + "; " +
                     adviceFor(error));
    return {kNotConverted, false};
  }
  if (!m_options.quiet) {
    const std::uint64_t count = m_stream.errorCount();
    m_console.report(input.label() + ": " + std::to_string(count) +
                     (count == 1 ? " place was" : " places were") +
                     " not convertible; the first at " + describeError(error, m_settings));
  }
  return {m_options.strict ? kNotConverted : kDone, true};
}

}  // namespace tool
