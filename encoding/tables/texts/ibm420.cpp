// Table text of code page 20420, _Enc_IBM420; ascii no. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_IBM420[] =
    "c4aeUs+oCAABCWmgzMUFZJlNZubxI3gABXf3///73MmMyVAASgAAIBkBkAIAJARAAQCAgVEJN6/eGsAE"
    "YlQ01Ik02k0yYRkxGJhHpkCZPU9TNTAeptTQOaZGQyYIaMJgjTRoxA0yZGAAIJCpMhAAANAAAaAAeoAN"
    "DRtUQoYA2JDY2RiUaQKqKMQNlJI4SJtDGTOhQ1isLFqBZYUtIs02qFnullxhgNCKmrbOHZxDwsJYwxCz"
    "NGI+2GxRDNYE8ogYfQ1T4FEXqVGUQWjfKOEAOlREP9Rjb1tceeZdueyY+Q7x3Mb34lDKS6rQUkNL/fag"
    "Pz4xw15UnWXJplRNxVYERC82kB1sSFXdu3sHqrgRgHS0T6tirL0XLU9qlULK5a4HPOaABwIQcygYQx5Q"
    "jIDxRK5DD1IHR+7QX2IvtIw2L/F3JFOFCQubxI3g=";
