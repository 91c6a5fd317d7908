# Tests that make system calls fail: a program of its own, since the calls fail for the whole program.
add_executable(ts3d_fault_tests
  faults/fault_sweep_test.cpp
  faults/real_disk_test.cpp
  faults/system_faults.cpp
  support/package_reader.cpp)
target_link_libraries(ts3d_fault_tests PRIVATE ts3d_options fbx_to_ts3d PkgConfig::MINIZIP ZLIB::ZLIB GTest::gmock_main)
target_include_directories(ts3d_fault_tests PRIVATE ${CMAKE_CURRENT_SOURCE_DIR})
target_compile_definitions(ts3d_fault_tests PRIVATE TS3D_FIXTURES_FOLDER="${CMAKE_CURRENT_SOURCE_DIR}/fixtures")
gtest_discover_tests(ts3d_fault_tests PROPERTIES TIMEOUT 120)
