// Table text of code page 20866, _Enc_koi8_r; ascii yes. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_koi8_r[] =
    "c4aeUs4UBAABCWmgzMUFZJlNZ4GNTkwAAs3W//vKnDgIBQAAgAAIAABBAAAAIAEJQAoYA8BqwALgMAMm"
    "mgyGCGmI0YMAMmmgyGCGmI0YEiUp+pNkxR5Jg1HqaHobU9UsahCUmrmJWsMLJKV0Kt2qPjbc0lkw4s2M"
    "yvhYNBW0hsG0aDQEDBeTrAEFR4KqHIg7jKDqMS9mR6FY2TMyhggR1aFN+rQDNYSMqgIBzYRpGducg0nA"
    "tk4ju48azxpIKNCP8XckU4UJDgY1OTA==";
