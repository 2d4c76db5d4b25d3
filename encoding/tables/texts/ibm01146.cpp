// Table text of code page 1146, _Enc_IBM01146; ascii no. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_IBM01146[] =
    "c4aeUswIDAABCWmgzMUFZJlNZ40LbCwABVv/f92ZjsvM21oISCCKIACoCQiQAgA4oYmRw2goX/feGsAD"
    "ZENQk2oGkaZMmEwEwjEwEDRgRgmxNT1PT1ND1DjQ0DRpkaaNMgMTBAADQGgNMgMCZAkUpDEyBoGg0NDI"
    "AGQYgAZDCDIB6iY4JCENiUZggKUigyzfIlMbAWJjwR9NT40CIYDGj8c9i+bUD7Yc7ccgjNZq8VTq9+Yk"
    "Cjj2nGF8oyY9Smr52S3VTLdW54s5ckOqsXDC1NbZ3OnJb4NYGXTnZTr3+kB6ZsfVnFiOuUQZewL6d7Ex"
    "8GE7VPGguoja42wk7RYE/S+8uUhuj++sFM03NZLjxDSPwICotgoBRY+E00AAE4lICEJxKICJglEwX8wE"
    "H+LuSKcKEhxoW2Fg=";
