// Table text of code page 10007, _Enc_x_mac_cyrillic; ascii yes. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_x_mac_cyrillic[] =
    "c4aeUs4UBAABCWmgzMUFZJlNZiQQRkQAAs3+//r9PaRQQAAQgAAAEIACCAAAIQwAEAAAxAEBjQ2IqoAC"
    "UhkqegnqNDQepiMjTTQaHpqD0gxJqjQAAGgAAD1B6Ei7Egl06ggGCJg2CANlCZ+sJgtrskK6LRsUBSyp"
    "cEYQ4kFqcUBBLBnfcIBQpnqeYZgGq+LHSGVVdL4Za4nbwCTahDrBe9Yw13YwW0OUY52/pqohehI2IAWE"
    "P6/Ixix+fZScUKjcxkid6IFIu5IpwoSESCCMi";
