// Table text of code page 20420, _BestFit_20420; best fit. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _BestFit_20420[] =
    "c4aeUs6wCAABCWmgzMUFZJlNZlvnc9AABTnfU/5IAICABAIAACAEAAEBACAAgAAQAVaAAkQkigaAMQ9I"
    "EiaUyQaADRVDKRZEklGIBViSUx5lE0ZTE2nHh2MiRnSAasEi2mBGIzRq0WO8OXblTGdOGJrxgQbQkg3Y"
    "g/NHJgram/X5eCQoYkxNhZHblvX6ZcePEZlvsD8XckU4UJCW+dz0A";
