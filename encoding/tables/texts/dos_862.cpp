// Table text of code page 862, _Enc_DOS_862; ascii yes. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_DOS_862[] =
    "c4aeUs4UBAABCWmgzMUFZJlNZFm/fAAAAp3+///90eIDAAAQIDQQIMAASAApAUAsAgIAAkACCM6u/sAD"
    "ZIQmkmanppAAaMhoAADQDxTEOYACZMACYTBMIYAjAA00IpGnhJ6jTTNCGQBkaYIxGnpPSUooREnIERCM"
    "pZ16Z3cQlUc1hn5IMQS5ES9Hl6uHpmZhY9GtlrahbiopAkIWlbRciHLFg5AWdUQQ5G79nzhHEg4LoJRH"
    "a2o97RMZBrGGVkFJ1LSOFsCYbJDPMmMRAAl4ELFwKo2yKQ7iISVDrXI4V14Q/OXJ0+TXp/Saz4GjQokk"
    "56Zr8UGs7+2uZ6Du2qNxo79rD3IqLngUA3/y1Zuur/giVlEoKBEr4i7kinChICzfvgAA=";
