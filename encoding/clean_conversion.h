// EncConvert by plan and pump: clean text through the pump, and the error actions as the policy for
// what is not clean. Output, result, flags and reports are those of the reference converters
// (convert_a and what it calls) for the same input.
#ifndef ENCODING_CLEAN_CONVERSION_H_
#define ENCODING_CLEAN_CONVERSION_H_

#include "encoding/codecs/codec.h"
#include "encoding/conversion.h"
#include "encoding/plan.h"

namespace fast {

// Whether plans may be used at all: not with a log that is verbose or wants contexts, whose
// lines belong to the reference converters, and not on a big-endian host.
bool isOpen(const LogBase& log);
// The same without a log.
bool isOpen();
// For tests: makes every conversion take the reference converters, or plans again.
void setFastPathForTesting(bool enabled);

enum class Outcome : unsigned char {
  kNotTaken,  // nothing was done: the reference converters have to run
  kFailed,    // the conversion ran and its result is false
  kDone,      // the conversion ran and its result is true
};

// Converts between 1200, 65001 and the table-driven code pages; the source has no byte order mark
// to strip.
Outcome convertClean(const Conversion& conversion);
// The same by a plan for such a pair; returns the result of the conversion.
bool convertByPlan(const Conversion& conversion, const Plan& plan);
// The same for a text of at most kShortBytes.
bool convertShort(const Conversion& conversion, const Plan& plan);

// All of these convert the beginning of a text, of any Unicode form too, up to something that is
// not clean, and return how many bytes of it are used. What is left is to be converted by the
// reference converters, which give for both together what they give for the whole; 0 where it would
// be taken for something else on its own, such as a byte order mark. When memory is short, out or
// rest has the failure latched.
unsigned int convertBeginning(const Conversion& conversion);

// From an encoding with a codec. state is that of the codec behind the used bytes, and rest has
// what was read of them but is not converted, in the codec's code page. isBegun says that something
// was converted.
unsigned int readBeginning(const Conversion& conversion, const Codec& codec, CodecState& state,
                           DataBuffer& rest, bool& isBegun);
// Into an encoding with a codec. rest has what stands between the used bytes and the codec.
unsigned int writeBeginning(const Conversion& conversion, const Codec& codec, CodecState& state,
                            DataBuffer& rest);

}  // namespace fast

#endif  // ENCODING_CLEAN_CONVERSION_H_
