#include "lines/levels.h"

#include <algorithm>
#include <limits>

namespace vantrel {
namespace {

/** Counts the pixels of a region that satisfy a predicate; whatever would lie behind the image's last row is not read.
 */
template <class Predicate>
std::int64_t count_pixels(const ConstPixels& gray, const Region& region, Predicate predicate) {
  const std::int64_t end = std::int64_t{gray.stride} * gray.rows;
  std::int64_t count = 0;
  for (int r = region.row_from; r < region.row_to && r < gray.rows; ++r) {
    const auto to = static_cast<int>(std::min<std::int64_t>(region.col_to, end - std::int64_t{gray.stride} * r));
    const unsigned char* row = gray.row(r);
    for (int c = region.col_from; c < to; ++c) count += predicate(row[c]) ? 1 : 0;
  }
  return count;
}

/** A view that trusts its caller: it has no last row. */
ConstPixels unbounded(const unsigned char* gray, int stride) {
  return {gray, std::numeric_limits<int>::max(), std::numeric_limits<int>::max(), stride};
}

}  // namespace

int brightness_class(const ConstPixels& gray, const Region& region) {
  constexpr unsigned char kDarkest = 180;
  const std::int64_t bright = count_pixels(gray, region, [](unsigned char level) { return level > kDarkest; });
  const std::int64_t dark = count_pixels(gray, region, [](unsigned char level) { return level <= kDarkest; });
  // Infinite without a dark pixel, and not a number for an empty region, which is neither bright nor dark.
  const float ratio = static_cast<float>(bright) / static_cast<float>(dark);
  if (ratio > 3.0f) return 1;
  return 1.0f > ratio * 3.0f ? 2 : 0;
}

bool mostly_dark(const ConstPixels& gray, const Region& region) {
  const std::int64_t dark = count_pixels(gray, region, [](unsigned char level) { return level < 128; });
  // The area counts one row and one column more than are scanned.
  const std::int64_t area =
      (std::int64_t{region.row_to} - region.row_from + 1) * (std::int64_t{region.col_to} - region.col_from + 1);
  return static_cast<float>(dark) / static_cast<float>(area) * 22.0f > 7.0f;
}

}  // namespace vantrel

int EstimateWB(unsigned char* gray, int rowFrom, int rowTo, int colFrom, int colTo, int stride) {
  return vantrel::brightness_class(vantrel::unbounded(gray, stride), {rowFrom, rowTo, colFrom, colTo});
}

int EstimateBlkPixel(unsigned char* gray, int rowFrom, int rowTo, int colFrom, int colTo, int stride, int /*side*/) {
  return vantrel::mostly_dark(vantrel::unbounded(gray, stride), {rowFrom, rowTo, colFrom, colTo}) ? 1 : 0;
}
