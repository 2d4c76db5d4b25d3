// Table text of code page 20423, _Enc_IBM423; ascii no. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_IBM423[] =
    "c4aeUs+0CAABCWmgzMUFZJlNZfAS/SQABXv/n/+/jImMyVAAAEBAAIAACxCCAhQIgIFIGJen3EbAA8Ri"
    "NJJkaBoBppoyGgAGgxA0zTUGakVPapoZMIaGgaNNNA0AZNBiGGkppoZGhgRpoBowmRiYEAD1AZACbYJN"
    "qQ21AmoG1AmDgUAgGwTdgcCqnCVQkE6Qkp015KVKpNKQ2gSYMpOeLYftSBPaASSrkDasShq3uwmtA0+s"
    "ggCnMqDIFEc5iYwHTz3EOmPu+2sAu0wsEtwRR8sCaiJmrqVxu1/vmxLBF9Ph0QITcgRb8wrdXkPWp+7i"
    "76ip0MxMRq7OqjIAiLaYAAbMF710VhaDKFVH2SKc5WPipEwSapU0q7iFUPtBc9oEAcwIAHMAcxAiH8Xc"
    "kU4UJB8BL9JA=";
