// A StreamPlace as a number, which is what incremental codecs of Python keep as their state.
#ifndef PYTHON_SRC_STREAM_PLACE_NUMBER_H_
#define PYTHON_SRC_STREAM_PLACE_NUMBER_H_

#include "python/src/codec_call.h"

// 0 for the beginning of a text, and for every place in a text without a state. Null with an
// exception.
PyObject* numberOfPlace(const EncodingEntry& entry, const StreamPlace& place);
// False, with an exception, for what is no number, or too large. Whether it is one of a place in
// the encoding is told by who goes on there; encodings without a state take any, as Python's do.
bool placeOfNumber(const EncodingEntry& entry, PyObject* number, StreamPlace& place);

// Whether the encoding is one of those of ISO 2022 that are Python's.
bool hasPythonState(const EncodingEntry& entry);
// The same as the encoders of Python have it, in these encodings. In those that begin with a mark
// or a header 0 is behind it. In all others as above.
PyObject* numberOfPythonPlace(const EncodingEntry& entry, const StreamPlace& place);
bool placeOfPythonNumber(const EncodingEntry& entry, PyObject* number, StreamPlace& place);

#endif  // PYTHON_SRC_STREAM_PLACE_NUMBER_H_
