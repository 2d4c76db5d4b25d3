// Table text of code page 1140, _Enc_IBM01140; ascii no. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_IBM01140[] =
    "c4aeUswIDAABCWmgzMUFZJlNZq6N9sAABV3/f9mZjsuM2VoISCCIIAaoCQiQAwA4gYmQwfgpX+feGsAD"
    "ZIVNE9R6gAAGg0AAMg0BoBkMTahk0NDjJgmhkMjIyaGgDQZGEA0GjTIYhoAJFKI09QAADQaA0ADQAAB6"
    "gB6n6pp5S+cASENoVJggNqpWZLTRbsbAV3fwRFmU6TJxgMaLLy2L8lgfrDlbqEEYzK27v883GWJAoYKI"
    "QHhBuS5mET0KGtu2DIMQgkmcc9sSC5YDzvTDYikGyZmBCcgd1GkXwR1Qa7+xUSoQTUegFU2VqA1uxZA2"
    "jTlXTjV4ZF3Hgwv5sKv/fWbLYkorwkoompx+I9pEtDcGDNajOiAKyxJK1aQE7SFOwVDSQH+LuSKcKEhV"
    "0b7YA";
