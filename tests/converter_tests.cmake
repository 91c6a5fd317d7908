# Tests of everything but the scene library.
set(TS3D_CONVERTER_TESTS
  config_bones_test.cpp
  config_document_test.cpp
  core_names_test.cpp
  driver_convert_test.cpp
  driver_final_settings_test.cpp
  driver_password_test.cpp
  converter_handles_test.cpp
  exports_c_test.c
  exports_functions_test.cpp
  material_files_test.cpp
  material_texture_test.cpp
  mesh_cmf_test.cpp
  mesh_pose_test.cpp
  mesh_slices_test.cpp
  mesh_split_test.cpp
  package_ahead_test.cpp
  package_archive_test.cpp
  runtime_client_test.cpp
  skeleton_influences_test.cpp
  skeleton_tree_test.cpp
  skeleton_warnings_test.cpp
  support/package_reader.cpp
  support/runtime_actor.cpp)
list(TRANSFORM TS3D_CONVERTER_TESTS PREPEND ${CMAKE_CURRENT_LIST_DIR}/)
ts3d_add_tests(${TS3D_CONVERTER_TESTS})

# The exported functions are called through the shared library, as hosts do.
target_link_libraries(ts3d_tests PRIVATE fbx_to_ts3d)
target_compile_definitions(ts3d_tests PRIVATE TS3D_SAMPLES_FOLDER="${PROJECT_SOURCE_DIR}/samples")

# The runtime that skeletons, meshes and materials are made for; tests only.
pkg_check_modules(CAL3D REQUIRED IMPORTED_TARGET cal3d)
target_link_libraries(ts3d_tests PRIVATE PkgConfig::CAL3D)

# The runtime's library brings no type information of its classes for the checks of virtual calls.
set_source_files_properties(${CMAKE_CURRENT_LIST_DIR}/support/runtime_actor.cpp ${CMAKE_CURRENT_LIST_DIR}/runtime_client_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/prove_test.cpp
  PROPERTIES COMPILE_OPTIONS -fno-sanitize=vptr)
