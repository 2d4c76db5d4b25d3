// Table text of code page 10001, _Enc_x_mac_japanese, applied over 932; ascii yes. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_x_mac_japanese[] =
    "c4aeUs2ABAABCWmgzMUFZJlNZN161YAAATP/9yAIlQL2JOSh///iAf///7wPBj4//7t/8hAIDwHhDMAD"
    "TaGIAACYAABMmEYAAACYmTCZGJiGATNBoNAHCYmmgMjTQ/1U009EDTTTEPFDE9Q0bTU9lTQZoj0IbUxp"
    "qaaZMNRpkaDTSSQaA0AGQGgDINGgyAAAaAAaPUGgDIAAeo2/fLEx1yKVFNh5osXWbPacBJRfDxccOJF6"
    "OmObIO6jxa48Orc24L32AAAAAAA8Q+uT2EEEEVqtflFJMM5kyqpaivpUTJoJKKjNQNGcLRQRFk6UaM22"
    "2294JUjm51UKqgKQe1ZJZ0qFV8xhDDJKSpe40a/yT+/q7pv0HH45/XX87wJfFonw+WLHGiLWsXIFm1a9"
    "m0PcIIIJADBBAACAQeqJAK6rRCMAJREdNF89hoL6ERcv2od4qztqxhI9jy+6/BdfK/TFcUAKSSAJy22G"
    "gKL7Rz9/nKEf4u5IpwoSBuvWrAA==";
