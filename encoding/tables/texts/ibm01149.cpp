// Table text of code page 1149, _Enc_IBM01149; ascii no. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_IBM01149[] =
    "c4aeUswIDAABCWmgzMUFZJlNZNC4mNAABWf//92fjIvE2XApQCQAIQCJCQiQggAIAAiBgYiBUAmf7/4a"
    "wANkhVMR6mhoAHqBoaANAA02poDQYxQ9Q0OMjTJiaDJkwmmQMhoDQGmTQwAmgMJFST0h6gaeoGg0yAyA"
    "aaeoMgGgAbRo1I3AgEhtIoNABZpX4j0hSyxpIjeiwotbNCBYk0NgTOrHAl5svsleOMWczasydR+99HIE"
    "1IwZ0AWGHD4Gm26bPVU8dxmDO7DMqPoeMAGpYonkisHeiCQ9pmMJ8ju1oyZFPiwWyzAgrb+bprwQEeRU"
    "cRftBXupQiIvpGQHc7kX+y1ackU+/Bp5WvPghml5s+YcKibZvT6uFJIxMSShaEE7El7NI8GCA/xdyRTh"
    "QkDQuJjQ=";
