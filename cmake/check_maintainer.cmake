# Run by CPack before it builds packages.
if(CPACK_GENERATOR STREQUAL "DEB" AND NOT CPACK_PACKAGE_CONTACT MATCHES "^.+ <[^ ]+@[^ ]+>$")
  message(FATAL_ERROR "Debian packages name their maintainer. Please configure with "
    "-DFBX_TO_TS3D_MAINTAINER=\"Name <name@example.com>\", or set the variables DEBFULLNAME and DEBEMAIL")
endif()
