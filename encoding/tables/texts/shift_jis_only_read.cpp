// Table text of code page 932, _Enc_shift_jis_only_read; ascii yes; only read. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_shift_jis_only_read[] =
    "c4aeUsz0GAABCWmgzMUFZJlNZa2cgLwACtX////////////r/+f/6fz41rPzOKWZhMtlqMOELSAABVZf"
    "AAtQmFxkUVUegNT2qNNqGamjID1NDNqmjTQ9R6jIeoxNANBpo0DQ2oGgxAaAAAAAAAimETKeU2p6agNq"
    "DIAADQABkAAAAGgADQGgAAANDQAADT0ooKPSaBoaAAaAAGg00AAAAAAABoHqaaAAAAaNAANBIlJMkABp"
    "ppoDTQGQGhoGg0aAAyGEMmgxAA0GIANNNBoPSA0HqeoPFGlQPBwABiIgMXnhVEMAogVECac4aeoguKJJ"
    "AL4hrNgBBMYiJICbENlKRxCnEbqESGXGFDGk09moLlGLelmQLi0Z5kTxCcxIsqO3arJUL3nZrX6pB0sr"
    "HBl4sKX1bpXRfB2M1SvYa0nCkLAf08Hito8KeBmFxQEgoOYYe5OEe/sYBt1ekqUeJstGF8gqV9i5KK1u"
    "03ug+NoW2C3fNjuiv1VIwHeuJkk5YTs0cAAAJbDok88yROYPJfswlEJgxzBwXpKIK8jHgcOQQtMQTnOU"
    "W+PAaTZPPdvZcJ0v6FoZkeMDFxxWTV0bNYh97KnhPMM5amizlHoxEAEAxApMjVVBv23ZoIFEgIKMtY0K"
    "AE415DAIAkiAMGqADDcWdeKYop2zpynJmBbiYmaooeFzFIiEyBDTaYh1kohoSWpGiEpVGlQFExi60mVW"
    "pya6XdcK4EsZhqKkGsErciQosHVJBUbLZ8MUgrXQL4AlNEqrxc2osLPxyimcIWJKWWqOUFZXTkXaxozF"
    "H3ulHD43CdyCVYu0Ss2g0hSipxA3mzhSNOkkiEIbLoLkxFtus8sJBkWcG7bmbSZrOdTYUMrG8inQInsS"
    "GMFROGkNir2SMG0NjaGxNoBExogY5UAiiZk2SMwfxKpsD6X03Bm4XXo+18a7yaP2YGb/eWVGxFI0IUMM"
    "JogaUjBtJtqGL3kMCAiEB+GmIEEAgoiTAQKBCgI3hDFbiYoEQkAUvi4VzNkCEDcNChpTmEDTGk2TmR9o"
    "RDUxkMNCwmMJGiG2hQ20Q0DYEMSCGHgaSP1fc2SXQwgN99YF+WjPMFQMGwUtoymJT6qXQcmmgWJsu/+f"
    "1U/f8pxEV+CvKuPrP/E1W3MlJAopScSBM9lc99QTRCbnTyfKx4svt4EH/F3JFOFCQa2cgLw==";
