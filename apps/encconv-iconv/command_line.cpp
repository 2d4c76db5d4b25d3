#include "apps/encconv-iconv/command_line.h"

#include <getopt.h>

#include <cstdio>
#include <cstring>
#include <string_view>

namespace iconv_command {
namespace {

constexpr int kUsageError = 64;  // EX_USAGE

std::string g_calledAs = "encconv-iconv";

std::string shortName() { return g_calledAs.substr(g_calledAs.rfind('/') + 1); }

// Lines as those of iconv(1), so that scripts that read them go on to.
constexpr std::string_view kHelp = R"( [OPTION...] [FILE...]
Convert encoding of given files from one encoding to another.

 Input/Output format specification:
  -f, --from-code=NAME       encoding of original text
  -t, --to-code=NAME         encoding for output

 Information:
  -l, --list                 list all known coded character sets

 Output control:
  -c                         omit invalid characters from output
  -o, --output=FILE          output file
  -s, --silent               suppress warnings
      --verbose              print progress information

  -?, --help                 Give this help list
      --usage                Give a short usage message
  -V, --version              Print program version

Mandatory or optional arguments to long options are also mandatory or optional
for any corresponding short options.

Beyond what iconv of the C library does:
  - files and pipes of any length are converted in constant memory, and the
    output file may be one of the input files
  - encodings are those that encconv --list shows, and mean what they mean to
    iconv
  - //TRANSLIT behind the name of the output encoding does the same in every
    locale
  - //IGNORE leaves out all invalid characters of a file before the exit status
    says that there were some
encconv tells of each place that could not be converted, with line and bytes,
and has more that can be done about it.
)";

constexpr std::string_view kUsageLines[] = {
    "[-lcs?V] [-f NAME] [-t NAME] [-o FILE] [--from-code=NAME]",
    "[--to-code=NAME] [--list] [--output=FILE] [--silent] [--verbose]",
    "[--help] [--usage] [--version] [FILE...]"};

void printUsage() {
  std::string text = "Usage: " + shortName();
  for (const std::string_view line : kUsageLines) {
    if (line != kUsageLines[0]) text += "\n           ";
    text.append(" ").append(line);
  }
  std::puts(text.c_str());
}

void printHelp() { std::printf("Usage: %s%s", shortName().c_str(), kHelp.data()); }

void sayHowToAsk() {
  const std::string name = shortName();
  std::fprintf(stderr, "Try `%s --help' or `%s --usage' for more information.\n", name.c_str(),
               name.c_str());
}

enum LongOption : int { kVerbose = 256, kUsage, kHelpOption };

constexpr option kLongOptions[] = {{"from-code", required_argument, nullptr, 'f'},
                                   {"to-code", required_argument, nullptr, 't'},
                                   {"list", no_argument, nullptr, 'l'},
                                   {"output", required_argument, nullptr, 'o'},
                                   {"silent", no_argument, nullptr, 's'},
                                   {"verbose", no_argument, nullptr, kVerbose},
                                   {"help", no_argument, nullptr, kHelpOption},
                                   {"usage", no_argument, nullptr, kUsage},
                                   {"version", no_argument, nullptr, 'V'},
                                   {nullptr, 0, nullptr, 0}};

// Whether an option that looks like one that is not known, which was told, is -?. Of an unknown
// long option no character is told.
bool asksForHelp(std::string_view argument) {
  return optopt == '?' || (optopt == 0 && !argument.starts_with("--"));
}

}  // namespace

bool readCommandLine(int argc, char** argv, Options& options, int& status) {
  if (argc > 0) g_calledAs = argv[0];
  status = 0;
  while (true) {
    // NOLINTNEXTLINE(concurrency-mt-unsafe): nothing runs beside it
    switch (getopt_long(argc, argv, "f:t:lco:s?V", kLongOptions, nullptr)) {
      case -1:
        options.files.assign(argv + optind, argv + argc);
        return true;
      case 'f':
        options.from = optarg;
        break;
      case 't':
        options.to = optarg;
        break;
      case 'l':
        options.lists = true;
        break;
      case 'c':
        options.omitsInvalid = true;
        break;
      case 'o':
        options.output = optarg;
        break;
      case 's':  // there are no warnings
        break;
      case kVerbose:
        options.isVerbose = true;
        break;
      case kUsage:
        printUsage();
        return false;
      case 'V':
        std::printf("iconv (encconv) %s\n", ENCCONV_VERSION);
        return false;
      case kHelpOption:
        printHelp();
        return false;
      default:
        if (asksForHelp(argv[optind - 1])) {
          printHelp();
        } else {
          sayHowToAsk();
          status = kUsageError;
        }
        return false;
    }
  }
}

void say(const std::string& message) {
  std::fflush(stdout);
  std::fprintf(stderr, "%s: %s\n", g_calledAs.c_str(), message.c_str());
}

void say(const std::string& message, int error) {
  say(message + ": " + std::strerror(error));  // NOLINT(concurrency-mt-unsafe): one thread
}

}  // namespace iconv_command
