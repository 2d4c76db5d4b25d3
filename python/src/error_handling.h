// What becomes of text that cannot be converted: the exceptions of codecs, and their handlers.
#ifndef PYTHON_SRC_ERROR_HANDLING_H_
#define PYTHON_SRC_ERROR_HANDLING_H_

#include <cstddef>
#include <string_view>

#include "encoding/stream/stream_converter.h"
#include "python/src/interpreter.h"

// The handlers that need not be asked.
enum class BuiltinErrors : unsigned char { kStrict, kIgnore, kReplace, kOther };
BuiltinErrors builtinErrors(const char* errors);

// Raises what is to be raised where a stream failed, if there is no exception yet: the state that
// it should begin in may be none.
void raiseFailure(StreamStatus status);

// Where the conversion goes on, and what is written for what is left out: str, or when encoding
// bytes as well.
struct Handled {
  Reference replacement;
  std::size_t position = 0;
};

// The errors of one call: they share an exception and the handler, which is looked up at the first.
class CallErrors {
 public:
  // errors: the name of the handler, null for "strict"; label: what the exception calls the
  // encoding.
  CallErrors(const char* label, const char* errors) : m_label(label), m_errors(errors) {}
  CallErrors(const CallErrors&) = delete;
  CallErrors& operator=(const CallErrors&) = delete;

  // The bytes or the str that the exception is about. It may become another one by the handler.
  PyObject* object() const { return m_object.get(); }
  void setObject(PyObject* object) {
    Py_INCREF(object);
    m_object.reset(object);
  }

  // Asks the handler. False, with an exception, when it raised one or gave nothing that can be
  // used.
  bool handleDecoding(std::size_t start, std::size_t end, const char* reason, Handled& handled);
  bool handleEncoding(std::size_t start, std::size_t end, const char* reason, Handled& handled);
  // Raises the exception that the handler was asked about last.
  void raiseLast();

 private:
  bool ask(Reference& result);
  bool readResult(PyObject* result, bool takesBytes, std::size_t size, Handled& handled);

  const char* m_label;
  const char* m_errors;
  Reference m_object;
  Reference m_exception;
  Reference m_handler;
};

#endif  // PYTHON_SRC_ERROR_HANDLING_H_
