// Table text of code page 1252, _Enc_windows_1252; ascii yes. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_windows_1252[] =
    "c4aeUs4UBAABCWmgzMUFZJlNZawmcxwAAu2vB/jdlogSACAAgABMAIAICAcARIAByKTBMBMCGABiFTRg"
    "gfqNAR6jVGHIJIgJdLXtuh++zCL8KRriwEoCUCSR9lgyYoSrCQAaaSKQc1W5qoWZ6PlVgcVXzR+W/bIb"
    "Wr7KAIOC7kinChINYTOY4";
