// Syllables that KS X 1001 has no code for are written in four of its pairs: a filler, and the
// three parts of the syllable as letters, of which the last may be the filler again (annex 3).
#ifndef ENCODING_CODECS_EUC_KR_JAMO_H_
#define ENCODING_CODECS_EUC_KR_JAMO_H_

#include "encoding/codecs/multi_byte.h"

extern const LongForms kEucKrJamo;

// As cutRuled(), but not within such a syllable.
std::size_t cutEucKrJamo(const void* parameters, const CutWindow& window);

#endif  // ENCODING_CODECS_EUC_KR_JAMO_H_
