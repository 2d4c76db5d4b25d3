// Table text of code page 20108, _BestFit_20108; best fit. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _BestFit_20108[] =
    "c4aeUs5QFAABCWmgzMUFZJlNZmR5VIAACYn+X/3YBhUoACqMQAABAAQAgQEAAZOeADv1AITuwAVoiYSm"
    "ik/VPSBPSMjJoGhoAaMj1MQYAAAADQAAAAaBCqIQJgAIwBMAAmhhIuEtNLkjFEcmdiY5TOMxiiaUBl3Z"
    "rvuww00dgYbGgcWSgOJQny0iM2SjABBXzSV2FkTnVCFffO9QXs0S2W6XE03c8xVgRxvlvyYhLBdil9V7"
    "ZnrTDMFEWOXoKdGGydE1EuYdDzDghhI4WWMYf1p4U1kp0M2NZuLDKfWio0kSApFVDS1CNKpUxKgRKUNI"
    "TIlCVQUHZACYVKtKfStKZvdB8JgZjVbu+9hrWz+4a7bSdzkEDoVbttQQqk4gLiDcgIqdiFVqpEpi3fj/"
    "MJvxbuAVU1wg+Qf/F3JFOFCQmR5VIAA==";
