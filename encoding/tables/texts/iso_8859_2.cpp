// Table text of code page 28592, _Enc_iso_8859_2; ascii yes. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_iso_8859_2[] =
    "c4aeUs4UBAABCWmgzMUFZJlNZPX6cZgAAtPff/uhiAUIAACAAAiAAAgBAAAADKAFBCAAwOImMYCAAlQa"
    "FDQANAaANAAkSJNAAAaAGmaSGt8hJYieRqTMTbgZEQQQVskVROcJziTBg4TBIb0zrgD8SKUaSxoCAAZb"
    "12xFlY0N5Xcq8rGaWIkhvUkIss5iXiYlwFd6vpstrF5TXZW8ZK79f86VAqOjSDBlKYSQHdpfxdyRThQk"
    "D1+nGYA==";
