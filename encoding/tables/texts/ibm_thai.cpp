// Table text of code page 20838, _Enc_IBM_Thai; ascii no. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_IBM_Thai[] =
    "c4aeUs/MCAABCWmgzMUFZJlNZJ+e/4wABZv/n937zsmMyVAASAAIAQQgCYCAAgYAgIHCCTen3BLAAuSG"
    "pop6mgAaaAANAMQAyDyNTIcwmATACYTCaYAABMmmgYRKUmgNqBppiGgBoZA0aaABppIxABpBc6VorXgh"
    "XjV1b+lxwyZ42JINTAbOsFFb8NiLtXKAH7GqtRU0ImWK/eSiwgYYSdcqoA3EDC6T8PLv4tsa9EiM/aN9"
    "tiXiDa+CmJVAdZLePz6O/IUxKOaXAiKd7KBxn3OmWZqZaZJMqwYwxEDAA64CB7bNP6xQQyxVzQM0VD/F"
    "3JFOFCQJ+e/4w";
