// Table text of code page 1047, _Enc_IBM01047; ascii no. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_IBM01047[] =
    "c4aeUswIDAABCWmgzMUFZJlNZp4nMfAABWX/f52drsiM2XoISCCIIAaICQiQA0AwgYyQwfAJ3+dcmsAD"
    "ZIVTZT0IAAAyAAA0aaBpkBoabRNGQ0OGhk00NMjQ0yMgyMjQyAxNGTQBkyMQwkVKaPUaBoNBoxGagGg0"
    "DRoaAGgAbJlG0xJCGwBEXBDEyPBRPY2AZrAoMUbVWdASjAYxQ1YBXvOAjYdDhGKk63DydX9zmGKEsnBA"
    "Cpu5iZU6anepxDSOv48lotVxFI8aNYIEAttRmS3yDrSRBjebZ7aYBRnkCmRVjP9YN40lwCW9kEeURdsV"
    "6mEjwauEy28O6VBcW9bcv7LFT2cW/PmvTqUkcniSGEWRgyxNiX0ApWhJKZoBH+LuSKcKEhTxOY+A=";
