// Table text of code page 51932, _Enc_euc_jp_only_read; ascii yes; only read. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_euc_jp_only_read[] =
    "c4aeUsy0AAABCWmgzMUFZJlNZldNbQwAAEn2S93CAEhAAAAIEAKAAEAAAAgACAwCgACGqep5E9Go0wZC"
    "gAxGmmjTS+orfqlG7Zsn8cELkANnjSULbufUDgu5IpwoSErpraGA=";
