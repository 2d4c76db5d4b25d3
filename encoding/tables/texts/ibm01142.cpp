// Table text of code page 1142, _Enc_IBM01142; ascii no. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_IBM01142[] =
    "c4aeUswIDAABCWmgzMUFZJlNZZuP89QABV3//92fjIuE+VgIyACAIACAKSCRmggAACiIj5ShcAhf//8K"
    "wANkhUajTTTTQAADRo0AADQABk0wj0BAc0xGRk0yaAZDRkMmQAAAyNMjQMIZA2lJRo0aB6gAAGgAHpAA"
    "AaADQ9E3qkrgkCE2hKRgBt5tEq2gXKYCvsCAp2ZckCymDTFYeY5Wir+QnaVZ8tGAslmfNUrPomoW6WjB"
    "TGhBjHAdpYX63kkKSZrcEAYslfMwrTcc+ljZ0a7IgoOkjOxxL+yPySqYiBwGYeFHouSNObUAYymtQLKP"
    "UC8TC151v1Pz5YcppFwk/4I71r1KUacFSj2yT/UvcsRWop03TccauAKwwAoNISi0IssRFoEl/i7kinCh"
    "IM3H+eoA=";
