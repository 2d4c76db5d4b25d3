// Table text of code page 10029, _Enc_x_mac_ce; ascii yes. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_x_mac_ce[] =
    "c4aeUs4UBAABCWmgzMUFZJlNZTS0stgAArP////5IA5QAAARDJAAQYooSAABABGBAAMBGCRIgIUFRdC6"
    "wAPszBopNqBtI9QAA09QaABpp6Q09RkGqfpFPFPKAAAAAAAAABKnqaSEyYIZGjACaMAEGaA9Rk9w8EoQ"
    "Z6Jipvgw6QTTWGc8ROaRnoSgh7UC6ikUAhBIk80HJaBz2qieiSIyBRYWFhgQMxYZZDSFGImIH2kR7J5M"
    "Hta+NDEtT4Jrc5ywGvXtpLCCmOcyihc4+80OtAtPZ7YdUZmIEYiJZgiGxrIGTYUxyN3pICKwxe681Aml"
    "lvqjfBByz5fqn49LpgCdCjkeQRfHUm+BI0rHBBFDpUcUBFos7yQdEHZOd2VdFBEUAdxdyRThQkE0tLLY"
    "=";
