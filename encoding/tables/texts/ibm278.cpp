// Table text of code page 20278, _Enc_IBM278; ascii no. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_IBM278[] =
    "c4aeUswIDAABCWmgzMUFZJlNZZb0LtwABWH//52fjMmM/VgIYACBIACYK0yQGkhgALCAmZTRWIlf994K"
    "wANkhVPQQ0aAAA0NAAAAAAAaGE9EZNAcNDRk0aNGmhkZDCAMgBkGmgAAZAyAJFRQPRAA9QGgAAADRoAA"
    "AA0GnppqNpgkIbECMjZodsR6WCU8YCuLuAJGrJwtBWGKV4295Qh5uqw/ZICPpnwooMy9/qqcZRpxBiRF"
    "FgOHdM6sfl1mIylyxm7xTArqkLlWAguHGxEAqD312bBdNBYgX7o5xIppxS2mwPkAidwklGRIQLBMGSAg"
    "eIRt4ogcZIPbIiPnVtnoemvj9F9O3/vWTXlqZVPinTakE6aSGrLGQiz5o6ySRM0hJabQhH+LuSKcKEgy"
    "3oXbg";
