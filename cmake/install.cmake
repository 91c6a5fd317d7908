# What "cmake --install" and CPack put where: the library, what builds against it, and the tool.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)
set(config_folder ${CMAKE_INSTALL_LIBDIR}/cmake/FbxToTs3d)

set_target_properties(fbx_to_ts3d PROPERTIES EXPORT_NAME FbxToTs3d)
install(TARGETS fbx_to_ts3d EXPORT FbxToTs3dTargets
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT library
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library NAMELINK_COMPONENT development
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
install(FILES ${PROJECT_SOURCE_DIR}/include/fbx_to_ts3d.h
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)
install(TARGETS fbx2czp RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tool)
if(TARGET fbx2czp_pictures)
  # The tool looks for it there, from its own folder.
  install(TARGETS fbx2czp_pictures LIBRARY DESTINATION lib/fbx2czp COMPONENT tool)
endif()
foreach(component library development tool)
  set(doc_${component} ${CMAKE_INSTALL_DATADIR}/doc/${FBX_TO_TS3D_PACKAGE_${component}})
  install(FILES ${PROJECT_SOURCE_DIR}/LICENSE DESTINATION ${doc_${component}} COMPONENT ${component} RENAME copyright)
endforeach()
install(FILES ${PROJECT_SOURCE_DIR}/docs/host-guide.md ${PROJECT_SOURCE_DIR}/docs/formats.md
  ${PROJECT_SOURCE_DIR}/samples/host/host.c ${PROJECT_SOURCE_DIR}/samples/host/host.py
  DESTINATION ${doc_development} COMPONENT development)

install(EXPORT FbxToTs3dTargets NAMESPACE FbxToTs3d:: DESTINATION ${config_folder} COMPONENT development)
# The library has no dependencies that its users would have to find: the list of targets is all there is.
file(WRITE ${CMAKE_CURRENT_BINARY_DIR}/FbxToTs3dConfig.cmake
  "include(\${CMAKE_CURRENT_LIST_DIR}/FbxToTs3dTargets.cmake)\n")
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/FbxToTs3dConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/FbxToTs3dConfig.cmake
  ${CMAKE_CURRENT_BINARY_DIR}/FbxToTs3dConfigVersion.cmake
  DESTINATION ${config_folder} COMPONENT development)

file(RELATIVE_PATH root_from_pc /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(${CMAKE_CURRENT_LIST_DIR}/fbx_to_ts3d.pc.in fbx_to_ts3d.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/fbx_to_ts3d.pc
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
