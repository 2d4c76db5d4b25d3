// Table text of code page 775, _BestFit_775; best fit. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _BestFit_775[] =
    "c4aeUs8QFAABCWmgzMUFZJlNZ7vtcSwACd/////7qPX8HBMIEBCBXYQewQBEAAQD2DEABUj0Sff9KO9v"
    "AAfzBAscaAA0NBk0AaAAAaAABoAAAMg9TT1BqniaKmwRBppo0ZDQGgNNA0AAAAAANAGhwADQaGg0AGmQ"
    "aGQNNAAAZABkBkABJqSJIyD0gBpoekAANMIDQ0NAADQAAAMKZBWw3JaxVCihdIQWndbCjGeDgpIpJJDW"
    "MJcMNduNvbBvqhm5lZd+xtTk4S+7Bo1aQWJAB0ljgR39mEgVpEk+yYGA7VFeY8Zv4aGIWQia5oqP2Dzz"
    "VRQbiYd4U1ihISwpRihOOjEMS2BsfgGewSoGv3brFCc84mjUSU6VDeoLvAypMMTYxADADw0yuYzOjipj"
    "2EjKmxS6c6RaUJNzBME53pSWlE5omP3S07YVFjvHxPgMil8RpBl2uWyIgARERERBpyEByzJKixhRTWp0"
    "sUml2kdAV0FWqzX7u+ZuGraWObO6+xkbWKKr0qpU2iFMJJBGAKCqjAREVFkZAVGAsFYoooEVVPSylQg2"
    "qQo1XTtKVUgjINqJSAK1RKRiGokKb2UrBQ7LCmSQTBq6mndeCgsFk0kKSLOwgYmFsqoYXzaPg7dxIYzJ"
    "AxJDLt/MXlff4vZf5/39/nmK9fqjfJ9fhwrSUQe/mqKbEX5NSL5N5fZyIQVZ/t91jRQnsVrP2I3TjHEA"
    "+K2RAACugifRz7uFoN+CPSjIUH8XckU4UJDu+1xLA";
