// Table text of code page 10081, _Enc_x_mac_turkish; ascii yes. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_x_mac_turkish[] =
    "c4aeUs4UBAABCWmgzMUFZJlNZ5NzhYgAAo/+//374/6QSFCxCAEgAqoICAAhQQCAERkMQlQUp6nD7sAD"
    "ZIQUnpBoAABoADQaANMRo0B6gGmhxoyZGEYgGE0GATQaBkyaMmQwgMJTU0iTQaaGnqDEAAAANABoaaaB"
    "4ptJq7llFS1Ud0xJWgzEUVU0yd5TIeKQeKMF2EqZrKaVq0CCGLCYw0aCtTQlRV54EEARnkH9bj0RRIHR"
    "DMSDb0EAJyw8Fkn6tFfgjuJIvkNroYNq/c6mPKwssl5+up7sV59pvxLZjaOOrewmE1RAVQExCAtE5CI9"
    "c7fs7MAQHm605fz8yim/bvYQW/SbciXkxqJivJAKHpdvq5k6XRIzcKGwb8Cwj7TToD9VK/rsAnQxQmCl"
    "MN/i7kinChIcm5wsQ";
