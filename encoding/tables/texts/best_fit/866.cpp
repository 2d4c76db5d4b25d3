// Table text of code page 866, _BestFit_866; best fit. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _BestFit_866[] =
    "c4aeUs6QFAABCWmgzMUFZJlNZIy7zugACaX23//KIl04RCAAgASkBAMABggEQCMYGeH3IEtuwAVlAhpE"
    "YKaaB6jRkAAAAABpp6hzAATJgATCYJhDAEYAEmpFMgppoPSDCZqaDJkBtTQ0yMaIAUKkKJIZb2LFzEoM"
    "BJC4YjJCQ2ku58Tx4hdGKeqtMkkxwsVkLDYWN7bxw/jgVGdBLBGTUYJG0b8i2BrasVJNpUJojoQ+CBAM"
    "NTb/rA6eHDTiauOuHLQmilkAUkrRQGUvUp33J6PMW9vszYas+F771r22yE2CCgKSSQQZFUUnBx2JCzCR"
    "SAmu9TNegAFJFuyUPySmCig66nwQ7klxgsXXVCg6qIQK6K2uWpOZCzzOlk50+nBy2kANDCdCTb7vd9+3"
    "9mzZnOvrMnPRYsFZqn8ZYvRQyZEOxgXQDmel9PJMQP89zT4frVqlVM51CBjowP4u5IpwoSBGXed0A";
