// Table text of code page 20106, _BestFit_20106; best fit. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _BestFit_20106[] =
    "c4aeUs6AFAABCWmgzMUFZJlNZv7ntPgACZf/H/36BhV4AAqM4AABAAwAgQWAAYOeADv1QITuwAVk2MEq"
    "aaCmU8pk2kBsoaAAANGmT9U/U0g00imgyAMjQBoA0AAAAEKlTagCDCGIDI0wAmE0AyEDglKHOLEtJm9+"
    "MhRzGbLRxkZDokprQG7mNPVwGhKacCIRnmImbFjLGPXs7SAChHLAwIVo9nGkRUpucNoRzMkB1A2CRtjc"
    "98EMLcdsR4mStVwdVbafyMWDGB8UdililS8qW1VXOzdFmZqhxRJyRMmtUBAFKBFLhDCEipKShLSZBFhW"
    "Gz/njI/2oiUkSBSqhM0BSUwjSqVERSIEStDVJMKUJVLR1SqGJSuPGOODhk7YNyUU8ZT0/Og9E0bL5ykQ"
    "m0UUaglLWaUBUcjRAHoE0AVzWCo7v1LBGEtdm3LCa/bFO+/Hi5L9m1d/i7kinChIX9z2nwA==";
