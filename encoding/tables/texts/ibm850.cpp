// Table text of code page 850, _Enc_ibm850; ascii yes. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_ibm850[] =
    "c4aeUs4UBAABCWmgzMUFZJlNZ0kQ1bQAAoH/f/3/0aYCAGAMbRSwAMAgCAAIARgVmJYCQFgCKO73vsAD"
    "bZhU1AxNNB6jTRoDQAAA0eo9Q2owTTQzUIEk0DQAGgaAAAAAAaA0D0gxSU2U9QYE0NBiYI0xGmIyGmEY"
    "ANT09TmRfcADqADr7CEgWJiLEgg4g8iD4p5EV0BCWQKkD4zCM7MQQZgRAIoIBNDz1pg0EuiJOqEj2Sk3"
    "Qks8xkloxQwQ9oOp9TMT48V1r02YQZgaDiofqnkSBTYmWWioDStjJFrfTLXGRYiIT2FFXXXxuDjFeX4+"
    "BMgOBoCClEZfdaTWbROh6uXQ2Q6Q1GJz2cHEW7WEQIkdldgEKH+iTvRgoxXCTCgWoAR0SS3gLuSKcKEh"
    "pIhq2gA==";
