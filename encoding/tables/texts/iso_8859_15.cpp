// Table text of code page 28605, _Enc_iso_8859_15; ascii yes. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_iso_8859_15[] =
    "c4aeUs4UBAABCWmgzMUFZJlNZXIPusQAAvvPJ9gIBgIABCAAgAAIAQAAAAgAkAQAgAFQkoaAA0EmqnpD"
    "1ABbigk6YBM0CKpOLqhbTVm6ASYSzCBKSICjAf0dbd2915B8XckU4UJBcg+6x";
