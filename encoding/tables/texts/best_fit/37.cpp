// Table text of code page 37, _BestFit_37; best fit. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _BestFit_37[] =
    "c4aeUs4QBAABCWmgzMUFZJlNZdaNzoAAAv+OG4AAAAQEgAQAQQAkAAAEAAKAAMQNA0BtKaGh6jbEgE6z"
    "gSAU567qdsk+LuSKcKEg60bnQAA==";
