if(FBX_TO_TS3D_SOURCES)
  # Built from its source, like pugixml; the headers are included as <minizip/...>.
  set(minizip ${FBX_TO_TS3D_SOURCES}/minizip)
  add_library(ts3d_minizip STATIC ${minizip}/ioapi.c ${minizip}/unzip.c ${minizip}/zip.c)
  target_include_directories(ts3d_minizip SYSTEM INTERFACE ${FBX_TO_TS3D_SOURCES})
  target_compile_options(ts3d_minizip PRIVATE -w)
  target_link_libraries(ts3d_minizip PUBLIC ZLIB::ZLIB)
  add_library(PkgConfig::MINIZIP ALIAS ts3d_minizip)
else()
  # minizip comes with a pkg-config file only.
  find_package(PkgConfig REQUIRED)
  pkg_check_modules(MINIZIP REQUIRED IMPORTED_TARGET minizip)
endif()
