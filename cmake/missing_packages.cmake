# On Debian, names all packages that a build with the present options needs and the system lacks, and the command that
# installs them, before the first of them is searched for in vain.
find_program(DPKG_QUERY_PROGRAM dpkg-query)
if(DPKG_QUERY_PROGRAM AND PROJECT_IS_TOP_LEVEL AND NOT CMAKE_CROSSCOMPILING)
  set(groups "")
  foreach(group TESTS FUZZ BENCH)
    if(FBX_TO_TS3D_${group})
      string(TOLOWER ${group} name)
      list(APPEND groups ${name})
    endif()
  endforeach()
  list(TRANSFORM groups REPLACE "^tests$" "test")
  execute_process(COMMAND ${PROJECT_SOURCE_DIR}/scripts/prepare --missing ${groups}
    OUTPUT_VARIABLE missing OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
  if(missing)
    list(JOIN groups " " groups)
    message(NOTICE "Debian packages that are not installed: ${missing}\n"
      "\"scripts/prepare ${groups}\" installs them.")
  endif()
endif()
