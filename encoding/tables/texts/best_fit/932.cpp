// Table text of code page 932, _BestFit_932; best fit. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _BestFit_932[] =
    "c4aeUs2ABAABCWmgzMUFZJlNZcOpKogAAn3///zFiALJCIAGACKAgAQAAQAAgoQwgAAAAgAEFAwCBAA2"
    "gAJQMSjUxAGR6RpkaZGI0eoJRJoTJpiMQaGBMRhMogDBQYAhMoMFHB8eHBEGkB2eGjRRKaJ55nBPYSA2"
    "oETLcrkYlvpqljcrNDSsxMMpCAQyBCQRrTYOdZGAHUYxA0aWr0MLkQ9EQqYDHw0LWD78ogL10QD0Z8G9"
    "ZtnJlET7X77B6MIfxdyRThQkHDqSqIA==";
