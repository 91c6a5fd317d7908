# What "cpack" puts into the .zip archive for Windows: on top what an artist needs, in sdk/ what a host's developer does.
include(CMakePackageConfigHelpers)
# MSVC puts import libraries of GNU's tool together wrongly; that of LLVM makes what its own does.
find_program(LLVM_DLLTOOL NAMES llvm-dlltool llvm-dlltool-14)
if(LLVM_DLLTOOL)
  set(machine i386:x86-64)
  if(CMAKE_SYSTEM_PROCESSOR STREQUAL "i686")
    set(machine i386)
  endif()
  set(exports ${CMAKE_BINARY_DIR}/fbx_to_ts3d.def)
  set(import_library ${CMAKE_BINARY_DIR}/fbx_to_ts3d.lib)
  target_link_options(fbx_to_ts3d PRIVATE -Wl,--output-def,${exports})
  add_custom_command(OUTPUT ${import_library} DEPENDS fbx_to_ts3d VERBATIM
    COMMAND ${LLVM_DLLTOOL} -m ${machine} -d ${exports} -D fbx_to_ts3d.dll -l ${import_library})
  add_custom_target(import_library_for_msvc ALL DEPENDS ${import_library})
  install(FILES ${import_library} DESTINATION sdk/lib)
endif()

install(TARGETS fbx2czp RUNTIME DESTINATION .)
install(TARGETS fbx_to_ts3d EXPORT FbxToTs3dTargets RUNTIME DESTINATION sdk/bin ARCHIVE DESTINATION sdk/lib
  INCLUDES DESTINATION sdk/include)
set_target_properties(fbx_to_ts3d PROPERTIES EXPORT_NAME FbxToTs3d)
file(GLOB headers ${PROJECT_SOURCE_DIR}/include/*)
install(FILES ${headers} DESTINATION sdk/include)
install(EXPORT FbxToTs3dTargets NAMESPACE FbxToTs3d:: DESTINATION sdk/lib/cmake/FbxToTs3d)
file(WRITE ${CMAKE_BINARY_DIR}/FbxToTs3dConfig.cmake "include(\${CMAKE_CURRENT_LIST_DIR}/FbxToTs3dTargets.cmake)\n")
write_basic_package_version_file(${CMAKE_BINARY_DIR}/FbxToTs3dConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_BINARY_DIR}/FbxToTs3dConfig.cmake ${CMAKE_BINARY_DIR}/FbxToTs3dConfigVersion.cmake
  DESTINATION sdk/lib/cmake/FbxToTs3d)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/samples/host/ DESTINATION sdk/examples)

# Editors of Windows show texts with its own line ends.
configure_file(${PROJECT_SOURCE_DIR}/cmake/windows/README.txt ${CMAKE_BINARY_DIR}/README.txt @ONLY NEWLINE_STYLE CRLF)
install(FILES ${CMAKE_BINARY_DIR}/README.txt DESTINATION .)
# The tool of the build machine writes the manual (./build-windows --package).
install(FILES ${CMAKE_BINARY_DIR}/manual.txt DESTINATION . OPTIONAL)
install(FILES ${PROJECT_SOURCE_DIR}/samples/scout.fbx ${PROJECT_SOURCE_DIR}/samples/skin.tga DESTINATION sample)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/samples/textures DESTINATION sample)
# README.md lies among the others there.
file(GLOB guides ${PROJECT_SOURCE_DIR}/*.md ${PROJECT_SOURCE_DIR}/docs/*.md)
list(FILTER guides EXCLUDE REGEX "/(architecture|testing|CONTRIBUTING)\\.md$")
foreach(guide IN LISTS guides)
  file(READ ${guide} text)
  string(REPLACE "(../" "(" text "${text}")
  string(REPLACE "docs/" "" text "${text}")
  get_filename_component(name ${guide} NAME)
  file(WRITE ${CMAKE_BINARY_DIR}/guides/${name} "${text}")
endforeach()
install(DIRECTORY ${CMAKE_BINARY_DIR}/guides/ ${PROJECT_SOURCE_DIR}/docs/pictures ${PROJECT_SOURCE_DIR}/docs/schemas
  DESTINATION docs)

# Whoever hands on the programs hands on these as well.
function(install_licence name file)
  install(FILES ${file} DESTINATION licences RENAME ${name}.txt)
endfunction()
install_licence(FBX-to-TS3D ${PROJECT_SOURCE_DIR}/LICENSE)
foreach(folder minizip pugixml libdeflate libpng libjpeg-turbo libtiff libwebp squish)
  install_licence(${folder} ${FBX_TO_TS3D_SOURCES}/${folder}/debian/copyright)
endforeach()
foreach(package libz-mingw-w64-dev mingw-w64-common gcc-mingw-w64-base libcli11-dev nlohmann-json3-dev libstb-dev)
  install_licence(${package} /usr/share/doc/${package}/copyright)
endforeach()
if(TARGET ts3d_page)
  install_licence(three.js ${PROJECT_SOURCE_DIR}/web/three-license.txt)
endif()
