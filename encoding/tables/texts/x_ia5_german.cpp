// Table text of code page 20106, _Enc_x_IA5_German; ascii no. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_x_IA5_German[] =
    "c4aeUs4IBAABCWmgzMUFZJlNZv+anvgAAwHCE/wAQCiBAAkAgAAACIABUQaRoGNQRSjamajJnkPSgTCW"
    "hBC5eu37GJqQRc2VFqM+B2NIjUxIX4u5IpwoSF/zU98A=";
