#include "autoclip/corner_finder.h"

#include <algorithm>
#include <limits>

#include "autoclip/corners.h"
#include "autoclip/edge_search.h"
#include "components/components.h"
#include "lines/border_search.h"

namespace vantrel {
namespace {

/** A block list that is destroyed at the end of its scope. */
struct ScopedBlockList : _BLIST {
  // The pool grows by little: a card's borders have a few hundred components, and preparing nodes costs time.
  ScopedBlockList() : _BLIST{} { constructed = Constructor(500, 100); }
  ScopedBlockList(const ScopedBlockList&) = delete;
  ScopedBlockList& operator=(const ScopedBlockList&) = delete;
  ~ScopedBlockList() { Destructor(); }

  _BNODE* line() const { return GetHead()->child; }
  bool constructed = false;
};

/** Where each border is looked for: a band along its side of the image, and the frame line that stands in for it. */
struct SideSearch {
  Region region;
  int direction;
  BorderLine frame_line;
};

/** Bands take an eighth of the rows and a fifth of the columns. */
MYRECT interior_of(int rows, int cols) {
  return {static_cast<std::int16_t>(cols / 5), static_cast<std::int16_t>(rows / 8),
          static_cast<std::int16_t>(4 * cols / 5), static_cast<std::int16_t>(7 * rows / 8), 0};
}

// The interior counts rows from the first in memory: its `top` is its lower row, as Sobel_Operator wants it.
SideSearch side_search(int side, int rows, int cols) {
  const MYRECT interior = interior_of(rows, cols);
  switch (side) {
    case kTop:
      return {{interior.bottom, rows, 0, cols}, kHorizontalBorder, {0.0, 1.0, rows - 2.0}};
    case kBottom:
      return {{0, interior.top, 0, cols}, kHorizontalBorder, {0.0, 1.0, 1.0}};
    case kLeft:
      return {{0, rows, 0, interior.left}, kVerticalBorder, {1.0, 0.0, 0.0}};
    default:
      return {{0, rows, interior.right, cols}, kVerticalBorder, {1.0, 0.0, cols - 2.0}};
  }
}

std::size_t area(const Region& region) {
  return static_cast<std::size_t>(region.row_to - region.row_from) *
         static_cast<std::size_t>(region.col_to - region.col_from);
}

/** Points of one band at a time: as many as the largest band has pixels. */
std::size_t most_points(int rows, int cols) {
  std::size_t most = 0;
  for (int side = 0; side < 4; ++side) most = std::max(most, area(side_search(side, rows, cols).region));
  return most;
}

/** Finds the four border lines into the record; a side without one gets the image's frame. */
BorderLines find_borders(const ConstPixels& gray, const EdgeMaps& maps, _BNODE* components, typePoint* points,
                         vantrel_corner_search& result) {
  const auto [pixels, rows, cols, stride] = gray;
  const auto brightness = static_cast<short>(brightness_class(gray, {0, rows, 0, cols}));
  DegreeTables tables;
  BorderLines lines;
  for (int side = 0; side < 4; ++side) {
    const auto [region, direction, frame_line] = side_search(side, rows, cols);
    const int count = maps.collect(region, direction, points);
    // The line search only reads the image.
    const bool found =
        Compute_Hough_Angle2(const_cast<unsigned char*>(pixels), components, maps.edge(), lines.normal, lines.distance,
                             points, rows, cols, count, direction, tables.sin, tables.cos, side, brightness) != 0;
    if (!found) lines.set(side, frame_line);
    const BorderLine line = lines.get(side);
    result.side[side] = {line.a, line.b, line.c, found ? 1 : 0};
  }
  return lines;
}

vantrel_verdict search(const ConstPixels& gray, vantrel_corner_search& result) {
  constexpr int kLongest = std::numeric_limits<std::int16_t>::max();  // component rectangles hold no more
  const int rows = gray.rows;
  const int cols = gray.cols;
  if (rows < 0 || cols < 0 || rows > kLongest || cols > kLongest) return VANTREL_SIDE_TOO_LONG;

  EdgeMaps maps(gray);
  if (!maps.ready()) return VANTREL_OUT_OF_MEMORY;
  maps.detect(interior_of(rows, cols));

  ScopedBlockList components;
  if (!components.constructed) return VANTREL_OUT_OF_MEMORY;
  if (!Gray2Bin(maps.edge(), components, rows, cols)) return VANTREL_NO_EDGES;
  SortCharacter(components, components.line());

  WorkArray<typePoint> points(most_points(rows, cols));
  if (!points.ready()) return VANTREL_OUT_OF_MEMORY;
  BorderLines lines = find_borders(gray, maps, components.line(), points.get(), result);
  if (!CalIntersectPoint(lines.normal, lines.distance, result.corners)) {
    std::fill_n(result.corners, 8, 0.0f);
    return VANTREL_LINES_DEGENERATE;
  }
  return VerifyCorrectLoc(result.corners, result.box, rows, cols) ? VANTREL_CORNERS_FOUND : VANTREL_CORNERS_TOO_SMALL;
}

}  // namespace

vantrel_corner_search find_corners(const ConstPixels& gray) {
  vantrel_corner_search result{};
  result.verdict = search(gray, result);
  return result;
}

}  // namespace vantrel

short ClipNameCardRedundantImg(BITMAPPTR* gray, float* corners, float* box) {
  const vantrel_corner_search result = vantrel::find_corners(vantrel::const_pixels_of(*gray));
  std::copy_n(result.corners, 8, corners);
  std::copy_n(result.box, 8, box);
  return result.verdict == VANTREL_CORNERS_FOUND ? 1 : 0;
}

int vantrel_find_corners(const BITMAPPTR* gray, vantrel_corner_search* result) {
  if (result == nullptr) return 0;
  *result = {};
  if (gray == nullptr || gray->pInfo == nullptr || gray->pInfo->biBitCount != 8) {
    result->verdict = VANTREL_NOT_GRAY;
    return 0;
  }
  *result = vantrel::find_corners(vantrel::const_pixels_of(*gray));
  return result->verdict == VANTREL_CORNERS_FOUND ? 1 : 0;
}
