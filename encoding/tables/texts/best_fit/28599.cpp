// Table text of code page 28599, _BestFit_28599; best fit. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _BestFit_28599[] =
    "c4aeUs5gEAABCWmgzMUFZJlNZGGl8bAAB73+X/36DhMwAAKIEAABAAQAgQAQAYOdABv1AATuwAPqINNF"
    "NE0aZANNAAABiaMhgABoAAyaAAANANlRNSDENMjRhAaGgAyAkoyKXMqQmBKczCASjZpkkAct+lZc28qq"
    "QLznmV0kMbpSkJgMawTSUQYokRESEogx4ZsCiPXwZdGa9klsebDZkFILIpCrLJxMNGetVFuWc96u50Wn"
    "9fFYwAIjFQkUkgrFkAUWCoyEVQU8WASUYPW0Opg7ncfBCAIOXz7T6nE9NLGpmDEgv0KAzyhQURxCmooA"
    "ryoGL3Slny+UFVlVbov1bXJq7LUv8XckU4UJAYaXxsA==";
