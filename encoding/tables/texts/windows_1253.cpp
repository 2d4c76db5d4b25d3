// Table text of code page 1253, _Enc_windows_1253; ascii yes. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_windows_1253[] =
    "c4aeUs4UBAABCWmgzMUFZJlNZ8CBzOQAAun3n/PFhZABCIAACACAAEwAgAABAAQACgBICUAAgAJIMijQ"
    "AAPUAbUEmpUPUaAGmmQALKqSCkJmSUMRkVSCjVVGFrW1ZysqLnJMXxtrYwwQkD4w+sFMXC+i+6SAhkL1"
    "gsgZAJSC0V1uUMm6TwUnqKj5H+98jAPRjINkL/i7kinChIeBA5nI=";
