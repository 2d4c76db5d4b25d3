// Table text of code page 21025, _Enc_cp1025; ascii no. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_cp1025[] =
    "c4aeUswIDAABCWmgzMUFZJlNZQ/MZFgABY3/////jpmsy3YAeAAQQIQACUCAAkVBEEACEMCB4A8Xp9xe"
    "wAPiQxpoTIAADTIAAyAABoaDCMmJ6mQ5o0aGmEA0wJpoAyGhiANGI0MEZABIolD1G1ADQaAAHqAAaAAA"
    "AGR5Sq4ISRFoQ2AIg1K0kpWgJGty4nZ4yIuW2gtWF00oNdTCriyxQfjWhJDAY7uAgsMoYHgyb7jEoswh"
    "uw6GFRrMc7wWWx6zRKZ+aOa0XzDPYIsmZEVl0BGMhdDzdOESN7AM1mcC3oEEY0DkcjUeQk2yHauumr1T"
    "sEJmqEnB7gKAqB+qz4J8g4oCWOxlvJHmvMF+ilHrrLT4kWhxxKw0ICapRFBZa/qICSpYkezClpErQgpY"
    "j/F3JFOFCQQ/MZFg=";
