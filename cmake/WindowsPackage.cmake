# The zip for Windows (cpack -G ZIP): the tool, the DLL with its import library, the static libraries,
# headers, files for CMake and pkg-config, and documents. tests/consumer/windows.sh tries it.
set(CPACK_PACKAGE_NAME encconv)
set(CPACK_PACKAGE_VENDOR "encconv")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY ${PROJECT_DESCRIPTION})
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_GENERATOR ZIP)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGE_FILE_NAME encconv-${PROJECT_VERSION}-windows-x86_64)
# All in one.
set(CPACK_MONOLITHIC_INSTALL ON)
include(CPack)

install(FILES LICENSE CHANGELOG.md README.md DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/encconv
  COMPONENT tool)
install(DIRECTORY docs/ DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/encconv/docs COMPONENT tool
  FILES_MATCHING PATTERN "*.md" PATTERN "*.svg")
# What stands in the program and in the DLL.
foreach(package IN ITEMS bzip2 uchardet)
  set(copyright ${PROJECT_SOURCE_DIR}/build/mingw-packages/root/share/doc/${package}/copyright)
  if(EXISTS ${copyright})
    install(FILES ${copyright} DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/encconv/licenses
      RENAME ${package}.txt COMPONENT tool)
  endif()
endforeach()
