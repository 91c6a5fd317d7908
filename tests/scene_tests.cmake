ts3d_add_tests(
  gltf_reader_test.cpp
  platform_files_test.cpp
  scene_angles_test.cpp
  scene_array_test.cpp
  scene_ascii_test.cpp
  scene_binary_test.cpp
  scene_claims_test.cpp
  scene_damage_test.cpp
  scene_detect_test.cpp
  scene_document_test.cpp
  scene_embedded_test.cpp
  scene_importer_test.cpp
  scene_material_test.cpp
  scene_matrix_test.cpp
  scene_mesh_test.cpp
  scene_normals_test.cpp
  scene_old_textures_test.cpp
  scene_plugin_test.cpp
  scene_pose_test.cpp
  scene_shape_test.cpp
  scene_skin_test.cpp
  scene_transform_test.cpp
  scene_triangulate_test.cpp
  scene_version5_test.cpp
  scene_version6_test.cpp
  support/check_scene.cpp
  support/fbx_builder.cpp
  support/load_scene.cpp)

# Libraries for the plug-in folder of the tests, one fault each.
foreach(plugin reader crashing silent)
  add_library(ts3d_test_${plugin}_plugin MODULE plugins/${plugin}_plugin.cpp)
  target_link_libraries(ts3d_test_${plugin}_plugin PRIVATE ts3d_options)
  set_target_properties(ts3d_test_${plugin}_plugin PROPERTIES
    PREFIX "" OUTPUT_NAME ${plugin}_plugin LIBRARY_OUTPUT_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}/plugins)
  add_dependencies(ts3d_tests ts3d_test_${plugin}_plugin)
endforeach()
set_source_files_properties(scene_plugin_test.cpp cli_trust_test.cpp PROPERTIES
  COMPILE_DEFINITIONS TEST_PLUGIN_FOLDER="${CMAKE_CURRENT_BINARY_DIR}/plugins")
