# Tests of the pictures and pages of packages.
ts3d_add_tests(preview_page_test.cpp preview_picture_test.cpp preview_stand_test.cpp preview_tool_test.cpp)
target_link_libraries(ts3d_tests PRIVATE ts3d_preview)
