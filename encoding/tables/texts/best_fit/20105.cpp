// Table text of code page 20105, _BestFit_20105; best fit. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _BestFit_20105[] =
    "c4aeUs9gFAABCWmgzMUFZJlNZGdqygwACf3/3/36Bhd4AAKMQAABQAQAgQCAAABAEAGDngA79QCE7sAF"
    "ZIQSgkyInhIA0eiaAAANGnpppDmATACYAATAAEwABJqUTTUNAAAAA0ANAAGAFICKwWWtgEmk4L6haMuL"
    "zDYLIGak2rjLxVCEheYCUxpq2jibNzV1oAFgY+WIVQJh1o5lllaBavDIJ57ZnhWpY29jiTC7+47z0rR+"
    "xigiBmWdbGMTnXQxoloeWdrCTFWbO5KDAgUwlNyWPCw39CngqU3LLti+1bOOsBiP5hIsiMIshCCxPKim"
    "AsFiQiySCoiApABGQWC5GVEIKQVZyMpO96sGPDaEgYWVXTZJe46qTGwyIYfSvZ10ERCm6/+9NO6mrbhp"
    "q1kb2HHGUXEyalB1grCgTKGRQHgyDrDzneKoXWbKbqjZXfhhkrt20Zf8XckU4UJAZ2rKD";
