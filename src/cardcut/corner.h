/**
 * @file corner.h
 * @brief The card's lower corners, looked for along its lower border with a corner measure.
 *
 * The measure is that of C. Harris and M. Stephens ("A Combined Corner and Edge Detector", 1988) over a window of
 * 17 x 17 pixels, of which only those count whose gradient points along one diagonal: a lower left corner and a lower
 * right one differ in its direction.
 */
#ifndef VANTREL_CARDCUT_CORNER_H
#define VANTREL_CARDCUT_CORNER_H

#include <array>

#include "cardcut/border.h"

namespace vantrel::cardcut {

/** Sums of products of the gradient. 17 x 17 colour gradients of up to 441 stay far within 32 bits. */
struct Moments {
  int xx = 0;
  int xy = 0;
  int yy = 0;

  Moments& operator+=(const Moments& other);
};

/** Rows and columns of the window on each side of its middle. */
inline constexpr int kWindowReach = 8;
inline constexpr int kWindowSide = 2 * kWindowReach + 1;

/** The determinant less a tenth of the squared trace of the window's mean moments, in whole numbers. */
std::int64_t corner_measure(const Moments& window);

/** Which way the gradient must point to count: the sign of the product of its components. */
enum class Diagonal { kRising = 1, kFalling = -1 };

/** Sums over windows along a border; the sums of each column are kept while the row stays the same. */
template <class Rules>
class CornerWindow {
 public:
  CornerWindow(const Scene<Rules>& scene, Diagonal diagonal) : scene_(scene), sign_(static_cast<int>(diagonal)) {}

  /** The window around a pixel. Its columns must lie inside the image; rows outside count nothing. */
  Moments around(int x, int y) {
    Moments sum;
    for (int u = x - kWindowReach; u <= x + kWindowReach; ++u) sum += kept_column(u, y);
    return sum;
  }

 private:
  struct Column {
    int x = -1;
    int y = -1;
    Moments moments;
  };

  const Moments& kept_column(int x, int y) {
    Column& column = columns_[static_cast<std::size_t>(x % kWindowSide)];
    if (column.x != x || column.y != y) column = {x, y, sum_column(x, y)};
    return column.moments;
  }

  Moments sum_column(int x, int y) const {
    const Span rows = common({y - kWindowReach, y + kWindowReach + 1}, inner_rows(scene_.image));
    Moments sum;
    for (int v = rows.first; v < rows.end; ++v) {
      const int gx = scene_.across_columns(x, v);
      const int gy = scene_.across_rows(x, v);
      const bool strong = std::abs(gx) > Rules::kEdge || std::abs(gy) > Rules::kEdge;
      if (strong && sign_ * gx * gy > 0) sum += {gx * gx, gx * gy, gy * gy};
    }
    return sum;
  }

  const Scene<Rules>& scene_;
  int sign_;
  std::array<Column, kWindowSide> columns_;
};

/**
 * The column of the first corner met on a walk along a lower border.
 *
 * @param bottom the row that stands in where the line runs below the image.
 */
template <class Rules>
std::optional<int> find_corner(const Scene<Rules>& scene, Peak line, Walk walk, Diagonal diagonal, int bottom) {
  CornerWindow<Rules> window(scene, diagonal);
  for (int x = walk.first; (walk.end - x) * walk.step > 0; x += walk.step) {
    const std::optional<int> y = Rules::corner_row(scene.votes.row_at(line, x), bottom);
    if (!y) return std::nullopt;
    if (corner_measure(window.around(x, *y)) > Rules::kCorner) return x;
    if (Rules::kBorderEndsWalk && scene.border_at(x, *y)) return std::nullopt;
  }
  return std::nullopt;
}

}  // namespace vantrel::cardcut

#endif
