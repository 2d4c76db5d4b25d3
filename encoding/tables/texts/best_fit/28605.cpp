// Table text of code page 28605, _BestFit_28605; best fit. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _BestFit_28605[] =
    "c4aeUs5QEAABCWmgzMUFZJlNZcNQYmgAB7XuX/36BhMwAAKIAUAEEIkQFAGKnAAb9QAE7sAD6SDETUUe"
    "SMINo01MIAAeho0GGhoAAANAAAAACFUkA0AAAGgAAAEmElOVGIU19LBxbkgqYZmGGWKlI23jreRimpOR"
    "jiTtGKjDlmPSp1hafbHbQCCBkqxMKdUddOzLosrmE2OvBQATCLIEpAMzEWaMklIpQp2qZ45Ms/sbUSqp"
    "FUiBUUCtNLUyhVDR3wKGElc9hBkskHjHlIAj238N39bbtH2rlvSgGdWovIMkEiIQNzhgRJ2l77nEIG7l"
    "dfGDje9Ge/l0VcxdyRThQkHDUGJo=";
