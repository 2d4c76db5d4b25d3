// Table text of code page 857, _BestFit_857; best fit. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _BestFit_857[] =
    "c4aeUs8wGAABCWmgzMUFZJlNZKW9MrwAC0H////rKPV8XBMIEBAT3YQMgQRUAAQFWnQhBVW0TX/9Ks/v"
    "AAh2NMG0GiKZTTRtIbUNMnpAMmjI0YgAAGg0DQZAabUeoPDVBppNCKemKG1T1HqHo1PUHpGmJiP1T01N"
    "ogAwgDQBoDQA9DgAAGgaGhoaZABoAANANDQAAMgAASapEowg0aNAZGEYjEADBAyNMjAEbUGgGCAYURYR"
    "a2iChVJAWiczi0DhthSKRERBAogE3Eqc+4qaeao476KGccnA5oZ2Gp4yK4OIAQVFEAm0LJfML6imaLzd"
    "Nq2sTrGeSeUo4wD2FbSkCh6QusvIaxyWuw5ZGkZ5DGNPKfPRJAYcVEdCxzXC/XTPB9IlCAQAEUwQlHJO"
    "8NE9EygijEqMX9Nch4M4jGGsyyi3TuoQhFRNxum+1bgvVVsd6i8z4kKfKss2DBzoiQoEJQISASAkSLJC"
    "lKiEXqOcSPWVLE+9QpzARixOrbIgqdKwreOxxq8jhVnNuYxFVyaZTUyKsJJBGAKCoogKIqIwQgskBVWR"
    "WKxbLSMSQBRRVlmlJBEiwGeelFQESCkGKqIhmtEFFigse9QlEkIV+WqqCikUhkJRAUAvElOcgCL3SEjg"
    "MgAS5kREJpghJS+0b9VNro5167zr1slKYbOXHvffJlP6c4OJByvkoDmUKCiPIU/koArKgcW/arGsZD58"
    "2/S1/Xt9lPOPuNyEwfURaVHwoeC085+XcPFdamxslTqYOKqzHU/AqkC/xdyRThQkClvTK8A==";
