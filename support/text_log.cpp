#include "support/text_log.h"

#include <algorithm>

#include "support/string_buffer.h"

TextLog::TextLog(bool verbose) {
  m_verboseLogging = verbose ? 1 : 0;
  m_wantsContexts = true;
}

void TextLog::writePendingContexts() {
  for (; m_written < m_contexts.size(); ++m_written) {
    m_text.append(2 * m_written, ' ').append(m_contexts[m_written]).append(":\n");
  }
}

void TextLog::writeLine(const std::string& line) {
  writePendingContexts();
  m_text.append(2 * m_contexts.size(), ' ').append(line).push_back('\n');
}

void TextLog::LogError(const char* message) { writeLine(std::string("error: ") + message); }
void TextLog::LogInfo(const char* message) { writeLine(message); }

void TextLog::LogDataLong(const char* name, int value) {
  writeLine(std::string(name) + ": " + std::to_string(value));
}
void TextLog::LogDataBool(const char* name, bool value) {
  writeLine(std::string(name) + (value ? ": true" : ": false"));
}
void TextLog::LogDataSb(const char* name, const StringBuffer& value) {
  writeLine(std::string(name) + ": " + value.getString());
}

void TextLog::enterContext(const char* name, bool verbose) {
  m_contexts.emplace_back(name);
  if (verbose) writePendingContexts();
}

void TextLog::leaveContext() {
  m_contexts.pop_back();
  m_written = std::min(m_written, m_contexts.size());
}
