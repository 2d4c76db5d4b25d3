// Table text of code page 870, _Enc_IBM870; ascii no. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_IBM870[] =
    "c4aeUswIDAABCWmgzMUFZJlNZBXBA6AABVP///+fjp+MzVACSIAABLQgCUCBAoaAAlCgwMWB4I+Xt9we"
    "wARiENE1U2p4poNA0PUDRoNBoNGQ9QAB+pNMnhJtJ6n5UODINGgDJpiGmgyDEMIGgNGJiNAAAJEkmkaA"
    "AA0AAAAAAAAABoCGoQCIGCYMYwkxjQoczEEnYNJUGkUBoc88kSahqeri3lDU9KVZKJmIqmAOaYkFGgRp"
    "Sxmd0yKLbQKuuIRUaxJQkvpo+OyCowCA9r+AtdLNNwDVPMp7i7cWfO6iTKSGZM0ynoKBitgSPfncl+6/"
    "ZiOiW4pAs1WObySA0uqt1O2s/T7oEeN6oxzYhivSO1bvilHzOzVs/v17yV3WNfZ8ULlHX64V2FgAFGZE"
    "RC9MsD1GOWMLSsDXgOXkD7b8cdKKXOvt/O9mLhFIhJhagE7VAFo5SgRMMgj+aVJgkj/F3JFOFCQBXBA6"
    "A";
