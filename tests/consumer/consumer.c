/* What a program in C needs to build and run; C89. */
#include <encconv/encconv_c.h>
#include <stdio.h>
#include <string.h>

int main(void) {
  encconv_options options = ENCCONV_OPTIONS_INIT;
  encconv_problem problem = ENCCONV_PROBLEM_INIT;
  encconv_result result = ENCCONV_RESULT_INIT;
  encconv_code_page page = ENCCONV_CODE_PAGE_INIT;
  encconv_status status;
  unsigned char* output;
  size_t size;
  int ok;

  options.on_error = "hex";
  result.first_problem = &problem;
  status = encconv_convert(encconv_find_code_page("utf-8"), 1251, "\xD0\x96\xE6\x97\xA5", 5,
                           &options, &output, &size, &result);
  ok = status == ENCCONV_OK && size == 9 && memcmp(output, "\xC6&#x65E5;", 9) == 0 &&
       result.problem_count == 1 && problem.offset == 2 && encconv_code_page_at(0, &page) == 1 &&
       page.number == 37 && strcmp(encconv_version(), ENCCONV_VERSION) == 0;
  encconv_free(output);
  puts(ok ? "ok" : "wrong");
  return ok ? 0 : 1;
}
