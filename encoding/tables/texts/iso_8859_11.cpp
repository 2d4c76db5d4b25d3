// Table text of code page 28601, _Enc_iso_8859_11; ascii yes. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_iso_8859_11[] =
    "c4aeUs20BAABCWmgzMUFZJlNZI797KgAAtUHAYgIgAAIAQAAgAFRDACFJoUyjkA+kAOSIsC7IKbd3M7c"
    "LuSKcKEgR372VAA==";
