// The command line of the tool, parsed into a struct. No input or output happens here.
#ifndef APPS_ENCCONV_OPTIONS_H_
#define APPS_ENCCONV_OPTIONS_H_

#include <string>
#include <vector>

#include "encoding/stream/stream_converter.h"

namespace tool {

// The exit statuses; they are documented and scripts rely on them.
enum ExitStatus : int {
  kDone = 0,          // everything was converted, or treated as asked
  kNotConverted = 1,  // input that could not be converted
  kUsage = 2,         // arguments, files, memory
};

enum class Command : unsigned char { kConvert, kDetect, kList, kChart };

// What happens to the line ends of EBCDIC text.
enum class EbcdicNewline : unsigned char {
  kKeep,  // as the code pages say
  kLf,    // NL (15) in EBCDIC is a plain newline elsewhere
  kNl,    // every line end becomes NL
};

// Stands for "-f auto".
inline constexpr int kCodePageAuto = -1;

struct Options {
  Command command = Command::kConvert;
  std::vector<std::string> inputs;  // never empty for kConvert and kDetect; "-": standard input

  int fromCodePage = 0;
  int toCodePage = 0;
  StreamSettings treatment;  // only the fields that --on-error sets
  bool strict = false;       // treated input makes the status kNotConverted
  bool writeMark = false;
  bool pdfPassthrough = false;

  std::string output;  // empty: standard output
  bool inPlace = false;
  std::string backupSuffix;     // of kept originals; empty: none are kept
  std::string outputDirectory;  // empty: none
  unsigned int jobs = 1;

  EbcdicNewline ebcdicNewline = EbcdicNewline::kKeep;
  unsigned int recordLength = 0;  // bytes of the input; 0: no records
  bool trim = false;

  bool guess = false;  // of kCodePageAuto: the likeliest encoding will do
  bool brief = false;  // of kDetect: the name alone

  bool quiet = false;
  bool verbose = false;

  std::string filter;     // of kList; empty: everything
  bool json = false;      // of kList and kDetect
  std::string chartHtml;  // of kChart: the page to write; empty: text on standard output
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
