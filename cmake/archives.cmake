# Loading a shared library takes a tenth of a millisecond, a fiftieth of a small model's conversion. Executables with
# the property LINKS_ARCHIVES take these libraries as archives, where the system has them.
function(prefer_archive target file)
  find_library(ARCHIVE_OF_${file} lib${file}.a)
  get_target_property(shared ${target} INTERFACE_LINK_LIBRARIES)
  if(ARCHIVE_OF_${file} AND shared)
    # What the library itself needs follows in both cases.
    set_property(TARGET ${target} PROPERTY INTERFACE_LINK_LIBRARIES
      "$<IF:$<BOOL:$<TARGET_PROPERTY:LINKS_ARCHIVES>>,${ARCHIVE_OF_${file}},${shared}>" ${ARGN})
  endif()
endfunction()
if(NOT FBX_TO_TS3D_SOURCES)
  prefer_archive(PkgConfig::MINIZIP minizip ZLIB::ZLIB)
  prefer_archive(pugixml::pugixml pugixml)
endif()
if(TARGET ts3d_libdeflate)
  prefer_archive(ts3d_libdeflate deflate)
endif()
