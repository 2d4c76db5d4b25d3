// Table text of code page 863, _Enc_IBM863; ascii yes. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_IBM863[] =
    "c4aeUs4UBAABCWmgzMUFZJlNZZ2alZwAAoHe//99m7YCACowgAChAhgABFGQoAIAAAJAAojqr/7AA9sQ"
    "hCnkmGkGQaNAANGjRkA009TCEApPUHqAADQBiAyAaAABppFAaAAGgDQAAAA00aNITEJxCrGAjCBpohqd"
    "RTBxZCNIAJTEyQjUwFwhuJRpMhxRmMVoUCMZxUspRGNJKBWqA6Q4WtJKjUUQMBBWTFI60h9+vUkhwUXy"
    "ZR6D5b1eedaZZ1KZqE2FP8NUjSG8f4CorHsTlKaMkpG5Yabq8HGmARCXqUP01SmYIaHGmAApBI9ojc+y"
    "xoiDEDADTWe1pDB6qbXEbI5PZhZZO41jQMxEez0GI+Q+Q68oG4pkLSiaiIH1ggrMplB+IEJQC2QiAQ/x"
    "dyRThQkGdmpWc";
