// Table text of code page 20127, _BestFit_20127; best fit. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _BestFit_20127[] =
    "c4aeUs9AFAABCWmgzMUFZJlNZAz4DpwACf3+X/36Bhe4AAqMQAABAAQAgQCQAYOeADv1AITuwAVkiYSg"
    "k9UxEeiAGnlAAANDI/U01BzAATAAEwAAAAAEmqKeqeoZAGIaAGgAaAADACiAisFl5KkJL11IVGWLjOqL"
    "IGBJbIzQv0gSQzyxKMaNNu2Ku7hxwAKhgyVBZK1YJLXatOdpJwQGLFbQ8sqmZt6uCgXfxu9K5Gq1RHGq"
    "CIHUtVzG45kcrz8+WLochiy5odgQGVCUbJVJw8GrVYtlmO6q3cdLGifzCRZESQCIJFgsSEWSQVFRkgCM"
    "gpFWMZAUgqyKdqQIUYDlaZU7FE+FDQogiHjO/80aU0/2HzOZF7DjjKLUyalB1krCgUKF6gPJkHWXhS8K"
    "hPHszT2zZtWX4YSs5e/CWPRdyRThQkAM+A6c=";
