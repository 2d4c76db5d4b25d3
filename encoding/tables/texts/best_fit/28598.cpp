// Table text of code page 28598, _BestFit_28598; best fit. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _BestFit_28598[] =
    "c4aeUs5gFAABCWmgzMUFZJlNZKMc/LQACan+X/3/BhOwAAKJAAABAAQAgQCQAYOcQBv1AATuwATkhDRE"
    "ymxEeoGm0mmgAAABoMBoAABoAAAAAAk1RFPSMgAGgDQNBoNMnqNGAFEBFYLLEqQkuYUGWFxbUWQMSS3G"
    "zXw0gSQwFsClGhwwAEMHLYGGwtEnHRYQknqAWuJDImolgsKB3HugpTTlQ6/h8MwMIEQGWSm8gPnlhVS2"
    "YKmu0qcYBAGZAkmswkwVTraTMjO1THdUu67TViWEiyIkgEYkWRgRZJBUWQAWQUijEhFFAWeiAQokcjTI"
    "mRDMz3SQhmy6b9HznM/7p0ll9CpUojdSaEKtjQQLUL0CtlIVbMumuswv1XyNk+1pdRX+jn/i7kinChIF"
    "GOflo";
