// The functions that are called once a text: decode and encode, and those of codecs.
#ifndef PYTHON_SRC_CODEC_FUNCTIONS_H_
#define PYTHON_SRC_CODEC_FUNCTIONS_H_

#include "python/src/interpreter.h"

// Adds them to the module; false with an exception.
bool addCodecFunctions(PyObject* module);

#endif  // PYTHON_SRC_CODEC_FUNCTIONS_H_
