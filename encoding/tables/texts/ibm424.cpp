// Table text of code page 20424, _Enc_IBM424; ascii no. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_IBM424[] =
    "c4aeUs5ACAABCWmgzMUFZJlNZJYXNbwABL3/P9e5rtnM2VAoCCAAIQYgCQCAAoEIkIHMqd+n3hLAA2SF"
    "T1JggaGgDTQANNNAMhoaGGk9TI2ocZMmhiMTRgEYCYQBgJpo0yNAMJFKT0gaNHqZNGjTTQBkABoDE0YG"
    "mp6bTUASS02CI2iJg2qbgyJiUGADfXq8jV7QDXabG0AR6kAJGcTnMsMAzNBkuQJGCEqGQE7ZohMAY2HT"
    "W4pIe9GdGM9uNmrIey8aJgkCZzLxUhwro8OLrWlyoj1CAH5XZhfpMSUTiKk02lEt+hXQKskWUaBGiKvj"
    "AxJLfaAWbZlJpogUrEpGuPDCViJWvFoJmIJmAGcXckU4UJAlhc1vA";
