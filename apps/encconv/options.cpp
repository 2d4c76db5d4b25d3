#include "apps/encconv/options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <optional>
#include <thread>

#include "apps/encconv/console.h"
#include "apps/encconv/ebcdic.h"
#include "apps/encconv/encoding_arguments.h"
#include "apps/encconv/help.h"
#include "apps/encconv/system/files.h"
#include "apps/encconv/system/process.h"

namespace tool {
namespace {

constexpr unsigned int kMaxJobs = 256;

// The options as they are written; the rest of this file turns them into Options.
struct RawArguments {
  std::string from;
  std::string to;
  std::string onError;
  std::string inPlace;
  std::string jobs;
  std::string bom;
  std::string newline;
  std::string ebcdicNewline;
  std::string recordLength;
  std::string records;
  std::string toRecords;
  std::string tableFormat;
  std::string chart;
  std::string helpTopic;
  bool dropsAll = false;
  bool detect = false;
  bool trace = false;
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
  app.add_option("-f,--from,--from-code", raw.from);
  app.add_option("-t,--to,--to-code", raw.to);
  app.add_flag("-c", raw.dropsAll);
  app.add_option("-o,--output", options.output);
  app.add_flag("--in-place{" + std::string(kNoSuffix) + "}", raw.inPlace);
  app.add_option("--output-dir", options.outputDirectory);
  app.add_flag("--preserve-time", options.preserveTime);
  app.add_option("-j,--jobs", raw.jobs);
  app.add_flag("-r,--recursive", options.recursive);
  app.add_option("--include", options.includes)
      ->allow_extra_args(false)
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
  app.add_option("--on-error", raw.onError);
  app.add_flag("--strict", options.strict);
  app.add_flag("--bom{add}", raw.bom);
  app.add_option("--newline", raw.newline);
  app.add_option("--report", options.report);
  app.add_flag("--pdf-passthrough", options.pdfPassthrough);
  app.add_option("--ebcdic-newline", raw.ebcdicNewline);
  app.add_option("--records", raw.records);
  app.add_option("--record-length", raw.recordLength);
  app.add_option("--to-records", raw.toRecords);
  app.add_option("--fields", options.fields);
  app.add_option("--as", raw.tableFormat);
  app.add_flag("--trim", options.trim);
  app.add_flag("-q,--quiet,-s,--silent", options.quiet);
  app.add_flag("-v,--verbose", options.verbose);
  app.add_flag("--detect", raw.detect);
  app.add_flag("--trace", raw.trace);
  app.add_option("-l,--list", options.filter)->expected(0, 1);
  app.add_flag("--brief", options.brief);
  app.add_flag("--guess", options.guess);
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
    throw UsageError{"unknown encoding '" + name + "'" + suggestionsFor(name) +
                     " (encconv --list shows the known ones)"};
  }
  return codePage;
}

template <typename Value>
struct Word {
  std::string_view name;
  Value value;
};
constexpr Word<EbcdicNewline> kEbcdicNewlines[] = {
    {"lf", EbcdicNewline::kLf}, {"nl", EbcdicNewline::kNl}, {"keep", EbcdicNewline::kKeep}};
constexpr Word<Newline> kNewlines[] = {
    {"lf", Newline::kLf}, {"crlf", Newline::kCrLf}, {"cr", Newline::kCr}, {"keep", Newline::kKeep}};
constexpr Word<MarkUse> kMarkUses[] = {
    {"keep", MarkUse::kKeep}, {"add", MarkUse::kAdd}, {"remove", MarkUse::kRemove}};

// Takes the value that a word means over, if the option was given.
template <typename Value, std::size_t count>
void readWord(const char* option, const std::string& text, const Word<Value> (&words)[count],
              Value& value) {
  if (text.empty()) return;
  std::string names;
  for (std::size_t i = 0; i < count; ++i) {
    if (text == words[i].name) {
      value = words[i].value;
      return;
    }
    names += i == 0 ? "" : i + 1 == count ? " and " : ", ";
    names += words[i].name;
  }
  throw UsageError{std::string(option) + ": '" + text + "' is none of " + names};
}

void readTreatment(const std::string& text, Options& options) {
  constexpr std::string_view kAlternate = "alternate=";
  if (text.starts_with(kAlternate)) readCodePage(text.substr(kAlternate.size()));
  options.treatmentName = text;
  if (!parseStreamTreatment(text, options.treatment)) {
    throw UsageError{"--on-error: '" + text +
                     "' is no treatment (encconv --help errors shows them)"};
  }
}

// The encoding of an option, or of the locale where the option is not given, with the suffixes of
// iconv.
EncodingArgument readEncoding(const std::string& text, const char* option) {
  EncodingArgument encoding;
  std::string suffix;
  if (!parseEncodingArgument(text, encoding, suffix)) {
    throw UsageError{std::string(option) + ": '//" + suffix +
                     "' is neither //IGNORE nor //TRANSLIT"};
  }
  if (!encoding.name.empty()) return encoding;
  encoding.name = systemEncodingName();
  if (streamCodePage(encoding.name) == 0) {
    throw UsageError{"the encoding of the locale " +
                     (encoding.name.empty() ? "is not known" : "is '" + encoding.name + "'") +
                     "; name another with " + option};
  }
  return encoding;
}

void readEncodings(const RawArguments& raw, Options& options) {
  if (raw.from.empty() && raw.to.empty()) {
    throw UsageError{"from which encoding to which? -f FROM -t TO (encconv --help shows more)"};
  }
  const EncodingArgument from = readEncoding(raw.from, "-f");
  const EncodingArgument to = readEncoding(raw.to, "-t");
  options.fromCodePage = from.name == "auto" ? kCodePageAuto : readCodePage(from.name);
  options.toCodePage = readCodePage(to.name);
  if (options.guess && options.fromCodePage != kCodePageAuto) {
    throw UsageError{"--guess needs -f auto"};
  }
  readWord("--bom", raw.bom, kMarkUses, options.mark);
  if (options.mark == MarkUse::kAdd && markOf(*findEncodingRow(options.toCodePage)).empty()) {
    throw UsageError{"--bom: '" + to.name + "' has no byte order mark"};
  }
  const bool ignores = raw.dropsAll || from.ignores || to.ignores;
  if (!ignores && !to.transliterates) {
    if (!raw.onError.empty()) readTreatment(raw.onError, options);
    return;
  }
  if (!raw.onError.empty()) {
    throw UsageError{"--on-error says what -c, //IGNORE and //TRANSLIT say; give one of them"};
  }
  options.treatmentName = to.transliterates ? "//TRANSLIT" : "drop";
  applySuffixes(ignores, to.transliterates, options.treatment);
}

void readShape(const RawArguments& raw, Options& options) {
  readWord("--newline", raw.newline, kNewlines, options.newline);
  readWord("--ebcdic-newline", raw.ebcdicNewline, kEbcdicNewlines, options.ebcdicNewline);
  if (!raw.ebcdicNewline.empty() && !isEbcdic(options.fromCodePage) &&
      !isEbcdic(options.toCodePage)) {
    throw UsageError{"--ebcdic-newline: neither of the encodings is an EBCDIC encoding"};
  }
}

std::optional<encconv::RecordFormat> readRecordFormat(const char* option, const std::string& text) {
  if (text.empty()) return std::nullopt;
  const std::optional<encconv::RecordFormat> format = encconv::parse_record_format(text);
  if (format) return format;
  throw UsageError{std::string(option) + ": '" + text + "' is none of fixed:N (1 to " +
                   std::to_string(encconv::max_fixed_length) + "), rdw, bdw and bdw:N (9 to " +
                   std::to_string(encconv::max_block_size) + ")"};
}

void readRecords(const RawArguments& raw, Options& options) {
  options.records = readRecordFormat("--records", raw.records);
  options.toRecords = readRecordFormat("--to-records", raw.toRecords);
  if (!raw.recordLength.empty()) {
    if (options.records)
      throw UsageError{"--record-length N is --records fixed:N; give one of them"};
    options.records.emplace();
    options.records->length =
        readNumber("--record-length", raw.recordLength, 1, encconv::max_fixed_length);
  }
  if (!raw.tableFormat.empty()) {
    const std::optional<encconv::TableFormat> format = encconv::parse_table_format(raw.tableFormat);
    if (!format) {
      throw UsageError{"--as: '" + raw.tableFormat + "' is none of csv, json and json-strings"};
    }
    options.tableFormat = *format;
    if (options.fields.empty()) throw UsageError{"--as needs --fields"};
  }
  if (options.trim && !options.usesRecords()) {
    throw UsageError{"--trim needs --records or --to-records"};
  }
  if (!options.fields.empty() && options.records.has_value() == options.toRecords.has_value()) {
    throw UsageError{options.records ? "--fields: a table is made with --records, or read with "
                                       "--to-records, not both at once"
                                     : "--fields needs --records or --to-records"};
  }
  if (!options.fields.empty() && options.ebcdicNewline != EbcdicNewline::kKeep) {
    throw UsageError{"--ebcdic-newline does not go with --fields"};
  }
  if (options.usesRecords() && options.pdfPassthrough) {
    throw UsageError{"--pdf-passthrough does not go with records"};
  }
  if (!options.toRecords) return;
  if (options.newline != Newline::kKeep) {
    throw UsageError{"--newline: records of --to-records have no line ends"};
  }
  if (options.mark == MarkUse::kAdd) {
    throw UsageError{"--bom: records of --to-records have no byte order mark"};
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
    if (files::lastPart("name" + raw.inPlace) != "name" + raw.inPlace) {
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
  if (options.preserveTime && !perFile) {
    throw UsageError{"--preserve-time needs --in-place or --output-dir"};
  }
  if (options.report == "-" && !perFile && (options.output.empty() || options.output == "-")) {
    throw UsageError{"--report: the text goes to standard output; name a file"};
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
  const bool judges = raw.detect || raw.trace;
  if ((lists ? 1 : 0) + (charts ? 1 : 0) + (raw.detect ? 1 : 0) + (raw.trace ? 1 : 0) > 1) {
    throw UsageError{"only one of --list, --chart, --detect and --trace can be given"};
  }
  if (options.json && !lists && !judges && options.report.empty()) {
    throw UsageError{"--json needs --list, --detect, --trace or --report"};
  }
  if (!options.report.empty() && (lists || charts || judges)) {
    throw UsageError{"--report is about conversions"};
  }
  if (options.brief && !judges) throw UsageError{"--brief needs --detect or --trace"};
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
  } else if (raw.trace) {
    options.command = Command::kTrace;
    options.fromCodePage = readCodePage(raw.from.empty() ? "utf-8" : raw.from);
  } else {
    readEncodings(raw, options);
    readShape(raw, options);
    readRecords(raw, options);
    readDestination(raw, options);
  }
  if (options.recursive && options.inputs.empty()) throw UsageError{"--recursive needs files"};
  if (!options.includes.empty() && !options.recursive) {
    throw UsageError{"--include needs --recursive"};
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
  app.allow_windows_style_options(false);  // "/name" is a file everywhere
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
  parsed.err = "encconv: " + printable(message) + "\n";
  return parsed;
}

}  // namespace tool
