// Table text of code page 28597, _BestFit_28597; best fit. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _BestFit_28597[] =
    "c4aeUs6wFAABCWmgzMUFZJlNZ7vofBgACcX+X/36BhOwAAicQAABAAQAgQCQAYOcQFv1AITuwATkhDRT"
    "0JoI00AyeoAAAANGQwAAAAAAAAAACTVE1E0aAaDQA0AAGmTQGAFEBFYLLkqQkvsKDLi+WqLIGFJbGzBq"
    "UgSQ0i0ClGl2KmKAAhgx3gw3cJsCjbO15CsrAYxTUiWI57EzQsHgtVlKhOu9D5ZefIEQGWByPB+NBBNi"
    "lct4LlbI5kRgEAZkCQ3zCGCxYZarFst536VL/NY/tVYSLIiSARiRQWMCLJIKiMIApAUYhIqxEFPBAIUQ"
    "HI0yJkYeiHqyQh593195vbKZcv5nzltFCpUojpUmZCrc0ECyGhArdSCGrd7RhkKKpaIY/tKRSUupqVP/"
    "F3JFOFCQ7vofBgA==";
