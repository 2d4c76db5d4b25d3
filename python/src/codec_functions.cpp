// These are written against the C interface of Python and not by nanobind, as everything else is:
// for a text of a few bytes the call itself is what costs, and vector calls with a cached name take
// less than half of what a generic dispatcher does.
#include "python/src/codec_functions.h"

#include <cstring>
#include <memory>
#include <new>
#include <string>

#include "python/src/codec_call.h"
#include "python/src/stream_place_number.h"

namespace {

// ---- decode(data, encoding, errors) and encode(text, encoding, errors). ----

constexpr const char* kArgumentNames[2][3] = {{"data", "encoding", "errors"},
                                              {"text", "encoding", "errors"}};

// Sorts arguments by their names, of which there are total; those that are missing are null. False
// with an exception.
bool sortArguments(const char* function, const char* const* names, int total, int required,
                   PyObject* const* given, Py_ssize_t count, PyObject* keywords,
                   PyObject** sorted) {
  if (count > total) {
    PyErr_Format(PyExc_TypeError, "%s() takes at most %d arguments (%zd given)", function, total,
                 count);
    return false;
  }
  for (Py_ssize_t i = 0; i < count; ++i) sorted[i] = given[i];
  const Py_ssize_t named = keywords == nullptr ? 0 : PyTuple_GET_SIZE(keywords);
  for (Py_ssize_t i = 0; i < named; ++i) {
    PyObject* const name = PyTuple_GET_ITEM(keywords, i);
    int place = 0;
    while (place < total && PyUnicode_CompareWithASCIIString(name, names[place]) != 0) ++place;
    if (place == total) {
      PyErr_Format(PyExc_TypeError, "%s() got an unexpected keyword argument '%U'", function, name);
      return false;
    }
    if (sorted[place] != nullptr) {
      PyErr_Format(PyExc_TypeError, "%s() got multiple values for argument '%s'", function,
                   names[place]);
      return false;
    }
    sorted[place] = given[count + i];
  }
  for (int i = 0; i < required; ++i) {
    if (sorted[i] != nullptr) continue;
    PyErr_Format(PyExc_TypeError, "%s() missing required argument '%s'", function, names[i]);
    return false;
  }
  return true;
}

// The name of an error handler; null for "strict". False with an exception.
bool readErrors(PyObject* given, const char*& errors) {
  errors = nullptr;
  if (given == nullptr || given == Py_None) return true;
  if (!PyUnicode_Check(given)) {
    PyErr_Format(PyExc_TypeError, "errors must be str, not %.100s", Py_TYPE(given)->tp_name);
    return false;
  }
  Py_ssize_t size = 0;
  errors = PyUnicode_AsUTF8AndSize(given, &size);
  if (errors == nullptr || std::strlen(errors) == static_cast<std::size_t>(size)) {
    return errors != nullptr;
  }
  PyErr_SetString(PyExc_ValueError, "embedded null character");
  return false;
}

bool isText(PyObject* object) {
  if (PyUnicode_Check(object)) return PyUnicode_READY(object) == 0;
  PyErr_Format(PyExc_TypeError, "a str is required, not '%.100s'", Py_TYPE(object)->tp_name);
  return false;
}

// The name that exceptions give an encoding: the one that was asked for.
const char* labelOf(PyObject* encoding, const EncodingEntry& entry) {
  const char* const name = PyUnicode_Check(encoding) ? PyUnicode_AsUTF8(encoding) : nullptr;
  return name != nullptr ? name : entry.row->name;
}

PyObject* decode(PyObject* /*module*/, PyObject* const* given, Py_ssize_t count,
                 PyObject* keywords) {
  PyObject* sorted[3] = {};
  PyObject* const* arguments = given;
  if (count != 2 || keywords != nullptr) {
    if (!sortArguments("decode", kArgumentNames[0], 3, 2, given, count, keywords, sorted))
      return nullptr;
    arguments = sorted;
  }
  EncodingEntry* const entry = findEntry(arguments[1]);
  if (entry == nullptr || !entry->openReading()) return nullptr;
  HeldBuffer buffer;
  const char* errors = nullptr;
  if (!buffer.hold(arguments[0]) || !readErrors(sorted[2], errors)) return nullptr;
  PyObject* const text = decodeShort(*entry, buffer.data(), buffer.size());
  if (text != nullptr || PyErr_Occurred() != nullptr) return text;
  CodecCall call;
  call.entry = entry;
  call.label = labelOf(arguments[1], *entry);
  call.errors = errors;
  return decodeBytes(call, buffer);
}

PyObject* encode(PyObject* /*module*/, PyObject* const* given, Py_ssize_t count,
                 PyObject* keywords) {
  PyObject* sorted[3] = {};
  PyObject* const* arguments = given;
  if (count != 2 || keywords != nullptr) {
    if (!sortArguments("encode", kArgumentNames[1], 3, 2, given, count, keywords, sorted))
      return nullptr;
    arguments = sorted;
  }
  EncodingEntry* const entry = findEntry(arguments[1]);
  if (entry == nullptr || !entry->openWriting() || !isText(arguments[0])) return nullptr;
  const char* errors = nullptr;
  if (!readErrors(sorted[2], errors)) return nullptr;
  PyObject* const bytes = encodeShort(*entry, arguments[0]);
  if (bytes != nullptr || PyErr_Occurred() != nullptr) return bytes;
  CodecCall call;
  call.entry = entry;
  call.label = labelOf(arguments[1], *entry);
  call.errors = errors;
  return encodeText(call, arguments[0]);
}

// ---- The functions of one codec. ----

// What they share; a capsule owns it.
struct Codec {
  EncodingEntry* entry;
  std::string label;
  ErrorSpans spans;
};
constexpr const char* kCapsule = "encconv codec";

const Codec& codecOf(PyObject* self) {
  return *static_cast<const Codec*>(PyCapsule_GetPointer(self, kCapsule));
}
void destroyCodec(PyObject* capsule) {
  delete static_cast<const Codec*>(PyCapsule_GetPointer(capsule, kCapsule));
}

CodecCall callOf(const Codec& codec) {
  CodecCall call;
  call.entry = codec.entry;
  call.label = codec.label.c_str();
  call.spans = codec.spans;
  return call;
}

PyObject* withLength(PyObject* result, std::size_t length) {
  if (result == nullptr) return nullptr;
  PyObject* const pair = PyTuple_New(2);
  PyObject* const number = pair == nullptr ? nullptr : PyLong_FromSize_t(length);
  if (number == nullptr) {
    Py_DECREF(result);
    Py_XDECREF(pair);
    return nullptr;
  }
  PyTuple_SET_ITEM(pair, 0, result);
  PyTuple_SET_ITEM(pair, 1, number);
  return pair;
}

// The input and the errors of a codec's function. False with an exception.
bool readCodecArguments(const char* function, PyObject* const* given, Py_ssize_t count,
                        PyObject* keywords, PyObject*& input, const char*& errors) {
  constexpr const char* kNames[] = {"input", "errors"};
  PyObject* sorted[2] = {};
  if (!sortArguments(function, kNames, 2, 1, given, count, keywords, sorted)) return false;
  input = sorted[0];
  return readErrors(sorted[1], errors);
}

PyObject* codecDecode(PyObject* self, PyObject* const* given, Py_ssize_t count,
                      PyObject* keywords) {
  const Codec& codec = codecOf(self);
  CodecCall call = callOf(codec);
  PyObject* input = nullptr;
  if (!readCodecArguments("decode", given, count, keywords, input, call.errors)) return nullptr;
  HeldBuffer buffer;
  if (!codec.entry->openReading() || !buffer.hold(input)) return nullptr;
  PyObject* text = decodeShort(*codec.entry, buffer.data(), buffer.size());
  if (text == nullptr && PyErr_Occurred() == nullptr) text = decodeBytes(call, buffer);
  return withLength(text, buffer.size());
}

PyObject* codecEncode(PyObject* self, PyObject* const* given, Py_ssize_t count,
                      PyObject* keywords) {
  const Codec& codec = codecOf(self);
  CodecCall call = callOf(codec);
  PyObject* input = nullptr;
  if (!readCodecArguments("encode", given, count, keywords, input, call.errors)) return nullptr;
  if (!codec.entry->openWriting() || !isText(input)) return nullptr;
  PyObject* bytes = encodeShort(*codec.entry, input);
  if (bytes == nullptr && PyErr_Occurred() == nullptr) bytes = encodeText(call, input);
  return withLength(bytes, static_cast<std::size_t>(PyUnicode_GET_LENGTH(input)));
}

// What steps have in common: (input, errors, final, state).
bool readStep(PyObject* const* given, Py_ssize_t count, CodecCall& call) {
  if (count != 4) {
    PyErr_SetString(PyExc_TypeError, "a step takes input, errors, final and state");
    return false;
  }
  const int last = PyObject_IsTrue(given[2]);
  call.isLast = last != 0;
  return last >= 0 && readErrors(given[1], call.errors);
}

// The codecs of Python keep what is designated when a text has ended, until they are reset.
bool keepsPlace(const CodecCall& call) {
  return call.spans == ErrorSpans::kPython && hasPythonState(*call.entry);
}

StreamPlace placeBehind(const CodecCall& call) {
  return call.isLast && !keepsPlace(call) ? StreamPlace() : call.place;
}

PyObject* stepResult(PyObject* result, const CodecCall& call, PyObject* state) {
  if (result == nullptr || state == nullptr) {
    Py_XDECREF(result);
    Py_XDECREF(state);
    return nullptr;
  }
  return Py_BuildValue("NnN", result, pySize(call.used), state);
}

PyObject* decodeStep(PyObject* self, PyObject* const* given, Py_ssize_t count) {
  CodecCall call = callOf(codecOf(self));
  HeldBuffer buffer;
  if (!readStep(given, count, call) || !placeOfNumber(*call.entry, given[3], call.place) ||
      !buffer.hold(given[0])) {
    return nullptr;
  }
  if (call.isLast && keepsPlace(call)) {
    // As if something followed; it is the end only if something is left that lacks its own.
    CodecCall more = call;
    more.isLast = false;
    Reference text(decodeBytes(more, buffer));
    if (text == nullptr) return nullptr;
    call.isLast = more.used != buffer.size();
    if (!call.isLast) {
      return stepResult(text.release(), more, numberOfPlace(*call.entry, more.place));
    }
  }
  PyObject* const text = decodeBytes(call, buffer);
  if (text == nullptr) return nullptr;
  return stepResult(text, call, numberOfPlace(*call.entry, placeBehind(call)));
}

PyObject* encodeStep(PyObject* self, PyObject* const* given, Py_ssize_t count) {
  CodecCall call = callOf(codecOf(self));
  if (!readStep(given, count, call) || !placeOfPythonNumber(*call.entry, given[3], call.place) ||
      !isText(given[0])) {
    return nullptr;
  }
  PyObject* const bytes = encodeText(call, given[0]);
  if (bytes == nullptr) return nullptr;
  return stepResult(bytes, call, numberOfPythonPlace(*call.entry, placeBehind(call)));
}

PyCFunction asFunction(PyObject* (*function)(PyObject*, PyObject* const*, Py_ssize_t, PyObject*)) {
  return reinterpret_cast<PyCFunction>(reinterpret_cast<void (*)()>(function));
}
PyCFunction asFunction(PyObject* (*function)(PyObject*, PyObject* const*, Py_ssize_t)) {
  return reinterpret_cast<PyCFunction>(reinterpret_cast<void (*)()>(function));
}

PyMethodDef g_codecMethods[] = {
    {"encode", asFunction(codecEncode), METH_FASTCALL | METH_KEYWORDS,
     "encode(input, errors='strict')\n--\n\nThe bytes, and how many characters they are of."},
    {"decode", asFunction(codecDecode), METH_FASTCALL | METH_KEYWORDS,
     "decode(input, errors='strict')\n--\n\nThe str, and how many bytes it is of."},
    {"encode_step", asFunction(encodeStep), METH_FASTCALL,
     "encode_step(input, errors, final, state)\n--\n\nThe bytes, the characters used, the state."},
    {"decode_step", asFunction(decodeStep), METH_FASTCALL,
     "decode_step(input, errors, final, state)\n--\n\nThe str, the bytes used, the state."},
};

// codec_functions(encoding, label, python_spans): encode, decode, encode_step and decode_step.
PyObject* codecFunctions(PyObject* /*module*/, PyObject* arguments) {
  PyObject* encoding = nullptr;
  const char* label = nullptr;
  int isPython = 0;
  if (!PyArg_ParseTuple(arguments, "Osp", &encoding, &label, &isPython)) return nullptr;
  EncodingEntry* const entry = findEntry(encoding);
  if (entry == nullptr) return nullptr;
  auto codec = std::make_unique<Codec>(
      Codec{entry, label, isPython != 0 ? ErrorSpans::kPython : ErrorSpans::kPieces});
  const Reference capsule(PyCapsule_New(codec.get(), kCapsule, destroyCodec));
  if (capsule == nullptr) return nullptr;
  codec.release();
  constexpr Py_ssize_t kCount = std::size(g_codecMethods);
  Reference functions(PyTuple_New(kCount));
  if (functions == nullptr) return nullptr;
  for (Py_ssize_t i = 0; i < kCount; ++i) {
    PyObject* const function = PyCFunction_New(&g_codecMethods[i], capsule.get());
    if (function == nullptr) return nullptr;
    PyTuple_SET_ITEM(functions.get(), i, function);
  }
  return functions.release();
}

PyMethodDef g_methods[] = {
    {"decode", asFunction(decode), METH_FASTCALL | METH_KEYWORDS,
     "decode(data, encoding, errors='strict')\n--\n\n"
     "The str of bytes, or of anything with a buffer.\n\n"
     ">>> decode(b'\\x83\\x65\\x83\\x58\\x83\\x67', "
     "'shift_jis')\n'\xE3\x83\x86\xE3\x82\xB9\xE3\x83\x88'\n"},
    {"encode", asFunction(encode), METH_FASTCALL | METH_KEYWORDS,
     "encode(text, encoding, errors='strict')\n--\n\nThe bytes of a str.\n\n"
     ">>> encode('caf\xC3\xA9', 'ibm037')\nb'\\x83\\x81\\x86Q'\n"},
    {"codec_functions", codecFunctions, METH_VARARGS,
     "codec_functions(encoding, label, python_spans)\n--\n\n"
     "The functions encode, decode, encode_step and decode_step of a codec."},
    {nullptr, nullptr, 0, nullptr},
};

}  // namespace

bool addCodecFunctions(PyObject* module) { return PyModule_AddFunctions(module, g_methods) == 0; }
