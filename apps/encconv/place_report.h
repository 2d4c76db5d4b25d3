// --report: a file with every place that could not be converted.
#ifndef APPS_ENCCONV_PLACE_REPORT_H_
#define APPS_ENCCONV_PLACE_REPORT_H_

#include <mutex>
#include <string>

#include "apps/encconv/file_io.h"
#include "encconv/records.h"
#include "encoding/stream/stream_converter.h"

namespace tool {

// Keeps no more than a few lines, however many places there are. Any thread may call add().
class PlaceReport {
 public:
  explicit PlaceReport(bool asJson) : m_asJson(asJson) {}

  // False, with the reason in error(), when the file cannot be written.
  bool open(const std::string& name) { return m_file.open(name); }
  // A line about one place in the input that the command line calls name.
  void add(const std::string& name, const StreamError& place, const StreamSettings& settings);
  void add(const std::string& name, const encconv::RecordProblem& place,
           const StreamSettings& settings);
  // Puts the file in place. False, with the reason in error(), when some of it could not be
  // written.
  bool commit();

  const OutputFile& file() const { return m_file; }
  const std::string& error() const { return m_file.error(); }

 private:
  void addLine(const std::string& line);

  const bool m_asJson;
  std::mutex m_mutex;
  OutputFile m_file;
  std::string m_lines;  // not written yet
  bool m_hasFailed = false;
};

}  // namespace tool

#endif  // APPS_ENCCONV_PLACE_REPORT_H_
