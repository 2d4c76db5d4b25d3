// Table text of code page 437, _Enc_IBM437; ascii yes. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_IBM437[] =
    "c4aeUs4UBAABCWmgzMUFZJlNZAIKJSQAAo3e////m7IDACI0ACDAAEgAIAHQLAKAAAJAAizuv/rAA8jC"
    "CmTUeo9I0MjQGgGgAGho0NDCBoJGoMgAAAAAAAAABpqkyDQAAGgAABkBkGhjUfMkJ0yjGCaFa19GOBDm"
    "KhMeQnGmrGuBTQwiITEQB0wlx7CwU33VgJeUQTkMQKYmmApqYeMBpktNKZDOIVyAF0b+3RlU511L54SC"
    "L6t+KNoxHRJTkoxNLJ99WJn1zVrT0dyFgzzaE0EZJTGOF8DSE1m1frzwCPd9Yfqg8vbaR3KLCQOQk262"
    "/FpgQ4kBjM5mUDEvllIhLNBAdJAolNXaULqBHk4lVYwD5AfIy+1kHIoIl1oSAP0FaovAYikJCiAlooAA"
    "r+LuSKcKEgAQUSkg=";
