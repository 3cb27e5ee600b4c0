#include "reference/lines_sobel.h"

#include <cmath>

#include "support/tally.h"

namespace reference::lines {

EdgeMaps blank_maps(const Picture& gray) {
  return {Picture(gray.cols, gray.rows, 8, 255), Picture(gray.cols, gray.rows, 8, 4)};
}

namespace {

int direction(int along_rows, int across_rows) {
  double angle = static_cast<float>(std::atan2(static_cast<double>(along_rows), static_cast<double>(across_rows)));
  if (angle < -3.14159) {
    angle += 6.28318;
    support::tally::count("sobel: angle of minus pi");
  } else if (angle < 0) {
    angle += 3.14159;
  } else if (angle > 3.14159) {
    angle -= 3.14159;
    support::tally::count("sobel: angle of pi");
  }
  if (angle < 0.39269 || angle >= 2.74883) return 0;
  if (angle < 1.17809) return 1;
  if (angle < 1.96345) return 2;
  return 3;
}

}  // namespace

void sobel(const Picture& gray, MYRECT interior, EdgeMaps& maps) {
  const int row_margin = gray.rows / 15;
  const int col_margin = gray.cols / 25;
  for (int i = 1; i <= gray.rows - 3; ++i) {
    for (int j = 1; j <= gray.cols - 3; ++j) {
      maps.edge.at(i, j) = 255;
      maps.dir.at(i, j) = 4;
      if (i > interior.top + row_margin && i < interior.bottom - row_margin && j > interior.left + col_margin &&
          j < interior.right - col_margin) {
        continue;
      }
      const int before = gray.at(i - 1, j - 1) + 2 * gray.at(i - 1, j) + gray.at(i - 1, j + 1);
      const int after = gray.at(i + 1, j - 1) + 2 * gray.at(i + 1, j) + gray.at(i + 1, j + 1);
      const int right = gray.at(i - 1, j + 1) + 2 * gray.at(i, j + 1) + gray.at(i + 1, j + 1);
      const int left = gray.at(i - 1, j - 1) + 2 * gray.at(i, j - 1) + gray.at(i + 1, j - 1);
      const int row_gradient = before - after;
      const int col_gradient = right - left;
      const auto squares = static_cast<double>(row_gradient * row_gradient + col_gradient * col_gradient);
      if (static_cast<int>(std::sqrt(squares)) <= 200) continue;
      maps.edge.at(i, j) = 0;
      maps.dir.at(i, j) = static_cast<unsigned char>(direction(col_gradient, row_gradient));
    }
  }
}

int brightness(const Picture& gray, int row_from, int row_to, int col_from, int col_to) {
  int bright = 0;
  int dim = 0;
  for (int row = row_from; row < row_to; ++row) {
    for (int col = col_from; col < col_to; ++col) {
      if (!gray.holds(row, col)) continue;
      if (gray.flat(row, col, 0) > 180) {
        ++bright;
      } else {
        ++dim;
      }
    }
  }
  const float ratio = static_cast<float>(bright) / static_cast<float>(dim);
  if (ratio > 3.0f) return 1;
  if (1.0f > ratio * 3.0f) return 2;
  return 0;
}

bool dark(const Picture& gray, int row_from, int row_to, int col_from, int col_to) {
  int below = 0;
  for (int row = row_from; row < row_to; ++row) {
    for (int col = col_from; col < col_to; ++col) {
      if (gray.flat(row, col, 255) < 128) ++below;
    }
  }
  const int area = (row_to - row_from + 1) * (col_to - col_from + 1);
  return static_cast<float>(below) / static_cast<float>(area) * 22.0f > 7.0f;
}

}  // namespace reference::lines
