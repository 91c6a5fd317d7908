# Tests of final settings from outside, and of the command-line tool.
ts3d_add_tests(
  cli_batch_test.cpp
  cli_commands_test.cpp
  finish_safety_test.cpp
  finish_xml_test.cpp
  textures_decode_test.cpp
  textures_tool_test.cpp)
target_link_libraries(ts3d_tests PRIVATE pugixml::pugixml nlohmann_json::nlohmann_json fbx2czp_textures util
  # What writes the pictures of the tests.
  PkgConfig::PNG PkgConfig::TURBOJPEG PkgConfig::TIFF PkgConfig::WEBP)
target_compile_definitions(ts3d_tests PRIVATE FBX2CZP_PATH="$<TARGET_FILE:fbx2czp>")
add_dependencies(ts3d_tests fbx2czp)
