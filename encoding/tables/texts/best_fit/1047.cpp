// Table text of code page 1047, _BestFit_1047; best fit. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _BestFit_1047[] =
    "c4aeUs4QBAABCWmgzMUFZJlNZDDDRsAAAvueO4AAAAQAEASABABBAAQAJAAABAACgADEAAAbSgAeo2xC"
    "BVdHa9QAiYCDfqazaculJPi7kinChIBhho2A=";
