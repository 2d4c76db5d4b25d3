// Table text of code page 1257, _BestFit_1257; best fit. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _BestFit_1257[] =
    "c4aeUs3wBAABCWmgzMUFZJlNZbDQw0gAAvVGA4AAgAAEAAEAAAKAAMMAESGkkQVMxRU23b4u5IpwoSDY"
    "aGGkA";
