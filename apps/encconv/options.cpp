#include "apps/encconv/options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <optional>
#include <thread>

#include "apps/encconv/ebcdic.h"
#include "apps/encconv/help.h"

namespace tool {
namespace {

constexpr unsigned int kMaxJobs = 256;
constexpr unsigned int kMaxRecordLength = 1u << 20;

// The options as they are written; the rest of this file turns them into Options.
struct RawArguments {
  std::string from;
  std::string to;
  std::string onError;
  std::string inPlace;
  std::string jobs;
  std::string ebcdicNewline;
  std::string recordLength;
  std::string chart;
  std::string helpTopic;
  bool detect = false;
  bool version = false;
};

// A wrong command line, in one line.
struct UsageError {
  std::string message;
};

// Names no file: the value of --in-place without a suffix. CLI11 must be told of some value.
constexpr const char* kNoSuffix = "/";

void declare(CLI::App& app, RawArguments& raw, Options& options) {
  app.set_help_flag();
  // The last one counts, so that aliases and scripts can have defaults.
  app.option_defaults()->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
  app.add_option("-f,--from", raw.from);
  app.add_option("-t,--to", raw.to);
  app.add_option("-o,--output", options.output);
  app.add_flag("--in-place{" + std::string(kNoSuffix) + "}", raw.inPlace);
  app.add_option("--output-dir", options.outputDirectory);
  app.add_option("-j,--jobs", raw.jobs);
  app.add_option("--on-error", raw.onError);
  app.add_flag("--strict", options.strict);
  app.add_flag("--bom", options.writeMark);
  app.add_flag("--pdf-passthrough", options.pdfPassthrough);
  app.add_option("--ebcdic-newline", raw.ebcdicNewline);
  app.add_option("--record-length", raw.recordLength);
  app.add_flag("--trim", options.trim);
  app.add_flag("-q,--quiet", options.quiet);
  app.add_flag("-v,--verbose", options.verbose);
  app.add_flag("--detect", raw.detect);
  app.add_flag("--brief", options.brief);
  app.add_flag("--guess", options.guess);
  app.add_option("--list", options.filter)->expected(0, 1);
  app.add_flag("--json", options.json);
  app.add_option("--chart", raw.chart);
  app.add_option("--html", options.chartHtml);
  app.add_option("-h,--help", raw.helpTopic)->expected(0, 1);
  app.add_flag("--version", raw.version);
  app.add_option("files", options.inputs)->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

unsigned int readNumber(const std::string& option, const std::string& text, unsigned int lowest,
                        unsigned int highest) {
  unsigned int value = 0;
  const char* end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc() || rest != end || value < lowest || value > highest) {
    throw UsageError{option + ": '" + text + "' is not a number from " + std::to_string(lowest) +
                     " to " + std::to_string(highest)};
  }
  return value;
}

int readCodePage(const std::string& name) {
  const int codePage = streamCodePage(name);
  if (codePage == 0) {
    throw UsageError{"unknown encoding '" + name + "' (encconv --list shows the known ones)"};
  }
  return codePage;
}

EbcdicNewline readEbcdicNewline(const std::string& text) {
  if (text == "lf") return EbcdicNewline::kLf;
  if (text == "nl") return EbcdicNewline::kNl;
  if (text == "keep") return EbcdicNewline::kKeep;
  throw UsageError{"--ebcdic-newline: '" + text + "' is none of lf, nl and keep"};
}

void readTreatment(const std::string& text, Options& options) {
  constexpr std::string_view kAlternate = "alternate=";
  if (text.starts_with(kAlternate)) readCodePage(text.substr(kAlternate.size()));
  if (!parseStreamTreatment(text, options.treatment)) {
    throw UsageError{"--on-error: '" + text +
                     "' is no treatment (encconv --help errors shows them)"};
  }
}

void readEncodings(const RawArguments& raw, Options& options) {
  if (raw.from.empty() && raw.to.empty()) {
    throw UsageError{"from which encoding to which? -f FROM -t TO (encconv --help shows more)"};
  }
  if (raw.from.empty()) throw UsageError{"the input encoding is missing: -f FROM"};
  if (raw.to.empty()) throw UsageError{"the output encoding is missing: -t TO"};
  options.fromCodePage = raw.from == "auto" ? kCodePageAuto : readCodePage(raw.from);
  options.toCodePage = readCodePage(raw.to);
  if (options.guess && options.fromCodePage != kCodePageAuto) {
    throw UsageError{"--guess needs -f auto"};
  }
  if (options.writeMark && markOf(*findEncodingRow(options.toCodePage)).empty()) {
    throw UsageError{"--bom: '" + raw.to + "' has no byte order mark"};
  }
  if (!raw.onError.empty()) readTreatment(raw.onError, options);
}

void readShape(const RawArguments& raw, Options& options) {
  if (!raw.ebcdicNewline.empty()) {
    options.ebcdicNewline = readEbcdicNewline(raw.ebcdicNewline);
    if (!isEbcdic(options.fromCodePage) && !isEbcdic(options.toCodePage)) {
      throw UsageError{"--ebcdic-newline: neither '" + raw.from + "' nor '" + raw.to +
                       "' is an EBCDIC encoding"};
    }
  }
  if (!raw.recordLength.empty()) {
    options.recordLength = readNumber("--record-length", raw.recordLength, 1, kMaxRecordLength);
  } else if (options.trim) {
    throw UsageError{"--trim needs --record-length"};
  }
}

void readDestination(const RawArguments& raw, Options& options) {
  options.inPlace = !raw.inPlace.empty();
  const int destinations = (options.output.empty() ? 0 : 1) + (options.inPlace ? 1 : 0) +
                           (options.outputDirectory.empty() ? 0 : 1);
  if (destinations > 1) {
    throw UsageError{"only one of -o, --in-place and --output-dir can be given"};
  }
  if (options.inPlace && raw.inPlace != kNoSuffix) {
    if (raw.inPlace.find('/') != std::string::npos) {
      throw UsageError{"--in-place: the suffix '" + raw.inPlace + "' has a slash"};
    }
    options.backupSuffix = raw.inPlace;
  }
  const bool perFile = options.inPlace || !options.outputDirectory.empty();
  if (perFile && (options.inputs.empty() || std::find(options.inputs.begin(), options.inputs.end(),
                                                      "-") != options.inputs.end())) {
    throw UsageError{(options.inPlace ? std::string("--in-place") : std::string("--output-dir")) +
                     " needs files, not standard input"};
  }
  if (!raw.jobs.empty()) {
    options.jobs = readNumber("-j", raw.jobs, 0, kMaxJobs);
    if (!perFile) throw UsageError{"-j needs --in-place or --output-dir"};
    if (options.jobs == 0) {
      options.jobs = std::clamp(std::thread::hardware_concurrency(), 1u, kMaxJobs);
    }
  }
}

// An empty value is a variable of a script that was not set.
void refuseEmptyValues(const CLI::App& app) {
  for (const CLI::Option* option : app.get_options()) {
    const bool mayLackValue = option->get_expected_min() == 0;
    for (const std::string& value : option->results()) {
      if (value.empty() && !mayLackValue) {
        throw UsageError{option->get_name() + ": the value is empty"};
      }
    }
  }
}

void readCommand(const CLI::App& app, const RawArguments& raw, Options& options) {
  refuseEmptyValues(app);
  const bool lists = app.count("--list") != 0;
  const bool charts = app.count("--chart") != 0;
  if ((lists ? 1 : 0) + (charts ? 1 : 0) + (raw.detect ? 1 : 0) > 1) {
    throw UsageError{"only one of --list, --chart and --detect can be given"};
  }
  if (options.json && !lists && !raw.detect) throw UsageError{"--json needs --list or --detect"};
  if (options.brief && !raw.detect) throw UsageError{"--brief needs --detect"};
  if (options.brief && options.json)
    throw UsageError{"only one of --brief and --json can be given"};
  if (!options.chartHtml.empty() && !charts) throw UsageError{"--html needs --chart"};
  if ((lists || charts) && !options.inputs.empty()) {
    throw UsageError{"unexpected argument '" + options.inputs.front() + "'"};
  }
  if (lists) {
    options.command = Command::kList;
  } else if (charts) {
    options.command = Command::kChart;
    options.fromCodePage = readCodePage(raw.chart);
  } else if (raw.detect) {
    options.command = Command::kDetect;
  } else {
    readEncodings(raw, options);
    readShape(raw, options);
    readDestination(raw, options);
  }
  if (options.inputs.empty()) options.inputs.emplace_back("-");
}

ParsedArguments show(std::string_view text) {
  ParsedArguments parsed;
  parsed.out = text;
  return parsed;
}

}  // namespace

ParsedArguments parseArguments(std::vector<std::string> arguments) {
  CLI::App app;
  RawArguments raw;
  ParsedArguments parsed;
  declare(app, raw, parsed.options);

  std::string message;
  try {
    std::reverse(arguments.begin(), arguments.end());  // CLI11 takes them from the back
    app.parse(std::move(arguments));
    if (app.count("--help") != 0) {
      const std::string_view text = helpText(raw.helpTopic);
      if (!text.empty()) return show(text);
      throw UsageError{"no help about '" + raw.helpTopic + "'; there is: " + helpTopics()};
    }
    if (raw.version) return show("encconv " ENCCONV_VERSION "\n");
    readCommand(app, raw, parsed.options);
    parsed.run = true;
    return parsed;
  } catch (const UsageError& error) {
    message = error.message;
  } catch (const CLI::ExtrasError&) {
    message = "unknown option '" + app.remaining().front() + "' (encconv --help shows the usage)";
  } catch (const CLI::ArgumentMismatch& error) {
    const std::string_view text = error.what();
    message = std::string(text.substr(0, text.find(':'))) + ": the value is missing";
  } catch (const CLI::Error& error) {
    message = std::string(error.what()) + " (encconv --help shows the usage)";
  }
  parsed = {};
  parsed.status = kUsage;
  parsed.err = "encconv: " + message + "\n";
  return parsed;
}

}  // namespace tool
