// Table text of code page 20127, _Enc_us_ascii; ascii yes; stored. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_us_ascii[] =
    "xYXUgoAAAAAA=";
