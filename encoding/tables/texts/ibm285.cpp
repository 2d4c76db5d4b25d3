// Table text of code page 20285, _Enc_IBM285; ascii no. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_IBM285[] =
    "c4aeUswIDAABCWmgzMUFZJlNZbVQvywABWH/f52ZrsnM21oIWCCIIACoCQiQAgAwoYiRw2goX/feGsAD"
    "ZIVTE2kaNAAAAAAaAB6gNNDMownqGhzRo0NMIBpgTTQBkNDEAaMRoYIyACRSkzUADQDTI0GmgAD1GQZA"
    "ABo09TyjaYJCGxAitvxVmeM9F+xsBYdGCLrVWdAlGAxokdVi/PKB+sLLcRBGczU4o+m5ZL0URHUNBmMA"
    "IShymxWaU/aclBGekynLKesmaDDR9LjKF1i9kXzjKgg54a0IhNYALBvEEZgH3CcsBVok94Aji51umM5t"
    "dtkjgWDEa3Z5c+yfvS9eXAmqQlwZrt5Jck7yQnm8MGbVibV/gBSsEkpmkCP8XckU4UJBtVC/L";
