// Table text of code page 28593, _BestFit_28593; best fit. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _BestFit_28593[] =
    "c4aeUs6AEAABCWmgzMUFZJlNZ5SUlfQAB+H+X//+BhewAAKMQAABAAQAgQCQAYOeADv1AATuwARpEEoI"
    "QKP0hGhp6jQAAGQ09CekOYAAAAAAAAAAEmqU9KepoaAGjQA2oaAaDEAYUFRVLwlWVCTAwpxJCSFHSaYX"
    "j3+AREHrniuaESpZ82XhoqulQnOvHZW7WU43J5ZJYqSUewk7MrZuKEszVftO9FQAOxY58jE4FXB0xzxy"
    "EmLcVL2osk1xKMFksbUKpyLz81arFsUtw6db3TYf2CKiABGIqEIsFUWJAikUiwQSSIrCLPFhAKMjc0uS"
    "5Q0KGlRBA89e2/TqNWi/ZrIurUN+KPBhlQirLsUCCgyw8aXiqEmL3N08d+FH9btwhhbdhur5f8XckU4U"
    "JDlJSV9A=";
