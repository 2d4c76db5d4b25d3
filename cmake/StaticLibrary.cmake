# The static library: engine and interface as one object in which every name but those of the
# interface is local, so that programs may have a DataBuffer, or anything else, of their own.
set(objects $<TARGET_OBJECTS:encconv_interface> $<TARGET_OBJECTS:encconv_engine>)
if(ENCCONV_SANITIZE OR ENCCONV_COVERAGE OR EMSCRIPTEN)
  # Nobody installs it.
elseif(CMAKE_OBJCOPY AND UNIX AND NOT APPLE)
  # Groups are dissolved: the linker would take one of ours for a program's of the same name.
  set(whole ${CMAKE_CURRENT_BINARY_DIR}/encconv.o)
  separate_arguments(flags NATIVE_COMMAND "${CMAKE_CXX_FLAGS}")
  add_custom_command(OUTPUT ${whole}
    COMMAND ${CMAKE_CXX_COMPILER} ${flags} -r -nostdlib -Wl,--force-group-allocation
      -o ${whole} ${objects}
    COMMAND ${CMAKE_OBJCOPY} --localize-hidden ${whole}
    DEPENDS ${objects}
    COMMAND_EXPAND_LISTS VERBATIM
    COMMENT "Hiding what is not the interface")
  set_source_files_properties(${whole} PROPERTIES EXTERNAL_OBJECT ON GENERATED ON)
  # A library without a source would be linked to programs in C as if it needed nothing of C++.
  set(language ${CMAKE_CURRENT_BINARY_DIR}/encconv_language.cpp)
  file(CONFIGURE OUTPUT ${language} CONTENT "// Says that the library beside it is C++.\n")
  set(objects ${whole} ${language})
else()
  message(STATUS "The static library shows the names of the engine: there is no objcopy to hide them")
endif()

add_library(encconv STATIC ${objects})
add_library(encconv::static ALIAS encconv)
set_target_properties(encconv PROPERTIES EXPORT_NAME static LINKER_LANGUAGE CXX)
target_compile_features(encconv INTERFACE cxx_std_17)
target_link_libraries(encconv PRIVATE BZip2::BZip2 Threads::Threads
  ${ENCCONV_UCHARDET_LIBRARIES})
target_include_directories(encconv INTERFACE
  $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>
  $<BUILD_INTERFACE:${PROJECT_BINARY_DIR}/include>
  $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
