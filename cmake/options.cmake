# Ending of the files that hold system calls.
set(TS3D_SYSTEM posix)
if(WIN32)
  set(TS3D_SYSTEM windows)
endif()

# Most of a build's time goes into headers, which sources that are compiled together share: all of the target, or `most`
# at once.
function(join_sources target)
  set(most ${ARGN} 0)
  list(GET most 0 most)
  set_target_properties(${target} PROPERTIES UNITY_BUILD ${FBX_TO_TS3D_UNITY} UNITY_BUILD_BATCH_SIZE ${most})
endfunction()

# Compilers that tidy up their memory often spend a tenth of their time on that; sources together need less than 1 GB.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  add_compile_options($<$<COMPILE_LANGUAGE:CXX>:--param=ggc-min-heapsize=1000000>)
endif()

# For what runs once in a conversion: compiling it takes half the time, running it hardly longer.
function(optimise_lightly target level)
  target_compile_options(${target} PRIVATE $<$<CONFIG:Release>:-O${level}>)
endfunction()

# Compiler settings of every target of ours.
add_library(ts3d_options INTERFACE)
target_include_directories(ts3d_options INTERFACE ${PROJECT_SOURCE_DIR}/src ${PROJECT_SOURCE_DIR}/include)
target_compile_options(ts3d_options INTERFACE -Wall -Wextra -Wconversion)
target_compile_definitions(ts3d_options INTERFACE FBX_TO_TS3D_VERSION="${PROJECT_VERSION}")
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # GCC 12 sees overlapping copies in every "literal" + std::string.
  target_compile_options(ts3d_options INTERFACE -Wno-restrict)
endif()
# A product and a sum are rounded one after the other, on every processor: models come out the same everywhere.
add_compile_options(-ffp-contract=off)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # GCC 12 loses a rounding to float between doubles where it joins statements into vectors.
  add_compile_options($<$<COMPILE_LANGUAGE:CXX>:-fno-tree-slp-vectorize>)
endif()
if(WIN32)
  target_compile_definitions(ts3d_options INTERFACE WIN32_LEAN_AND_MEAN NOMINMAX _WIN32_WINNT=0x0601)
endif()
if(FBX_TO_TS3D_WERROR)
  target_compile_options(ts3d_options INTERFACE -Werror)
endif()
if(FBX_TO_TS3D_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # Instrumented code makes GCC see uninitialised reads in the standard library's headers.
    add_compile_options(-Wno-maybe-uninitialized)
  endif()
endif()
if(FBX_TO_TS3D_SANITIZE_THREADS)
  add_compile_options(-fsanitize=thread -fno-omit-frame-pointer)
  add_link_options(-fsanitize=thread)
endif()
if(FBX_TO_TS3D_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()
