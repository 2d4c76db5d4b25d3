// Table text of code page 861, _BestFit_861; best fit. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _BestFit_861[] =
    "c4aeUs/QFAABCWmgzMUFZJlNZeg4SygACXf/////K//8HuOMmHLQWaRcxUzFBBUJUdCiVNGWTXf9Kts/"
    "AAl0y2gag0SE9U9Rk0eiaNA0MgAaaADRoNGQAAAADQAAMgaY1CJkCTaUyepoNADQ0ANAAAANA9QAAAAA"
    "AAAAgyYATAAEwBGmEYAAAAJk0xNBgBGAAAAAEmpRKaaGIAAAAAAAAAAaA0AAAAAAA0GiFLERAUFlglK2"
    "EgYTKZmr6oGltBTRkQXBrmCbHQGEirRRGWLWorzepm1EG4pm08lxFTlw1rKoWu7WhYyaNdgwCIIMEA5a"
    "V11PqB42XewEKCxNNCqFDBwTrMZEC3aUczopnq5KpwknFRnaFL8Qo1EknrNqG2C1E2U1WrQLe0t51T6A"
    "1Gl4r9xkKibCKySak2WmgtIMcGsObBFCCEYb5C2xSBiIBAaoReWKghG/NZK8TKWDs51zERUK0Tl8w4Tr"
    "wZpg3jR7jN1hdouPqpmmeyzjcGt1kcpdYrWWXtpdCviq84vDuWpmUICgYCEwLEhOIGwDwjmISEsIi6yA"
    "nAjHxjyyUWLCA7jxItzrVhxMll4xFFkUBEkVBVSCIxFJ6mVjWlQIsICqpEG+aj/aKYpMOymQIsAVVA9b"
    "TAUY39VC1ApLiUv06VgXG7uVhPvZYYGB0rZC0ZFIIl80xSbJlMsTCYFgyIxR7FErLVJIHjYa1t73Zrpt"
    "sIouvSS/YWJIs6yZhIFiRHFaPtxbdMAgSTIgQhmB0xkX5gdJlGSy/PuRH6MHfmIEZmtJg5+80vnq5+73"
    "8Jd4NWLYUxxdGMQsbUpkuIfpkUVQQUNW3QsZD48I/pKiznpIjtHVNIlymITtLV2vI85n9+NpNI1esy28"
    "lZ26ma6rDMuYzABf4u5IpwoSD0HCWUA==";
