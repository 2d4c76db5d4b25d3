/* What a program in C needs to build and run. */
#include <encconv/encconv_c.h>
#include <stdio.h>
#include <string.h>

int main(void) {
  encconv_problem problem;
  unsigned char* output;
  size_t size;
  encconv_status status =
      encconv_convert(encconv_find_code_page("utf-8"), 1251, "\xD0\x96\xE6\x97\xA5", 5, "hex",
                      &output, &size, &problem);
  int ok = status == ENCCONV_OK && size == 9 && memcmp(output, "\xC6&#x65E5;", 9) == 0 &&
           problem.offset == 2 && strcmp(encconv_version(), ENCCONV_VERSION) == 0;
  encconv_free(output);
  puts(ok ? "ok" : "wrong");
  return ok ? 0 : 1;
}
