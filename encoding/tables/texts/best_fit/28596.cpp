// Table text of code page 28596, _BestFit_28596; best fit. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _BestFit_28596[] =
    "c4aeUs8gFAABCWmgzMUFZJlNZSLFKYAACfH+X/36BhewAAKMQAABAAQAgQCQAYOeADv1AATuwATkiCU0"
    "ghNGUaAwgAAGhk2mSGAAAAA0AAAAACTVE1T0jIAaNAD1AABoAMAKICKwWXJUhJdfSFRli80KiyBkSWzM"
    "0cdIEkMRYlGNGl23Te2ssACoY82ILIkiCqzqjM8TQuSgKaeaUI2o4H4q5khceOEKVkeqeyijnTDMHYpa"
    "crmOJiz9MtMuEm5blecHBgdMM7ZKpOLh1qrFspbLfcteSljSP5hIsiJIBEEiwWJCLJIKiMkARkFIsQQg"
    "pBVkWdyQIUZHBpgmDD6QakMMx57d39q1tr34fd1xO9yBAdCqdtiCCinEBJBegIRdiCj6UwmmLq7duQrv"
    "s3YYSs0Yb8Wb/F3JFOFCQSLFKYA==";
