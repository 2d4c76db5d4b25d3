// Table text of code page 28600, _Enc_iso_8859_10; ascii yes. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_iso_8859_10[] =
    "c4aeUs4UBAABCWmgzMUFZJlNZxttNZAAAuPX//7BIvUAAACAgAAIAQAAAgAAgCOGwAAABACCwACAAlAk"
    "knpQ09T1ANGgeoPFBppTIZAAAABUb4AgRkhVATCFCoiAkoQoIDnrArXMYCHtwhPZFKLKEcXg8mQgJsBW"
    "vl0spVwzzAxbANYAE0FYIJorRpd4o/Wv2fIv7o5f5SziV2SuyRat/DpL+LuSKcKEhjbaayA==";
