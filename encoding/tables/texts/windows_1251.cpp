// Table text of code page 1251, _Enc_windows_1251; ascii yes. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_windows_1251[] =
    "c4aeUs4UBAABCWmgzMUFZJlNZT/KxTAAAtH3r/3XsCAAgIIABACAQEgAQAABAACAAQVCDThKgAJQJTVN"
    "NE0AADTI9QZp6oNNKTTAAAAAAOlFAREYIZIUEkFVAVVR0hwsEXETvqgsLhsXZGZQQCQVoAC5XyiQ+q1D"
    "vlCN8YYzortyupLttW/zG3ZuOYwwSoD0sPcqhj5pddVSzSVkJwZprBM6lRN8XqdMMfxdyRThQkE/ysUw"
    "=";
