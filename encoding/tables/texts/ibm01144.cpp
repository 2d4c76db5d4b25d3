// Table text of code page 1144, _Enc_IBM01144; ascii no. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_IBM01144[] =
    "c4aeUswIDAABCWmgzMUFZJlNZVbeq6AABWX//92fjKuE2VoI3ASIIBqBCwiYRgCgEmqRiZDhYAhf598K"
    "wANkRCRTNNBGmhkYj0amnqYmBGAgGQyaep6mbVPIYTT0gcaGTTTJoAGCANBk0AAyaAAAGTIBoJFJRoAA"
    "ANAAZGhkDRoA0AA0BkZD1F44AkBE0gIMSQbe7aWZSr0rUYCur2AVmGPFAjaVGEBfjyWik/thWj6ok7Eg"
    "GMzN3+zikFFhI8yACsy6vqlqVS+k1hI3CsfxvNF1pGRZIFpN1w65IMgNp03E7+6UBQV6Um1Z7URGSXl9"
    "8NllBgn4SR9HAu2n/B/rPFURKsufWI9YbhF2wWCQlbJuhNbVgR27joe5o9tx/S69B7QI/sOPCrM1iIiB"
    "iAICOW0II2gCNgH8wAP8XckU4UJBVt6ro";
