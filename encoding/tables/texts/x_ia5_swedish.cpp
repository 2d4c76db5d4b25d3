// Table text of code page 20107, _Enc_x_IA5_Swedish; ascii no. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_x_IA5_Swedish[] =
    "c4aeUs4IBAABCWmgzMUFZJlNZqhIOTwAAv/iRd0IABkIAAIACQAIACAAgAFQyaQA0aCKKYnojQXhlDiC"
    "CAAcak5okorrOLoC5N2FQosTIqEHEQHPZUsB8XckU4UJCqEg5PA==";
