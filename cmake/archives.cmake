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
  prefer_archive(ts3d_libdeflate deflate)
endif()

# The C++ library takes longer to load than all of these, a tenth of a small model's conversion. Parts of a
# program that have one each do not throw exceptions at each other.
include(CheckLinkerFlag)
set(own_cxx_library -static-libstdc++ LINKER:--gc-sections,--exclude-libs,ALL)
check_linker_flag(CXX "${own_cxx_library}" LINKS_OWN_CXX_LIBRARY)
function(link_own_cxx_library target)
  if(LINKS_OWN_CXX_LIBRARY AND NOT FBX_TO_TS3D_SANITIZE AND NOT FBX_TO_TS3D_SANITIZE_THREADS AND
     NOT FBX_TO_TS3D_FUZZ)
    target_link_options(${target} PRIVATE ${own_cxx_library})
  endif()
endfunction()
