// Table text of code page 1250, _BestFit_1250; best fit. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _BestFit_1250[] =
    "c4aeUs9QGAABCWmgzMUFZJlNZV0bI9gAC5n////fc7f83ZaMcBLRfIWIyYaeiASR21QhB8HWThX1rt0/"
    "AAlzAgFkGmJgJgExMmAACYEwJgBMAAAIwAACYCMGoNBCaTRkamke0pp6j0gZGRpiDajTT1GQx6oZABoA"
    "aGgNGmjQ9EYhBkwAmAAJgAAAAEwTABMAAExMAABMTEAkSFTGiJk0DQAAAANGjTQAAAAND0jTQAHpAGhp"
    "oYWHJMUxoaZBA6QnFU4dU4UO+ZXSQmyj/ukgWaolDEIFaGiyzAnANM+3F10tNStKHf6dRNJ1XY1WJRBE"
    "QIVDIhiGpOGFMJHldVrDwTJJp+ivIdHaegW2Y3tmGUQDLMRY+VfZrIqsYErGRIAgngRzBd7+s2FxcYxL"
    "TCA4XKEvY2eLFxn4TaOBEGwo3sd5k11I75JFQ45le5Lcd4T8uficKiwgQLvmpmbd1XyGZVlrgwqK0l3l"
    "BCldguYVoyhWB8CUOfAiod+0LzKzbRwNtrdzsFllj/MfXpZd8jTnNDP31Vj3HWcJ+nTUgVMwEMBxh5lu"
    "5Wq6oppIGBvSe2A2kZlc0cc+6vqs7QvHd2ejLqXtKtBdpsGNxCCG2CSRciEDaDnDIK8Q1NoIbaCY1CST"
    "YxiG0NRE3LmwQUyYX+nWkQMKNICCHGByb25MSKrqG69qCTQPydLFmhTuogGgbLDQWmiVhwNpFGDggJsn"
    "IhMlA7EBjMU2mxNj1EVmkSarb6A9GN+sv4bSPTnvDl1JCV22wG02IbS0V/jSk1NpA2i2xIjXwha3e5GL"
    "TwW9hg4lQhWWhZDQlhNF5k7/Hx6fNljMwbj+/t+OZb0uI/d+MqrCoiIcScPKZMNTNEU2bGqpBxxnp3IV"
    "/bh9rbblrV2dqvr7KUtehU9klyYJkrYIdBXMLyP9ufn0dAfJQB4BJVf4u5IpwoSCujZHs";
