// Table text of code page 1255, _BestFit_1255; best fit. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _BestFit_1255[] =
    "c4aeUs4QBAABCWmgzMUFZJlNZ4ANPYwAAvdGz4ABAAAEAQEAABAQQAAiAAgACoAAxAAAG0oAYjbEgE45"
    "YSAVe7OF11MTXxdyRThQkOADT2MA=";
