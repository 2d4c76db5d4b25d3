// Table text of code page 20269, _BestFit_20269; best fit. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _BestFit_20269[] =
    "c4aeUsyAAAABCWmgzMUFZJlNZGAv0kAAACmHY/YAgAAEAAEAAAgEAAAQAVKAAMUNNMABE9JpkaYmlppO"
    "su+Q7ypUMUEo/ApB23xdyRThQkBgL9JA=";
