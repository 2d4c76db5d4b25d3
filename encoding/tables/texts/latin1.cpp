// Table text of code page 819, _Enc_latin1; ascii yes. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_latin1[] =
    "c4aeUs4UBAABCWmgzMUFZJlNZmY1LCwAAwUHAYAAgAAIAQAAgADDNAJqiaZjIHboGVVXvd8XckU4UJCZ"
    "jUsLA";
