# Debian packages (cpack -G DEB, preset "package"): the tool, the shared library, what programs are
# built with, and the library and the command that stand for iconv. lintian finds no errors in them.
set(CPACK_PACKAGE_NAME encconv)
set(CPACK_PACKAGE_VENDOR "encconv")
set(CPACK_PACKAGE_CONTACT "The encconv authors <encconv@example.org>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY ${PROJECT_DESCRIPTION})
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_GENERATOR DEB)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL tool library development)
if(TARGET encconv_iconv_shared)
  list(APPEND CPACK_COMPONENTS_ALL iconv_library)
endif()
if(TARGET encconv_iconv_cli)
  list(APPEND CPACK_COMPONENTS_ALL iconv_tool)
endif()
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Programs need the library that they were built with, or a later one of the same interface.
set(shlibs "libencconv ${PROJECT_VERSION_MAJOR} libencconv${PROJECT_VERSION_MAJOR} (>= ${PROJECT_VERSION})")
file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/shlibs CONTENT "${shlibs}\n")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/triggers CONTENT "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA
  ${PROJECT_BINARY_DIR}/shlibs ${PROJECT_BINARY_DIR}/triggers)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_TOOL_PACKAGE_NAME encconv)
set(CPACK_DEBIAN_TOOL_PACKAGE_SECTION text)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME libencconv${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libencconv-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS
  "libencconv${PROJECT_VERSION_MAJOR} (= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}), libbz2-dev")
set(iconv_packages ${PROJECT_SOURCE_DIR}/cmake/iconv-packages)
set(CPACK_DEBIAN_ICONV_LIBRARY_PACKAGE_NAME libencconv-iconv)
set(CPACK_DEBIAN_ICONV_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_ICONV_LIBRARY_PACKAGE_CONTROL_EXTRA ${PROJECT_BINARY_DIR}/triggers)
set(CPACK_DEBIAN_ICONV_TOOL_PACKAGE_NAME encconv-iconv)
set(CPACK_DEBIAN_ICONV_TOOL_PACKAGE_SECTION text)
set(CPACK_DEBIAN_ICONV_TOOL_PACKAGE_CONTROL_EXTRA ${iconv_packages}/postinst ${iconv_packages}/prerm)
if(ENCCONV_UCHARDET_LIBRARIES)
  string(APPEND CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS ", libuchardet-dev")
endif()

set(about "Unicode, Windows, DOS, Mac, EBCDIC, East Asian and GSM encodings, in constant
memory, with a report of what cannot be converted.")
set(CPACK_COMPONENT_TOOL_DESCRIPTION "${about}\nThis is the tool for files and pipes.")
set(CPACK_COMPONENT_LIBRARY_DESCRIPTION "${about}\nThis is the shared library.")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
  "${about}\nThese are headers for C and C++, the static libraries, and files for CMake and\npkg-config.")
set(CPACK_COMPONENT_ICONV_LIBRARY_DESCRIPTION
  "${about}\nThis is the library for programs that call iconv, as they are: they are started\nor linked with it.")
set(CPACK_COMPONENT_ICONV_TOOL_DESCRIPTION
  "${about}\nThis is a command with the options and messages of iconv, and an alternative\nfor it.")
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/CompressDocuments.cmake)
include(CPack)

# Debian wants a changelog of its own beside the project's.
string(TIMESTAMP now "%a, %d %b %Y %H:%M:%S +0000" UTC)
file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/changelog.Debian CONTENT
"encconv (${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}) unstable; urgency=medium

  * Version ${PROJECT_VERSION}, packed by its own build; changelog.gz says what is new.

 -- ${CPACK_PACKAGE_CONTACT}  ${now}
")
foreach(component IN LISTS CPACK_COMPONENTS_ALL)
  string(TOUPPER ${component} name)
  set(documents ${CMAKE_INSTALL_DATADIR}/doc/${CPACK_DEBIAN_${name}_PACKAGE_NAME})
  install(FILES LICENSE DESTINATION ${documents} RENAME copyright COMPONENT ${component})
  install(FILES CHANGELOG.md DESTINATION ${documents} RENAME changelog COMPONENT ${component})
  install(FILES ${PROJECT_BINARY_DIR}/changelog.Debian DESTINATION ${documents}
    COMPONENT ${component})
endforeach()
if(TARGET encconv_iconv_shared)
  configure_file(${iconv_packages}/ld.so.preload.in ${PROJECT_BINARY_DIR}/ld.so.preload @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/ld.so.preload ${iconv_packages}/Containerfile
    DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/libencconv-iconv/examples COMPONENT iconv_library)
endif()
if(TARGET encconv_iconv_cli)
  install(FILES ${iconv_packages}/lintian-overrides RENAME encconv-iconv
    DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides COMPONENT iconv_tool)
endif()
install(FILES docs/guide.md DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/encconv COMPONENT tool)
