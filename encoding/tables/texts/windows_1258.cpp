// Table text of code page 1258, _Enc_windows_1258; ascii yes. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_windows_1258[] =
    "c4aeUs4UBAABCWmgzMUFZJlNZq/CTNAAAuH/1/TNhNEYABAAgABAAKAAjADAIAAQEAAQABEJUECAAgCQ"
    "pEaR4pgnqaeo0yaeT1QwyNNNMjCZGCaAxm1SiQmNMaRYwbCDUZBpMtiUGrndIWfUMrYX3vdzw38cbs2U"
    "25UFvaEBow5MnWnQLDGT1BIOmG4R8M1tQsF4cRXGVyup85yte9FwfPSV98aC8cJ5a111082pFWv8XckU"
    "4UJCr8JM0";
