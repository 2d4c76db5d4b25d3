// Table text of code page 1253, _BestFit_1253; best fit. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _BestFit_1253[] =
    "c4aeUs7wFAABCWmgzMUFZJlNZNyW06QACcv////c8H9gg4EAAgBQQIWAg4IKAAQBBAQSDAEQAwH1AFA2"
    "wAXkQ2GgQkwhMj0TBMmDUMEYEaBoGg1NqKaBoABo0AAAAAAekBEkknqm0anomEwAI0NMmAAjTTBqQAy4"
    "JaJCSXQZgrLqqzqL1RtnWLF5hKC8ivzgGAMwgCpdMouGiTR+G3dqgprRAQwQMooCIKJzDiyeEMNGaFSI"
    "o1kAcjMLF9Xid+DEjqeE1hcrNK6FqiIECAlt68F10b/fI0oZ3ay2jE9aCtnSnnmpPOiV6wMiABmQCGCV"
    "yExoZC2qEhhpsb35kxKuSCSAqkYpwUKVEWQQjJIoB+cXHkuRwMGqaGQ/XHQWhIxizHkosYoBUkCS476t"
    "D2gglTy6aL4hfAOmB5YaTt6qUAwxeuD+ySb+P+Yzz8yvWixYKyqf9GwYQQilQkAaigGIAUXA1biKBR38"
    "fcDhawlYNf7zk/o5uf+LuSKcKEgbktp0g";
