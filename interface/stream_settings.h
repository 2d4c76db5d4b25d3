// What the C++ interface says, in the words of the engine's streams, and back.
#ifndef INTERFACE_STREAM_SETTINGS_H_
#define INTERFACE_STREAM_SETTINGS_H_

#include "encconv/encconv.h"
#include "encoding/stream/stream_converter.h"

namespace encconv {

StreamSettings settingsOf(Encoding from, Encoding to, const Options& options);
Status statusOf(StreamStatus status);
Problem problemOf(const StreamError& error);

// Begins a stream. Two encodings that are not known are no pair of equal ones, and none is no other
// name of the other.
StreamStatus beginStream(::StreamConverter& stream, const StreamSettings& settings);

}  // namespace encconv

#endif  // INTERFACE_STREAM_SETTINGS_H_
