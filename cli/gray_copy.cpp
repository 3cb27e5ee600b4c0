#include "gray_copy.h"

#include <algorithm>

#include "library.h"

namespace tool {

const unsigned char* GrayCopy::row(int y) const {
  const vantrel_image view = pixels.view();
  return static_cast<const unsigned char*>(view.data) + view.stride * y;
}

GrayCopy gray_copy(const Bitmap& scan, int longer_side) {
  const int longest = std::max(scan.width(), scan.height());
  const int shortest = std::min(scan.width(), scan.height());
  const int times = std::clamp(longest / longer_side, 1, shortest);
  Bitmap gray = scan.format() == VANTREL_FORMAT_GRAY ? Bitmap() : converted(scan, VANTREL_FORMAT_GRAY);
  const Bitmap& source = gray.empty() ? scan : gray;
  if (times == 1) return {gray.empty() ? converted(scan, VANTREL_FORMAT_GRAY) : std::move(gray), 1};
  return {reduced(source, times), times};
}

}  // namespace tool
