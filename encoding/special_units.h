// The units that have a place in a target although the kernels stop at them.
#ifndef ENCODING_SPECIAL_UNITS_H_
#define ENCODING_SPECIAL_UNITS_H_

#include "encoding/output.h"
#include "encoding/plan.h"

namespace fast {

inline bool mayBeSpecialUnit(unsigned int unit) { return unit == 0 || unit == kEscapeUnit; }

// Writes the unit (two bytes, low byte first) that the encoder of a plan stopped at: U+0000 in
// UTF-8, which EncConvert leaves out, and U+EFFD in a table, which a pivot of EncConvert reads as
// an escape. False for every other unit, and when there is no room.
bool writeSpecialUnit(const Plan& plan, const unsigned char* unit, Output& out);

}  // namespace fast

#endif  // ENCODING_SPECIAL_UNITS_H_
