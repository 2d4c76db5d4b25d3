// Table text of code page 20905, _Enc_IBM905; ascii no. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_IBM905[] =
    "c4aeUs+0CAABCWmgzMUFZJlNZt84lfwABTX//+mfzq+WyVAlcgAAUAAJHQqQAxACApggApStxFlXp9we"
    "wAPiIhJMmTTRMjTBPSYCYEwINMABNoAJ+k1PyhocGQaNAGTTENNBkGIYQNAaMTEaAAASJKjIA0APUaAA"
    "AAAAAAaADTRo2mIBSkQghihgE5gSaUmm4aKyUDGpNVrQ2CgrosnXuZhPbZOY2CVi8HXobdqUpwqDbAVn"
    "dwFNhYSg/RoVRwMVJ/jKbSmayGrwKCiAvsXsxy2k8jqWXCxmfg1ZeDiOtdJ4Ep/7L1GPfQ3/KWujgYeb"
    "3QSfoiGZq0VTD5p/lPtjTSW0+6KJlcZS8M6f6S2rLfnYZSsqdW0AV7bHG21Ga9QSAYewREQKQBAR/m+R"
    "WzOrYFQPUX6dMpq5znuRVWf0+KjS1WkEzRbNCqsKrQhH+LuSKcKEhb5xK/g==";
