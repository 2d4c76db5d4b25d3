// Table text of code page 20866, _BestFit_20866; best fit. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _BestFit_20866[] =
    "c4aeUsygEAABCWmgzMUFZJlNZEZB7NQABrX23//KIl06RCAAgACkBAMAAggEQCMYGOH3IEtuwAVtmEGm"
    "kTQmgMTSZNMaAAEZGmAaDTU1J5RkAA000AAABoAASaokTEAAGgAD1AZANBpogBQVIUJIXrKlSwzigXRJ"
    "CyX7xQsbontAUgoTCyzWRERHOeDGhQVBKF5SFxTGwslI4IXWIBcjlnuQQiSSWau66/UMyvPNCBAISywq"
    "/ruN90r8+Jb8CgxKSiAAkIixKAIA1UU3S9NGGYb0Lp6Tmtw1srpkJmEFAUiCRVFJwc1SQqwkUgJjsoX2"
    "ABYkiyI9iUYKKDcx1nShlSXBgsVRQeOhCBTFTQ66SWsq2uugd2HqrIAYGExJNHLy+P77GbNgMmQuW0Kl"
    "QpfVORRgaoUFEeIHUoA0gKWd+jHFAvTzFT8Rv+O7/miirFDRbA9i7kinChICMg9mo";
