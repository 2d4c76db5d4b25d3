// Table text of code page 875, _BestFit_875; best fit. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _BestFit_875[] =
    "c4aeUs4QBAABCWmgzMUFZJlNZWZI9NQAAwNOA+AAABAAqAQIAQAAMIAAhtSBpptQgGgCIgSAW8IQCd1f"
    "Zc8p5t/F3JFOFCQWZI9NQ";
