// Table text of code page 28599, _Enc_iso_8859_9; ascii yes. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_iso_8859_9[] =
    "c4aeUs4UBAABCWmgzMUFZJlNZRzShDAAAv/HDeAAgAMACIAACAEAAIAAgAiAAVDRGIaeQRKjGkwkjrxV"
    "bQSxAUziqxczERYeoi0QQHCOmTkrbYLuSKcKEgjmlCGA=";
