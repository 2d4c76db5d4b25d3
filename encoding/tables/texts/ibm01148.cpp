// Table text of code page 1148, _Enc_IBM01148; ascii no. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_IBM01148[] =
    "c4aeUswIDAABCWmgzMUFZJlNZ0zIHTwABWf//92fjouE2VoISCCIIISICUiQAgQAADiBiZDB8Alf5946"
    "wANkhUaTEyAAAGjQAA00aaAAaDaEwQ0OMmCaGQyMjJoaANBkYQDQaNMhiGgAkUlHqekAAAaDQAADQaZG"
    "QNADTah5TEcEAkNgomABwSUmWbhF420CwsaCLbWfFAmGAxo/HoYcBfdmBKw6mOQgGaylxU61rpI5AZMI"
    "EjggQHAft6kLWMHZOkoc4YIiP9lLlcGqjr4ZA9lgKLpQyLrCSxJLwWlNKxhPsG7Iq+VHBM8AVUbFQLF6"
    "gkV5oXnLTJoni1xzW1Nb+tZ3pw0J9SFCe3FL8y9HaViM3RgzYny5QBfrSSUbARMxCmaRO0gD/F3JFOFC"
    "Q0zIHTw==";
