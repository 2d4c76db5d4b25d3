// Table text of code page 20105, _Enc_x_IA5; ascii no. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_x_IA5[] =
    "c4aeUs4IBAABCWmgzMUFZJlNZ3WSNowAAv3K0cAAAAICAABACQAAQAIAAICAAIRFRkzUIBppoktEV98u"
    "RRWoj9EQN7vcuTJz8XckU4UJDdZI2jA==";
