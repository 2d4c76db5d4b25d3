// Table text of code page 1149, _BestFit_1149; best fit. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _BestFit_1149[] =
    "c4aeUs4ABAABCWmgzMUFZJlNZb/NgjAAAvdmW4ABAAAABAQAQQAAAiAAAAQAAoAAxANNNA2lDRp6NsSA"
    "T8xIBSu3KtyYLuSKcKEg3+bBGAA==";
