# uchardet is the statistical judge of encoding/detect for the encodings and languages that it knows.
# The library links with it where it is installed; without it, letter frequencies alone judge. It is
# linked by its plain name, so that what is installed holds no path of the machine that built it.
#
# Sets ENCCONV_UCHARDET_LIBRARIES and ENCCONV_UCHARDET_INCLUDE_DIRS, empty without it.
option(ENCCONV_UCHARDET "Judge encodings by uchardet too, where it is installed" ON)
option(ENCCONV_UCHARDET_STATIC "Link its static library, by its path" OFF)
set(ENCCONV_UCHARDET_LIBRARIES "")
set(ENCCONV_UCHARDET_INCLUDE_DIRS "")
if(ENCCONV_UCHARDET)
  find_path(UCHARDET_INCLUDE_DIR uchardet/uchardet.h)
  if(ENCCONV_UCHARDET_STATIC)
    find_library(UCHARDET_LIBRARY ${CMAKE_STATIC_LIBRARY_PREFIX}uchardet${CMAKE_STATIC_LIBRARY_SUFFIX})
  else()
    find_library(UCHARDET_LIBRARY uchardet)
  endif()
  if(UCHARDET_INCLUDE_DIR AND UCHARDET_LIBRARY)
    set(ENCCONV_UCHARDET_LIBRARIES uchardet)
    if(ENCCONV_UCHARDET_STATIC)
      set(ENCCONV_UCHARDET_LIBRARIES ${UCHARDET_LIBRARY})
    endif()
    set(ENCCONV_UCHARDET_INCLUDE_DIRS ${UCHARDET_INCLUDE_DIR})
  endif()
endif()
