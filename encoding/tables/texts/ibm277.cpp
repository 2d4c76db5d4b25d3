// Table text of code page 20277, _Enc_IBM277; ascii no. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_IBM277[] =
    "c4aeUswIDAABCWmgzMUFZJlNZmPLM2QABWH//52fjIuE+VgIyACBIACAKQCRmggAAKCIj5ShcAhf//8K"
    "wALkio1GmgyAAGgA0ABoDQDQNMyTExGhxkwTQyGRkZNDQBoMjCAaDRpkMQ0AG0pKaPUNGhkADQDIAPUA"
    "A0GhoaNDT1NqNjSBCbQkLR3NCMrzgvkwFhUYCtsz4oFxMGmKV02Ff7hbaVp4vPexCzGaXBJafVJGlpxq"
    "SnBb7BX0sDSweNdJOq0YAMaUNBhWo23+hEId7TK4dThZDkhcfsobqYlyiQG40jkliwAntKgGayoscZBP"
    "EF4oH4qi/E6+WJgNeWyz/rNkTmifNqwU+bwil+sTxWQpwpU3rObK/gBXGIAmYJC/xdyRThQkJjyzNkA="
    "=";
