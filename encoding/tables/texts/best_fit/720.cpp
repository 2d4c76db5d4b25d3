// Table text of code page 720, _BestFit_720; best fit. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _BestFit_720[] =
    "c4aeUs4gDAABCWmgzMUFZJlNZQLIcMgABwUWG8YIACAEAQEAAAICAACGgAHBTAAAhSghhqQCkApbyJip"
    "QUJExEFFBVKBtJiISopZmExcYoJxIoalFT2X7GvO9nXuv4u5IpwoSCBZDhkA=";
