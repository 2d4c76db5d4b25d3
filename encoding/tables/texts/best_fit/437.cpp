// Table text of code page 437, _BestFit_437; best fit. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _BestFit_437[] =
    "c4aeUs2gHAABCWmgzMUFZJlNZrlF3wAADEv/////I7V+nHLKmBaAW8RYx0zUxAQJGROiBAPU3//1qN8/"
    "AAl2GmBqEEhTyjanomjI0yGQMjTQHqGg0AAAAyAABo0Bp6QfqjZqg00QptFN6pND2pNHpAeUxPUZADQ9"
    "TRkGgYCZAAZDTTQ0AAZCDACYAAAEwAJgAAATACaGAAAAAAAJNSiFAD1AAAAAAANAAAANBoAAAAGgGjJS"
    "CkiyxlkIFuNovNqXUzTkEmluSUwCAJYM5QSLy8Gm4ViOdYW+O5fOynZ1bnFqPEbLTFAiC6IQCk4Vy+dV"
    "lKgUkwjBXOas2duMdn1eRFzC0RPRwq8qlMaCIo5TGot12cfjXEaKOJtZ2NVWlKzanmmK8tuvF01nbTbR"
    "wXgSpofTDMerzNltacMRl4MpmREQCsYqsMK9aWHCZ0SRJZbKQPyqaReFOexWL16rEjWN9Idq2SzxMxFJ"
    "IwKEJihvzY+QoH+u6IC2+csR5GWu4N0OZbdAyKBACQgUgQKkMVKEi2vN27gCUat7lY7sKF6cnQeMSjht"
    "V609hywIu64BKyKqyQCIwFIKxRIIsRVUPQwoCLJAVVIhk6npbFU/talbCkRhAFsaeOkpIoqMly9i7IsL"
    "UbtUj06lW0YjLjLeVyehhc27Jkb1RYQS/UoVFm5aYLiVQY9hQkRV7FSkgQ0aV7L9YPRq5AFMUm1YTBTV"
    "JcYAp1NJR72Et19AaB7OF1l0xlkACArEIiIZxAHFI5u9PEIeklkT2Qbaz0S0aQRCu4rTGf8ter5375jM"
    "OiwsKRv1LELGmhAtQw0Cy2oCRJ/hlCEJ847pf4o3B2KFD6agwwbbfOO65dVpWiftdfy0I56eMi1efqlb"
    "Kc1nyG3EMgP+LuSKcKEhXKLvgAA==";
