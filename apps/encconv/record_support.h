// What the conversions of records share.
#ifndef APPS_ENCCONV_RECORD_SUPPORT_H_
#define APPS_ENCCONV_RECORD_SUPPORT_H_

#include <memory>
#include <string>
#include <string_view>

#include "apps/encconv/record_conversion.h"

namespace tool {

// What a conversion of records is about.
struct RecordTask {
  const Options& options;
  int from;
  int to;
  bool isFirst;
  RecordConversion::Handler handler;
  encconv::Options text;  // how texts are converted
};

// Tells problems, and whether they end the conversion.
class RecordProblems {
 public:
  explicit RecordProblems(const RecordTask& task)
      : m_handler(task.handler),
        m_stops(task.text.on_error == encconv::OnError::stop),
        m_stopsAtMalformed(task.options.treatment.stopsAtMalformed) {}

  void tell(const encconv::RecordProblem& problem) {
    const bool isApproximation = problem.text && problem.text->approximated;
    const bool isMalformed = problem.text && problem.text->malformed;
    hasEnded = hasEnded || (m_stops && !isApproximation) || (m_stopsAtMalformed && isMalformed);
    m_handler(problem);
  }
  // Of a text that begins at a place in the input, within a record.
  void tellText(const encconv::Problem& text, std::uint64_t record, std::uint64_t offset) {
    encconv::RecordProblem problem;
    problem.kind = encconv::RecordProblemKind::text;
    problem.record = record;
    problem.offset = offset;
    problem.length = text.length;
    problem.bytes = text.bytes;
    problem.text = text;
    problem.text->offset = offset;
    tell(problem);
  }

  bool hasEnded = false;

 private:
  const RecordConversion::Handler m_handler;
  const bool m_stops;
  const bool m_stopsAtMalformed;
};

// A character as it stands within a text of an encoding; empty when it has no place.
std::string characterIn(const char* utf8, int codePage);

// Each returns null, with the reason in why, when the conversion cannot be done.
std::unique_ptr<RecordConversion> convertFromRecords(const RecordTask& task, std::string& why);
std::unique_ptr<RecordConversion> convertToRecords(const RecordTask& task, std::string& why);

}  // namespace tool

#endif  // APPS_ENCCONV_RECORD_SUPPORT_H_
