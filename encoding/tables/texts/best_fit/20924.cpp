// Table text of code page 20924, _BestFit_20924; best fit. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _BestFit_20924[] =
    "c4aeUs4QBAABCWmgzMUFZJlNZAUXuLAAAvuOG4gAAAQEgAQAQQAkAAAEAA6AAMUwAANpTTRDMo20CBPM"
    "xAAVeECCNfR32c1zRTu/xdyRThQkAFF7iwA==";
