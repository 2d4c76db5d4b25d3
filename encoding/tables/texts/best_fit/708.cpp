// Table text of code page 708, _BestFit_708; best fit. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _BestFit_708[] =
    "c4aeUsxACAABCWmgzMUFZJlNZs1X/BAABBkWE8YAACAEAQEAAAIABoAByIADIFTVKaAa2zJmydRnGyRT"
    "JaSoorYeI42Oc5ojM6mY/xvUR2SD4u5IpwoSFmq/4IA==";
