# Tests of the conversion from skeletons to the library.
ts3d_test_support(ts3d_converter_support
  SOURCES support/package_reader.cpp support/runtime_actor.cpp
  LINKS ts3d_scene_support ts3d_driver PkgConfig::MINIZIP PkgConfig::CAL3D)
# The runtime's library brings no type information of its classes for the checks of virtual calls.
target_compile_options(ts3d_converter_support PRIVATE -fno-sanitize=vptr)
set_source_files_properties(runtime_client_test.cpp prove_test.cpp PROPERTIES COMPILE_OPTIONS -fno-sanitize=vptr)
ts3d_test_program(ts3d_converter_tests
  SOURCES
    config_bones_test.cpp
    config_document_test.cpp
    core_names_test.cpp
    driver_claims_test.cpp
    driver_convert_test.cpp
    driver_final_settings_test.cpp
    driver_password_test.cpp
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
  # The exported functions are called through the shared library, as hosts do.
  LINKS ts3d_converter_support fbx_to_ts3d)
