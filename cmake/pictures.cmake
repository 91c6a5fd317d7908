# Libraries that decode the pictures of models.
pkg_check_modules(PNG REQUIRED IMPORTED_TARGET libpng)
pkg_check_modules(TURBOJPEG REQUIRED IMPORTED_TARGET libturbojpeg)
pkg_check_modules(TIFF REQUIRED IMPORTED_TARGET libtiff-4>=4.5)
pkg_check_modules(WEBP REQUIRED IMPORTED_TARGET libwebp)
# The package description of squish names folders that do not exist.
find_library(SQUISH_LIBRARY squish REQUIRED)
find_path(SQUISH_INCLUDE_DIR squish.h REQUIRED)
