#include "lines/edges.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "lines/kernels.h"

namespace vantrel::lines {
namespace {

constexpr int kLeastSquare = kLeastEdgeMagnitude * kLeastEdgeMagnitude;

/** Where direction classes meet, as tangents of the angle from the across-rows axis. */
struct ClassBounds {
  double across_to_diagonal; /**< kAcrossRows and kRising, first quadrant */
  double diagonal_to_along;  /**< kRising and kAlongRows, first quadrant */
  double along_to_diagonal;  /**< kAlongRows and kFalling, second quadrant */
  double diagonal_to_across; /**< kFalling and kAcrossRows, second quadrant */
};

/**
 * The bounds are the odd eighths of half a turn, to five decimals: 0.39269, 1.17809, 1.96345, 2.74883. Angles of the
 * lower half-plane are folded up by 3.14159, a little less than half a turn, which moves their bounds up by 0.0000027.
 */
constexpr ClassBounds kUpper{0.41420292, 2.41416409, 2.41452366, 0.41428804};
constexpr ClassBounds kLower{0.41420603, 2.41418221, 2.41450554, 0.41428493};

}  // namespace

Direction direction_of(int across_rows, int along_rows) {
  using enum Direction;
  const bool lower = along_rows < 0;
  const ClassBounds& bound = lower ? kLower : kUpper;
  const double across = lower ? -across_rows : across_rows;
  const double along = lower ? -along_rows : along_rows;
  if (across > 0) {
    if (along < across * bound.across_to_diagonal) return kAcrossRows;
    return along < across * bound.diagonal_to_along ? kRising : kAlongRows;
  }
  if (along > -across * bound.along_to_diagonal) return kAlongRows;
  return along > -across * bound.diagonal_to_across ? kFalling : kAcrossRows;
}

void plain::mark_row(const RowTriple& gray, unsigned char* edge, unsigned char* direction, int from, int to) {
  const auto [before, here, after] = gray;
  for (int j = from; j < to; ++j) {
    const int across_rows =
        (before[j - 1] + 2 * before[j] + before[j + 1]) - (after[j - 1] + 2 * after[j] + after[j + 1]);
    const int along_rows =
        (before[j + 1] + 2 * here[j + 1] + after[j + 1]) - (before[j - 1] + 2 * here[j - 1] + after[j - 1]);
    if (across_rows * across_rows + along_rows * along_rows < kLeastSquare) {
      edge[j] = kNoEdge;
      direction[j] = static_cast<unsigned char>(Direction::kNone);
    } else {
      edge[j] = kEdge;
      direction[j] = static_cast<unsigned char>(direction_of(across_rows, along_rows));
    }
  }
}

geometry::Rect skipped_by(const geometry::Rect& interior, int rows, int cols) {
  const int row_margin = rows / 15;
  const int col_margin = cols / 25;
  const auto within = [](int first, int end, int visited_end) {
    first = std::clamp(first, 1, std::max(visited_end, 1));
    return geometry::Span{first, std::clamp(end, first, std::max(visited_end, first))};
  };
  return {within(interior.rows.first + row_margin + 1, interior.rows.end - row_margin, rows - 2),
          within(interior.cols.first + col_margin + 1, interior.cols.end - col_margin, cols - 2)};
}

void mark_edges(image::ConstPixels gray, image::Pixels edge, image::Pixels direction, const geometry::Rect& interior) {
  const int col_end = gray.cols - 2;
  const auto [skipped_rows, skipped] = skipped_by(interior, gray.rows, gray.cols);
  // The kernel takes less time for a whole vector than for a part of one: what is marked too much is skipped after
  // that.
  constexpr int kWholeVector = 64;
  const int left_end = std::max(skipped.first, std::min(1 + kWholeVector, col_end));
  const int right_from = std::min(skipped.end, std::max(col_end - kWholeVector, 1));

  for (int i = 1; i < gray.rows - 2; ++i) {
    const RowTriple triple{gray.row(i - 1), gray.row(i), gray.row(i + 1)};
    unsigned char* edges = edge.row(i);
    unsigned char* directions = direction.row(i);
    if (skipped_rows.contains(i)) {
      const auto count = static_cast<std::size_t>(skipped.size());
      kernels->mark_row(triple, edges, directions, 1, left_end);
      kernels->mark_row(triple, edges, directions, right_from, col_end);
      std::memset(edges + skipped.first, kNoEdge, count);
      std::memset(directions + skipped.first, static_cast<int>(Direction::kNone), count);
    } else {
      kernels->mark_row(triple, edges, directions, 1, col_end);
    }
  }
}

}  // namespace vantrel::lines
