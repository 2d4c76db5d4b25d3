// Table text of code page 20423, _BestFit_20423; best fit. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _BestFit_20423[] =
    "c4aeUs2gBAABCWmgzMUFZJlNZW95yMAAAsdOG+AAABAAIAQAAQAEAAgAADCAAIRJQMeqEDQNDJMCRkUU"
    "IEDEASxHfPbfOry/i7kinChILe85GAA==";
