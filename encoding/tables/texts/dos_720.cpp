// Table text of code page 720, _Enc_DOS_720; ascii yes. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_DOS_720[] =
    "c4aeUs4UBAABCWmgzMUFZJlNZxn/ELwAArP/r/9NkeAODCAAAFEAAIBCCAEAAABqiABUAAjKr97AA2RD"
    "IommTTQAaA0ADQNNNlNqGGhoAAANAAAAADFCMp6jQDQAAAAABFFhJEEAciJDwi9j2wQDGRaxNTUEpEJE"
    "HJ6jQYZlJLWUznNqtYiIq4g6djkBTlpwcSkSkbqE80InvSPDghzSxvTIBU5WKGtww2PlkHFUsTEheGOp"
    "/RtbMQRGhIPlBA6KKazAY0NEmmhXwGWrcI+32uhIl4e1e8oxJ/SyQV6HxQlKBiSUqOSH6leVWuUn82uV"
    "8OQkQQBnQI/i7kinChIYz/iF4";
