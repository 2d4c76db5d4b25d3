// Table text of code page 1143, _Enc_IBM01143; ascii no. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_IBM01143[] =
    "c4aeUswIDAABCWmgzMUFZJlNZNTUioAABV3//92fjMuM/VgIYACAIACYK2yQGkhgADiAmZTRWIlf994K"
    "wANkRBTUBqZDRgBNAMRpppgATENGRkejT0U2mmTSfqhxoZNNMmgAYIA0GTQADJoAAAZMgGgkkpDE0yaY"
    "gBkaYjIDQBoZAZMg0NGIBphFZwJAPGSScwgRwyPDFLGGljDAKJkuC4yfM8ZBeGFdaTE5vTCD1b/YPy44"
    "7oDkSGNXnq/vUUMT4fhpGC4QB8qsKU9WDHNW6XICXDy7LjXM4+8iCup0STlsNacfC4wdt0jNxWz69cnR"
    "ATxkyC7z4XOw9dk2U1I4K6V1+qw/dGSOSl7UbA1V0qs8CyH/6XG1o3VN7PYt5poppJoaM3ujAYB7kRmx"
    "ERDeQgIi7IEBfYEttkIvsABgF3JFOFCQNTUioAA==";
