// Table text of code page 869, _BestFit_869; best fit. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _BestFit_869[] =
    "c4aeUsyAEAABCWmgzMUFZJlNZ9CgatAABqX+///Kol0gCGEAgAABAKQGgwAKABBAAgADEAgx9WBLvsAE"
    "5QQ0U0J6aJp6mINDQaAAAGgNPUOaYmABMAEwAAmAAJgk1JEMpNHoj0ENGI0D9UwBMjEPRkkoVIVCQ0bl"
    "ixcaCgziSYsl8rAoucxpzBZGLv0bkkk4c+e4rMWGwsb7JdoqY3gmluhcc8roqB+JUUj8JpuvIjbQCBAP"
    "QqS30NPO/okXPl5MOHEo9TIApJWzQGBc0fBpL3TqK+fx1ceN+xh77XW2iE6UNaApEEiqKRJBYSLICXIQ"
    "CnSkm/aoJlVIP0rkSyCwjEiJ/kpR2MqsJCBiwMkpM2zlaT8PrYQDQyTLlqcXV46jXrwO/vL/tRYsFYVO"
    "1li6ihInDA8GQDZgNGjzQh0yDiKPj8EDE+/TE00sWxVVkoH8XckU4UJD0KBq0";
