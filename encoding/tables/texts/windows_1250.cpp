// Table text of code page 1250, _Enc_windows_1250; ascii yes. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_windows_1250[] =
    "c4aeUs4UBAABCWmgzMUFZJlNZmEMa7AAAsv/v//tkI0AAAQQEIAACIAATACAAhAAIABEIwLA6gEBQMAC"
    "yBkSh6g0BhDQNPUZNDTwoNMip+pAaAANAAAAxkMhoNBo0AaABoZUWiBAaQqCA5YUVi6dMQUUEENdtNAI"
    "tSg8wK7wwcwWNtCohzNbI4E0qZKGGlMwskMGghNCClFucrvSttWzAYQo6ZB3Nqa0YEIG1VYLFWcAF1rG"
    "kipABf4aQRx+oRCaM/5pMvNbBYX1sN6RuLpYjS+ZgJ4IXyUgBEFSCqMYSxkg/xdyRThQkJhDGuwA=";
