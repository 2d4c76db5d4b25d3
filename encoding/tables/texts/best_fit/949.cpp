// Table text of code page 949, _BestFit_949; best fit. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _BestFit_949[] =
    "c4aeUsywGAABCWmgzMUFZJlNZ8ABt4QACxX////+4+0380z5DAQEEiVwMQiAWDeAcoMDka+eze/ZMVd/"
    "AAjAIJBKmiJMUzQR5IzQI0eo9MptR+pkCaeTRoEyaZDT1HqaMh6mjNJ7VD0wptlQSalIE0TTQ0BpoAaA"
    "AAAAAAAAADQAAAEGAAAAAAAAAAAAAAAAAAAAAQYAAAAAAAAAAAAAAAAAAAABhApqSBeSiwulhcEIWkZc"
    "bolIEhcQWECi3RJYgoRZCXWBaQmK6tltC1g0EpgusS0gugchM4wtMRimDg1Qyxl5ChMRwxMNt2FWxuNW"
    "qarEzFcKZF2zUOkGWMl69VDAviIuDUi2MsLfHsktM7FFGvTDGXmU4DDYpfu37GqhjoSmxzd6pw0pIpLr"
    "CXGaGqvoZ+ygCqwrCCzAQtJy0LY8rCqQv5LCQ/yBjsgUkJBZJCY7CUiyCqABzIQkO6g4nlwYrKkmUW69"
    "84nkIJIY+MXdzTjkE5weJ2VC6SbivxFWzA80HmblkEXfX8d8ewzUMujC8bh+yWNd+YU6A1FV4B36saIx"
    "0YY1288kFqL2odtBRBRQozUzhBn++e/CN8bgKUrPSZxEpilD8ZeCUthgqHN4PpX44CsRCOgPSVh1KQ1q"
    "gv2cEV1o/qEsh9LLVV5nxLAuijaRBCqNr+46snor8UvteUejz7sO+/A51Tx7OjkpM8fGgN4zNIHGGThs"
    "DHZPSyXMaofRDJPcVJ6kM6m1fwk+W9rbnkxmyfcZdxairH6WUEdSyIBER2yWPQ+N2OEsmNPG6ydZw3PX"
    "c3c66u6+82/TfVArtrv6yH/F3JFOFCQ8ABt4Q";
