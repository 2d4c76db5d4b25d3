# Run by CPack over the files of each package: compresses what Debian wants compressed.
file(GLOB_RECURSE documents ${CPACK_TEMPORARY_DIRECTORY}/*)
list(FILTER documents INCLUDE REGEX "/share/man/.*[.]1$|/share/doc/.*/changelog([.]Debian)?$")
foreach(document IN LISTS documents)
  execute_process(COMMAND gzip -9 --no-name ${document} COMMAND_ERROR_IS_FATAL ANY)
endforeach()
