// Table text of code page 865, _BestFit_865; best fit. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _BestFit_865[] =
    "c4aeUs/QFAABCWmgzMUFZJlNZ3yoa9gACW3////+K/98HvOImBbQW6RYxUzFBKUIUdCiFAG+zXf9Kt8/"
    "AAl1i2gaoiaRop4keU9GptRoMgBoaAGgBo0aAAAANNAAD0QaMbVCJkCJPE1AaGTIaGgGgaGgB6gDQAAA"
    "AAAAAAQaYmJiYCYCYAAAABMAAEwAAmAAAAAmgSakpqQA0AAAAAAAAAAaAAAAAAAADRkpIpBYssym0kDB"
    "S7E4ywXMzLfoGkvARMQAiogRd8WAmFcg2IBYjBMogUX0CkexzSLKMtaViUNLNbTXEwGMBCYwBLwERCnH"
    "SRWi0EYUxEHEhKSMU7UlaTmcFMOOqEufUgVge9JLoqcKKKGMddm+UlmM0eDHZBUpbaHKmqadZRSNhCYS"
    "+Jh/Iz1omGCWTQneE5yEaxx+lloVGMYwAQMkVhTHDCGGJk1Qyo5n7RmGTVsJi8ZTq9m/ZVSg4q6IKCAi"
    "9KUhPLMx0YrV9h29wUpXvuH3+9uvJmGEBSFIX7SWSby2qyl4xxISeIuogKGDzKBxETykmkCpskCUo9Gh"
    "JwgQQMIiIgxRZFARJFSMBERiw9DWOaECLJAVVIg4to/rTFI4SikkAWyFPFT0sCyKxULkpphSXJS/LoWl"
    "yYa6sFwjC2BgYHP5l8QvhBYLBMdWNbIos2aUhZMFhLDFRij1qkrL1CENa27XVrnt4kXIOwSWZOOymSKd"
    "FMyklmSuzqs/0riQl8hCECMJCdNn0eCIRRAJQyVDxIBexCXKxuB0oSTlt/15RzBif32uCn5osWKRv6nw"
    "Qs3mhAuQ/CBa9ULN7Z1cwHPGXOkHWmOVQHdoMItUzaqPy4dCfNeTqKnWhTaWgvNSftOz5zJ6Dp9dD/i7"
    "kinChIb5UNew=";
