// Table text of code page 20290, _Enc_IBM290; ascii no. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_IBM290[] =
    "c4aeUs64CAABCWmgzMUFZJlNZDooi3gABQv3//O5rMusyVAASAAKAAkAghJAgQAAQAiAhUAKF6fcEsAC"
    "5IampqeiAaAGgAeoAAxNMm0nqbUOaYmAjTAjCMAAAATCMBIpCIegEaDACNMjQDAQwNG0wBBBoQSNRMUb"
    "BB0SQDweNyO/1aIka2RMotQYhtJFWvBBK+DV+OCJWAcWC3aoCyAGErRAB4jPk1ihisrbgI83bBtdW4kn"
    "idVLKtHvfPcSgeuXCbW+3FDIcfGoDxPtc7640onY4yNClaJDABhGMAB9JJC9mpmtzAXJkzSUzStPk0Ez"
    "EjmLuSKcKEgHRRFvA";
