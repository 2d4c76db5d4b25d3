// Table text of code page 20269, _Enc_x_cp20269; ascii no. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_x_cp20269[] =
    "c4aeUs94CAABCWmgzMUFZJlNZsX9buQABXH3///TKHBGEEgCggBEAAkAkAgAEwBAABAIiUWAICDmXsAD"
    "bYCU0oo8kepiZPUDEwTaCepoHoG9VBppU0aeo09Q000BoaDTEMQBoDFJA0AxNA00BpkMTQYgEigAAxEk"
    "AtIZkc6BIbQsoMY80cCIvOtu3GNtBhQkhwKjxQMKFxQpdLpDGqA0owvbFQADUmYBsP47VoLEAeXc/RU5"
    "nzL0Vgp6XNqtVVVU0ue/IYUkRkxbqcoDbUMzAVo6t8xQrFX13kHZ48PmVjdwe1UTm/pbz4vE+XB3kiTM"
    "Y7kSNMoQRI9CDmmtUL+Q0Q8SuDH+LuSKcKEhYv63cgA==";
