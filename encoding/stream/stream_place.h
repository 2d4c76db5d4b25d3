// StreamPlace: where a stream stands between two pieces, so that another one can go on there.
#ifndef ENCODING_STREAM_STREAM_PLACE_H_
#define ENCODING_STREAM_STREAM_PLACE_H_

#include <cstdint>

#include "encoding/codecs/codec.h"

// Of a stream of which at most one side has a codec. Who goes on gives the source again from
// settled on. A place that only has hasBegun set is one in the middle of a text: a byte order mark
// there is a character, and none is written.
struct StreamPlace {
  std::uint64_t settled = 0;   // bytes of the source, from the beginning of the stream, that are
                               // done with: nothing of them waits
  bool hasBegun = false;       // something came before
  bool isOtherOrder = false;   // a mark said that the byte order is not that of the settings
  std::uint32_t repeated = 0;  // bytes that a stage makes of the source from here on and that are
                               // written already
  CodecState state;            // of the side that has a codec
};

#endif  // ENCODING_STREAM_STREAM_PLACE_H_
