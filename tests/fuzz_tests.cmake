# The fuzz targets over inputs that are kept, without a fuzzer and in every build.
set(replayed document gltf image load package rig stream texture)
add_executable(ts3d_fuzz_replay
  ${PROJECT_SOURCE_DIR}/fuzz/record_mutator.cpp ${PROJECT_SOURCE_DIR}/fuzz/replay.cpp)
foreach(name ${replayed})
  set(source ${PROJECT_SOURCE_DIR}/fuzz/${name}_fuzz.cpp)
  target_sources(ts3d_fuzz_replay PRIVATE ${source})
  set_source_files_properties(${source} PROPERTIES COMPILE_DEFINITIONS LLVMFuzzerTestOneInput=${name}_fuzz)
endforeach()
target_include_directories(ts3d_fuzz_replay PRIVATE ${PROJECT_SOURCE_DIR}/fuzz)
target_link_libraries(ts3d_fuzz_replay PRIVATE ts3d_scene_support ts3d_driver ts3d_inspect ts3d_export ts3d_textures ZLIB::ZLIB)

# Targets take any bytes: each gets the findings of all of them, and the models of the tests.
file(GLOB findings ${PROJECT_SOURCE_DIR}/fuzz/regressions/*)
foreach(name ${replayed})
  add_test(NAME fuzz_replay_${name}
    COMMAND ts3d_fuzz_replay ${name}_fuzz ${findings} ${CMAKE_CURRENT_SOURCE_DIR}/fixtures)
  set_tests_properties(fuzz_replay_${name} PROPERTIES TIMEOUT 120)
endforeach()
