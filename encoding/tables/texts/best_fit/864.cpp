// Table text of code page 864, _BestFit_864; best fit. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _BestFit_864[] =
    "c4aeUs5AAAABCWmgzMUFZJlNZ0EFYzAAANnf3/8COIAABQAEEAIkAAcABAAABAIAEABAECAFSD6AAaiJ"
    "6QT1MhPKGjEbUB6n6oQ0UDQAABkAAA0ByPc4jMgAhx6ShJGzvyy2TOtKQPTApoQ5mYni+MGAeAJANsXK"
    "8AZANBkwEasQnBQLUaqEpVOzjqGF4BEvpYfbPaqyWD4s/i7kinChIaCCsZgA=";
