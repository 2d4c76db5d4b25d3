// Table text of code page 20284, _Enc_IBM284; ascii no. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_IBM284[] =
    "c4aeUswIDAABCWmgzMUFZJlNZ+l25SAABWX//52ZromE2VoISECIIaC4SWiAAgYAADCggJDDeAxf/9wK"
    "wANkhhPU9E0AAA00AANAAAyGgZPSYZIHNGjQ0wgGmBNNAGQ0MQBoxGhgjIAJFJQ0aAADTI9QAGQ0NGho"
    "ANAAbCjaYkhDYAiPgoRst3aKLbQLCx4IkapxQJhgMaJnUYrluBKwtMdAgGdlQI6/L1flexRFenEi8KKT"
    "6qAErq7oOmzCDDEj/Dtzh7r0tKm2xDCWkQWV0IfywCKkZ0uNKQzw8cXJdM1YwpdDsP2i0cIS4LiNcAR3"
    "nGRSTmDID4fht+bgl/Y/exeT71WLAnuRSdpIRHCMGbc+nKAKZiSSnaAR/i7kinChIfS7cpAA=";
