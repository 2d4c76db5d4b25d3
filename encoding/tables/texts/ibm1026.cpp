// Table text of code page 1026, _Enc_IBM1026; ascii no. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_IBM1026[] =
    "c4aeUswIDAABCWmgzMUFZJlNZT37A2QABV////2PrI+W2VIrUAAIIACIPSqQMhACABgggpCB0Fhf594K"
    "wANkRCQmRkATGk2kxGmEwA1NqaDATT0T00D0E00ONDQNGmRpo0yAxMEAANAaA0yAwJkCRRU0A0DQGjRo"
    "DEADIGgaAA0ZAZPUbTBICW0JYsZUVKGhBBzmhBZ4sT8wCvciwm2ApeRAP1hoxgfw0K29OJAVd22Wmlmz"
    "YBQ5w2OrZa0QBggT4MC2QCr22PpPfPehZKh0kuR1R6+jnI2RVnzcaMjnq6XjW0GuSD6+MvJBEK3CFpjf"
    "p+7XUoJLsJsKI6GWTZG1bWc44VJl8/iRTYZX7c093VZDfYMGKk+U5rjTebCgB4D7dp0BsREQdIIglRMO"
    "SKSJGCkYi00gkaEI/xdyRThQkE9+wNkA=";
