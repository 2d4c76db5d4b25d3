// What a text says about its own encoding.
#ifndef ENCODING_DETECT_DECLARATIONS_H_
#define ENCODING_DETECT_DECLARATIONS_H_

#include <string_view>

#include "encoding/detect/sample.h"

namespace detection {

struct Declaration {
  std::string_view name;  // of the encoding, as it stands in the text; empty when there is none
  std::string_view kind;  // "XML", "HTML", ...
};

// Looks in the first KiB or so for the declarations of XML, CSS, HTML, MIME headers, message
// catalogues (.po), PEP 263 and the modelines of editors, and at the end for modelines too. The
// text is one whose declarations are in ASCII. The views point into head.
Declaration findDeclaration(Bytes head, bool isWhole);

}  // namespace detection

#endif  // ENCODING_DETECT_DECLARATIONS_H_
