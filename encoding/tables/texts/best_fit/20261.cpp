// Table text of code page 20261, _BestFit_20261; best fit. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _BestFit_20261[] =
    "c4aeUs2QAAABCWmgzMUFZJlNZ9ryQmgAAJ3fz7oAEAMIAAIAAAQEABGABAlAABBAQAEAAAtugAFRCaTQ"
    "yNDTRgaT1Bpko0aGgAABJDCiaLojCCAgWpIeK0nYaumFXqkR8bVwcpMGCuzL2RAayEGqGdbruhABpv8n"
    "4u5IpwoSHteSE0A==";
