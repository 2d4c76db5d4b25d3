// Table text of code page 10017, _Enc_x_mac_ukrainian; ascii yes. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_x_mac_ukrainian[] =
    "c4aeUs4UBAABCWmgzMUFZJlNZHxIvxgAAs3/3/r9PfRQQIAQgAAAEIACCABAAAAhDAACxACAnQ2AqoAC"
    "UhKSnpqZAHqD1GhoZA0A2oaeoGIigAAAAAAAaPUSMGJBMEGQEAiXa04AnO0cabWqsWSoUWAf3wWGvLsu"
    "RjE8KKVUKEERw2HciNC3VS5C8D1trt02TEueaDZ2e9QIicVBQPhIfsfWMTzL6riSSWqDmD1IhtQNJH8h"
    "MgPH3y59TfJSiBLYwEkDqQA/i7kinChID4kX4wA==";
