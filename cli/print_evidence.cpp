#include "print_evidence.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <vector>

#include "rectangle.h"

namespace tool {
namespace {

constexpr int kMark = 40;             /**< levels from the paper's */
constexpr double kLeastMarks = 0.002; /**< of the place; less is dust */
constexpr double kMostMarks = 0.5;
constexpr double kLeastSpread = 0.2; /**< of the place's width and height */
constexpr double kEdge = 0.03;       /**< so wide, as a share of the place's width, its edges are */
constexpr double kMostOnEdge = 0.1;  /**< the density of marks on the edges by that of the place */

vantrel_rect on_copy(const vantrel_rect& place, const GrayCopy& copy) {
  const int n = copy.times;
  return clamped({place.left / n, place.top / n, place.right / n, place.bottom / n}, copy.pixels);
}

/** The level that most of the place has. */
int paper_level(const GrayCopy& copy, const vantrel_rect& r) {
  std::array<int, 256> count{};
  for (int y = r.top; y < r.bottom; ++y) {
    const unsigned char* row = copy.row(y);
    for (int x = r.left; x < r.right; ++x) ++count[row[x]];
  }
  return static_cast<int>(std::max_element(count.begin(), count.end()) - count.begin());
}

/** Marks in rows and columns of the place, and on its edges. */
struct Marks {
  std::vector<int> rows;
  std::vector<int> columns;
  double all = 0;
  double on_edge = 0;
  double edge_pixels = 0;
};

Marks marks_on(const GrayCopy& copy, const vantrel_rect& r) {
  const int paper = paper_level(copy, r);
  const int edge = std::max(1, static_cast<int>(kEdge * (r.right - r.left)));
  Marks marks;
  marks.rows.resize(static_cast<std::size_t>(r.bottom - r.top));
  marks.columns.resize(static_cast<std::size_t>(r.right - r.left));
  for (int y = r.top; y < r.bottom; ++y) {
    const unsigned char* row = copy.row(y);
    for (int x = r.left; x < r.right; ++x) {
      const bool on_edge = std::min({x - r.left, r.right - 1 - x, y - r.top, r.bottom - 1 - y}) < edge;
      const bool mark = std::abs(row[x] - paper) > kMark;
      marks.edge_pixels += on_edge;
      marks.all += mark;
      marks.on_edge += mark && on_edge;
      marks.rows[static_cast<std::size_t>(y - r.top)] += mark;
      marks.columns[static_cast<std::size_t>(x - r.left)] += mark;
    }
  }
  return marks;
}

/** From the first to the last that is marked, as a share. */
double spread(const std::vector<int>& marks) {
  const auto marked = [](int count) { return count > 0; };
  const auto first = std::find_if(marks.begin(), marks.end(), marked);
  const auto last = std::find_if(marks.rbegin(), marks.rend(), marked).base();
  return first < last ? static_cast<double>(last - first) / static_cast<double>(marks.size()) : 0;
}

}  // namespace

bool has_print(const GrayCopy& copy, const vantrel_rect& place) {
  const vantrel_rect r = on_copy(place, copy);
  if (!lies_within(r, copy.pixels)) return false;
  const Marks marks = marks_on(copy, r);
  const double density = marks.all / (1.0 * (r.right - r.left) * (r.bottom - r.top));
  if (density < kLeastMarks || density > kMostMarks) return false;
  if (spread(marks.rows) < kLeastSpread || spread(marks.columns) < kLeastSpread) return false;
  return marks.on_edge <= kMostOnEdge * density * marks.edge_pixels;
}

}  // namespace tool
