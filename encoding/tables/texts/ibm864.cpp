// Table text of code page 864, _Enc_IBM864; ascii yes. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_IBM864[] =
    "c4aeUs4UBAABCWmgzMUFZJlNZeLG0PAAAp3+//9+t2+CQAIADEAFAIAACEAAIgEBIToogKAD5u6UvsAD"
    "5VQ1GplGmgBoDTQA0ABoaaNAeo0NDjJkyYjEwAmTBMgBowjAEMAzUkk9JtTIGgyaADQAMgGgNPU9RkBy"
    "tSSV8kViISivDnsTQQKeSmkNCvE5JqcWnJQCQswVAqN+NLZntzNQwSrjcLbHDJZ4BChXIAYnn1lNXVg0"
    "dDPPvAkQPFEcOZSfPbTN04Ya35q4Yw5x+43Ibv3LS+4h4y6v3qpeCmLz3l3Zq5c5C4sNCrGG4HWenUjP"
    "VdwV6SEXnZmziU76v5OpiFYRLoiQwcwUf44UaAjQJLGKoqGrY8A/oW6dYvwpqhfxkyRlErGWGmh/F3JF"
    "OFCQeLG0PAA==";
