// Table text of code page 21866, _Enc_koi8_u; ascii yes. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_koi8_u[] =
    "c4aeUs4UBAABCWmgzMUFZJlNZepb/rQAAsv3//vKnDgoBEABAACAAAgAAQAAQQAAACAAA0AKGQOAasAC"
    "4DDQyGmTQDENNNGhoww0Mhpk0AxDTTRoaMEiKak9T9UeoyHqHqHpDQaeNUq1AFwykQlg0jcMbDh0zuW/"
    "CFL61GN+DA6hq4aWdYDzZeyc+2VwYsmkv0YioxLY+YFBJoSFjIgOYyw5MTftBmUKjZccSx3JC+GAavoe"
    "TQF5y0oUKJDUHGUQAwevqSSD/I+q3I5NatU0gjm4/ra7Y0CzEj/F3JFOFCQepb/rQ";
