// Table text of code page 10021, _Enc_x_mac_thai; ascii yes. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_x_mac_thai[] =
    "c4aeUszEBAABCWmgzMUFZJlNZn7XcwwAAkHfb/mIgAEAAAQAACCAEAhACgEAAEACAAggCoAQgAFRCAmB"
    "DRtDTQSKjRhAAAcuoQi1oINArHFxanvKEaSifOjBCJySAEKQuzZL0kqNnfRG7ChyoSPbDRYAnBdyRThQ"
    "kJ+13MMA=";
