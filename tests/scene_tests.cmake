# Tests of the scene library and what stands below it; they need nothing else of ours but what weighs its claims.
ts3d_test_support(ts3d_scene_support
  SOURCES support/check_scene.cpp support/fbx_builder.cpp support/load_scene.cpp
  LINKS ts3d_mesh_claims ZLIB::ZLIB)
ts3d_test_program(ts3d_scene_tests
  SOURCES
    formats_table_test.cpp
    gltf_material_test.cpp
    gltf_reader_test.cpp
    gltf_rig_test.cpp
    gltf_vertices_test.cpp
    other_formats_test.cpp
    other_models_test.cpp
    platform_files_test.cpp
    scene_angles_test.cpp
    scene_array_test.cpp
    scene_ascii_test.cpp
    scene_binary_test.cpp
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
    ${PROJECT_SOURCE_DIR}/src/translator/own_joints.cpp
    ${PROJECT_SOURCE_DIR}/tools/compare_corpus/scene_compare.cpp
  LINKS ts3d_scene_support nlohmann_json::nlohmann_json)
pkg_check_modules(DRACO IMPORTED_TARGET draco)
if(DRACO_FOUND AND NOT WIN32)
  target_sources(ts3d_scene_tests PRIVATE gltf_draco_test.cpp)
  target_link_libraries(ts3d_scene_tests PRIVATE PkgConfig::DRACO)
endif()

# Libraries for the plug-in folder of the tests, one fault each.
foreach(plugin reader crashing silent)
  add_library(ts3d_test_${plugin}_plugin MODULE plugins/${plugin}_plugin.cpp)
  target_link_libraries(ts3d_test_${plugin}_plugin PRIVATE ts3d_options)
  set_target_properties(ts3d_test_${plugin}_plugin PROPERTIES
    PREFIX "" OUTPUT_NAME ${plugin}_plugin LIBRARY_OUTPUT_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}/plugins)
  add_dependencies(ts3d_scene_tests ts3d_test_${plugin}_plugin)
endforeach()
