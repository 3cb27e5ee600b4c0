#include "lines/levels.h"

#include <algorithm>

#include "lines/kernels.h"

namespace vantrel::lines {
namespace {

/** The pixels of an area, and those of them that are below a level. */
struct Counts {
  std::int64_t all = 0;
  std::int64_t below = 0;

  void add(const unsigned char* row, geometry::Span cols, unsigned char level) {
    if (cols.empty()) return;
    all += cols.size();
    below += kernels->count_below(row + cols.first, cols.size(), level);
  }
};

Counts count_pixels(const Levels& levels, const geometry::Rect& area, unsigned char level) {
  const auto& [pixels, row_bytes] = levels;
  Counts counts;
  if (row_bytes <= 0) return counts;
  for (int r = area.rows.first; r < area.rows.end && r < pixels.rows; ++r) {
    geometry::Span cols = area.cols;
    for (int at = r; at < pixels.rows; ++at) {
      counts.add(pixels.row(at), {cols.first, std::min(cols.end, row_bytes)}, level);
      if (cols.end <= row_bytes) break;
      cols = {std::max(cols.first - row_bytes, 0), cols.end - row_bytes};
    }
  }
  return counts;
}

}  // namespace

int plain::count_below(const unsigned char* bytes, int count, unsigned char level) {
  return static_cast<int>(std::count_if(bytes, bytes + count, [&](unsigned char byte) { return byte < level; }));
}

Brightness brightness_of(const Levels& levels, const geometry::Rect& area) {
  constexpr unsigned char kLeastBright = 181;
  const auto [all, dark] = count_pixels(levels, area, kLeastBright);
  // Infinite without a dark pixel, and not a number for an empty area, which is neither bright nor dark.
  const float ratio = static_cast<float>(all - dark) / static_cast<float>(dark);
  if (ratio > 3.0f) return Brightness::kBright;
  return 1.0f > ratio * 3.0f ? Brightness::kDark : Brightness::kMixed;
}

bool mostly_dark(const Levels& levels, const geometry::Rect& area) {
  const std::int64_t dark = count_pixels(levels, area, 128).below;
  // The area counts one row and one column more than are scanned.
  const std::int64_t size =
      (std::int64_t{area.rows.end} - area.rows.first + 1) * (std::int64_t{area.cols.end} - area.cols.first + 1);
  return static_cast<float>(dark) / static_cast<float>(size) * 22.0f > 7.0f;
}

}  // namespace vantrel::lines
