// Table text of code page 28592, _BestFit_28592; best fit. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _BestFit_28592[] =
    "c4aeUs4QEAABCWmgzMUFZJlNZqe2lwQAB9X+X//6BhewAAKMQAABAAQAgQCQAYOeADv1AATuwATo2YNT"
    "0TRGqfoUbUaM1NAAGQ0NNpppBqfqqeSGIAxAAAGQAAAk1SpkMjTIYQxBmoGCAMRoQoKm8LGUKKNBayVo"
    "QLTCnUgSQjNAHuiiUZabubnAAEAHjPWON4c0qrniifKkBXHOaXdJjGAFIl0QWTHIi1s6ZEAQJ1oMr0iW"
    "msrP5o5i5wDu4tomgqeJXdbaGyCCCy2CKA6sgKQBbaqvY4E1PYh08cwIAbaouBuR5fqbAEJJJMEIAIyE"
    "FWCiSAsBYKCyCCSCgCMIs0IElGRqaVJUw9UPZkknns/NuvYNm/Xhfug4IhRShwIeCpKIpf6wVwgZG+hN"
    "rDhZfUI75YY4tO7HhLN/i7kinChIVPbS4IA==";
