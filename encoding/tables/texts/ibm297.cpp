// Table text of code page 20297, _Enc_IBM297; ascii no. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_IBM297[] =
    "c4aeUswIDAABCWmgzMUFZJlNZo11K5AABWX//52frIm0+XoIWkCIIADIGQiQBkCAA2CBqJDhaAif59xK"
    "wANkhUIaeiAANAAAAyaANAAZNNGNRhAcDQaZDTRoYQMhoYI0NMmjQDIMQABoJFKTTQ0AADQAAAAA0ADR"
    "oAHtCjaYkhDYAjQ3dqtZlexSpjAV1fQCRhlUIEzSYxSvL44I9HFh1NOkQJGYzM687apSFROFh5LcrKaE"
    "dQxssN9B0/Z1sGNlprEANOm+xEHxm8RQxra/pHzWqBCkiquL60+6FsA38MJipIFkyBmKrKoFGhVw+Bd1"
    "nJw4Fz2il8BIhwpHRwMivi/tW0mnhTnkoR/IxJaO4OsyBk4cqSRM0kkp2gEf4u5IpwoSFGupXIA==";
