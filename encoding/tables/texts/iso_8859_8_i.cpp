// Table text of code page 38598, _Enc_iso_8859_8_i; ascii yes. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_iso_8859_8_i[] =
    "c4aeUs4UBAABCWmgzMUFZJlNZO5yhiQAAvnPD9ABAM0GCAAEgAAIAQABAoAIEEAAgAFQkkg0BiHigk1U"
    "AaNAAsQ4YSS1kUgLBSBg0vsNUKOiSIWaA3ZAC2Bg+aL0e1Hico9l5nVfi7kinChIHc5QxIA==";
