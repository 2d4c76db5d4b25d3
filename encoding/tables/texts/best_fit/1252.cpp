// Table text of code page 1252, _BestFit_1252; best fit. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _BestFit_1252[] =
    "c4aeUs+wGAABCWmgzMUFZJlNZvNJcxgAC6X/////eZFkGIaIkhWZZITdwfyfABQRG1kDI0CWxRH1Iui/"
    "AAhzCAYdpo0DQAAAAAAAAAAAAAAANNGjINU8k0Mk1PU9Q0yNGgaD1NAeoMm1NAAAAAAAAABwAA0ADQBo"
    "AADRiAAaAAAAABoAJNSSmmo000GgaBoAAAADRkNANDQ0AAAaA0MkuYFyEpQY36hh4EJJ0GEsmCzGdm3k"
    "MCRYECaJDGdW3Xdbq3Tl8yt3j3791OLcYhdkbHItzuLLVDC06wAwJRAAHjPvzl2SM7NV8MgwFmqmckEt"
    "oBois8I2Dz5FCJsKfduIXcBsHx4uO4tJCYi8RVpnzjlMyEWmpPifTWOTIrkqEuAUpoWg1mwwGAICKMxK"
    "Sy8qJUDZOF21FjRo9LYkWFF55M0nigeMMxnduGzJMNkH10pLSQcaq1kyyVmgOvkhd/0XZDpLwALIUhVV"
    "fatRK1VrSku+HSvaVwclwXe5dtNmZV//ayCikFIqrILCSQRgLIMREiyDAFAgqigIKsWKqxQCKSKZXvqF"
    "lEI5ehaWj/qqRYLFBQUFgoCgsPI0xQERYCrfrh2pAILBw6gUimYmuYWYEUxEpgGKwvJJCzJJTCnHZ230"
    "szdDxbDTv28+b0cnjZzhZ3l9GFMDPr7loVh0FC2ophcwz2zBQutVwoIQQIAHi9zG2r/I3IRWOV7nRB+z"
    "VUfFCXI2XlQIKGO2/ewRiI31SQQQHAJfxdyRThQkLzSXMYA==";
