# What "cmake --install" and CPack put where: the library, what builds against it, and the tool.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)
set(config_folder ${CMAKE_INSTALL_LIBDIR}/cmake/FbxToTs3d)

set_target_properties(fbx_to_ts3d PROPERTIES EXPORT_NAME FbxToTs3d)
install(TARGETS fbx_to_ts3d EXPORT FbxToTs3dTargets
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT library
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library NAMELINK_COMPONENT development
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
install(FILES ${PROJECT_SOURCE_DIR}/include/fbx_to_ts3d.h ${PROJECT_SOURCE_DIR}/include/fbx_to_ts3d.hpp
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)
install(TARGETS fbx2czp RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tool)
get_property(picture_modules GLOBAL PROPERTY FBX2CZP_PICTURE_MODULES)
if(picture_modules)
  # The tool looks for them there, from its own folder.
  install(TARGETS ${picture_modules} LIBRARY DESTINATION lib/fbx2czp COMPONENT tool)
  # The library looks for them beside itself.
  install(TARGETS ${picture_modules}
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/fbx_to_ts3d COMPONENT library)
endif()
if(TARGET translate_model)
  install(TARGETS translate_model RUNTIME DESTINATION lib/fbx2czp COMPONENT tool)
  install(TARGETS translate_model RUNTIME DESTINATION ${CMAKE_INSTALL_LIBDIR}/fbx_to_ts3d COMPONENT library)
endif()
if(NOT CMAKE_CROSSCOMPILING AND NOT FBX_TO_TS3D_SANITIZE)
  # The tool writes its own papers, from the texts of --help.
  set(papers ${CMAKE_CURRENT_BINARY_DIR}/papers)
  file(MAKE_DIRECTORY ${papers})
  set(files fbx2czp.1 fbx2czp.bash _fbx2czp fbx2czp.fish)
  list(TRANSFORM files PREPEND ${papers}/)
  add_custom_command(OUTPUT ${files}
    COMMAND fbx2czp manual > fbx2czp.1
    COMMAND fbx2czp completion bash > fbx2czp.bash
    COMMAND fbx2czp completion zsh > _fbx2czp
    COMMAND fbx2czp completion fish > fbx2czp.fish
    WORKING_DIRECTORY ${papers} VERBATIM)
  add_custom_target(fbx2czp_papers ALL DEPENDS ${files})
  install(FILES ${papers}/fbx2czp.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tool)
  install(FILES ${papers}/fbx2czp.bash RENAME fbx2czp
    DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT tool)
  install(FILES ${papers}/_fbx2czp DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions COMPONENT tool)
  install(FILES ${papers}/fbx2czp.fish DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d COMPONENT tool)
endif()
if(TARGET ts3d_page)
  # The page holds three.js.
  install(FILES ${PROJECT_SOURCE_DIR}/web/three-license.txt COMPONENT tool
    DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${FBX_TO_TS3D_PACKAGE_tool} RENAME copyright.three.js)
endif()
file(GLOB schemas ${PROJECT_SOURCE_DIR}/docs/schemas/*.json)
install(FILES ${schemas} DESTINATION ${CMAKE_INSTALL_DATADIR}/fbx2czp/schemas COMPONENT tool)
file(GLOB guides ${PROJECT_SOURCE_DIR}/docs/*.md)
list(FILTER guides EXCLUDE REGEX "/(architecture|testing|host-guide|formats)\\.md$")
install(FILES ${guides} ${PROJECT_SOURCE_DIR}/README.md
  DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${FBX_TO_TS3D_PACKAGE_tool} COMPONENT tool)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs/pictures
  DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${FBX_TO_TS3D_PACKAGE_tool} COMPONENT tool)
# Debian wants changelogs packed, without a date in them.
find_program(GZIP gzip)
if(GZIP)
  set(changelog ${CMAKE_CURRENT_BINARY_DIR}/changelog.gz)
  add_custom_command(OUTPUT ${changelog} DEPENDS ${PROJECT_SOURCE_DIR}/CHANGELOG.md
    COMMAND sh -c "'${GZIP}' -9nc '${PROJECT_SOURCE_DIR}/CHANGELOG.md' > '${changelog}'" VERBATIM)
  add_custom_target(changelog ALL DEPENDS ${changelog})
endif()
foreach(component library development tool)
  set(doc_${component} ${CMAKE_INSTALL_DATADIR}/doc/${FBX_TO_TS3D_PACKAGE_${component}})
  install(FILES ${PROJECT_SOURCE_DIR}/LICENSE DESTINATION ${doc_${component}} COMPONENT ${component} RENAME copyright)
  if(changelog)
    install(FILES ${changelog} DESTINATION ${doc_${component}} COMPONENT ${component})
  endif()
endforeach()
install(FILES ${PROJECT_SOURCE_DIR}/docs/host-guide.md ${PROJECT_SOURCE_DIR}/docs/formats.md
  ${PROJECT_SOURCE_DIR}/samples/host/host.c ${PROJECT_SOURCE_DIR}/samples/host/host.cpp
  ${PROJECT_SOURCE_DIR}/samples/host/host.py ${PROJECT_SOURCE_DIR}/samples/host/Host.cs
  ${PROJECT_SOURCE_DIR}/samples/host/classic_host.c ${PROJECT_SOURCE_DIR}/samples/host/classic_host.py
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
