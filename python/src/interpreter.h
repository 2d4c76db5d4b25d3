// The C interface of Python, and what all sources here do with it.
#ifndef PYTHON_SRC_INTERPRETER_H_
#define PYTHON_SRC_INTERPRETER_H_

#define PY_SSIZE_T_CLEAN
#include <Python.h>

#include <cstddef>
#include <memory>

// A reference that is owned.
struct DropReference {
  void operator()(PyObject* object) const { Py_DECREF(object); }
};
using Reference = std::unique_ptr<PyObject, DropReference>;

inline Py_ssize_t pySize(std::size_t size) { return static_cast<Py_ssize_t>(size); }

// The interpreter lock, given up for as long as there is only work on memory that is held. What has
// to touch objects in between takes it back by a HeldLock.
class ReleasedLock {
 public:
  explicit ReleasedLock(bool isReleased) {
    if (isReleased) m_state = PyEval_SaveThread();
  }
  ~ReleasedLock() { takeBack(); }
  ReleasedLock(const ReleasedLock&) = delete;
  ReleasedLock& operator=(const ReleasedLock&) = delete;

  bool isReleased() const { return m_state != nullptr; }
  void takeBack() {
    if (m_state != nullptr) PyEval_RestoreThread(m_state);
    m_state = nullptr;
  }
  void release() { m_state = PyEval_SaveThread(); }

 private:
  PyThreadState* m_state = nullptr;
};

class HeldLock {
 public:
  explicit HeldLock(ReleasedLock* lock) : m_lock(lock) {
    if (m_lock != nullptr && !m_lock->isReleased()) m_lock = nullptr;
    if (m_lock != nullptr) m_lock->takeBack();
  }
  ~HeldLock() {
    if (m_lock != nullptr) m_lock->release();
  }
  HeldLock(const HeldLock&) = delete;
  HeldLock& operator=(const HeldLock&) = delete;

 private:
  ReleasedLock* m_lock;
};

// From this size on the lock is given up: below, taking it back may cost more than the conversion.
inline constexpr std::size_t kUnlockedBytes = 64 * 1024;

// A buffer of an object, held.
class HeldBuffer {
 public:
  HeldBuffer() = default;
  ~HeldBuffer() {
    if (m_view.obj != nullptr) PyBuffer_Release(&m_view);
  }
  HeldBuffer(const HeldBuffer&) = delete;
  HeldBuffer& operator=(const HeldBuffer&) = delete;

  // False, with an exception, for an object without a contiguous buffer.
  bool hold(PyObject* object) {
    m_object = object;
    if (PyBytes_CheckExact(object)) {
      m_data = PyBytes_AS_STRING(object);
      m_size = static_cast<std::size_t>(PyBytes_GET_SIZE(object));
      return true;
    }
    if (PyObject_GetBuffer(object, &m_view, PyBUF_SIMPLE) != 0) return false;
    m_data = m_view.buf != nullptr ? static_cast<const char*>(m_view.buf) : "";
    m_size = static_cast<std::size_t>(m_view.len);
    return true;
  }

  PyObject* object() const { return m_object; }
  const unsigned char* data() const { return reinterpret_cast<const unsigned char*>(m_data); }
  std::size_t size() const { return m_size; }
  // Whether nobody writes to it; the lock keeps other threads from doing so otherwise.
  bool isConstant() const { return m_view.obj == nullptr || m_view.readonly != 0; }

 private:
  Py_buffer m_view = {};
  PyObject* m_object = nullptr;
  const char* m_data = "";
  std::size_t m_size = 0;
};

#endif  // PYTHON_SRC_INTERPRETER_H_
