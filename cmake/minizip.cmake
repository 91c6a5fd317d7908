if(FBX_TO_TS3D_MINIZIP_SOURCE)
  # Not packaged for this system: built from the source that scripts/fetch-minizip has put there.
  file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/minizip)
  file(CREATE_LINK ${FBX_TO_TS3D_MINIZIP_SOURCE} ${CMAKE_BINARY_DIR}/minizip/minizip SYMBOLIC)
  add_library(ts3d_minizip STATIC
    ${FBX_TO_TS3D_MINIZIP_SOURCE}/ioapi.c
    ${FBX_TO_TS3D_MINIZIP_SOURCE}/unzip.c
    ${FBX_TO_TS3D_MINIZIP_SOURCE}/zip.c)
  target_include_directories(ts3d_minizip SYSTEM INTERFACE ${CMAKE_BINARY_DIR}/minizip)
  target_compile_options(ts3d_minizip PRIVATE -w)
  target_link_libraries(ts3d_minizip PUBLIC ZLIB::ZLIB)
  add_library(PkgConfig::MINIZIP ALIAS ts3d_minizip)
else()
  # minizip comes with a pkg-config file only.
  find_package(PkgConfig REQUIRED)
  pkg_check_modules(MINIZIP REQUIRED IMPORTED_TARGET minizip)
endif()
