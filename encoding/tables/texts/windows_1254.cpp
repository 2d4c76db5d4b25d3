// Table text of code page 1254, _Enc_windows_1254; ascii yes. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_windows_1254[] =
    "c4aeUs4UBAABCWmgzMUFZJlNZqbd9LgAAuv3D/j9hsuAABIAQACAAEwAgBKAABgJAESAAciE0nqAaAA0"
    "APJBIkUDJp6jRhNNAAzalJJKbEQMAKmitokaoCpkO3rCwsjOluE6MpdArmJCPjL2d5SyG5mL2AkjLpeG"
    "6Yg4GAtBCeXL4nsEKVKzgk7RoocGhBV9gYiH4u5IpwoSFTbvpcA==";
