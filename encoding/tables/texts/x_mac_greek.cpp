// Table text of code page 10006, _Enc_x_mac_greek; ascii yes. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_x_mac_greek[] =
    "c4aeUs4UBAABCWmgzMUFZJlNZGfzCFwAAq3+f/7Z/z7EAeAwDhACAIAACAEAACAQA0qEQ/f81DrAA22w"
    "VTxTRkyGBMIZqMhpkGjQDJoNNM1NCJkmQTR6TQGgAANAA0ABoyAkSKmTRpoBoAAAA02oGgANpP1S+4Sm"
    "0TxpSQ5QMsW5InKJtlqFDRosAhpNJKFYCWFocIvihsgBgQMcBAwESjgYnp55akR8fP1dNQSYZQ1Vi8Su"
    "DBdJyG8kJ7Jo71Ft/FylPAEpKMP1vaycBcMXUVyl4l51Welz2nlt1Oq/E29QvIFuMO6fyy21XSPfBXm5"
    "CXppdjP27XYFn/EYLMILlqCjyndaRRn40H28TMLo1heKkBRhRpGY0HG0rjD/F3JFOFCQGfzCFwA==";
