// Table text of code page 874, _Enc_windows_874; ascii yes. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_windows_874[] =
    "c4aeUs4UBAABCWmgzMUFZJlNZurs7CgAAvePq/kIiAQAIIAACACEAAAgAQABAQBggAFRHpU2kGmgyeUE"
    "mqhpkAALEAKMgF6GKEN2BWt0Jxa6zRmqAwOWTADZQF0XVYi1H7WIzRqp8fS8zofi7kinChIXV2dhQ";
