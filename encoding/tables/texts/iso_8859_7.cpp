// Table text of code page 28597, _Enc_iso_8859_7; ascii yes. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_iso_8859_7[] =
    "c4aeUs4UBAABCWmgzMUFZJlNZ76xCLwAAvXXf/gAIBAQCAIAgAAIAQAAAAiAAAIAAgAIAAgCgAHIoGmh"
    "kZMQRJTTQRk2kyRqhOIg1ABtJDqZEBkb2pqJeW+UAjrDy/3LRBHuZ6jQ7MdCJzDudc48tj/V0j4u5Ipw"
    "oSHfWIReA";
