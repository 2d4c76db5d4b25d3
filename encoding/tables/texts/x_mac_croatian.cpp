// Table text of code page 10082, _Enc_x_mac_croatian; ascii yes. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_x_mac_croatian[] =
    "c4aeUs4UBAABCWmgzMUFZJlNZdR8RbgAAoP///35MTmySFkwCAEgCIoISEAAAiFBEIARCQDBINTXiav+"
    "wANbENIoNAAAAA0AAAaHqaANDIekInqCjQ0aADRoAAAAAAAAAMVIEwE0waAmjIYAAAE9EGCM00yg5lJB"
    "zFDDkGIkggEnfoJYkkwhQghA0hQbMO0LEAJCLAUNMIgvJbAD5ENJlRUBgfQnQZROxEvW4Ra2JdujNgja"
    "VB6jVOrsb8FZZyEWDvoJ0QUbXIW16u6sfBpeBhrJonJpHWw2qsIZ1Wl+UVGeiJd05ZSIt+Zp632s99i7"
    "PiAATDfzj5dRH1b7J7IU2mIJqrzPCuNQFa/HIUTMSjhJmV5TgkmADMM5DKhKR6IhtEtptBxxgm0gBcRA"
    "PcXckU4UJB1HxFuA=";
