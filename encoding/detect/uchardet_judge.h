// The judgement of the library uchardet.
#ifndef ENCODING_DETECT_UCHARDET_JUDGE_H_
#define ENCODING_DETECT_UCHARDET_JUDGE_H_

#include <span>
#include <string>

#include "encoding/detect/sample.h"

namespace detection {

// The name of the encoding that uchardet finds likeliest; empty when it finds none, and where the
// library is built without it.
std::string askUchardet(std::span<const Piece> pieces);

}  // namespace detection

#endif  // ENCODING_DETECT_UCHARDET_JUDGE_H_
