# The page of "fbx2czp preview -o page.html", built by Node from web/. Sets FBX_TO_TS3D_PAGE_SOURCE: the source that
# holds the page, or the one that says that there is none.

# Installs what the page is made of into the build folder, once for each lock file.
function(install_page_packages folder result)
  file(SHA256 ${PROJECT_SOURCE_DIR}/web/package-lock.json lock)
  set(${result} TRUE PARENT_SCOPE)
  if(FBX_TO_TS3D_WEB_LOCK STREQUAL lock AND EXISTS ${folder}/node_modules)
    return()
  endif()
  file(MAKE_DIRECTORY ${folder})
  foreach(file package.json package-lock.json .npmrc)
    configure_file(${PROJECT_SOURCE_DIR}/web/${file} ${folder}/${file} COPYONLY)
  endforeach()
  execute_process(
    COMMAND ${NPM_PROGRAM} ci --omit=dev --fetch-retries=1 --loglevel=error
    WORKING_DIRECTORY ${folder} RESULT_VARIABLE status ERROR_VARIABLE errors OUTPUT_QUIET TIMEOUT 300)
  if(status EQUAL 0)
    set(FBX_TO_TS3D_WEB_LOCK ${lock} CACHE INTERNAL "Lock file that web/node_modules was installed from")
  else()
    message(STATUS "npm could not install the page's packages: ${errors}")
    set(${result} FALSE PARENT_SCOPE)
  endif()
endfunction()

set(FBX_TO_TS3D_PAGE_SOURCE ${PROJECT_SOURCE_DIR}/src/preview/page_left_out.cpp)
if(FBX_TO_TS3D_WEB)
  find_program(NODE_PROGRAM node)
  find_program(NPM_PROGRAM npm)
  set(web ${PROJECT_BINARY_DIR}/web)
  set(ready FALSE)
  if(NODE_PROGRAM AND NPM_PROGRAM)
    install_page_packages(${web} ready)
  endif()
  if(ready)
    set(FBX_TO_TS3D_PAGE_SOURCE ${web}/page_template.cpp)
    file(GLOB sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/web/src/*)
    add_custom_command(
      OUTPUT ${FBX_TO_TS3D_PAGE_SOURCE}
      COMMAND ${CMAKE_COMMAND} -E copy ${PROJECT_SOURCE_DIR}/web/build.mjs ${web}
      COMMAND ${CMAKE_COMMAND} -E copy_directory ${PROJECT_SOURCE_DIR}/web/src ${web}/src
      COMMAND ${NODE_PROGRAM} build.mjs page.html page_template.cpp
      DEPENDS ${PROJECT_SOURCE_DIR}/web/build.mjs ${sources}
      WORKING_DIRECTORY ${web}
      COMMENT "Building the page")
    # src/ compiles it; a generated file is known in its own folder only, a target everywhere.
    add_custom_target(ts3d_page DEPENDS ${FBX_TO_TS3D_PAGE_SOURCE})
  elseif(FBX_TO_TS3D_WEB STREQUAL "AUTO")
    message(STATUS "The preview page is left out: it needs Node, npm and the packages of web/package.json")
  else()
    message(FATAL_ERROR "FBX_TO_TS3D_WEB is ON, but Node, npm or the packages of web/package.json are missing")
  endif()
endif()
