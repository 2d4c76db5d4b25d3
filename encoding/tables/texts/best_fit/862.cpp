// Table text of code page 862, _BestFit_862; best fit. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _BestFit_862[] =
    "c4aeUs2QHAABCWmgzMUFZJlNZFAheFAADEX/////I7V+nHLKmBaAW8RYxwzUxAQJGROiBAPU3//1qN8/"
    "AAl2GmBqDU1JP1TeqNlMmho0ZAD1ADTIMjQAAAAAGgBoDPVBtRs1QaaIU2intVA3pEwgP1QPUMIYmj1N"
    "AGgAyDACAA00AAAg0xMAAAAAAAAAAAAAAEYRgAAAASalEKAMgAAAAAAGgAAAPUGgAAAAaAaMlIKSLLGW"
    "QgW4+i82pdTNuSSaa5JTAIAlZnKCReXg2bhWIt1rvjtnzsp2dOwg4TVtYKBEGxIQCo4EnxVaaaBUTCMF"
    "c5rlsu8yWfTxouYWiJ6OFeysVRoIijlMbC7LrZPEuI0UYVzOxpVpSrtTzTFcZupF01d3NtHBeBKzQ+zD"
    "uPV5m7bWnDIZeDKZkREAqMVWGBftLjwmdEknWVFdCAVNQrwpb9mkiP3dhbWN/dPXdkh8QwiODkZYq+At"
    "jY5wqpeQFt85YjTZb5wbl49t0DIoEAJCBSBAqQxUoSLa8i8cASjVaysdwFC9AydB4yKMJqenGtywIur4"
    "AkmRVWSARGApBWKJBFiKqh6GFARZICqpEMpU9LYp/a1S2FIjCALY08dJSRRUZLl7G2RYWo3aoR6dSraM"
    "VlxlvK5PQw+bdkyd6osIJg1KFRZummC4tUGRYUJEVexUpIENIlezBq/0auQBTGJtmEvpq0uMkU6mlo97"
    "CW7CgNC9nD62Qtl8gDAyCAANnEBx3fP30GIRpRIVMjBtOerfVpAivmUsQ+1by+eBgGOxKLCwpHAqWIWN"
    "NCBahiIFltQsbZyxyMJktp4vNuJzCU/U2DWhufTuOPYbCEontdy/8iE00wyq1ffp6zFc1qhTbiooN/i7"
    "kinChICgQvCg=";
