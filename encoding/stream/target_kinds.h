// What the targets of streams share among themselves.
#ifndef ENCODING_STREAM_TARGET_KINDS_H_
#define ENCODING_STREAM_TARGET_KINDS_H_

#include "encoding/stream/source.h"
#include "encoding/stream/target.h"
#include "support/utf.h"

// The scalar value at units[i] of text whose surrogates come in pairs; moves i behind it.
inline std::uint32_t nextScalar(const std::uint16_t* units, std::uint32_t& i) {
  const std::uint32_t unit = units[i++];
  return isSurrogate(unit) ? joinSurrogates(unit, units[i++]) : unit;
}

#endif  // ENCODING_STREAM_TARGET_KINDS_H_
