# The shared library: the same objects, of which only the interface shows. What a DLL shows is said
# where it is compiled, so that is done once more for it.
set(shown_objects $<TARGET_OBJECTS:encconv_interface>)
if(WIN32)
  get_target_property(interface_sources encconv_interface SOURCES)
  add_library(encconv_interface_of_dll OBJECT ${interface_sources})
  target_compile_definitions(encconv_interface_of_dll PRIVATE ENCCONV_BUILDS_DLL)
  target_include_directories(encconv_interface_of_dll PRIVATE
    $<TARGET_PROPERTY:encconv_interface,INCLUDE_DIRECTORIES>)
  target_link_libraries(encconv_interface_of_dll PRIVATE
    encconv_engine encconv_settings encconv_hardening)
  set(shown_objects $<TARGET_OBJECTS:encconv_interface_of_dll>)
endif()
add_library(encconv_shared SHARED ${shown_objects} $<TARGET_OBJECTS:encconv_engine>)
add_library(encconv::shared ALIAS encconv_shared)
set_target_properties(encconv_shared PROPERTIES
  OUTPUT_NAME encconv
  EXPORT_NAME shared
  LINKER_LANGUAGE CXX
  VERSION ${PROJECT_VERSION}
  SOVERSION ${PROJECT_VERSION_MAJOR})
target_compile_features(encconv_shared INTERFACE cxx_std_17)
target_include_directories(encconv_shared INTERFACE
  $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>
  $<BUILD_INTERFACE:${PROJECT_BINARY_DIR}/include>
  $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
target_link_libraries(encconv_shared PRIVATE
  $<BUILD_INTERFACE:encconv_settings> $<BUILD_INTERFACE:encconv_hardening> BZip2::BZip2 Threads::Threads
  ${ENCCONV_UCHARDET_LIBRARIES} ${ENCCONV_CHECKS})
if(WIN32)
  target_compile_definitions(encconv_shared INTERFACE ENCCONV_USES_DLL)
  # The number is that of the interface, as behind .so elsewhere; programs are linked with the plain
  # name of the import library.
  set_target_properties(encconv_shared PROPERTIES
    RUNTIME_OUTPUT_NAME encconv-${PROJECT_VERSION_MAJOR}
    RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
  if(MINGW)
    # The DLL is all that a program needs beside it.
    target_link_options(encconv_shared PRIVATE -static)
  endif()
elseif(UNIX AND NOT APPLE)
  configure_file(${PROJECT_SOURCE_DIR}/cmake/encconv.map.in ${PROJECT_BINARY_DIR}/encconv.map @ONLY)
  target_link_options(encconv_shared PRIVATE
    LINKER:--version-script=${PROJECT_BINARY_DIR}/encconv.map)
  set_property(TARGET encconv_shared APPEND PROPERTY LINK_DEPENDS ${PROJECT_BINARY_DIR}/encconv.map)
endif()
