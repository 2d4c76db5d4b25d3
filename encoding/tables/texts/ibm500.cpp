// Table text of code page 500, _Enc_IBM500; ascii no. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_IBM500[] =
    "c4aeUswIDAABCWmgzMUFZJlNZks3h1wABWv//52fromE2VoISCCIIISICUiQAgQAADCBiJDB8Alf5946"
    "wANkhUaE0yAAaABo0ADQ00A0BozRNommhzCaMjQ0MhhGhkNNGgAxGTIBhAMAkUpGTTRkAaNNNNPUAAaZ"
    "NGgyGmgAyZNo2mgEhtCQRc0qJlzHRkttAszRgi81SkQMIwGNF97DFduQP5h2McogGtpQIqnT3ftgli68"
    "gUrhAmSC1w6lMo4+ytXvYdOYGXMfntGrDsvFkJ3HGw6pEIjS80oIwyALi6rRxnwHLQyWySBZD2DyMVM0"
    "TEUpFAMDqQzxQGtknvLlJP3qPzUkx7cJcd+Rgu4LFsskk5Bgzfj1f8AWFoACNiSDELuSKcKEhJZvDrg="
    "=";
