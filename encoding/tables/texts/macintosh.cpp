// Table text of code page 10000, _Enc_macintosh; ascii yes. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_macintosh[] =
    "c4aeUs4UBAABCWmgzMUFZJlNZyoZ67AAAo3+//354/iYSFixCAEgAKsIDAAhQQCAERkIQjCUp63D7sAD"
    "ZENTSEn6piZMEepk2k2gDRPUaMJ5TaNTE0/UBPJ6hxoyZGEYgGE0GATQaBkyaMmQwgMMSUelGJpoZGE0"
    "ZNGEZBowQDRggxHlCRlsBPfHcyIkKSiBGRG8m2XuW3GckfRDq9meoEDPRgMtgyJHSqqL0Ka45jQKR3Nu"
    "JyAAjqF4b3wuiXYJRhiI8MgHBRnbIfZIdbehYgKSXPu0bFxneT/OeuJ+xlk74lNQO2sd+ZbW+dWSZpfa"
    "Hi4cD3MFyANAUSCS2mHinR2gGlxK2/jA3VGY1Ja2oAXaUzmwSABYICcQHSapY3J46iMgh+kOzUwOpCcp"
    "i/MjGJEwoQoZ0BEgf5Ag/4u5IpwoSGVDPXYA=";
