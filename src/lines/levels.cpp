#include "lines/levels.h"

#include <algorithm>

namespace vantrel::lines {
namespace {

template <class Predicate>
std::int64_t count_in_row(const unsigned char* row, geometry::Span cols, Predicate predicate) {
  std::int64_t count = 0;
  for (int c = cols.first; c < cols.end; ++c) count += predicate(row[c]) ? 1 : 0;
  return count;
}

/** Counts the pixels of an area that satisfy a predicate. */
template <class Predicate>
std::int64_t count_pixels(const Levels& levels, const geometry::Rect& area, Predicate predicate) {
  const auto& [pixels, row_bytes] = levels;
  std::int64_t count = 0;
  if (row_bytes <= 0) return count;
  for (int r = area.rows.first; r < area.rows.end && r < pixels.rows; ++r) {
    geometry::Span cols = area.cols;
    for (int at = r; at < pixels.rows; ++at) {
      count += count_in_row(pixels.row(at), {cols.first, std::min(cols.end, row_bytes)}, predicate);
      if (cols.end <= row_bytes) break;
      cols = {std::max(cols.first - row_bytes, 0), cols.end - row_bytes};
    }
  }
  return count;
}

}  // namespace

Brightness brightness_of(const Levels& levels, const geometry::Rect& area) {
  constexpr unsigned char kDarkest = 180;
  const std::int64_t bright = count_pixels(levels, area, [](unsigned char level) { return level > kDarkest; });
  const std::int64_t dark = count_pixels(levels, area, [](unsigned char level) { return level <= kDarkest; });
  // Infinite without a dark pixel, and not a number for an empty area, which is neither bright nor dark.
  const float ratio = static_cast<float>(bright) / static_cast<float>(dark);
  if (ratio > 3.0f) return Brightness::kBright;
  return 1.0f > ratio * 3.0f ? Brightness::kDark : Brightness::kMixed;
}

bool mostly_dark(const Levels& levels, const geometry::Rect& area) {
  const std::int64_t dark = count_pixels(levels, area, [](unsigned char level) { return level < 128; });
  // The area counts one row and one column more than are scanned.
  const std::int64_t size =
      (std::int64_t{area.rows.end} - area.rows.first + 1) * (std::int64_t{area.cols.end} - area.cols.first + 1);
  return static_cast<float>(dark) / static_cast<float>(size) * 22.0f > 7.0f;
}

}  // namespace vantrel::lines
