# Tests of what reads packages back, of converters as hosts hold them, and of the command-line tool.
find_package(assimp REQUIRED)
find_path(FBX_TO_TS3D_RAPIDJSON rapidjson/schema.h REQUIRED)
ts3d_test_program(ts3d_tool_tests
  SOURCES
    actor_export_test.cpp
    actor_findings_test.cpp
    actor_readers_test.cpp
    check_findings_test.cpp
    cli_batch_test.cpp
    cli_check_test.cpp
    cli_commands_test.cpp
    cli_formats_test.cpp
    cli_package_test.cpp
    cli_trust_test.cpp
    converter_handles_test.cpp
    core_json_test.cpp
    finish_safety_test.cpp
    name_safety_test.cpp
    preview_page_test.cpp
    preview_picture_test.cpp
    preview_stand_test.cpp
    preview_tool_test.cpp
    prove_readers_test.cpp
    prove_test.cpp
    repairs_test.cpp
    support/json_schemas.cpp
    support/sample_pictures.cpp
    textures_decode_test.cpp
    textures_tool_test.cpp
  LINKS
    ts3d_converter_support ts3d_inspect ts3d_export ts3d_rig_check ts3d_prove ts3d_preview ts3d_textures fbx_to_ts3d
    assimp::assimp nlohmann_json::nlohmann_json util
    # What writes the pictures of the tests.
    PkgConfig::PNG PkgConfig::TURBOJPEG PkgConfig::TIFF PkgConfig::WEBP)
target_compile_definitions(ts3d_tool_tests PRIVATE FBX2CZP_PATH="$<TARGET_FILE:fbx2czp>")
target_include_directories(ts3d_tool_tests SYSTEM PRIVATE ${FBX_TO_TS3D_RAPIDJSON})
add_dependencies(ts3d_tool_tests fbx2czp)
