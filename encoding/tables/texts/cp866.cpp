// Table text of code page 866, _Enc_cp866; ascii yes. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_cp866[] =
    "c4aeUs4UBAABCWmgzMUFZJlNZNcM9PAAAsn3f/tckbACAIAAAFCAAAgAAEEAAAEAAIBAAAzKru6AAlIZ"
    "Eg9KHqB5QDIAPTUaDTKNUNqA0ADRkaAeUkWhABgA4KcQIlFqjUkCWc4CMLqMksqRaKFXcHEOZSSZISDc"
    "nR6iUWcJ4qlKRs9WCO2bn4Iomt3KnEggCCDzmZ9QrQGdYC/vGFUGEKYs8i02ynW/o0+Ju3tATI3Efjk5"
    "JqEDOWAmWAp/F3JFOFCQNcM9PAA==";
