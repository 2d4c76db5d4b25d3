// Table text of code page 1257, _Enc_windows_1257; ascii yes. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_windows_1257[] =
    "c4aeUs4UBAABCWmgzMUFZJlNZlfKmEAAAq/3v//F4NkAQBEAEICAAMwAgAEAAgQAhADnbvxzIUDAAuKI"
    "UATJiYAjCaYIwQyGZTBgAAAAAAAAAAGJDVBqaDTTEYCMJoZNMI09PSJFAMkEghBBkZM8GdjZCFh5DJJn"
    "SrtWhkiIdgQxo0WhKhPXg4koyjASaDxItLwQdEk0JrbEG/dalFU8+fHpub+4YY8PvbnHaEAggC7MkUcr"
    "NdBAaO74jOYIXoCAxBBUpp+ySDa2PrkTzmmFYdilIgFnAhxTp8Yjphn9chccGlAf6JBqVS1XJznU5A3I"
    "20CD1F3JFOFCQlfKmEA==";
