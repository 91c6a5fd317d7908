# stb's headers are included as system headers: their warnings are not ours.
find_path(STB_INCLUDE_DIR stb/stb_image_write.h REQUIRED)
