// Table text of code page 10010, _Enc_x_mac_romanian; ascii yes. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_x_mac_romanian[] =
    "c4aeUs4UBAABCWmgzMUFZJlNZ/s621wAAov+//356/qQBFuxAAEgAKoKCAAhQQCAERkKQSSVpynD7sAD"
    "WxDRTSaR6mAE0yYD1AEYmBPQEYGmg0aeoQ1E0gDQAAAAAAAAAAADTUkGQACYCYAAmABGjAAaGiZwwkyX"
    "UEGUVk2SZkoAET8IWXJ0lYBhSC1DXuQzBlEKBcPlKBASGwqcUURNkwFkdY1LlYgByUYIDhpbMW25bwh8"
    "hYKBYFkAwb1JA0P70tObW/QYdg6v5cZ2uVKyzdy5WmR3V82uSb6YKWV/z/wL5KhVjH2CQYIs3dgG3Rb6"
    "vm3PUAtSuu/Q4wHJkp5XCdu9AF5yo+O0wHjIJMFIMGfiIpBOtLWDJ02WVIjJEYp4KeiAGi0U3e1AeyAA"
    "P8XckU4UJD+zrbXA=";
