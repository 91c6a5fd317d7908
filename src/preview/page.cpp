// SPDX-License-Identifier: MIT
#include "preview/page.h"

#include <stdexcept>

#include "preview/page_data.h"

namespace preview {

std::string WritePage(const actor::Actor& source, const std::string& title,
                      const actor::PictureEncoder& encode, const std::optional<Vector>& up) {
  // Where the actor goes, as in web/src/page.html.
  constexpr std::string_view kMark = "ACTOR_DATA";
  std::string page;
  for (const std::string_view piece : PageTemplate()) page += piece;
  const size_t mark = page.find(kMark);
  if (mark == std::string::npos) throw std::logic_error("this build has no page");
  return page.replace(mark, kMark.size(), WritePageData(source, title, encode, up));
}

}  // namespace preview
