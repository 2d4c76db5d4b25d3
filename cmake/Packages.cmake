# Debian packages (cpack -G DEB): the tool, the shared library, and what programs are built with.
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
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_TOOL_PACKAGE_NAME encconv)
set(CPACK_DEBIAN_TOOL_PACKAGE_SECTION text)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME libencconv${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libencconv-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS
  "libencconv${PROJECT_VERSION_MAJOR} (= ${PROJECT_VERSION}), libbz2-dev")
if(ENCCONV_UCHARDET_LIBRARIES)
  string(APPEND CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS ", libuchardet-dev")
endif()

set(about "Unicode, Windows, DOS, Mac, EBCDIC, East Asian and GSM encodings, in constant memory, \
with a report of what cannot be converted.")
set(CPACK_COMPONENT_TOOL_DESCRIPTION "${about}\nThis is the tool for files and pipes.")
set(CPACK_COMPONENT_LIBRARY_DESCRIPTION "${about}\nThis is the shared library.")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
  "${about}\nThese are headers for C and C++, the static library, and files for CMake and pkg-config.")
include(CPack)

foreach(component IN ITEMS tool library development)
  string(TOUPPER ${component} name)
  install(FILES LICENSE DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${CPACK_DEBIAN_${name}_PACKAGE_NAME}
    RENAME copyright COMPONENT ${component})
endforeach()
install(FILES CHANGELOG.md docs/guide.md
  DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/encconv COMPONENT tool)
