// Table text of code page 20924, _Enc_IBM00924; ascii no. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_IBM00924[] =
    "c4aeUs/8CAABCWmgzMUFZJlNZbjaSrAABWf/f/2djtuOzXoASASoIBSICQiQAkQwwIiQwfELn6dcGsAD"
    "5EGoapmkIyYTJo9IyaMQMnqMmJo9JiMmBo9CjaT1DmmIyMmmTQDIaMhkyAAAGRpkaBhDIEipT0mg00Gm"
    "gaaA0aaAyAGgAGIBpjRpJrgEkikwCFoAbAUppQsSksIWkTWiBggfJK2mXZCMdjYBmsDLYrrVCGAjGAw4"
    "MmagG3aUCA4C/whBwZmr63cX62EuXIwMQ9qiAOrHmJ3Hnwc0GnodiulxTYn1uuc9Ja2dg/m+peBS5mlW"
    "iBQ53tFtg6Xg3YwNTNetgah9vkHNCiZn+ROQoqpklqO/hqb1M74elMO2Pw/jzYdCxSGDoOPC/EAomhJY"
    "N6LIuSFE0BGwRgO8wLjQr7FfYJB/i7kinChINxtJVgA==";
