// Table text of code page 28594, _Enc_iso_8859_4; ascii yes. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_iso_8859_4[] =
    "c4aeUs4UBAABCWmgzMUFZJlNZjwZhxQAAt/Xf/7BYmGAAAGAgAAIAQAAAAKoQJAQASSBUCSAgAJVDFE0"
    "GpgIaNNMmEeSCREppkAABoHqAQ1ukQrqRaMRDTYnYyMMwW0JKUE2m4olKXyEPSdK1yDVIxj0KUAQB4RG"
    "VdKNm1++DsArmKG1kEJcL8YEoM4ddfnVWwK4FWQ4+vk3jEIa6WRhxPFED8iQMuWRjy0kD+LuSKcKEhHg"
    "zDig=";
