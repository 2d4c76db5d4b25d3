// Table text of code page 950, _Enc_big5_only_read; ascii yes; only read. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_big5_only_read[] =
    "c4aeUsy0AAABCWmgzMUFZJlNZVltnbAAAEVOS/CECAkSAIAAQABRAYAAAAKAAMUwmmgNMQap+JT1AyMn"
    "pBhwZQU73Yljmlt3dBm1YfxxlUa6CGhdyRThQkFZbZ2w=";
