// Table text of code page 20871, _Enc_IBM871; ascii no. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_IBM871[] =
    "c4aeUswIDAABCWmgzMUFZJlNZDkAblQABWv/v52frIvE2XApQCQAIQCJCQiQggAIgYGIgVAJn+/+GsAD"
    "ZbDIaaAaaaMjRiAwjIaaGmBAyGmj1G0mQybRPUaNMg0AyDIMmhpoGI0aDE0ep6gMEipRtRpkGj1AyZAN"
    "AD1G1MEYgAB6mNG00AkNoSDTj0pZ55QpUBpIpOJhC1WyoFjTQ2Bhe20vBkrP5wjFoRQG7HJZPvvnizFI"
    "zrZiZhDoeffwNwYQjwxuDF93fmN2ANgQTegC/6FAzbiqmT46gAGTe4m945ojfqYevmmEh+5x7jxhIF4A"
    "bECNQK+IqWIEZQyd2GERa/73d15IZq8GtQ/ZsM7F/x0sQ5yzm2V5tnGkkTNAAerSSDILuSKcKEgHIA3K"
    "g";
