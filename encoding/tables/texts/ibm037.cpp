// Table text of code page 37, _Enc_IBM037; ascii no. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_IBM037[] =
    "c4aeUswIDAABCWmgzMUFZJlNZNWTxtgABWH/f5mZrsmM2VoISCCIIAaoCQiQAwAwgYiQwfgpX+feGsAD"
    "ZIVT0m0nqAaADTQ0AGhoDQMgaDE9TTCGhzCaMjQ0MhhGhkNNGgAxGTIBhAMAkVKNNMgAANGnpDTIADTQ"
    "DQZGCNNPR6o2mCQhsQIj5caNliUiYxsBZWfEi+zaeIzCMBjRI9ti/bER/MO5uWRI1mR9HX4XqpjilmyE"
    "CQQKqc4JOiaxzxnl0uQb6MUcznPCzMlASQbIaKAk8TQQQn4xOzmqIEdkG5HewJcIFaafcCzbB42PBTQb"
    "1RBct9xEbTL8IYYrs1ungvR2eybCnFNhC/iyfknwSEo6Rgzjhu4ABYWCSUGkCP8XckU4UJA1ZPG2A";
