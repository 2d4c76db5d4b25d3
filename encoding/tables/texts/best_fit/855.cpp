// Table text of code page 855, _BestFit_855; best fit. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _BestFit_855[] =
    "c4aeUs3QEAABCWmgzMUFZJlNZGmmwdAAB0v////KIh24ACBAgEEAAKQGkQAABAACBIAAECNQCFH/IWtq"
    "wAVkQhomkyNQJjTE0NTTNAIwjEYE9E9Q5piYCNMCMIwAAABMIwEmpJU/QkaaMJkMCMGgE9CbRoAGElMR"
    "KtUgXNpCTWxWLF5hoLyqhM5DDIkbzEJe4DQvhaL+tG+7TkklYLBeUNCwhIp5ZheJAApk1RhRPisYRohg"
    "EMXtK18QQ3JHMvtSO9YRjxAEAjl22/aoV5+GF0frIiHOda+4IEMiABmCJVVQAYtQQ0OY3pckYWJ8UDXP"
    "JMpdMZAEYMAzITmRKYMSKooJILCRSAiyACqBFUjvVIUgLEYTJVQRiqoO3UhArJUDGhiZjdZh83iZJJhY"
    "LIGX29tn/euU98RmzF3BRYsFYamVli6ihk+SHewLkKU79UYZBVHLr472KH6KGePNNPpFLTPMX+LuSKcK"
    "EgNNNg6A=";
