// Table text of code page 737, _BestFit_737; best fit. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _BestFit_737[] =
    "c4aeUswACAABCWmgzMUFZJlNZzG81GwAA7HO3/+aKFQCABAApAADAAYAEkABEAEAIABLLoABqGmqek9Q"
    "1GT0hpkB6gMeqDTSU0wAAAAACSgCIgtMSjRZQNrY7GurlXZLtevq+VWGULRDLDFdz9DKmTQhAiIPQQUI"
    "S0qSNNFYgIcUIpGyqdTYqTKUGZhPyoQfndhmaHzg7vUIoP4u5IpwoSGY3mo2A";
