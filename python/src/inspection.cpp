#include "python/src/inspection.h"

#include <nanobind/stl/string.h>
#include <nanobind/stl/string_view.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "encconv/encconv.h"
#include "encoding/stream/stream_converter.h"
#include "python/src/bytes_output.h"
#include "python/src/encoding_entry.h"
#include "python/src/text_builder.h"

namespace nb = nanobind;

namespace {

nb::str text(std::string_view view) { return nb::str(view.data(), view.size()); }

EncodingEntry& entryOf(nb::handle encoding) {
  EncodingEntry* const entry = findEntry(encoding.ptr());
  if (entry == nullptr) throw nb::python_error();
  return *entry;
}

// ---- Encodings. ----

nb::list encodings() {
  nb::list all;
  for (const encconv::CodePage& page : encconv::code_pages()) {
    nb::list aliases;
    for (const std::string_view alias : page.aliases) aliases.append(text(alias));
    all.append(nb::make_tuple(page.number, text(page.name), nb::tuple(aliases), text(page.kind),
                              text(page.description), page.can_read, page.can_write));
  }
  return all;
}

// ---- Finding out an encoding. ----

constexpr const char* kKinds[] = {"empty", "ascii", "text", "binary", "unknown"};
constexpr const char* kEvidence[] = {"mark", "declaration", "structure", "statistics"};

nb::tuple detect(nb::handle data, bool isBeginning) {
  HeldBuffer buffer;
  if (!buffer.hold(data.ptr())) throw nb::python_error();
  encconv::Detection found;
  {
    const ReleasedLock released(buffer.isConstant() && buffer.size() >= 1024);
    found = encconv::detect({reinterpret_cast<const char*>(buffer.data()), buffer.size()},
                            {isBeginning});
  }
  nb::list candidates;
  for (const encconv::Candidate& candidate : found.candidates) {
    candidates.append(
        nb::make_tuple(candidate.code_page, text(candidate.name), candidate.confidence,
                       kEvidence[static_cast<int>(candidate.evidence)], text(candidate.reason)));
  }
  return nb::make_tuple(kKinds[static_cast<int>(found.kind)], nb::tuple(candidates),
                        text(found.reason));
}

nb::tuple trace(std::string_view garbled) {
  std::vector<encconv::Origin> found;
  {
    const nb::gil_scoped_release released;
    found = encconv::trace(garbled);
  }
  nb::list origins;
  for (const encconv::Origin& origin : found) {
    nb::list steps;
    for (const encconv::Misreading& step : origin.misreadings) {
      steps.append(nb::make_tuple(step.written, step.read));
    }
    origins.append(nb::make_tuple(text(origin.text), nb::tuple(steps), origin.confidence));
  }
  return nb::tuple(origins);
}

// ---- Cutting a text into pieces. ----

nb::object findCut(nb::handle data, nb::handle encoding, std::size_t offset, std::uint64_t position,
                   bool isAtCut, bool isBehindLine) {
  const int codePage = entryOf(encoding).codePage;
  HeldBuffer buffer;
  if (!buffer.hold(data.ptr())) throw nb::python_error();
  std::optional<std::size_t> cut;
  {
    const ReleasedLock released(buffer.isConstant() && buffer.size() >= kUnlockedBytes);
    cut = encconv::find_cut({reinterpret_cast<const char*>(buffer.data()), buffer.size()}, codePage,
                            offset, {position, isAtCut, isBehindLine});
  }
  return cut ? nb::object(nb::int_(*cut)) : nb::object(nb::none());
}

// ---- Conversion with a report. ----

// Keeps what a stream tells, up to a number of problems.
class Problems final : public StreamErrorHandler {
 public:
  explicit Problems(std::size_t most) : m_most(most) {}

  void onStreamError(const StreamError& error) override {
    if (m_errors.size() < m_most) m_errors.push_back(error);
  }

  nb::tuple asTuple() const {
    nb::list all;
    for (const StreamError& error : m_errors) {
      const char* const kind = error.kind == StreamErrorKind::kMalformed ? "malformed"
                               : error.kind == StreamErrorKind::kNoPlace ? "unencodable"
                                                                         : "approximated";
      const bool isCharacter = error.codePoint >= 0;
      all.append(nb::make_tuple(
          error.offset, error.line, error.length, kind,
          nb::bytes(reinterpret_cast<const char*>(error.bytes), error.byteCount),
          isCharacter ? nb::object(nb::int_(error.codePoint)) : nb::object(nb::none()),
          nb::str(error.written)));
    }
    return nb::tuple(all);
  }

 private:
  std::vector<StreamError> m_errors;
  std::size_t m_most;
};

StreamSettings settingsOf(const EncodingEntry* from, const EncodingEntry* to,
                          const std::string& onError) {
  StreamSettings settings;
  settings.from = from != nullptr ? from->codePage : kHostUnits.utf16;
  settings.to = to != nullptr ? to->codePage : kHostUnits.utf16;
  settings.dropMark = to == nullptr;
  if (!parseStreamTreatment(onError, settings)) {
    throw nb::value_error(("on_error is not known: " + onError).c_str());
  }
  return settings;
}

std::string_view describe(StreamStatus status) {
  switch (status) {
    case StreamStatus::kNoDecoder:
      return encconv::describe(encconv::Status::unknown_source);
    case StreamStatus::kNoEncoder:
      return encconv::describe(encconv::Status::unknown_target);
    case StreamStatus::kNoAlternate:
      return encconv::describe(encconv::Status::unknown_alternate);
    default:
      return encconv::describe(encconv::Status::invalid_substitute);
  }
}

// Streams a text to an output, and gives what it made with the status and the problems.
template <typename Out>
nb::tuple convertTo(const HeldBuffer& buffer, const StreamSettings& given, std::size_t most,
                    ReleasedLock& lock, Out& out) {
  Problems problems(most);
  StreamSettings settings = given;
  settings.errorHandler = &problems;
  StreamConverter stream;
  StreamStatus status = stream.begin(settings);
  const bool isBegun = status == StreamStatus::kGood;
  if (isBegun) status = stream.finish(buffer.data(), buffer.size(), out);
  lock.takeBack();
  if (!isBegun && status != StreamStatus::kNoMemory) {
    throw nb::value_error(std::string(describe(status)).c_str());
  }
  if (status != StreamStatus::kGood && status != StreamStatus::kStopped) {
    if (PyErr_Occurred() == nullptr) PyErr_NoMemory();
    throw nb::python_error();
  }
  const nb::object result = nb::steal(out.finish());
  if (!result.is_valid()) throw nb::python_error();
  return nb::make_tuple(result, status == StreamStatus::kGood, stream.errorCount(),
                        stream.approximationCount(), problems.asTuple());
}

// (output, whether it came to the end, problems, approximations, the problems told). The output is
// bytes, or str where to is None.
nb::tuple convert(nb::handle data, nb::handle from, nb::handle to, const std::string& onError,
                  bool byteOrderMark, std::size_t most) {
  const EncodingEntry& source = entryOf(from);
  const EncodingEntry* const target = to.is_none() ? nullptr : &entryOf(to);
  StreamSettings settings = settingsOf(&source, target, onError);
  settings.writeMark = byteOrderMark;
  HeldBuffer buffer;
  if (!buffer.hold(data.ptr())) throw nb::python_error();
  ReleasedLock lock(buffer.isConstant() && buffer.size() >= kUnlockedBytes);
  if (target != nullptr) {
    BytesOutput out(buffer.size(), &lock);
    return convertTo(buffer, settings, most, lock, out);
  }
  TextBuilder out(buffer.size(), source.mayHavePairs, &lock);
  return convertTo(buffer, settings, most, lock, out);
}

// The same piece by piece: bytes to bytes, up to what stops it.
class Conversion {
 public:
  Conversion(nb::handle from, nb::handle to, const std::string& onError, bool byteOrderMark)
      : m_problems(1) {
    StreamSettings settings = settingsOf(&entryOf(from), &entryOf(to), onError);
    settings.writeMark = byteOrderMark;
    settings.errorHandler = &m_problems;
    const StreamStatus status = m_stream.begin(settings);
    if (status == StreamStatus::kNoMemory) throw std::bad_alloc();
    if (status != StreamStatus::kGood) {
      throw nb::value_error(std::string(describe(status)).c_str());
    }
  }

  // (output, whether it goes on, the first problem)
  nb::tuple push(nb::handle data, bool isLast) {
    HeldBuffer buffer;
    if (!buffer.hold(data.ptr())) throw nb::python_error();
    ReleasedLock lock(buffer.isConstant() && buffer.size() >= kUnlockedBytes);
    BytesOutput out(buffer.size(), &lock);
    const StreamStatus status = isLast ? m_stream.finish(buffer.data(), buffer.size(), out)
                                       : m_stream.push(buffer.data(), buffer.size(), out);
    lock.takeBack();
    if (status == StreamStatus::kMisuse)
      throw nb::value_error("the conversion has come to its end");
    if (status != StreamStatus::kGood && status != StreamStatus::kStopped) {
      if (PyErr_Occurred() == nullptr) PyErr_NoMemory();
      throw nb::python_error();
    }
    const nb::object result = nb::steal(out.finish());
    if (!result.is_valid()) throw nb::python_error();
    return nb::make_tuple(result, status == StreamStatus::kGood, m_problems.asTuple());
  }

 private:
  Problems m_problems;
  StreamConverter m_stream;
};

}  // namespace

void addInspection(nb::module_& module) {
  module.def("encodings", &encodings, "All encodings, as tuples.");
  module.def("detect", &detect, nb::arg("data"), nb::arg("is_beginning"),
             "What bytes are, as a tuple.");
  module.def("trace", &trace, nb::arg("garbled"), "What garbled text was, as tuples.");
  module.def("convert", &convert, nb::arg("data"), nb::arg("source"), nb::arg("target").none(),
             nb::arg("on_error"), nb::arg("byte_order_mark"), nb::arg("most"),
             "The output of a conversion with its report, as a tuple.");
  nb::class_<Conversion>(module, "Conversion")
      .def(nb::init<nb::handle, nb::handle, const std::string&, bool>(), nb::arg("source"),
           nb::arg("target"), nb::arg("on_error"), nb::arg("byte_order_mark"))
      .def("push", &Conversion::push, nb::arg("data"), nb::arg("is_last"),
           "The output of a piece, whether the conversion goes on, and the first problem.");
  module.def("find_cut", &findCut, nb::arg("data"), nb::arg("encoding"), nb::arg("offset"),
             nb::arg("position"), nb::arg("at_cut"), nb::arg("behind_line"),
             "Where a piece of a text can begin, or None.");
  module.def(
      "code_page", [](nb::handle encoding) { return entryOf(encoding).codePage; },
      nb::arg("encoding"), "The number of an encoding.");
  module.def(
      "properties",
      [](nb::handle encoding) {
        const EncodingEntry& entry = entryOf(encoding);
        return nb::make_tuple(nb::str(entry.row->name), entry.isSingleByte, entry.isStateless);
      },
      nb::arg("encoding"), "The name, whether it is a table of single bytes, whether stateless.");
}
