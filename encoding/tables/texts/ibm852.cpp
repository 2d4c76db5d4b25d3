// Table text of code page 852, _Enc_ibm852; ascii yes. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_ibm852[] =
    "c4aeUs4UBAABCWmgzMUFZJlNZuwxqigAApf+7//P1YXmACCAZLAgKMQgCABAQQoIi4MpTClq/zrAA8TC"
    "JpQyaGjRk0BoA0AaAPUNNAyBpkeoNT1Mike1JgTJowjAE0aYgGCBiDJppholGgAAGgAAAAAAADT1PKQL"
    "Ipz3xRgILCChkFRIxKB7ZSNUPc1S0hrCSCVVUDShYSASINaSyBDyHFb5RAFSQgVFmmDnI5VQEEkFxVHR"
    "X8L/afn6a/rqs8AuEacOulN1P59n5sX+olBEW2SjaMwnjQPvKAGF/AifCQAAwkQvGL1O1Ct2Qg/K+jQH"
    "UIo07zS9naFOvke2UF3HOnCc+qsQ+erDHXdvspEO68xFxCFkQS9m0E6nBLaQ19QAJBkI+hBKMkrQAHJg"
    "goxCMiBKMEQX/F3JFOFCQuwxqig==";
