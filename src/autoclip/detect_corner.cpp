#include <initializer_list>

#include "autoclip/corners.h"
#include "autoclip/edge_search.h"
#include "lines/border_search.h"

bool AutoDetectCorner(BITMAPPTR* image, float* corners, float* box) {
  if (image->pInfo->biBitCount != 8) return false;
  const vantrel::ConstPixels gray = vantrel::const_pixels_of(*image);
  const auto [pixels, rows, cols, stride] = gray;
  if (rows < 0 || cols < 0) return false;
  vantrel::EdgeMaps maps(gray);
  if (!maps.ready()) return false;
  // The whole image as interior leaves the operator's margins: a frame of 1/15 of the rows and 1/25 of the columns.
  maps.detect({0, 0, static_cast<std::int16_t>(cols), static_cast<std::int16_t>(rows), 0});

  vantrel::WorkArray<typePoint> points(static_cast<std::size_t>(rows) * static_cast<std::size_t>(cols));
  if (!points.ready()) return false;
  vantrel::DegreeTables tables;
  vantrel::BorderLines lines;
  for (const int direction : {vantrel::kHorizontalBorder, vantrel::kVerticalBorder}) {
    const int count = maps.collect({0, rows, 0, cols}, direction, points.get());
    if (Compute_Hough_Angle(lines.normal, lines.distance, points.get(), rows, cols, count, direction, tables.sin,
                            tables.cos) == 0) {
      return false;
    }
  }
  return CalIntersectPoint(lines.normal, lines.distance, corners) && VerifyCorrectLoc(corners, box, rows, cols);
}
