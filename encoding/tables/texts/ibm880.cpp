// Table text of code page 20880, _Enc_IBM880; ascii no. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_IBM880[] =
    "c4aeUswIDAABCWmgzMUFZJlNZDGAeAAABY3///v/jpmsy3YAeAAQQIQACUCAAkVBEEACEMCB4A8Xp9xe"
    "wAPiQxiEyAAA0aDQAaaAANAGEZMT1Mhw0MmmhpkaGmRkGRkaGQGJoyaAMmRiGEiiU00bUBp6gGgAPUAA"
    "AAAADI8pM4ISRFoQ2AIg1bNJK4aAka27mdnjIio20FRhdNKDXUwmxKsUH41nyQrsdeAgssoYHgyX7jEo"
    "tQhuQ6GFZrLc7mZbnrLEpn5o5jRfsM5gKJqeFZdAZrInRcnTxlEewENZXBN5xiIOA5HDpqBSbZFsXXUV"
    "6KIh3ndSjxdwFgVA/WZ8FeQcUBrHpmPJVDnmDPRfZ66y0+PE0SSJWWhAS1qIoLVEAKGgVLEj3YUtIqtC"
    "CliP8XckU4UJAMYB4AA==";
