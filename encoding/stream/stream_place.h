// StreamPlace: where a stream stands between two pieces, so that another one can go on there.
#ifndef ENCODING_STREAM_STREAM_PLACE_H_
#define ENCODING_STREAM_STREAM_PLACE_H_

#include <cstdint>

#include "encoding/codecs/codec.h"

// Who goes on gives the source again from settled on; where both sides have a codec, that is right
// only if nothing waits. A place that only has hasBegun set is one in the middle of a text: a byte
// order mark there is a character, and none is written. What is no place of the encodings at hand,
// such as one of others, is refused when a stream is to begin there.
struct StreamPlace {
  std::uint64_t settled = 0;   // bytes of the source, from the beginning of the stream, that are
                               // done with: nothing of them waits
  bool hasBegun = false;       // something came before
  bool isOtherOrder = false;   // a mark said that the byte order is not that of the settings
  std::uint32_t repeated = 0;  // bytes that a stage makes of the source from here on and that are
                               // written already
  CodecState state;            // of the side that has a codec; of the target, if both have
  CodecState sourceState;      // of the source, then
  bool operator==(const StreamPlace&) const = default;
};

#endif  // ENCODING_STREAM_STREAM_PLACE_H_
