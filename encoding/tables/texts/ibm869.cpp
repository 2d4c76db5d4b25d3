// Table text of code page 869, _Enc_ibm869; ascii yes. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_ibm869[] =
    "c4aeUs4UBAABCWmgzMUFZJlNZYVervAAAsH///vf0pACAAEAEhAAaIIgCAEAAoAMBwAAEAIACGAKTtCa"
    "wANihEhMIZom0aR6AmmTaAho9E9BhoaAAADQAAAAAzVMip6jIGgAADQyGgNN6piHRuBdgklsDTsPGLAV"
    "hsQ5xUaQRERRkqaAlgSOw1UrjjJZVijIiIwtKUjagUizlTZHQZSseQvMkuJbWt3kKubLD8dr5zS857m5"
    "lIB/69yjxhAACalHwBCa2RAHzYyduhUnRacl4xal4jxT7fwa1DVt2+iVyjua+j0jSJ731RaRK4ktX7eE"
    "lcSuNZBq41/i7kinChIMKvV3g";
