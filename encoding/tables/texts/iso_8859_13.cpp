// Table text of code page 28603, _Enc_iso_8859_13; ascii yes. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_iso_8859_13[] =
    "c4aeUs4UBAABCWmgzMUFZJlNZsS8ACgAAsn3v/7BAEUAQBAAEACAAAgBAAAAIAwAhADlbvx4IACAAlAx"
    "UzUmgAA0DTR6RsjUGnqkjTNEMQwQDEMmjA3ByTNACGECEgSh2OgAT0NERAnuULw+pNS6kMns9wah1LwM"
    "yDIkh6oRAI1IHFSunbRfDfC31ozhAJEFIDWQQeIIQI2V9Gj+u91eYRtf3rlKLWVRdJ08JzvGQCaAJxwn"
    "ZNgCf4u5IpwoSFiXgAUA=";
