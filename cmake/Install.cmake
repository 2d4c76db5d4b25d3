# What is installed, and how other projects find it.
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/encconv)
set(engine_dir ${CMAKE_INSTALL_INCLUDEDIR}/encconv/engine)

install(TARGETS encconv encconv_engine EXPORT encconvTargets
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
if(TARGET encconv_shared)
  install(TARGETS encconv_shared EXPORT encconvTargets
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT library
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library
    NAMELINK_COMPONENT development)
endif()

if(TARGET encconv_iconv_shared)
  install(TARGETS encconv_iconv_shared
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT iconv_library)
  install(TARGETS encconv_iconv_static
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
  install(FILES include/encconv/iconv.h
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/encconv COMPONENT development)
endif()

install(FILES
  include/encconv/encconv.h
  include/encconv/encconv_c.h
  include/encconv/export.h
  include/encconv/records.h
  ${PROJECT_BINARY_DIR}/include/encconv/version.h
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/encconv COMPONENT development)
foreach(header IN ITEMS
    encoding/code_page_list.h
    encoding/codecs/encoding_names.h
    encoding/codecs/encoding_row.h
    encoding/conversion_observer.h
    encoding/encoding_convert.h
    encoding/output.h
    encoding/stream/stream_converter.h
    encoding/tables/unicode_lookup.h
    support/charset_naming.h
    support/data_buffer.h
    support/hash_convert.h
    support/log_base.h
    support/string_buffer.h
    support/text_log.h)
  get_filename_component(directory ${header} DIRECTORY)
  install(FILES ${header} DESTINATION ${engine_dir}/${directory} COMPONENT development)
endforeach()

install(EXPORT encconvTargets NAMESPACE encconv:: DESTINATION ${package_dir}
  COMPONENT development)
configure_package_config_file(cmake/encconvConfig.cmake.in
  ${PROJECT_BINARY_DIR}/encconvConfig.cmake INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/encconvConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES
  ${PROJECT_BINARY_DIR}/encconvConfig.cmake
  ${PROJECT_BINARY_DIR}/encconvConfigVersion.cmake
  DESTINATION ${package_dir} COMPONENT development)

# The prefix of the pkg-config files is where they are found, so that the tree can be moved.
file(RELATIVE_PATH pc_prefix /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
set(ENCCONV_PC_PREFIX "\${pcfiledir}/${pc_prefix}")
set(ENCCONV_PC_UCHARDET "")
if(ENCCONV_UCHARDET_LIBRARIES)
  set(ENCCONV_PC_UCHARDET "-luchardet ")
endif()
foreach(name IN ITEMS encconv encconv-engine)
  configure_file(cmake/${name}.pc.in ${PROJECT_BINARY_DIR}/${name}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/${name}.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
endforeach()

if(PROJECT_IS_TOP_LEVEL AND WIN32)
  include(cmake/WindowsPackage.cmake)
elseif(PROJECT_IS_TOP_LEVEL)
  include(cmake/Packages.cmake)
endif()
