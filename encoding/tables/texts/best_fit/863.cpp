// Table text of code page 863, _BestFit_863; best fit. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _BestFit_863[] =
    "c4aeUs/AFAABCWmgzMUFZJlNZgyw2xQACWn/////Kvf8HhcYmBbQW4RYhQTFAEUNg1iqFIGUzXf1Kt9/"
    "AAl20pgaogUmU8pjTJG00mgADQaPUNHqGh6gAAABo0AAMQMMoNT0RFPIJhMgBqeieoxPQaADUP1QGQ0Y"
    "AEwmhgRowBGg4AAAAAAAAAAAAAAAAAAAAAJNSSKABoAZAAAAAAADQ0GgAAAAA0DRKEFslIRVCmmKtpCG"
    "OwphhVmLMjAsCskEQFgZ6VSEsZJnIH7hAhHm8KCg2sVDNloHUjla8Srz4ib8hARAyEQCRWw6wyVYTC/K"
    "AUILgknx6iJtkcFt9qsrS5Wz0tVbE8EBlPPm3NRr3kfoLNfCRzSpvyS0J7cJ8KXOh8cMgsno4JdS3VZn"
    "ytJzoa2Cm0ROctOVBAWhjGAfEqEIzau0AyZCgQHEWWHElrFIGoh2suHiKqSlk7aWsk+AiZimNmgfCaBc"
    "9ipXtjUUeBIkbaRovK80iEsDACQwIQJhQhSGVVqT2gErEicSBLYedR7CsqOHmxwcNEbmOWiXKPVYYMGI"
    "KKRZFgjAUFRVVIIjEUf7RQwYEWSAqqRBy7ZLRRZfQIFKxTmVU9KQpFWXMWS82nyxLBebs+1jpWQqFcnD"
    "w8TpXyF9IpBMCvYlkFFm/Sklkx0CwkRExahWDRIQ3DbFeo2kUHN1uUA6DLkgodZMJklmSuzqOvcSEvEI"
    "iIOEItTZng2iPWQTFHpJPHP6ZuXMqOoA8V9Rt1frvNYV/xcyeNRYsUjgVPihZuaEC8hjIFrqhZu3lXiE"
    "J/pOT+dalQpzvuPUWYRjRYMc6DtL+f0U40C0eqKoPmCdp8i7zrL0kn/F3JFOFCQgyw2xQ";
