#include "autoclip/corners.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "autoclip/elimination.h"
#include "lines/sobel.h"

namespace vantrel {
namespace {

/** Calls `found(row, column)` for every edge pixel of one direction class, row by row. */
template <class Found>
void for_each_edge(const unsigned char* edge, const unsigned char* dir, int row_from, int row_to, int col_from,
                   int col_to, int stride, int dir_value, Found found) {
  for (int r = row_from; r < row_to; ++r) {
    const std::ptrdiff_t row = std::ptrdiff_t{r} * stride;
    for (int c = col_from; c < col_to; ++c) {
      if (edge[row + c] == kEdge && dir[row + c] == dir_value) found(r, c);
    }
  }
}

/** A corner, compared by `y` in comp_ycoord: y must come first. */
struct Corner {
  float y;
  float x;
};

/** Whole pixels; what does not fit is the nearest that does, and what is no number is 0. */
int truncate(double value) {
  if (value != value) return 0;
  constexpr double kMin = std::numeric_limits<int>::min();
  constexpr double kMax = std::numeric_limits<int>::max();
  return static_cast<int>(std::clamp(value, kMin, kMax));
}

/** Orders four (x, y) pairs: upper two, then lower two, each left before right. */
void order_corners(float* corners) {
  Corner sorted[4];
  for (int i = 0; i < 4; ++i) {
    // An insertion sort: stable, and the same on every C library.
    int at = i;
    const Corner corner{corners[2 * i + 1], corners[2 * i]};
    for (; at > 0 && comp_ycoord(&sorted[at - 1], &corner) > 0; --at) sorted[at] = sorted[at - 1];
    sorted[at] = corner;
  }
  for (int pair = 0; pair < 4; pair += 2) {
    // Of two equally far to the right, the later one is the left corner.
    const bool in_order = sorted[pair].x < sorted[pair + 1].x;
    const Corner& left = sorted[in_order ? pair : pair + 1];
    const Corner& right = sorted[in_order ? pair + 1 : pair];
    corners[2 * pair] = left.x;
    corners[2 * pair + 1] = left.y;
    corners[2 * pair + 2] = right.x;
    corners[2 * pair + 3] = right.y;
  }
}

/** Measures the bounding box of ordered corners and tells whether it covers half of the image in every respect. */
bool measure_box(const float* corners, float* box, int rows, int cols) {
  const float top_left_y = corners[1];
  const float top_right_y = corners[3];
  // The two cases round differently.
  const int top = top_right_y > top_left_y ? truncate(static_cast<double>(top_left_y) + 0.5) : truncate(top_right_y);
  const int bottom = truncate(std::max(corners[5], corners[7]));
  const int left = truncate(std::min(corners[0], corners[4]));
  const int right = truncate(std::max(corners[2], corners[6]));
  const int pairs[8] = {left, top, right, top, left, bottom, right, bottom};
  std::transform(pairs, pairs + 8, box, [](int value) { return static_cast<float>(value); });

  const std::int64_t w = std::int64_t{right} - left + 1;
  const std::int64_t h = std::int64_t{bottom} - top + 1;
  return w + h >= (std::int64_t{rows} + cols) / 2 && w >= cols / 2 && h >= rows / 2;
}

}  // namespace
}  // namespace vantrel

int CalcPointCenter2(unsigned char* edge, unsigned char* dir, typePoint* points, int& count, int rowFrom, int rowTo,
                     int colFrom, int colTo, int stride, int dirValue) {
  int found = 0;
  vantrel::for_each_edge(edge, dir, rowFrom, rowTo, colFrom, colTo, stride, dirValue, [&](int r, int c) {
    points[found++] = {static_cast<float>(r), static_cast<float>(c)};
  });
  count = found;
  return 1;
}

int CalcPointCenter(unsigned char* edge, unsigned char* dir, float* points, int& count, int rows, int cols,
                    int dirValue) {
  int found = 0;
  vantrel::for_each_edge(edge, dir, 0, rows, 0, cols, cols, dirValue, [&](int r, int c) {
    points[2 * std::ptrdiff_t{found}] = static_cast<float>(r);
    points[2 * std::ptrdiff_t{found} + 1] = static_cast<float>(c);
    ++found;
  });
  count = found;
  return 1;
}

typePoint CalcUnknownFun(double a, double b, double c, double d, double e, double f) {
  double matrix[2][2] = {{a, b}, {c, d}};
  double rhs[2] = {e, f};
  vantrel::eliminate(matrix, rhs);
  return {static_cast<float>(rhs[1] / matrix[1][1]), static_cast<float>(rhs[0] / matrix[0][0])};
}

int comp_ycoord(const void* p, const void* q) {
  const float a = static_cast<const vantrel::Corner*>(p)->y;
  const float b = static_cast<const vantrel::Corner*>(q)->y;
  if (a < b) return -1;
  return a == b ? 0 : 1;
}

bool VerifyCorrectLoc(float* corners, float* box, int rows, int cols) {
  // The last memory row becomes 1, not 0: rows are subtracted from their number.
  for (int i = 1; i < 8; i += 2) corners[i] = static_cast<float>(rows) - corners[i];
  vantrel::order_corners(corners);

  const auto last_row = static_cast<float>(rows - 1);
  const auto last_col = static_cast<float>(cols - 1);
  for (const int i : {0, 1, 3, 4}) {
    if (corners[i] < 0) corners[i] = 0;
  }
  for (const int i : {2, 6}) {
    if (corners[i] > last_col) corners[i] = last_col;
  }
  for (const int i : {5, 7}) {
    if (corners[i] > last_row) corners[i] = last_row;
  }
  return vantrel::measure_box(corners, box, rows, cols);
}

bool VerifyCorrectLoc_M(float* box, float* corners, int rows, int cols) {
  vantrel::order_corners(corners);
  for (const int i : {0, 4}) {
    if (corners[i] < 0) corners[i] = 1;
  }
  for (const int i : {2, 6}) {
    if (corners[i] > static_cast<float>(cols)) corners[i] = static_cast<float>(cols - 1);
  }
  return vantrel::measure_box(corners, box, rows, cols);
}
