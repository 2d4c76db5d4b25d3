// Table text of code page 861, _Enc_ibm861; ascii yes. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_ibm861[] =
    "c4aeUs4UBAABCWmgzMUFZJlNZn30FOgAAoXe//9/37IDACA0ECDAAEgAEAFYJAqAAAJAAizur/rAA+bM"
    "Iimyj1HpqZDTR6hoaaGmnqAAyMgNHqCqep+qeRBoxBoMI0yDTI0yaYjTIyNPQYSRQPSNDJpkNMQGTQA0"
    "GmjIw1KEWJI7iInET0OJBqxDESogBNzoQgmwpJMCZBx1YZG3tTQL7Y11utiG3YZ2VKTUMhIxbaSBQGS2"
    "cMRwxCAkEd7IVhg+L0QXuowfUu1wwFrprpzX8VXgDN8Y2yuvRfUDmcpGLC6shChvYWNWs1eIAFNHQCc9"
    "zIzsGRV2FUTSUAYYhrTVTRVAuR8zzICWw9paDpgrd53DiCQYjnsvolg1j9o9NNaDmRzI8uVg+qI1SelA"
    "DPo6K2iYakdKFKIN1AECn/F3JFOFCQn30FOg=";
