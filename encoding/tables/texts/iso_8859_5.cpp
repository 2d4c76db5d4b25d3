// Table text of code page 28595, _Enc_iso_8859_5; ascii yes. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_iso_8859_5[] =
    "c4aeUs4UBAABCWmgzMUFZJlNZcC1vRwAAvuPI+YAABAQCIAACAEAAQIAkACAAVDJDRkxNBEpqHqaGhxK"
    "pAO4gmIgkgVeLgCtKIXASFKFp7VqKn2bQfF3JFOFCQcC1vRw=";
