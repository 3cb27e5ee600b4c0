#include "reference/lines_verify.h"

#include <algorithm>
#include <cstdlib>

#include "support/tally.h"

namespace reference::lines {

namespace {

int width_of(const Character& c) { return static_cast<short>(c.right - c.left + 1); }
int height_of(const Character& c) { return static_cast<short>(std::abs(c.top - c.bottom) + 1); }

bool told(const char* verifier, const char* rule, bool answer) {
  support::tally::count(std::string(verifier) + " " + rule + (answer ? ": true" : ": false"));
  return answer;
}

/** Number of zero bytes in each row of a byte map; rows outside it have none. */
class Histogram {
 public:
  Histogram(const std::vector<unsigned char>& bytes, int rows, int row_bytes) {
    for (int row = 0; row < rows; ++row) {
      unsigned short zeros = 0;
      for (int byte = 0; byte < row_bytes; ++byte) {
        if (bytes.at(static_cast<std::size_t>(row * row_bytes + byte)) == 0) ++zeros;
      }
      counts_.push_back(zeros);
    }
  }
  int at(int row) const {
    if (row < 0 || row >= static_cast<int>(counts_.size())) return 0;
    return counts_.at(static_cast<std::size_t>(row));
  }

 private:
  std::vector<unsigned short> counts_;
};

}  // namespace

bool verify_v0(const Picture& edge, int first, int second, int side) {
  const int rows = edge.rows;
  if (std::abs(first - second) <= 9) return told("V0", "near", false);
  if (first - 10 < 0 && second - 10 < 0) return told("V0", "both low", false);
  if (first + 10 >= rows && second + 10 >= rows) return told("V0", "both high", false);
  const Histogram histogram(edge.bytes, rows, edge.stride());
  const int threshold = edge.stride() / 10;

  int a = 0;      // walks beyond the first line
  int b = 0;      // walks beyond the second line
  int steps = 0;  // how many pairs are looked at
  if (side == 0 && first > second) {
    a = first + 1;
    b = second + 1;
    steps = std::min(first + 10, rows - 1) - a;
  } else if (side == 0) {
    a = first + 1;
    b = second + 1;
    steps = (rows > second + 10 ? second + 10 : rows - 1) - b;
  } else if (first < second) {
    a = std::max(first - 10, 0);
    b = second - 11;
    steps = first - 1 - a;
  } else {
    a = first - 10;
    b = std::max(second - 10, 0);
    steps = second - 1 - b;
  }
  long first_sum = 0;
  long second_sum = 0;
  for (int step = 0; step < steps; ++step) {
    const bool first_differs = std::abs(histogram.at(a + step) - histogram.at(first)) >= threshold;
    const bool second_differs = std::abs(histogram.at(b + step) - histogram.at(second)) >= threshold;
    if (!first_differs || !second_differs) continue;
    first_sum += histogram.at(a + step);
    second_sum += histogram.at(b + step);
  }
  return told("V0",
              side == 0 ? (first > second ? "side 0, first above" : "side 0, first below")
                        : (first < second ? "side 1, first below" : "side 1, first above"),
              first_sum > 10 * second_sum);
}

bool verify_v1(const std::vector<unsigned char>& edge, int at, int rows, int row_bytes, int side) {
  const Histogram histogram(edge, rows, row_bytes);
  long sum = 0;
  long area = 0;
  if (side != 0) {
    if (at - 3 < 0) return told("V1", "no band", true);
    for (int row = 0; row <= at - 4; ++row) sum += histogram.at(row);
    area = static_cast<long>(row_bytes) * (at - 2);
  } else {
    if (rows <= at + 3) return told("V1", "no band", true);
    for (int row = at + 3; row <= rows - 2; ++row) sum += histogram.at(row);
    area = static_cast<long>(row_bytes) * (rows - at - 3);
  }
  return told("V1", side == 0 ? "side 0" : "side 1", !(16 * sum < area && area < 22 * sum));
}

namespace {

bool shaped_like_print(const Character& c, int band_area, int rows, int cols) {
  const int w = width_of(c);
  const int h = height_of(c);
  const int area = w * h;
  if (area < 5) return false;
  if (area > band_area / 4) return false;
  if (w > cols / 2 || h > rows / 2) return false;
  if (h > 10 * w) return false;
  if (w <= 2 && h > 8 * w) return false;
  if (w > 7 * h) return false;
  if (h <= 2 && w > 5 * h) return false;
  return true;
}

}  // namespace

bool verify_v2(const Characters& characters, int at, int rows, int cols, int side) {
  const int m = rows / 40;
  const int area = side == 0 ? (rows - at + m) * cols : (at + m + 1) * cols;
  int number = 0;
  int sum = 0;
  for (const Character& c : characters) {
    const bool beyond = side == 0 ? c.bottom > at - m : c.top < at + m;
    if (!beyond || !shaped_like_print(c, area, rows, cols)) continue;
    ++number;
    sum += width_of(c) * height_of(c);
  }
  if (area >= 50 * sum) return told("V2", "clean", true);
  if (10 * sum < 3 * area) return told("V2", "moderate", false);
  if (number >= cols / 20) return told("V2", "many", true);
  return told("V2", "few", area <= 2 * sum);
}

namespace {

bool few_cut(const char* name, const Characters& characters, int at, int rows, int cols, int widest, int allowed) {
  const int m = rows / 70;
  const int high = rows < at + m ? rows - 1 : at + m;
  const int low = at - m >= 0 ? at - m : 1;
  int number = 0;
  int widths = 0;
  for (const Character& c : characters) {
    if (height_of(c) > rows / 3 || width_of(c) > widest) continue;
    const bool cut_low = c.bottom < low && low < c.top;
    const bool cut_high = c.bottom < high && high < c.top;
    if (!cut_low && !cut_high) continue;
    ++number;
    widths += width_of(c);
  }
  if (number > 6 && cols < 3 * widths) return told(name, "many cut", false);
  if (number > allowed && 5 * widths > 4 * cols) return told(name, "wide cut", false);
  return told(name, "few cut", true);
}

}  // namespace

bool verify_v3(const Characters& characters, int at, int rows, int cols) {
  return few_cut("V3", characters, at, rows, cols, cols / 2, 2);
}

bool verify_v3_orva(const Characters& characters, int at, int rows, int cols) {
  return few_cut("V3_ORVA", characters, at, rows, cols, cols / 4, 5);
}

bool verify_h0(const Characters& characters, int at, int rows, int cols, int side) {
  const int m = cols / 70;
  const int area = side == 2 ? (at + m + 1) * rows : (cols - at + m) * rows;
  int number = 0;
  int sum = 0;
  for (const Character& c : characters) {
    const bool beyond = side == 2 ? c.right < at + m : c.left > at - m;
    if (!beyond) continue;
    const int w = width_of(c);
    const int h = height_of(c);
    const int own = w * h;
    const bool plain = own > 4 && own <= area / 4 && h <= 10 * w && w <= 10 * h;
    const bool upright = !plain && own < area / 2 && w < h && 5 * w > 2 * h && own > 4;
    if (upright) support::tally::count("H0 upright piece");
    if (!plain && !upright) continue;
    ++number;
    sum += own;
  }
  if (area < 50 * sum && area > 2 * sum && number > 2) return told("H0", "moderate", false);
  if (area < 2 * sum && number <= 14) return told("H0", "large", false);
  return told("H0", "else", true);
}

}  // namespace reference::lines
