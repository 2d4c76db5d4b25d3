// Table text of code page 20280, _Enc_IBM280; ascii no. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_IBM280[] =
    "c4aeUswIDAABCWmgzMUFZJlNZBODCLwABWv//52frKmU2VoI3ASIIBqBCwiYRgCgEmKRiJDhYAhf598K"
    "wANmzEREGgAAAAAAAAAAAD1AxNDahiZGgADTQA000DQaNGmgABoNAB6jI9TIMkonpGEaBgEwCYRkYAEY"
    "EYAJggyMiIUIAJCIQSB30qrHmGdYlkEABa9igNyAP1yhwQm4pQP6kFCM6b0A3cL64pyhQHcgi+mGysLq"
    "ALV0Awx0uXmMbV54pHWWF5wQZwPgOiyBYXPcAwiJqvsZIkLUVEL5VQBApCkKIjwjILljkjbLmreFfce8"
    "bXUYBEYvMOKRI5xOPU2iNKmicRNV3GdwpfXcTkfeWJlMWlQNR9lPS+qpIDL+MNCe+/CEIQJjEAAAAUZJ"
    "IH+LuSKcKEgCcGEXg";
