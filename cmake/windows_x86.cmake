set(TS3D_WINDOWS_CPU i686)
include(${CMAKE_CURRENT_LIST_DIR}/windows_toolchain.cmake)
# SSE2 rounds every operation like the 64-bit build does. Hosts align the stack to 4 bytes, SSE needs 16.
set(CMAKE_C_FLAGS_INIT "-msse2 -mfpmath=sse -mstackrealign")
set(CMAKE_CXX_FLAGS_INIT "-msse2 -mfpmath=sse -mstackrealign")
