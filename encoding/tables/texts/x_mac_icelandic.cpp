// Table text of code page 10079, _Enc_x_mac_icelandic; ascii yes. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_x_mac_icelandic[] =
    "c4aeUs4UBAABCWmgzMUFZJlNZTqGVtwAAof+//358/iYSFk0iQEgAKoICAAgQQGAEZFAwzCUp6nH7sAD"
    "ZIRNU0aNDQAAAZANBo0GhpkGjTI00aNDjJk0aA0aYjI0MQwJo0xBiNBhAAYJTU1JpNAyD1BoyAAAAaNA"
    "aNAA0PNU7FVdq9OVOMxMnvpHVaR0muLvuwJUJBXTEqWDBmbKRooays+aAVMjldnQBJPgP0eLlFKlFjkV"
    "1+2mQB+vjhBUxRE+CWsJguG0ygWY5FLOcPByuNJFS4nvNbdZeO4lotobUqslB+mxuXWPqDmEi+wAgCQg"
    "dLYNSF/RYAR4QamynXmXKPcwMujO2ZALKCqiKorRcPy3DTRUR5o3r0ALyJkfqKEwTonTXIwCKGA/xdyR"
    "ThQkE6hlbcA==";
