// The command line of the tool, parsed into a struct. No input or output happens here.
#ifndef APPS_ENCCONV_OPTIONS_H_
#define APPS_ENCCONV_OPTIONS_H_

#include <optional>
#include <string>
#include <vector>

#include "encconv/records.h"
#include "encoding/stream/stream_converter.h"

namespace tool {

// The exit statuses; they are documented and scripts rely on them.
enum ExitStatus : int {
  kDone = 0,          // everything was converted, or treated as asked
  kNotConverted = 1,  // input that could not be converted
  kUsage = 2,         // arguments, files, memory
};

enum class Command : unsigned char { kConvert, kDetect, kTrace, kList, kChart };

// What happens to the line ends of EBCDIC text.
enum class EbcdicNewline : unsigned char {
  kKeep,  // as the code pages say
  kLf,    // NL (15) in EBCDIC is a plain newline elsewhere
  kNl,    // every line end becomes NL
};

// What becomes of byte order marks.
enum class MarkUse : unsigned char {
  kUsual,   // a conversion takes the input's off, a check of one encoding keeps it
  kKeep,    // the output has one if the input has
  kAdd,     // the output has one
  kRemove,  // the output has none
};

// What line ends become.
enum class Newline : unsigned char { kKeep, kLf, kCrLf, kCr };

// Stands for "-f auto".
inline constexpr int kCodePageAuto = -1;

struct Options {
  Command command = Command::kConvert;
  std::vector<std::string> inputs;    // but for kList and kChart, never empty; "-": standard input
  bool recursive = false;             // what is in directories is meant
  std::vector<std::string> includes;  // patterns of the names of files there; empty: all

  int fromCodePage = 0;
  int toCodePage = 0;
  StreamSettings treatment;            // only the fields that --on-error and its like set
  std::string treatmentName = "stop";  // in words
  bool strict = false;                 // treated input makes the status kNotConverted
  MarkUse mark = MarkUse::kUsual;
  Newline newline = Newline::kKeep;
  bool pdfPassthrough = false;

  std::string output;  // empty, or "-": standard output
  bool inPlace = false;
  std::string backupSuffix;     // of kept originals; empty: none are kept
  std::string outputDirectory;  // empty: none
  bool preserveTime = false;    // the files have the times of their originals
  unsigned int jobs = 1;

  EbcdicNewline ebcdicNewline = EbcdicNewline::kKeep;
  std::optional<encconv::RecordFormat> records;    // of the input
  std::optional<encconv::RecordFormat> toRecords;  // of the output
  std::string fields;           // fields of the records, or "@" and the file with them; empty: none
  encconv::FieldLayout layout;  // what these are, when they have been read
  encconv::TableFormat tableFormat = encconv::TableFormat::csv;
  bool trim = false;
  bool usesRecords() const { return records || toRecords; }

  std::string report;  // the file with every place; empty: none, "-": standard output
  bool guess = false;  // of kCodePageAuto: the likeliest encoding will do
  bool brief = false;  // of kDetect: the name alone; of kTrace: the text alone

  bool quiet = false;
  bool verbose = false;

  std::string filter;     // of kList; empty: everything
  bool json = false;      // of kList, kDetect, kTrace and the report
  std::string chartHtml;  // of kChart: the page to write, "-" on standard output; empty: text there
};

// What to do about a command line: run with options, or print out and err and end with status.
struct ParsedArguments {
  bool run = false;
  Options options;
  int status = kDone;
  std::string out;  // for standard output: help, version
  std::string err;  // for standard error: one line that names what is wrong
};

// arguments are those behind the program's name; they may hold any bytes.
ParsedArguments parseArguments(std::vector<std::string> arguments);

}  // namespace tool

#endif  // APPS_ENCCONV_OPTIONS_H_
