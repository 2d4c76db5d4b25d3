# What every target of the project is compiled with; not passed on to users of the library.
add_library(encconv_settings INTERFACE)
target_compile_features(encconv_settings INTERFACE cxx_std_20)
target_compile_options(encconv_settings INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion
  $<$<BOOL:${ENCCONV_WERROR}>:-Werror>)
if(ENCCONV_SANITIZE)
  target_compile_options(encconv_settings INTERFACE
    -fsanitize=${ENCCONV_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(encconv_settings INTERFACE -fsanitize=${ENCCONV_SANITIZE})
endif()
if(ENCCONV_COVERAGE)
  target_compile_options(encconv_settings INTERFACE --coverage)
  target_link_options(encconv_settings INTERFACE --coverage)
endif()
