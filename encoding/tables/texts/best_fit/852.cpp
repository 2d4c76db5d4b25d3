// Table text of code page 852, _BestFit_852; best fit. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _BestFit_852[] =
    "c4aeUs7wGAABCWmgzMUFZJlNZn5nR4gAC2/////fKvX8fBcMUBCTfYQMgQBEAAQD2nQQBUm2Sf//qO9v"
    "AAjzDTBtEEp6apo9TJp6amQxDEGjQAMI0ZMRk0ANGRgTQ0aNBh6UGmhJppGqfkp+lGjBA2oaPUB6mJke"
    "oaPUAAADRo0GgNAAcAAAAA0AAAAAaDQAAAAMgDQABJqSSnqAAAAGQ0AAAaAAyGjQAG0QAAAMKEUlhIjT"
    "GiquqxYpYoXSQi063QUS+3lIpJJC+wmcuKJntVmtTcFbSqE5OFWS9TKbVNW7y+Y0r/FstU21wmKBBtCi"
    "CeEYSBReDjBrkJiW3hZGTbY7uUdcdmThu1PGZRU4GVl1iSRHLpkm+MwmmQyJzILkPAV2QGZFKCOROFBn"
    "UGPWnu3o7Jr0hWYjo6b100YFGawv4bkKjCoSCoECYjuLahZhfwPoSGFpjbs5WS4rIetXix0fMVU5w28Y"
    "zxSI4UUNwGyyBo9VBkRERFPMYMKMvvHtFAlhAUhIlMa27QunODCGlPCJgPQVLuo1jJ8oN/iMWJ6YxmTB"
    "Qr9KDbMwYWrqFCCSCdO4zEkAEkwkkEYAoKuCqigKsRiimBhQAKiQWDIqilVdaFMICqqIYGUgT+1SjdWb"
    "YS06mPaBZUBEIsFkjGCjGHbYFJFWChf4VEswkjey+N17rxFikFk6CUkWdpJMJhbY0TQvnx/CyCuQAI4B"
    "CIiGqQDV6zCD5ROeSalQ/vS9aTNCb6bQMPqzZUqNb7V/WhAqlWKnYIcFiVVi/4VBA2H2fSdvnMG+9797"
    "Fo33buN7t9LlGS1XZuHTvR/bjTHReu4j9g2Qnm6l1mHLHDsCH+LuSKcKEhPzOjxA=";
