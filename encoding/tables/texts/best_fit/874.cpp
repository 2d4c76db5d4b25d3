// Table text of code page 874, _BestFit_874; best fit. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _BestFit_874[] =
    "c4aeUsywCAABCWmgzMUFZJlNZcVlE0QAA/Hvz//KKIYDAAEAEACkAAMABAAEAA4AAQAoSlsugAIkNNRR"
    "6niNQekYQAAPUfqDCShkGgDQNDEAGhJQBEQSMS4gxc0SkxJsfhJ+aFcDHTyy6p7HdLLKpxPF+jIqXLds"
    "pibfPTKaNVAIJIuCCKASPC5wpmAwgicbvTyAhBVs2wwq2+zaNiDWBWWsdUSlNCvFKMaz6tG/lV8CKwFO"
    "Iu5IpwoSDisomiA==";
