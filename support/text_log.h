// TextLog: a log that keeps its lines as text.
#ifndef SUPPORT_TEXT_LOG_H_
#define SUPPORT_TEXT_LOG_H_

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "support/log_base.h"

// One line an entry, two spaces of indentation a context:
//
//   EncConvert:
//     fromCodePage: 1252
//     convert_a:
//       Converting to utf-8 using utf-16 as a pivot table...
//
// The line of a context is written when its first entry is, or on entry when the context is
// verbose, so that a quiet log shows just the contexts that had something to say. Error lines
// begin with "error: ". Nothing throws: when memory is short, lines are cut.
class TextLog : public LogBase {
 public:
  explicit TextLog(bool verbose = false);

  void LogError(const char* message) override;
  void LogInfo(const char* message) override;
  void LogDataLong(const char* name, int value) override;
  void LogDataBool(const char* name, bool value) override;
  void LogDataSb(const char* name, const StringBuffer& value) override;
  void enterContext(const char* name, bool verbose) override;
  void leaveContext() override;

  const std::string& text() const { return m_text; }
  void clear() { m_text.clear(); }

 private:
  void write(std::size_t depth, std::initializer_list<std::string_view> parts);
  void writeLine(std::initializer_list<std::string_view> parts);
  void writePendingContexts();

  std::string m_text;
  std::vector<std::string> m_contexts;  // names of the open contexts, outermost first
  std::size_t m_written = 0;            // how many of them have their line
  std::size_t m_lostContexts = 0;       // open ones inside of these that could not be remembered
};

#endif  // SUPPORT_TEXT_LOG_H_
