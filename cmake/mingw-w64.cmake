# Toolchain: programs for 64-bit Windows, made with MinGW-w64 and run under Wine. scripts/windows.sh
# installs both and builds, below build/mingw-packages, the libraries that MinGW-w64 lacks.
#
# The variant with POSIX threads: the other one's std::thread and std::mutex, which the library needs,
# come with g++ 13 only.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

get_filename_component(encconv_source ${CMAKE_CURRENT_LIST_DIR} DIRECTORY)
set(CMAKE_FIND_ROOT_PATH ${encconv_source}/build/mingw-packages/root /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Windows as Wine makes it, below the build directory too; it needs no screen and tells of nothing.
set(CMAKE_CROSSCOMPILING_EMULATOR ${encconv_source}/scripts/wine.sh)

# For what is linked by its plain name.
set(CMAKE_EXE_LINKER_FLAGS_INIT -L${encconv_source}/build/mingw-packages/root/lib)
set(CMAKE_SHARED_LINKER_FLAGS_INIT -L${encconv_source}/build/mingw-packages/root/lib)
