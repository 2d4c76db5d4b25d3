#include "python/src/error_handling.h"

BuiltinErrors builtinErrors(const char* errors) {
  if (errors == nullptr) return BuiltinErrors::kStrict;
  const std::string_view name(errors);
  if (name == "strict") return BuiltinErrors::kStrict;
  if (name == "ignore") return BuiltinErrors::kIgnore;
  return name == "replace" ? BuiltinErrors::kReplace : BuiltinErrors::kOther;
}

void raiseFailure(StreamStatus status) {
  if (PyErr_Occurred() != nullptr) return;
  if (status == StreamStatus::kMisuse) {
    PyErr_SetString(PyExc_UnicodeError, "the state is none of this encoding");
  } else {
    PyErr_NoMemory();
  }
}

bool CallErrors::ask(Reference& result) {
  if (m_handler == nullptr) m_handler.reset(PyCodec_LookupError(m_errors));
  if (m_handler == nullptr) return false;
  result.reset(PyObject_CallOneArg(m_handler.get(), m_exception.get()));
  return result != nullptr;
}

void CallErrors::raiseLast() {
  PyErr_SetObject(reinterpret_cast<PyObject*>(Py_TYPE(m_exception.get())), m_exception.get());
}

bool CallErrors::readResult(PyObject* result, bool takesBytes, std::size_t size, Handled& handled) {
  const bool isPair = PyTuple_Check(result) && PyTuple_GET_SIZE(result) == 2;
  PyObject* const text = isPair ? PyTuple_GET_ITEM(result, 0) : nullptr;
  if (!isPair || !(PyUnicode_Check(text) || (takesBytes && PyBytes_Check(text))) ||
      !PyLong_Check(PyTuple_GET_ITEM(result, 1))) {
    PyErr_SetString(PyExc_TypeError,
                    takesBytes ? "encoding error handler must return (str/bytes, int) tuple"
                               : "decoding error handler must return (str, int) tuple");
    return false;
  }
  Py_ssize_t position = PyLong_AsSsize_t(PyTuple_GET_ITEM(result, 1));
  const bool isTooLarge = PyErr_Occurred() != nullptr;
  PyErr_Clear();
  if (position < 0) position += pySize(size);
  if (isTooLarge || position < 0 || position > pySize(size)) {
    PyErr_Format(PyExc_IndexError, "position %zd from error handler out of bounds", position);
    return false;
  }
  Py_INCREF(text);
  handled.replacement.reset(text);
  handled.position = static_cast<std::size_t>(position);
  return true;
}

bool CallErrors::handleDecoding(std::size_t start, std::size_t end, const char* reason,
                                Handled& handled) {
  if (m_exception == nullptr) {
    m_exception.reset(PyObject_CallFunction(PyExc_UnicodeDecodeError, "sOnns", m_label, object(),
                                            pySize(start), pySize(end), reason));
    if (m_exception == nullptr) return false;
  } else if (PyUnicodeDecodeError_SetStart(m_exception.get(), pySize(start)) != 0 ||
             PyUnicodeDecodeError_SetEnd(m_exception.get(), pySize(end)) != 0 ||
             PyUnicodeDecodeError_SetReason(m_exception.get(), reason) != 0) {
    return false;
  }
  Reference result;
  if (!ask(result)) return false;
  // The handler may have put other bytes in, which its position is then of.
  Reference now(PyUnicodeDecodeError_GetObject(m_exception.get()));
  if (now == nullptr) return false;
  m_object = std::move(now);
  return readResult(result.get(), false, static_cast<std::size_t>(PyBytes_GET_SIZE(object())),
                    handled);
}

bool CallErrors::handleEncoding(std::size_t start, std::size_t end, const char* reason,
                                Handled& handled) {
  if (m_exception == nullptr) {
    m_exception.reset(PyObject_CallFunction(PyExc_UnicodeEncodeError, "sOnns", m_label, object(),
                                            pySize(start), pySize(end), reason));
    if (m_exception == nullptr) return false;
  } else if (PyUnicodeEncodeError_SetStart(m_exception.get(), pySize(start)) != 0 ||
             PyUnicodeEncodeError_SetEnd(m_exception.get(), pySize(end)) != 0 ||
             PyUnicodeEncodeError_SetReason(m_exception.get(), reason) != 0) {
    return false;
  }
  Reference result;
  if (!ask(result)) return false;
  return readResult(result.get(), true, static_cast<std::size_t>(PyUnicode_GET_LENGTH(object())),
                    handled);
}
