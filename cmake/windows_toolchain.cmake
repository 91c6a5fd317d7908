# What both Windows toolchains share; TS3D_WINDOWS_CPU is set by the one that includes this.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR ${TS3D_WINDOWS_CPU})
set(triplet ${TS3D_WINDOWS_CPU}-w64-mingw32)
set(CMAKE_C_COMPILER ${triplet}-gcc-posix)
set(CMAKE_CXX_COMPILER ${triplet}-g++-posix)
set(CMAKE_RC_COMPILER ${triplet}-windres)
# Nothing of the build machine's own libraries.
set(CMAKE_FIND_ROOT_PATH /usr/${triplet})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
# zlib and the compiler's own libraries go into the DLL and the program: they run on a Windows that has nothing of ours.
set(ZLIB_LIBRARY /usr/${triplet}/lib/libz.a CACHE FILEPATH "The static zlib")
set(CMAKE_EXE_LINKER_FLAGS_INIT -static)
set(CMAKE_SHARED_LINKER_FLAGS_INIT -static)
