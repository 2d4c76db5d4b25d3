// LogBase: the log sink that every operation of the engine takes, and the scoped log context.
#ifndef SUPPORT_LOG_BASE_H_
#define SUPPORT_LOG_BASE_H_

class StringBuffer;

// The base class discards everything; it is the log for callers that want none. TextLog
// (support/text_log.h) keeps the lines as text. All strings are NUL-terminated and valid only
// during the call. A log is used by the thread that passed it in.
class LogBase {
 public:
  // An error line, and an informational line. The engine writes error lines with or without
  // m_verboseLogging, as each operation says, and everything else only when it is set.
  virtual void LogError(const char* /*message*/) {}
  virtual void LogInfo(const char* /*message*/) {}

  LogBase() = default;
  virtual ~LogBase() = default;
  LogBase(const LogBase&) = delete;
  LogBase& operator=(const LogBase&) = delete;

  // A named number, flag or string. None of these reaches LogError.
  virtual void LogDataLong(const char* /*name*/, int /*value*/) {}
  virtual void LogDataBool(const char* /*name*/, bool /*value*/) {}
  virtual void LogDataSb(const char* /*name*/, const StringBuffer& /*value*/) {}

  // Entry into and exit from a named operation; contexts nest. Called through LogContextExitor,
  // and only while m_wantsContexts is set.
  virtual void enterContext(const char* /*name*/, bool /*verbose*/) {}
  virtual void leaveContext() {}

  // Read by the engine, written by the log's owner: nonzero asks for arguments and informational
  // lines as well as errors.
  unsigned char m_verboseLogging = 0;
  // Set by logs that override the context operations, so that the others cost no call.
  bool m_wantsContexts = false;
};

// Marks in a log that a named operation is running, for as long as the object lives.
class LogContextExitor {
 public:
  // The log must outlive the object. verbose is the log's m_verboseLogging.
  LogContextExitor(LogBase& log, const char* name, bool verbose)
      : m_log(log.m_wantsContexts ? &log : nullptr) {
    if (m_log != nullptr) m_log->enterContext(name, verbose);
  }
  ~LogContextExitor() {
    if (m_log != nullptr) m_log->leaveContext();
  }
  LogContextExitor(const LogContextExitor&) = delete;
  LogContextExitor& operator=(const LogContextExitor&) = delete;

 private:
  LogBase* m_log;  // null when nobody listens
};

#endif  // SUPPORT_LOG_BASE_H_
