// Table text of code page 1255, _Enc_windows_1255; ascii yes. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_windows_1255[] =
    "c4aeUs4UBAABCWmgzMUFZJlNZ2rT/kQAAuf3n/zNhdEJABABAACAIQwAgAABIACAElAAIQBAgAJINEIB"
    "oAGmgGTIJNUUDQGhoA0ACyykkqhBQiimNogRQcRSxsSjXtfUMNtMaW3567nqw1MCBvYH1uZRkuckmZgI"
    "BxggQYZDdQJnz5ABF60iGlCQ1qODK4xhFF/iFGOzDlvd5CWJwigi/F3JFOFCQ2rT/kQ==";
