# libencconv_iconv: iconv(3) for programs as they are.
set(iconv_calls charset conversion conversion_reading conversion_steps iconv_calls route similar strict_plan)
list(TRANSFORM iconv_calls REPLACE "(.+)" "${PROJECT_SOURCE_DIR}/iconv/\\1.cpp")

# The calls as ordinary objects beside the engine: what is tested under sanitizers.
add_library(encconv_iconv_calls OBJECT EXCLUDE_FROM_ALL ${iconv_calls})
target_link_libraries(encconv_iconv_calls PUBLIC encconv_engine PRIVATE encconv_settings)
target_include_directories(encconv_iconv_calls PUBLIC ${PROJECT_SOURCE_DIR}/include)
if(ENCCONV_SANITIZE OR ENCCONV_COVERAGE OR NOT CMAKE_OBJCOPY)
  return()
endif()

# The library needs the C library and nothing else, so it is compiled anew from what it uses of the
# engine, without exceptions and type information, without the checking forms of library calls that
# only one C library has, and linked without the C++ runtime; iconv/runtime.cpp has the little that is
# left of that, and support/unbzip2.cpp what is used of libbz2.
get_target_property(iconv_sources encconv_engine SOURCES)
set(unused clean_conversion decode encode encoding_convert encoding_convert_tables error_actions
  named_conversion pivot utf_transforms alike_encodings)
list(JOIN unused "|" unused)
list(FILTER iconv_sources EXCLUDE REGEX "/encoding/(stream|detect)/|/encoding/(${unused})[.]cpp$")
list(FILTER iconv_sources EXCLUDE REGEX
  "/support/(json|japanese|text_log|zv_utf|norvane_bzip2|unbzip2)[.]cpp$")
list(APPEND iconv_sources ${iconv_calls}
  ${PROJECT_SOURCE_DIR}/iconv/runtime.cpp ${PROJECT_SOURCE_DIR}/support/unbzip2.cpp)

add_library(encconv_iconv_objects OBJECT ${iconv_sources})
# The images of the mappings are made with the engine.
add_dependencies(encconv_iconv_objects encconv_engine)
target_include_directories(encconv_iconv_objects PRIVATE
  $<TARGET_PROPERTY:encconv_engine,INCLUDE_DIRECTORIES> ${PROJECT_SOURCE_DIR}/include)
set_target_properties(encconv_iconv_objects PROPERTIES
  POSITION_INDEPENDENT_CODE ON
  CXX_VISIBILITY_PRESET hidden
  VISIBILITY_INLINES_HIDDEN ON)
target_link_libraries(encconv_iconv_objects PRIVATE encconv_settings)
set(iconv_options -fno-exceptions -fno-rtti -fno-threadsafe-statics -ffunction-sections
  -fdata-sections -fno-asynchronous-unwind-tables -U_FORTIFY_SOURCE)
target_compile_options(encconv_iconv_objects PRIVATE ${iconv_options})
if(ENCCONV_HAS_NO_GNU_UNIQUE)
  target_compile_options(encconv_iconv_objects PRIVATE -fno-gnu-unique)
endif()

# One object in which nothing shows but the calls: what the static library is, and what the shared one
# is linked of, as C, so that nothing of C++ comes along.
set(iconv_whole ${CMAKE_CURRENT_BINARY_DIR}/encconv_iconv.o)
separate_arguments(iconv_flags NATIVE_COMMAND "${CMAKE_CXX_FLAGS}")
set(iconv_roots "")
set(iconv_shown "")
foreach(call IN ITEMS iconv_open iconv iconv_close iconvctl iconvlist iconv_canonicalize
    libiconv_open libiconv libiconv_close libiconvctl libiconvlist)
  list(APPEND iconv_roots -Wl,--undefined=${call})
  list(APPEND iconv_shown --keep-global-symbol=${call})
endforeach()
add_custom_command(OUTPUT ${iconv_whole}
  COMMAND ${CMAKE_CXX_COMPILER} ${iconv_flags} -r -nostdlib -Wl,--force-group-allocation
    -Wl,--gc-sections ${iconv_roots} -o ${iconv_whole} $<TARGET_OBJECTS:encconv_iconv_objects>
  COMMAND ${CMAKE_OBJCOPY} ${iconv_shown} ${iconv_whole}
  DEPENDS $<TARGET_OBJECTS:encconv_iconv_objects>
  COMMAND_EXPAND_LISTS VERBATIM
  COMMENT "Hiding what is not a call of iconv")
add_custom_target(encconv_iconv_whole DEPENDS ${iconv_whole})
set_source_files_properties(${iconv_whole} PROPERTIES EXTERNAL_OBJECT ON GENERATED ON)
# A library wants a source that says its language.
set(iconv_language ${CMAKE_CURRENT_BINARY_DIR}/encconv_iconv_language.c)
file(CONFIGURE OUTPUT ${iconv_language}
  CONTENT "/* Says that the library beside it is linked as C. */\ntypedef int encconv_iconv_language;\n")
foreach(kind IN ITEMS SHARED STATIC)
  string(TOLOWER encconv_iconv_${kind} name)
  add_library(${name} ${kind} ${iconv_whole} ${iconv_language})
  add_dependencies(${name} encconv_iconv_whole)
  set_target_properties(${name} PROPERTIES OUTPUT_NAME encconv_iconv LINKER_LANGUAGE C)
  target_include_directories(${name} INTERFACE
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
endforeach()
target_link_options(encconv_iconv_shared PRIVATE
  -static-libgcc -Wl,--gc-sections -Wl,-z,relro,-z,now -Wl,--no-undefined
  LINKER:--version-script=${PROJECT_SOURCE_DIR}/iconv/iconv.map)
set_property(TARGET encconv_iconv_shared APPEND PROPERTY
  LINK_DEPENDS ${PROJECT_SOURCE_DIR}/iconv/iconv.map)
