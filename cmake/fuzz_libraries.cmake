# Builds picture libraries so that a fuzzer sees where an input leads in them, and what it does to memory.
set(CMAKE_C_COMPILER clang)
set(CMAKE_CXX_COMPILER clang++)
set(CMAKE_C_FLAGS_INIT "-fsanitize=address,fuzzer-no-link -g")
set(CMAKE_CXX_FLAGS_INIT "${CMAKE_C_FLAGS_INIT}")
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
# What is written in assembly is seen by no sanitizer.
set(WITH_SIMD OFF CACHE BOOL "")
