// Table text of code page 28595, _BestFit_28595; best fit. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _BestFit_28595[] =
    "c4aeUs8wFAABCWmgzMUFZJlNZ8Xz63gACfn+X/36BhewAAqMQAABAAQAgQCQAYOeADv1AATuwAVkiYSg"
    "k9QJM1NAHogAaAaGGmSGAAAAAAAAAAASaop6p6hkNAyNANPUAAAAMAKICKwWYEqQkwXUhUZYuNCosgYk"
    "lszNLDSBJDRLEoxo03LZK723lgAVDFmpDJLMsElqzLRa0k5YCefnmeVinC3HVBMLyVu9C4mpjXPP0Kgi"
    "B3LNnbK5icqt67Izw5DGTK0OwIDKhKNkqk4uHHVYtlMl1Vu5KWNM/mEiyIkgEQSLBYkIskgqKskARkFk"
    "WIMgKQVZFnakCFEBvaXpeon2oaVQEQ0bd2zTqTVvw/LriL2HHGUWlk1qDrJWFAmUL1AeTIOstFDwqF1d"
    "m3gK78e7DCbHbhvqa/F3JFOFCQ8Xz63g=";
