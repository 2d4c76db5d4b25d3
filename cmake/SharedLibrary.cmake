# The shared library: the same objects, of which only the interface shows.
add_library(encconv_shared SHARED
  $<TARGET_OBJECTS:encconv_interface> $<TARGET_OBJECTS:encconv_engine>)
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
  ${ENCCONV_UCHARDET_LIBRARIES})
if(UNIX AND NOT APPLE)
  configure_file(${PROJECT_SOURCE_DIR}/cmake/encconv.map.in ${PROJECT_BINARY_DIR}/encconv.map @ONLY)
  target_link_options(encconv_shared PRIVATE
    LINKER:--version-script=${PROJECT_BINARY_DIR}/encconv.map)
  set_property(TARGET encconv_shared APPEND PROPERTY LINK_DEPENDS ${PROJECT_BINARY_DIR}/encconv.map)
endif()
