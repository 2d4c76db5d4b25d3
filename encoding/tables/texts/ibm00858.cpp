// Table text of code page 858, _Enc_IBM00858; ascii yes. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_IBM00858[] =
    "c4aeUs4UBAABCWmgzMUFZJlNZ0T5QwAAAn//////0aYCACAEbRSwAMAgCAAIACgBGBWYlgIAGAIobve+"
    "wANtmGNQMT1NDRo0aNNNAAABp6RphNPTUyNpCBFGINDIAyAGgAAAAAA0CU1KTaTABMAgZDE0YAExDQGE"
    "M1I6aJAAeQD0RwyQzk5M5IRARCQNbUJMeKAF4QQTMIypjbIEoMCIBFJAJofedMOg6qRO6oiPRJm6H9wQ"
    "+2kNEskUjkTh1vZ5jhH7IOVIAQVYbIPqcCR70uZ12B49oK7TZd8aL90TaraADmbChIYxDFMfIwy/WdMN"
    "M1gMTLKxxXRVGgaVSLtflvMWUEGPd1cjP/rmP5MxT8HA+gCim49fDPJgswcUwSkAD/+LuSKcKEhonyhg"
    "A";
