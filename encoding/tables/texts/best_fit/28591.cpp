// Table text of code page 28591, _BestFit_28591; best fit. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _BestFit_28591[] =
    "c4aeUs7QEAABCWmgzMUFZJlNZ2WHp6AAB9//3/3oAp2gISKKBAABAIREgQEAEAAgGBGDlACF9QCAbsAE"
    "YDHMAAAAAAAAAAHMAAAAAAAAAACRERAgZBkAADRoDagaDENJYYzMBJFWjeaqzIkJX8O65VMz1r9ltiMz"
    "LNnXvZay62xids0SEFMFhOKS9KpWCmOOji3J49zHgwVMDABtCcxVkTAt3XmVDKs4GU57T+vg2CSQ+KIT"
    "AhQkv5iQpHx0uJuqXRAklI4M0ASNIG20vfsz59J3WIEHky802JnjBDPBi77oQXaIBIt0aCQWn1gSLnp+"
    "Hl1at8n8jhJCLYRA3MQMVGj8csTYUmKatU2WQlk5+e/EDhyvG/RBk/hdyRThQkNlh6eg=";
