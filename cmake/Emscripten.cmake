# What is different where Emscripten builds. Debian's has a C++ library that is older than its
# compiler; cmake/emscripten/include has what that lacks.
include_directories(BEFORE SYSTEM ${CMAKE_CURRENT_LIST_DIR}/emscripten/include)

option(ENCCONV_WASM_SIMD "Use the SIMD of WebAssembly" ON)
if(ENCCONV_WASM_SIMD)
  add_compile_options(-msimd128 -mbulk-memory -msign-ext -mnontrapping-fptoint)
endif()

# There are no shared libraries here, and code that could be moved is slower.
set(CMAKE_C_COMPILE_OPTIONS_PIC "")
set(CMAKE_CXX_COMPILE_OPTIONS_PIC "")

# There is no libbz2: support/unbzip2.cpp takes its place.
add_library(BZip2::BZip2 INTERFACE IMPORTED)

# Tables that most programs never look at are files (encoding/codecs/mapping_files.h), but for those
# of encodings that are met every day.
set(ENCCONV_MAPPINGS_APART ${PROJECT_BINARY_DIR}/npm/tables)
set(ENCCONV_MAPPINGS_APART_SIZE 2500)
set(ENCCONV_MAPPINGS_KEPT "euc-jp-ms,gb18030,web-gb18030")

# The module is loaded over a network: what converts no text itself is compiled to be small.
set(ENCCONV_SMALL -Oz)
