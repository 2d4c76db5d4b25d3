// Table text of code page 1251, _BestFit_1251; best fit. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _BestFit_1251[] =
    "c4aeUswQGAABCWmgzMUFZJlNZDp3EZwAClX///9cci9ghIEAgBBQQIWAgZIKAAQBAAQCDQERBwH3AFA2"
    "wAXigQ1NNTJHpAA00ADQAAAA0NqHMAmAmRgBGJiYTCYIaYmmAk1IkyRqZB6h6mTTQeU0AMhp6jRoaGjI"
    "BSRGF0pLpLDkjvUZgIHJfitcTI3CoZCHGwDvsDMGgQJIYOJclC92u4hsTjeAJDhaQFIMz5GcsakwmzNo"
    "tO3jmyAWQlOB+0a0Prt3VMDi5hscCoIXQgIAZWEB7SHe+lgLTo8dj03qafJja6LryNW9ffZAFgUyXzUC"
    "wwwqU63DR5scfRW7JDrH/NJEQUsySkJJBjIOtJCmEikBi0lJCB6uuoSwqCh9WFMWM1VPwhZz0UbqSkjv"
    "0e1/vLQBDBUy5akmLJw9NcyT59rmtIAbiSbPjR9Pzt27eTo6NJh+si3VRYsFY1Olli9FDJgh1MC6CSP9"
    "EayQElE144yTOdCYY2vSWN/i7kinChIB07iM4";
