set(TS3D_WINDOWS_CPU x86_64)
include(${CMAKE_CURRENT_LIST_DIR}/windows_toolchain.cmake)
