# The page of "fbx2czp preview -o page.html", made of web/ and three.js. Sets FBX_TO_TS3D_PAGE_SOURCE: the source that
# holds the page, or the one that says that there is none.
set(FBX_TO_TS3D_THREE /usr/share/javascript/three CACHE PATH "Folder of three.js r111 (Debian: libjs-three)")

set(FBX_TO_TS3D_PAGE_SOURCE ${PROJECT_SOURCE_DIR}/src/preview/page_left_out.cpp)
set(library ${FBX_TO_TS3D_THREE}/three.min.js ${FBX_TO_TS3D_THREE}/examples/js/controls/OrbitControls.js)
# Looked for before each build: what is installed later makes the page.
file(GLOB found CONFIGURE_DEPENDS ${library})
list(LENGTH library wanted_count)
list(LENGTH found found_count)
if(FBX_TO_TS3D_WEB AND found_count EQUAL wanted_count)
  set(FBX_TO_TS3D_PAGE_SOURCE ${PROJECT_BINARY_DIR}/page_template.cpp)
  set(compose ${PROJECT_SOURCE_DIR}/cmake/compose_page.cmake)
  file(GLOB sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/web/src/*)
  add_custom_command(
    OUTPUT ${FBX_TO_TS3D_PAGE_SOURCE}
    COMMAND ${CMAKE_COMMAND} -DWEB=${PROJECT_SOURCE_DIR}/web -DTHREE=${FBX_TO_TS3D_THREE}
      -DOUTPUT=${FBX_TO_TS3D_PAGE_SOURCE} -P ${compose}
    DEPENDS ${compose} ${sources} ${PROJECT_SOURCE_DIR}/web/three-license.txt ${library}
    COMMENT "Composing the preview page of web/ and three.js" VERBATIM)
  # src/ compiles it; a generated file is known in its own folder only, a target everywhere.
  add_custom_target(ts3d_page DEPENDS ${FBX_TO_TS3D_PAGE_SOURCE})
elseif(FBX_TO_TS3D_WEB STREQUAL "AUTO")
  message(NOTICE "The preview page is left out: three.js is missing; scripts/prepare installs it (libjs-three)")
elseif(FBX_TO_TS3D_WEB)
  message(FATAL_ERROR "FBX_TO_TS3D_WEB is ON, but three.js is missing; scripts/prepare installs it (libjs-three)")
endif()
