// CodecCall: how a text is decoded or encoded, and how far that came.
#ifndef PYTHON_SRC_CODEC_CALL_H_
#define PYTHON_SRC_CODEC_CALL_H_

#include <cstddef>

#include "encoding/stream/stream_place.h"
#include "python/src/encoding_entry.h"
#include "python/src/interpreter.h"

// Which pieces of bad text the handlers are told of.
enum class ErrorSpans : unsigned char {
  kPieces,  // as the streams of the library divide them: a pair of bytes that is not assigned is
            // one
  kPython,  // as the codecs of Python do: one byte of it, or all that is left when text is cut
            // short
};

struct CodecCall {
  EncodingEntry* entry = nullptr;
  const char* label = "";        // what exceptions call the encoding
  const char* errors = nullptr;  // the name of the handler; null for "strict"
  ErrorSpans spans = ErrorSpans::kPieces;
  bool isLast = true;          // nothing follows the text
  bool isReplacement = false;  // encoding: nor belongs to it what follows, but the text goes on
  StreamPlace place;           // where it begins, and after the call where it goes on
  std::size_t used = 0;        // after the call: the bytes or characters in front of that
};

// The str of bytes, the bytes of a str; null with an exception.
PyObject* decodeBytes(CodecCall& call, const HeldBuffer& buffer);
PyObject* encodeText(CodecCall& call, PyObject* text);

// The same without a place, for texts that are short or in ASCII: null, without an exception, for
// all others.
PyObject* decodeShort(EncodingEntry& entry, const unsigned char* data, std::size_t size);
PyObject* encodeShort(EncodingEntry& entry, PyObject* text);

#endif  // PYTHON_SRC_CODEC_CALL_H_
