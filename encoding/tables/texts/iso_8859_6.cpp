// Table text of code page 28596, _Enc_iso_8859_6; ascii yes. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_iso_8859_6[] =
    "c4aeUs4UBAABCWmgzMUFZJlNZ/SohfgAAv2PQ/yCECAAAoAADAEAAAACgAKAAcimmmmRk00wQqSPUxqa"
    "Apgfcu0L4lUM3EYjNxA8wIcQDvA6gMQJWUAfsrtJuR1rHNrrB+D0x/MhQu5IpwoSH6VEL8A==";
