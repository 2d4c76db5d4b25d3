// Table text of code page 875, _Enc_cp875; ascii no. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_cp875[] =
    "c4aeUs/ACAABCWmgzMUFZJlNZdZW+TQABX////u/j5mEy1AQC0AQBIQQCUCIIgwADEAACIWBwCkXp/wW"
    "wANiREKYmmgNNADTQDQAADQDRptBPUZDhppghkNNMjJhANNAGE0aZMACBoJElJkDR6gDTEABkAB6gAAD"
    "TTNRtMEkoYNobBNok0NiQ2k2BJpSaRTYhY3Fha27B504aKrYxBPjwhTRCMutCRdYa8oW40g/mc9+BFz1"
    "gutBpPbrQH3PkySm1IWng0sreaRkSxH5hw2E5xjxR3nchj18pA9jeKp2cKhXb2tNKcOPV9LvWIKCw54O"
    "ZTJiWM1TPgh+IwJFiu9C1GxAAgBcYgAABCEYMSVFyb9owC80AXmJbTEX2JUMETtCo/xdyRThQkHWVvk0"
    "=";
