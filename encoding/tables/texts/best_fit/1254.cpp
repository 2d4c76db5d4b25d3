// Table text of code page 1254, _BestFit_1254; best fit. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _BestFit_1254[] =
    "c4aeUs9wGAABCWmgzMUFZJlNZCFFXJgAC0H/////c7ds3YIYEAZZ3KXIwc/fgASxSlQjBYHUZh39K9w/"
    "AAj2ZYDUIJAFP1R5TI0MQAANGQAekGj1B6gABkAAADQ9NE09QaICmmSAAeo0AAAAAGjRppkAAAAAAAAB"
    "BgAAAAAAAAAAEwAAAAEYAAmAAZqIqmnhRtEGmjQAyBoDQAABoNAAYhoAGgAGjTQSsEiSoMqFmVZmHF7D"
    "z7bSBXRgaiErlW4CAABRjBOvoCpOWnDq1ppUQEoObflZOPFYLmfceN4iICaMiQYIGITWT1ImREkOKMg/"
    "BtmRmCZvYtblKcdljAeUoQmIWuzaIBGK4JZRSKY2dIxEWFTXrlSxmpQTqFHIIkmnx1QSmktGbUpUgERF"
    "kgEJRWRESsOsaRy8BJNExjKFI8ITdzUJ6UBpBogOmc6JNTKQ2LEQyUtB4DUjogrwjbHYmgQEf04mudRA"
    "hx69xYqmo5Ti3dzzbqEmDSQNqSo9pCty5Kk0hM5Va0VCRR777Fmgae7vJVqzHTxqc+wr62wSP9ECBMQk"
    "22vhEA0sUUIBpA1CEobaYAgaQlEAplwBBDQ4iArMJtORqaypxsuG5YkqkDF2upYo1QzocJoFph2hqWAn"
    "URCuSoSEUgiEskhDBAkYGelJyPQ9+EsjMzcvZV3Pgzc6jbaVsBNAmDdw6t7CVBtMEmzYQneGQa/mSmS5"
    "lrIkrAAiByEREGyEPij9oeRJvxwde8ffdlxe0pyxinsS5Ra+8OXSFCE6iWYSNg6ElP5FKxAn+8TR/iFN"
    "c9cF4KMT6ivEgwyd006D+LgYCNXQHcr9oLw1Z7L9B8+NKhP/z7l8P+LuSKcKEgEKKuTA=";
