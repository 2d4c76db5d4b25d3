#include "support/text_log.h"

#include <algorithm>
#include <new>

#include "support/string_buffer.h"

TextLog::TextLog(bool verbose) {
  m_verboseLogging = verbose ? 1 : 0;
  m_wantsContexts = true;
}

void TextLog::write(std::size_t depth, std::initializer_list<std::string_view> parts) {
  try {
    m_text.append(2 * depth, ' ');
    for (const std::string_view part : parts) m_text.append(part);
    m_text.push_back('\n');
  } catch (const std::bad_alloc&) {
    // The line is incomplete; the conversion goes on.
  }
}

void TextLog::writePendingContexts() {
  for (; m_written < m_contexts.size(); ++m_written) write(m_written, {m_contexts[m_written], ":"});
}

void TextLog::writeLine(std::initializer_list<std::string_view> parts) {
  writePendingContexts();
  write(m_contexts.size(), parts);
}

void TextLog::LogError(const char* message) { writeLine({"error: ", message}); }
void TextLog::LogInfo(const char* message) { writeLine({message}); }

void TextLog::LogDataLong(const char* name, int value) {
  writeLine({name, ": ", std::to_string(value)});
}
void TextLog::LogDataBool(const char* name, bool value) {
  writeLine({name, value ? ": true" : ": false"});
}
void TextLog::LogDataSb(const char* name, const StringBuffer& value) {
  writeLine({name, ": ", value.getString()});
}

void TextLog::enterContext(const char* name, bool verbose) {
  // Behind a lost context all are lost, so that leaving them in turn finds the right ones.
  if (m_lostContexts == 0) {
    try {
      m_contexts.emplace_back(name);
    } catch (const std::bad_alloc&) {
      m_lostContexts = 1;
      return;
    }
    if (verbose) writePendingContexts();
    return;
  }
  ++m_lostContexts;
}

void TextLog::leaveContext() {
  if (m_lostContexts != 0) {
    --m_lostContexts;
    return;
  }
  m_contexts.pop_back();
  m_written = std::min(m_written, m_contexts.size());
}
