// Table text of code page 860, _Enc_IBM860; ascii yes. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_IBM860[] =
    "c4aeUs4UBAABCWmgzMUFZJlNZv/OA4QAAofe///+0fIDAAIUACDAAEgAAgHQDACgAAJABijO7/7AA9sU"
    "QU01PU0w1GIGIABoDQMmmTEaEMop6gZAAyAAAAAAADTU1CAGgA0AAAAAAZqPhSq5Qrkc+CxCaLEIQBoe"
    "CI85jWqZBRCCHF1QpRQRBJVS6cSvEPlwqahRhJUhHiigwF8pYI5CJ1+PWJfwiPJjtVnBmgxYVXqHZ0HR"
    "KzSam81Qjwt9INLr6lXpa642s+olLpjHrLGCu+pTdthrb2CIRkFPvPhYcpl1MRLukMxPLdPkEh4ECNRn"
    "lYY/zQQH/JncZEZCAOzTSMicqBCYgxtnKnsgDJ6YnAoInGRFE/QiesJTBSYjSEFkoEAb/F3JFOFCQv/O"
    "A4Q==";
