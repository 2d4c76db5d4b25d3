# Programs that the build runs, as the makers of its sources. They are for the machine that builds:
# when the library is built for another one, that machine's own compiler makes them. Such a program is
# one source that uses nothing of the library.
#
# encconv_host_tool(NAME SOURCE VARIABLE): VARIABLE is what custom commands start and depend on.
# ENCCONV_HOST_CXX names the compiler, where the one that is found is not meant.
function(encconv_host_tool name source variable)
  if(NOT CMAKE_CROSSCOMPILING)
    add_executable(${name} ${source})
    target_link_libraries(${name} PRIVATE encconv_settings)
    set(${variable} ${name} PARENT_SCOPE)
    return()
  endif()
  find_program(ENCCONV_HOST_CXX NAMES c++ g++ clang++ REQUIRED NO_CMAKE_FIND_ROOT_PATH
    DOC "Compiler for the programs that the build runs")
  set(program ${PROJECT_BINARY_DIR}/host/${name})
  file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/host)
  add_custom_command(OUTPUT ${program}
    COMMAND ${ENCCONV_HOST_CXX} -std=c++20 -O1 -o ${program} ${source}
    DEPENDS ${source} VERBATIM
    COMMENT "Making ${name} for the machine that builds")
  set(${variable} ${program} PARENT_SCOPE)
endfunction()
