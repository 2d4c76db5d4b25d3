// Table text of code page 10004, _Enc_x_mac_arabic; ascii yes. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_x_mac_arabic[] =
    "c4aeUs4UBAABCWmgzMUFZJlNZE/DxggAAuuv7/+/AbgQAIAAgAAYAIAAIAkAAAAEAQABEAKCwALNoinl"
    "NPUBoANB6hp5QSJJlNqabU0ADQAEipPSGCDAACMbTIaVGIMWCCTQTcOt8jVcoY3OsYV0UvtOh3tAacZE"
    "SyezKMLa5G9iAuaODSIbYxg2DY2S8qIPzCFCQjhiEW9oKZqKAk/cFccxSHVhtK4yNStiRgyEgtykM4+z"
    "gDCHykDDcIB0LuSKcKEgJ+HjBAA==";
