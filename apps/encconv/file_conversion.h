// The conversion of one input into an open output.
#ifndef APPS_ENCCONV_FILE_CONVERSION_H_
#define APPS_ENCCONV_FILE_CONVERSION_H_

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "apps/encconv/console.h"
#include "apps/encconv/ebcdic.h"
#include "apps/encconv/file_io.h"
#include "apps/encconv/newline_filter.h"
#include "apps/encconv/options.h"
#include "apps/encconv/parallel_records.h"
#include "apps/encconv/parallel_stream.h"
#include "apps/encconv/place_report.h"
#include "apps/encconv/record_conversion.h"
#include "encoding/stream/stream_converter.h"

namespace tool {

struct ConversionResult {
  int status = kDone;
  bool isComplete = true;  // all of the input is in the output, converted or treated
};

// The way of the bytes: input, EBCDIC line ends, stream, line ends, EBCDIC line ends, output; a
// conversion of records takes the place of what is about records. An object serves any number of
// files, one after the other; each thread has its own.
class FileConversion : private StreamDrain,
                       private StreamErrorHandler,
                       private ParallelStream::Client {
 public:
  // All must outlive the object. Without a report, null. A large file is converted by so many
  // threads.
  FileConversion(const Options& options, Console& console, PlaceReport* report,
                 unsigned int threads = 1);

  // Whether the encodings and the treatment can be served; says why not. With an input encoding to
  // be found out, as far as that can be known.
  bool checkSettings();

  // Converts all of input; isFirst: the output begins with it, and with a byte order mark if that
  // is wanted.
  ConversionResult convert(InputFile& input, OutputFile& output, bool isFirst);

 private:
  bool chooseEncoding(const InputFile& input, bool isWhole);
  bool prepare(int fromCodePage, bool isFirst);
  bool prepareNewlines();
  bool prepareRecords(int fromCodePage, bool isFirst);
  ConversionResult pump(InputFile& input, OutputFile& output, bool isWhole, bool isFirst);
  bool pumpStream(bool isWhole, StreamStatus& status);
  bool isForThreads(const InputFile& input, bool isWhole) const;
  bool pumpInParallel(bool isFirst, StreamStatus& status);
  void mapInput(std::span<unsigned char> bytes) const;
  bool readText(std::span<unsigned char> buffer, std::size_t& count) override;
  bool writeText(std::string_view bytes) override;
  void onTextError(const StreamError& error) override;
  void onTextDone(std::size_t bytes) override;
  StreamStatus convertPiece(std::span<const unsigned char> piece, bool isLast);
  bool onStreamOutput(DataBuffer& out) override;
  void onStreamError(const StreamError& error) override;
  void onRecordProblem(const encconv::RecordProblem& problem);
  StreamSettings settingsFor(const encconv::RecordProblem& problem) const;
  void tellTotals();
  bool emit(std::string_view bytes);
  bool write(std::string_view bytes);
  void tellStory(const InputFile& input, bool isComplete) const;
  ConversionResult conclude(const InputFile& input, StreamStatus status);
  std::string describeTreated() const;
  std::string describeEnd() const;
  ConversionResult fail(const std::string& message);

  const Options& m_options;
  Console& m_console;
  StreamSettings m_settings;
  StreamConverter m_stream;
  DataBuffer m_converted;
  InputFile* m_input = nullptr;                 // of the conversion under way
  OutputFile* m_output = nullptr;               // likewise
  std::unique_ptr<RecordConversion> m_records;  // null where there are no records
  std::string m_fromRecords;                    // what they became
  PlaceReport* const m_report;
  const unsigned int m_threads;
  std::optional<NewlineFilter> m_newlines;
  StreamError m_lastError;               // that the handler was told
  encconv::RecordProblem m_lastProblem;  // likewise, of records
  // Places that are counted together, and the first of them in words.
  struct Tally {
    std::uint64_t count = 0;
    std::string first;
  };
  Tally m_inconvertible;
  Tally m_approximated;
  Tally m_damaged;  // of records
  StreamTotals m_totals;
  std::uint64_t m_bytesRead = 0;
  std::uint64_t m_bytesWritten = 0;
  std::chrono::steady_clock::time_point m_begin;
  ByteMap m_beforeReading = {};
  ByteMap m_afterWriting = {};
  bool m_mapsInput = false;
  bool m_mapsOutput = false;
  std::vector<unsigned char> m_buffer;  // of input
  std::size_t m_buffered = 0;           // bytes in it that were read to find out the encoding
  std::vector<unsigned char> m_ended;   // with other line ends
  std::vector<unsigned char> m_mapped;  // what goes out
};

}  // namespace tool

#endif  // APPS_ENCCONV_FILE_CONVERSION_H_
