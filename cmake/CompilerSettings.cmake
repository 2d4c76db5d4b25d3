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
  # Several threads count.
  target_compile_options(encconv_settings INTERFACE --coverage -fprofile-update=atomic)
  target_link_options(encconv_settings INTERFACE --coverage)
endif()

# What the library and the tool are compiled and linked with besides, because they read the text of
# strangers: checks of the stack and of library calls, no writable tables of addresses. Sanitizers do
# the same and more, and do not go together with it.
add_library(encconv_hardening INTERFACE)
if(NOT ENCCONV_SANITIZE AND NOT EMSCRIPTEN)
  target_compile_options(encconv_hardening INTERFACE
    -fstack-protector-strong $<$<CONFIG:Release>:-U_FORTIFY_SOURCE> $<$<CONFIG:Release>:-D_FORTIFY_SOURCE=2>)
  target_link_options(encconv_hardening INTERFACE -Wl,-z,relro,-z,now)
  if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64|amd64)$")
    target_compile_options(encconv_hardening INTERFACE
      -fstack-clash-protection -fcf-protection)
  endif()
  include(CheckPIESupported)
  check_pie_supported(LANGUAGES CXX)
endif()
