// Table text of code page 1361, _BestFit_1361; best fit. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _BestFit_1361[] =
    "c4aeUs1ACAABCWmgzMUFZJlNZuyhePAABFv/d/rBwAEAIAAEIAMFEAQAAQABAJDgyASABABAAILAAoBJ"
    "qSmRNMnqGIaM2qGaGMJiaDBGIZGEwxhMTQYIxDIwmKhb1okDoJLDJZAphA3JA2s2OXlnaHUZJLOD/VRM"
    "k9POscsNVscChuIXEDYwJihige33RJUhNFQhBBkikFJxqgUABRGCJCft6NrCfV6mtLoHZ/EzLiZ6f/bv"
    "3NNPAu5IpwoSF2ULx4A==";
