// Table text of code page 870, _BestFit_870; best fit. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _BestFit_870[] =
    "c4aeUs4ABAABCWmgzMUFZJlNZwtsNJgAAvcPE4AAAIAEAAEAAIABAAAKgACESjIwgyYiSIKk5EFTLqXR"
    "n80XckU4UJDC2w0mA";
