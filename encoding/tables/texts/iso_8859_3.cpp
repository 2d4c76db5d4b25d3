// Table text of code page 28593, _Enc_iso_8859_3; ascii yes. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_iso_8859_3[] =
    "c4aeUs4UBAABCWmgzMUFZJlNZrzmOIAAAuvPf+idoFFiAAAYgAAIAQAABBDgAABAAAIgICkAgAJVDJNQ"
    "ZMg0AAGgiSiAAAA0PSSPWlS8it7UqRKg0RaqUyLRMkJCVRzKVN6VQepegBmQEgCCCt7uNvGtj2wa5AQS"
    "5k2IId+YlCcl/YXLwI442wvLQDPC0AeSiv3slJEk/F3JFOFCQrzmOIA==";
