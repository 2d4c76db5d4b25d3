// Table text of code page 857, _Enc_ibm857; ascii yes. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_ibm857[] =
    "c4aeUs4UBAABCWmgzMUFZJlNZ4XhUsgAAoP+f/X/0aIqCCAEbxaQAOAQCAGYBRiWAggqCihu/57AA2SG"
    "RkwnqGRoDRoA0AAGmmmJtTCGJk/UhwDCMJpiGAQDIAYRpkyYRgIaDEiU8oaepk9IGjTTTINBoANBhMTQ"
    "ZNP0okY2A20BsRsTHosEiWTIskki5GRJEiRF650SyBilYCg5hTiYSJ6cgpmBESIc/S1c1ytCSZiQXPKj"
    "TLEkpdOOAIgZhYNDB5lakMgehfqPTzUH0ZDC5HCR52hu+HG9u8RK68LAWEBrCZtqnTTe0Ebqyg/V9U9s"
    "giZpiSKIRCVPl8y1qO5c0zCrqSzzaAL5bfs+zlYHMgBEjBfNpiJ/Fp0HogCEsHAAW0SYIAmf/F3JFOFC"
    "Q4XhUsg==";
