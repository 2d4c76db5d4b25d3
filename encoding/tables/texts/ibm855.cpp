// Table text of code page 855, _Enc_IBM855; ascii yes. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_IBM855[] =
    "c4aeUs4UBAABCWmgzMUFZJlNZHoIR5wAArHef/3v0JACBOSQKgCAAAgBDACCA7ABDAAIStBawANNqIVG"
    "0TAJkwCMRtCYADTQYk1NRo0AAAAAADQEppSNANAAAAA0DQekpoywiiQZECkAIysQkSGZmLuoFIgRRDux"
    "OiSpM1mhEQYMBQQeDyuwkAEUEqUzACcITjnaiGiHclE5SIzKSk0ZyESOP7JCyate0jKJkMQ/hWHsUgWV"
    "uIIiAHNy05YUpajXGj31av8HcEQJ5PeTns3pATKCY7zPBM06YIWHGghiCK6Y+pmSZp+hdyRThQkB6CEe"
    "c";
