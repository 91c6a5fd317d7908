# libdeflate unpacks arrays faster; zlib does it where libdeflate is not to be had.
find_path(LIBDEFLATE_INCLUDE_DIR libdeflate.h)
find_library(LIBDEFLATE_LIBRARY deflate)
if(LIBDEFLATE_INCLUDE_DIR AND LIBDEFLATE_LIBRARY)
  add_library(ts3d_libdeflate INTERFACE)
  target_include_directories(ts3d_libdeflate INTERFACE ${LIBDEFLATE_INCLUDE_DIR})
  target_link_libraries(ts3d_libdeflate INTERFACE ${LIBDEFLATE_LIBRARY})
  target_compile_definitions(ts3d_libdeflate INTERFACE FBX_TO_TS3D_LIBDEFLATE)
endif()
