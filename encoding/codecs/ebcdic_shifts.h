// The codecs of EBCDIC for Chinese, Japanese and Korean: single bytes, and between SO and SI pairs.
#ifndef ENCODING_CODECS_EBCDIC_SHIFTS_H_
#define ENCODING_CODECS_EBCDIC_SHIFTS_H_

#include "encoding/codecs/code_table.h"
#include "encoding/codecs/codec.h"

// The two sets of such an encoding. Without singles it is all pairs, and there are no shifts.
struct ShiftedSets {
  const Mapping* singles;
  const Mapping* pairs;
};

// The parameters are ShiftedSets. What is malformed: a shift to where the text is already; a byte
// that begins no pair, or ends none; a pair that is not assigned, as a whole. A line end among the
// pairs is malformed and ends them, so that a lost SI costs one line and not the rest of the text.
// Text may end among the pairs; what is written there ends with SI.
unsigned int readShifted(const void* parameters, const unsigned char* data, unsigned int length,
                         bool last, CodecState& state, DataBuffer& out, ReplacementSink* sink);
unsigned int writeShifted(const void* parameters, const unsigned char* data, unsigned int length,
                          bool last, CodecState& state, DataBuffer& out, ReplacementSink* sink);
// What one of the sets only writes; see Codec::approximate.
std::uint32_t approximateShifted(const void* parameters, std::uint32_t scalar);
void visitShifted(const void* parameters, MappingVisitor& visitor);
inline bool isShiftedState(const void*, const CodecState& state, bool) {
  return hasOnly(state, {.shiftedOut = true});  // among the pairs
}

template <const Mapping& singles, const Mapping& pairs>
inline constexpr ShiftedSets kShiftedSets = {&singles, &pairs};
template <const Mapping& singles, const Mapping& pairs>
inline constexpr Codec kShiftedCodec = {.codePage = 1200,
                                        .read = {readShifted, &kShiftedSets<singles, pairs>},
                                        .write = {writeShifted, &kShiftedSets<singles, pairs>},
                                        .approximate = approximateShifted,
                                        .readsPairs = true,
                                        .cut = cutShifted,
                                        .mappings = visitShifted,
                                        .isState = isShiftedState};

template <const Mapping& pairs>
inline constexpr ShiftedSets kPairsOnly = {nullptr, &pairs};
template <const Mapping& pairs>
inline constexpr Codec kPairsCodec = {.codePage = 1200,
                                      .read = {readShifted, &kPairsOnly<pairs>},
                                      .write = {writeShifted, &kPairsOnly<pairs>},
                                      .isStateless = true,
                                      .approximate = approximateShifted,
                                      .readsPairs = true,
                                      .cut = cutUnits<2>,
                                      .mappings = visitShifted};

#endif  // ENCODING_CODECS_EBCDIC_SHIFTS_H_
