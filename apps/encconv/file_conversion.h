// The conversion of one input into an open output.
#ifndef APPS_ENCCONV_FILE_CONVERSION_H_
#define APPS_ENCCONV_FILE_CONVERSION_H_

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "apps/encconv/console.h"
#include "apps/encconv/ebcdic.h"
#include "apps/encconv/file_io.h"
#include "apps/encconv/options.h"
#include "apps/encconv/record_filter.h"
#include "encoding/stream/stream_converter.h"

namespace tool {

struct ConversionResult {
  int status = kDone;
  bool isComplete = true;  // all of the input is in the output, converted or treated
};

// The way of the bytes: input, EBCDIC line ends, records, stream, EBCDIC line ends, output. An
// object serves any number of files, one after the other; each thread has its own.
class FileConversion : private StreamDrain, private StreamErrorHandler {
 public:
  // Both must outlive the object.
  FileConversion(const Options& options, Console& console);

  // Whether the encodings and the treatment can be served; says why not. With an input encoding to
  // be found out, as far as that can be known.
  bool checkSettings();

  // Converts all of input. withMark: begin with the byte order mark if one is wanted.
  ConversionResult convert(InputFile& input, OutputFile& output, bool withMark);

 private:
  bool chooseEncoding(const InputFile& input, bool isWhole);
  bool prepare(int fromCodePage, bool withMark);
  ConversionResult pump(InputFile& input, OutputFile& output, bool isWhole);
  StreamStatus convertPiece(std::span<const unsigned char> piece, bool isLast);
  bool onStreamOutput(DataBuffer& out) override;
  void onStreamError(const StreamError& error) override;
  void showEngineLog(std::span<const unsigned char> piece);
  ConversionResult conclude(const InputFile& input, StreamStatus status);
  StreamError firstError() const;
  ConversionResult fail(const std::string& message);

  const Options& m_options;
  Console& m_console;
  StreamSettings m_settings;
  StreamConverter m_stream;
  DataBuffer m_converted;
  OutputFile* m_output = nullptr;           // of the conversion under way
  std::unique_ptr<RecordFilter> m_records;  // null without --record-length
  std::uint64_t m_firstError = 0;           // with records: where the first error is in the lines,
  std::uint64_t m_firstOffset = 0;          // and where in the input
  ByteMap m_beforeReading = {};
  ByteMap m_afterWriting = {};
  bool m_mapsInput = false;
  bool m_mapsOutput = false;
  std::vector<unsigned char> m_buffer;  // of input
  std::size_t m_buffered = 0;           // bytes in it that were read to find out the encoding
  std::vector<unsigned char> m_lines;   // what the records became
  std::vector<unsigned char> m_mapped;  // what goes out
};

}  // namespace tool

#endif  // APPS_ENCCONV_FILE_CONVERSION_H_
