# What every target of the project is compiled with; not passed on to users of the library.
add_library(encconv_settings INTERFACE)
target_compile_features(encconv_settings INTERFACE cxx_std_20)
if(MSVC)
  target_compile_options(encconv_settings INTERFACE
    /W4 /utf-8 /permissive-
    $<$<BOOL:${ENCCONV_WERROR}>:/WX>)
else()
  target_compile_options(encconv_settings INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion
    $<$<BOOL:${ENCCONV_WERROR}>:-Werror>)
endif()
if(UNIX AND NOT EMSCRIPTEN AND CMAKE_SIZEOF_VOID_P EQUAL 4)
  # Files beyond 2 GiB, and times beyond the year 2038.
  target_compile_definitions(encconv_settings INTERFACE _FILE_OFFSET_BITS=64 _TIME_BITS=64)
  # Compilers do not agree how vectors are handed over, which matters between libraries only.
  target_compile_options(encconv_settings INTERFACE -Wno-psabi)
endif()
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
# ENCCONV_CHECKS is the library that the checks are in, where that is not the C library.
set(ENCCONV_CHECKS "")
if(NOT ENCCONV_SANITIZE AND NOT MSVC AND NOT EMSCRIPTEN)
  if(MINGW)
    set(ENCCONV_CHECKS ssp)
  endif()
  target_compile_options(encconv_hardening INTERFACE
    -fstack-protector-strong $<$<CONFIG:Release>:-U_FORTIFY_SOURCE> $<$<CONFIG:Release>:-D_FORTIFY_SOURCE=2>)
  if(WIN32)
    target_link_options(encconv_hardening INTERFACE
      -Wl,--dynamicbase,--high-entropy-va,--nxcompat)
  else()
    target_link_options(encconv_hardening INTERFACE -Wl,-z,relro,-z,now)
  endif()
  # The marks for control flow are those of Linux's loader, and Windows probes stacks anyway.
  if(NOT WIN32 AND CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64|amd64)$")
    target_compile_options(encconv_hardening INTERFACE
      -fstack-clash-protection -fcf-protection)
  endif()
  include(CheckPIESupported)
  check_pie_supported(LANGUAGES CXX)
endif()
