// Table text of code page 20108, _Enc_x_IA5_Norwegian; ascii no. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_x_IA5_Norwegian[] =
    "c4aeUs4IBAABCWmgzMUFZJlNZeL2dowAAv/iQ/AIQASBAABACQAQAAAEgAFQ1NpNGTCCJUzKBkXHGFWo"
    "IJxEz3V89WgL8RoE1BA1HjskSopcTEA+LuSKcKEg8Xs7RgA==";
