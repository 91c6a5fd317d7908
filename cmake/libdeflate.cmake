# libdeflate unpacks the arrays of models and packs members.
if(FBX_TO_TS3D_SOURCES)
  # Built from its source, like minizip.
  set(libdeflate ${FBX_TO_TS3D_SOURCES}/libdeflate)
  add_library(ts3d_libdeflate STATIC
    ${libdeflate}/lib/adler32.c
    ${libdeflate}/lib/crc32.c
    ${libdeflate}/lib/deflate_compress.c
    ${libdeflate}/lib/deflate_decompress.c
    ${libdeflate}/lib/utils.c
    ${libdeflate}/lib/x86/cpu_features.c
    ${libdeflate}/lib/zlib_decompress.c)
  target_include_directories(ts3d_libdeflate PRIVATE ${libdeflate} SYSTEM INTERFACE ${libdeflate})
  target_compile_options(ts3d_libdeflate PRIVATE -w)
else()
  find_path(LIBDEFLATE_INCLUDE_DIR libdeflate.h REQUIRED)
  find_library(LIBDEFLATE_LIBRARY deflate REQUIRED)
  add_library(ts3d_libdeflate INTERFACE)
  target_include_directories(ts3d_libdeflate INTERFACE ${LIBDEFLATE_INCLUDE_DIR})
  target_link_libraries(ts3d_libdeflate INTERFACE ${LIBDEFLATE_LIBRARY})
endif()
