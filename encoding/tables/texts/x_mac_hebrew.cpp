// Table text of code page 10005, _Enc_x_mac_hebrew; ascii yes. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_x_mac_hebrew[] =
    "c4aeUs4IBAABCWmgzMUFZJlNZ7BgAPQAAs/vf/0GYEEQgABAQACAAAgAEAEAABAAAEAGWABFAE6AAkQ1"
    "T9SNA00AGgG1PUEmqEU9qJptAEZMAsQukCamBhjQxS+VakFW7MUC7wyywscElGyBnekkgqi21Vr6aK+w"
    "UaDRdniuFqBrfLuyJ52ECdmQ4pJiCSZvvR952Axd5U0EaME5HCMQqYqqK1SBIPxdyRThQkOwYAD0=";
