// SPDX-License-Identifier: MIT
#include "preview/side_by_side.h"

namespace preview {

Image SideBySide(const std::vector<Image>& pictures) {
  Image all;
  for (const Image& picture : pictures) {
    all.width += picture.width;
    all.height = picture.height;
  }
  for (int row = 0; row < all.height; ++row) {
    for (const Image& picture : pictures) {
      const auto line = static_cast<size_t>(picture.width) * 3;
      const auto begin = picture.rgb.begin() + static_cast<std::ptrdiff_t>(line * static_cast<size_t>(row));
      all.rgb.insert(all.rgb.end(), begin, begin + static_cast<std::ptrdiff_t>(line));
    }
  }
  return all;
}

}  // namespace preview
