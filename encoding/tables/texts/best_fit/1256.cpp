// Table text of code page 1256, _BestFit_1256; best fit. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _BestFit_1256[] =
    "c4aeUs1wEAABCWmgzMUFZJlNZdhJoZgACJG3O/6pkQAQIIAABAABgABACAGAAgIAkKrAAuVCRJJpkMAQ"
    "yMaGMJiZMBMAAIUqaEDTRhBpo00KuSqUJiCttlD1s08PPTftVcgoSJiIKKCNdm7Dy3YmlvwQNkmpEDSQ"
    "kOCIArwlS7X2tdLlQOyRc72UNnyHPb5zLUqf8NAgUFKiUoqf0obM8te2smhcd41eeEasP28Kc+L+Z9C7"
    "kinChIOwk0Mw=";
