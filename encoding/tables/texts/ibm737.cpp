// Table text of code page 737, _Enc_ibm737; ascii yes. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_ibm737[] =
    "c4aeUs4UBAABCWmgzMUFZJlNZqld7JgAArP/7/ldsbACBIABABAACIAACAAAAwBhAACgAEAACNq+3sAC"
    "5QimNQ0ATAATaTCMjGRDADTRoNMQAAAMgBJqkRojyQDQAA9QabSNlNLKioIKEWSLBcwgsLFYoUamVpU6"
    "GjqaOtC7xprbrKQ6GaLaQJakvT1Zil8BVraqXBDsgAm4wiUVKgqZ+nABPKbghkkKC9xy8L+kKRAkzpsT"
    "ZhaHBXKP47Xdpuzl37lZBc3Hv5K8E3J3JfhQMsaUVm/Kmr74sa4HOyTakMv8XckU4UJCqV3sm";
