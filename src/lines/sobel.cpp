#include "lines/sobel.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace vantrel {
namespace {

/** A gradient makes an edge when its magnitude, truncated to an integer, is above 200: its square is at least 201^2. */
constexpr int kEdgeMagnitudeSquared = 201 * 201;

/** Where direction classes meet, as tangents of the angle from the across-rows axis. */
struct ClassBounds {
  double across_to_diagonal; /**< classes 0 and 1, first quadrant */
  double diagonal_to_along;  /**< classes 1 and 2, first quadrant */
  double along_to_diagonal;  /**< classes 2 and 3, second quadrant */
  double diagonal_to_across; /**< classes 3 and 0, second quadrant */
};

/**
 * The bounds are the odd eighths of half a turn, to five decimals: 0.39269, 1.17809, 1.96345, 2.74883. Angles of the
 * lower half-plane are folded up by 3.14159, a little less than half a turn, which moves their bounds up by 0.0000027.
 */
constexpr ClassBounds kUpper{0.41420292, 2.41416409, 2.41452366, 0.41428804};
constexpr ClassBounds kLower{0.41420603, 2.41418221, 2.41450554, 0.41428493};

/** The two rows next to a row, and the row itself. */
struct RowTriple {
  const unsigned char* before;
  const unsigned char* at;
  const unsigned char* after;
};

/** Computes the gradient of columns [from, to) of a row and marks them in its edge and direction rows. */
void mark_gradients(const RowTriple& gray, unsigned char* edge, unsigned char* dir, int from, int to) {
  for (int j = from; j < to; ++j) {
    const auto [t, m, b] = gray;
    const int across_rows = (t[j - 1] + 2 * t[j] + t[j + 1]) - (b[j - 1] + 2 * b[j] + b[j + 1]);
    const int along_rows = (t[j + 1] + 2 * m[j + 1] + b[j + 1]) - (t[j - 1] + 2 * m[j - 1] + b[j - 1]);
    if (across_rows * across_rows + along_rows * along_rows < kEdgeMagnitudeSquared) {
      edge[j] = kNoEdge;
      dir[j] = kNoDirection;
    } else {
      edge[j] = kEdge;
      dir[j] = static_cast<unsigned char>(direction_class(across_rows, along_rows));
    }
  }
}

}  // namespace

int direction_class(int across_rows, int along_rows) {
  const bool lower = along_rows < 0;
  const ClassBounds& bound = lower ? kLower : kUpper;
  const double across = lower ? -across_rows : across_rows;
  const double along = lower ? -along_rows : along_rows;
  if (across > 0) {
    if (along < across * bound.across_to_diagonal) return 0;
    return along < across * bound.diagonal_to_along ? 1 : 2;
  }
  if (along > -across * bound.along_to_diagonal) return 2;
  return along > -across * bound.diagonal_to_across ? 3 : 0;
}

}  // namespace vantrel

void Sobel_Operator(unsigned char* gray, unsigned char* edge, unsigned char* dir, int rows, int cols, int stride,
                    MYRECT interior) {
  const int row_margin = rows / 15;
  const int col_margin = cols / 25;
  // The last two rows and columns are never visited.
  const int col_end = cols - 2;
  const int skip_from = std::clamp(interior.left + col_margin + 1, 1, std::max(col_end, 1));
  const int skip_to = std::clamp(interior.right - col_margin, skip_from, std::max(col_end, skip_from));

  for (int i = 1; i < rows - 2; ++i) {
    const std::ptrdiff_t offset = std::ptrdiff_t{i} * stride;
    const unsigned char* row = gray + offset;
    const vantrel::RowTriple triple{row - stride, row, row + stride};
    if (i > interior.top + row_margin && i < interior.bottom - row_margin) {
      const auto skipped = static_cast<std::size_t>(skip_to - skip_from);
      vantrel::mark_gradients(triple, edge + offset, dir + offset, 1, skip_from);
      std::memset(edge + offset + skip_from, vantrel::kNoEdge, skipped);
      std::memset(dir + offset + skip_from, vantrel::kNoDirection, skipped);
      vantrel::mark_gradients(triple, edge + offset, dir + offset, skip_to, col_end);
    } else {
      vantrel::mark_gradients(triple, edge + offset, dir + offset, 1, col_end);
    }
  }
}
