// Table text of code page 708, _Enc_ASMO_708; ascii yes. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_ASMO_708[] =
    "c4aeUs4UBAABCWmgzMUFZJlNZ6MFgbQAAr/e///unASI6AAUIAGAAAggAEhChCAAAgDkNBASGQ7AAuSI"
    "EmmRGgAaAaAA0xo9FDAADQABk0AAAaAYkjUZPUGjQAAA0AA0SKIZEvRAOlAEPCQqMLL3SxEpOZgZU+SO"
    "FiEbnloTM4AMheQeoRwcRlQAIoQkV1HJinoip+md2bzFBr8bltIO29FPlMLJ8Pj0+SgBERyysSIVSGFU"
    "eRk1JWQaAR0EfvjcoO97rCpY27TBxUsrrcsEJIGIwIZySlgJ0RMqUQR/F3JFOFCQ6MFgbQA==";
