// Table text of code page 20261, _Enc_x_cp20261_only_read; ascii no; only read. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_x_cp20261_only_read[] =
    "c4aeUs58CAABCWmgzMUFZJlNZd+mP5gABIXS1/+AgAGAAACAQQAABAUAAQHgAH/6wAPtZQlNQEjyg0Mj"
    "1DQNqDT1U9IBGEYTQwAJEkExNNGgAepk9REtlQEDL2gVrsuzlyQYiBVoFnUYEiCDm6Z0hMIGCkZAgSYE"
    "vMVMkHIDJoo3HgxAoVCA9mhAiwatYGrka3F4pFe/Cdk6dHwrIz1Ttjr0rGaLuIqaElA1QwNohhqlnBPg"
    "czLGJIQSyNr74Px3RwAlTSDQQkHbNwD00oO7WTCo4sELLSPOkfZwIFfQH+Z2HR14+juItGnwe0ykXWv/"
    "F3JFOFCQd+mP5gA==";
