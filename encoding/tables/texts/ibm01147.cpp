// Table text of code page 1147, _Enc_IBM01147; ascii no. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_IBM01147[] =
    "c4aeUswIDAABCWmgzMUFZJlNZhHlHWwABV///92frIuk+XoIWkCIIADIGQiQBkCAA2iBqZDhaAif59xK"
    "wANm2FU0GjQ0AAxDQAABpiaAaAANigNAKpoDagBkAaAaYgAyAAAGTQ0NGmT1AJFKT1NGgDQADIAAABoA"
    "A0aAAzKeknuAAgmMEoNAI3NmpOPSJK1GAru+gEbCjMgStJjF/PJpQR6uRh1NOaQI2Y7Myf28pNFEcAwA"
    "cldtLnkhqRhOR8bV4xlXiiCmMCxH9eWdqCK2OyrrCVWRUoTghR2LC6/Vy9TfwDKrZjLEgDvYsO8z10AP"
    "kuOgVzHwCztEAFc8lCCSMiyp7UmBQqYv5yTpa8LSvVmVvqtWI4tsdNkChhVUkiRpCVFgBK0gJWgK7QAf"
    "4u5IpwoSEI8o62A==";
