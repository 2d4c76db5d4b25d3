// Table text of code page 28594, _BestFit_28594; best fit. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _BestFit_28594[] =
    "c4aeUs4wEAABCWmgzMUFZJlNZIkrAvwAB9X+X//6BhewAAKMQAABAAQAgQCQAYOeADv1AATuwAToiDTR"
    "TNU2kxRkeozU0ADQDTCemmkMAAAAAAAAAAAk1KNU0GQANAB6gAAABhTLmikqF6XhJkShdxmLHUCSGIbN"
    "FcVlvP0BESAcZ6axyUCIDrTa4nZc7s6IOo2RcHmDz9LhqHOVXgmMhQYg5alWqdoHGso7nfMURAneYaKF"
    "FMwlb2Q0HlEIivIsGUALUVQkEoCchsYTElhLVw8Frli57aszauvW7jsf2SKiEAiCCjICkkVRRkAUgsUF"
    "IggApAUWRZ2oSSmRwawTBh4oeTIAGm6/+1bU28NV18N5ZSVYoL2CzFGM2mLSMXKgbiGJJuUca7qRi4Sv"
    "wwhXbhxlm/xdyRThQkCJKwL8=";
