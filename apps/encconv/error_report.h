// Error reports in words: what could not be converted, where, and what to do about it.
#ifndef APPS_ENCCONV_ERROR_REPORT_H_
#define APPS_ENCCONV_ERROR_REPORT_H_

#include <string>
#include <string_view>

#include "encconv/records.h"
#include "encoding/stream/stream_converter.h"

namespace tool {

// "windows-1252", and "windows-1252 (code page 1252)".
std::string nameOfCodePage(int codePage);
std::string describeCodePage(int codePage);

// "U+4E00".
std::string describeCharacter(char32_t character);

// "malformed", "no place" or "approximated".
std::string_view kindOf(const StreamError& error);
// "E4 B8 80".
std::string bytesOf(const StreamError& error);
// "byte offset 17, line 3: U+4E00 (E4 B8 80) has no place in windows-1252 (code page 1252)"; of a
// character that another was written for "... became U+0061".
std::string describeError(const StreamError& error, const StreamSettings& settings);
// What the user may do about it.
std::string adviceFor(const StreamError& error, const StreamSettings& settings);

// The same of records: "byte offset 17, record 3, field 'balance': no packed number: no sign is 5
// (12 34 55)". The encodings of settings are those of the text that the problem is about.
std::string_view kindOf(const encconv::RecordProblem& problem);
std::string bytesOf(const encconv::RecordProblem& problem);
std::string describeProblem(const encconv::RecordProblem& problem, const StreamSettings& settings);
std::string adviceFor(const encconv::RecordProblem& problem, const StreamSettings& settings);

// Why a stream refused its settings or ended; for every status but kGood and kStopped.
std::string describeStatus(StreamStatus status, const StreamSettings& settings);

}  // namespace tool

#endif  // APPS_ENCCONV_ERROR_REPORT_H_
