// The ways to use this library: to add one, write its function and name it in the table.
#include <memory>

#include "contestants.h"
#include "encconv/encconv.h"
#include "encconv/encconv_c.h"
#include "encoding/codecs/encoding_row.h"
#include "encoding/encoding_convert.h"

namespace {

constexpr std::size_t kPiece = 64 * 1024;  // of a stream

const unsigned char* bytesOf(std::string_view text) {
  return reinterpret_cast<const unsigned char*>(text.data());
}

// ---- The engine. ----

struct Engine {
  explicit Engine(const Task& task) {
    constexpr std::pair<std::string_view, int> kActions[] = {
        {"substitute", 1}, {"hex", 2}, {"alternate", 6}, {"raw", 7}};
    for (const auto& [treatment, action] : kActions) {
      if (task.treatment.starts_with(treatment)) converter.setErrorAction(action);
    }
    converter.setAltDestCodepage(1252);
    converter.setDefBytes(bytesOf("?"), 1);
  }
  bool convert(const Task& task, std::string_view input, std::string* copy) {
    output.clear();
    const bool ok = converter.EncConvert(task.from.codePage, task.to.codePage, bytesOf(input),
                                         static_cast<unsigned int>(input.size()), output, log);
    if (copy != nullptr) {
      copy->append(reinterpret_cast<const char*>(output.getData2()), output.getSize());
    }
    // What was treated makes some conversions return false.
    return task.treatment != "stop" || (ok && !converter.m_foundErrors);
  }
  EncodingConvert converter;
  DataBuffer output;
  LogBase log;
};

// Whether EncConvert has both encodings.
bool isInEngine(const Task& task) {
  return findEncodingRow(task.from.codePage)->inEngine &&
         findEncodingRow(task.to.codePage)->inEngine;
}

Convert openEngine(const Task& task) {
  if (!isInEngine(task)) return {};
  return
      [task, engine = std::make_shared<Engine>(task)](std::string_view input, std::string* copy) {
        return engine->convert(task, input, copy);
      };
}
Convert openEngineAnew(const Task& task) {
  return [task](std::string_view input, std::string* copy) {
    return Engine(task).convert(task, input, copy);
  };
}

// ---- The C++ interface. ----

encconv::Options optionsOf(const Task& task) {
  encconv::Options options;
  encconv::parse_on_error(task.treatment, options);
  return options;
}

template <typename Name>
Convert openConvertBy(const Task& task, const Name& from, const Name& to) {
  return [from, to, options = optionsOf(task)](std::string_view input, std::string* copy) {
    const encconv::Result result = encconv::convert(input, from, to, options);
    if (copy != nullptr) copy->append(result.text);
    return result.status == encconv::Status::ok;
  };
}
Convert openConvert(const Task& task) {
  return openConvertBy(task, task.from.codePage, task.to.codePage);
}
Convert openConvertByNames(const Task& task) {
  std::string names[2];
  for (const encconv::CodePage& page : encconv::code_pages()) {
    if (page.number == task.from.codePage) names[0] = page.name;
    if (page.number == task.to.codePage) names[1] = page.name;
  }
  return openConvertBy(task, names[0], names[1]);
}

// Pushes a text into a stream; what each push() and the finish() wrote is taken away.
template <typename Push, typename Finish, typename Take>
bool stream(std::string_view input, Push push, Finish finish, Take take) {
  bool ok = true;
  for (std::size_t at = 0; ok && at < input.size(); at += kPiece) {
    ok = push(input.substr(at, kPiece));
    take();
  }
  ok = finish() && ok;
  take();
  return ok;
}

Convert openInto(const Task& task) {
  const std::size_t capacity =
      encconv::max_output_size(task.longest, task.from.codePage, task.to.codePage);
  return [task, options = optionsOf(task), room = std::string(capacity, '\0')](
             std::string_view input, std::string* copy) mutable {
    const encconv::IntoResult result = encconv::convert_into(
        input, task.from.codePage, task.to.codePage, room.data(), room.size(), options);
    if (copy != nullptr) copy->append(room, 0, result.size);
    return result.status == encconv::Status::ok;
  };
}

Convert openStreamAgain(const Task& task) {
  return [task, options = optionsOf(task), output = std::string(),
          converter =
              std::make_shared<encconv::StreamConverter>(task.from.codePage, task.to.codePage)](
             std::string_view input, std::string* copy) mutable {
    output.clear();
    bool ok = converter->begin(task.from.codePage, task.to.codePage, options);
    ok = ok && converter->push(input, output) && converter->finish(output);
    if (copy != nullptr) copy->append(output);
    return ok;
  };
}

Convert openStream(const Task& task) {
  return [task, options = optionsOf(task), output = std::string()](std::string_view input,
                                                                   std::string* copy) mutable {
    encconv::StreamConverter converter(task.from.codePage, task.to.codePage, options);
    return stream(
        input, [&](std::string_view piece) { return converter.push(piece, output); },
        [&] { return converter.finish(output); },
        [&] {
          if (copy != nullptr) copy->append(output);
          output.clear();
        });
  };
}

// ---- The C interface. ----

encconv_options cOptionsOf(const Task& task) {
  encconv_options options = ENCCONV_OPTIONS_INIT;
  options.on_error = task.treatment.c_str();
  return options;
}

Convert openC(const Task& task) {
  return [task](std::string_view input, std::string* copy) {
    unsigned char* output = nullptr;
    std::size_t size = 0;
    const encconv_options options = cOptionsOf(task);
    const encconv_status status =
        encconv_convert(task.from.codePage, task.to.codePage, input.data(), input.size(), &options,
                        &output, &size, nullptr);
    if (copy != nullptr) copy->append(reinterpret_cast<const char*>(output), size);
    encconv_free(output);
    return status == ENCCONV_OK;
  };
}

Convert openCInto(const Task& task) {
  const std::size_t capacity =
      encconv_max_output_size(task.longest, task.from.codePage, task.to.codePage);
  return [task, room = std::string(capacity, '\0')](std::string_view input,
                                                    std::string* copy) mutable {
    std::size_t size = 0;
    const encconv_options options = cOptionsOf(task);
    const encconv_status status =
        encconv_convert_into(task.from.codePage, task.to.codePage, input.data(), input.size(),
                             &options, room.data(), room.size(), &size, nullptr);
    if (copy != nullptr) copy->append(room, 0, size);
    return status == ENCCONV_OK;
  };
}

Convert openCStream(const Task& task) {
  return [task](std::string_view input, std::string* copy) {
    const encconv_options options = cOptionsOf(task);
    const std::unique_ptr<encconv_stream, decltype(&encconv_close)> converter(
        encconv_open(task.from.codePage, task.to.codePage, &options, nullptr), encconv_close);
    return stream(
        input,
        [&](std::string_view piece) {
          return encconv_push(converter.get(), piece.data(), piece.size()) == ENCCONV_OK;
        },
        [&] { return encconv_finish(converter.get()) == ENCCONV_OK; },
        [&] {
          std::size_t size = 0;
          const unsigned char* output = encconv_output(converter.get(), &size);
          if (copy != nullptr) copy->append(reinterpret_cast<const char*>(output), size);
          encconv_clear_output(converter.get());
        });
  };
}

// ---- The tool. ----

Convert openTool(const Task& task) {
  return openProcess({ENCCONV_BENCH_TOOL, "-f", std::to_string(task.from.codePage), "-t",
                      std::to_string(task.to.codePage), task.file});
}
Convert openToolVersion(const Task&) { return openProcess({ENCCONV_BENCH_TOOL, "--version"}); }

constexpr unsigned kTexts = kSpeed | kShort | kDrop | kMemory;

constexpr Entry kEntries[] = {
    {"EncConvert", kTexts | kLarge | kCount, openEngine},
    {"EncConvert anew", kShort, openEngineAnew},
    {"convert", kTexts | kLarge | kFirst, openConvert},
    {"names", kShort, openConvertByNames},
    {.name = "stream", .modes = kTexts | kLarge, .open = openStream, .holdsOutput = false},
    {"again", kShort, openStreamAgain},
    {"into", kTexts, openInto},
    {"C", kTexts, openC},
    {"C into", kTexts, openCInto},
    {.name = "C stream", .modes = kTexts, .open = openCStream, .holdsOutput = false},
    {"drop", kBad, openConvert, "drop"},
    {"substitute", kBad, openConvert, "substitute"},
    {"hex", kBad, openConvert, "hex"},
    {"alternate", kBad, openConvert, "alternate=1252"},
    {"raw", kBad, openConvert, "raw"},
    {"stream, drop", kBad, openStream, "drop"},
    {"C, drop", kBad, openC, "drop"},
    {"EncConvert, drop", kBad, openEngine, "drop"},
    {"encconv", kFile | kStart, openTool},
    {"encconv --version", kStart, openToolVersion, kOwnOutput},
};

}  // namespace

std::span<const Entry> ownEntries() { return kEntries; }
