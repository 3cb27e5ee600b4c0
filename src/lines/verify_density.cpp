#include "lines/verify_density.h"

#include <algorithm>
#include <cstdlib>

#include "lines/edges.h"

namespace vantrel::lines {
namespace {

using geometry::Side;

/** Two ranges of rows walked in step, one beyond each candidate. */
struct RowPairs {
  std::int64_t first;  /**< start beyond the first candidate */
  std::int64_t second; /**< start beyond the second */
  std::int64_t count;
};

/** The rows up to ten beyond each line; the line nearer to the image's edge says how many there are. */
RowPairs rows_beyond(std::int64_t L1, std::int64_t L2, int rows, Side side) {
  if (side == Side::kTop) {
    const std::int64_t outer = std::max(L1, L2);
    const std::int64_t end = std::min<std::int64_t>(outer + 10, rows - 1);
    return {L1 + 1, L2 + 1, end - (outer + 1)};
  }
  const std::int64_t outer = std::min(L1, L2);
  const std::int64_t start = std::max<std::int64_t>(outer - 10, 0);
  const std::int64_t count = outer - 1 - start;
  // With the first line nearer to the edge, the second's rows start one further out than in the other cases.
  return L1 < L2 ? RowPairs{start, L2 - 11, count} : RowPairs{L1 - 10, start, count};
}

}  // namespace

EdgeHistogram::EdgeHistogram(image::ConstPixels edge, int row_bytes)
    : rows_(std::max(edge.rows, 0)), counts_(static_cast<std::size_t>(rows_)) {
  if (!ready()) return;
  for (int r = 0; r < rows_; ++r) {
    const unsigned char* row = edge.row(r);
    counts_[static_cast<std::size_t>(r)] =
        static_cast<std::uint16_t>(std::count(row, row + std::max(row_bytes, 0), kEdge));
  }
}

std::int64_t EdgeHistogram::sum(std::int64_t from, std::int64_t to) const {
  std::int64_t total = 0;
  for (std::int64_t r = std::max<std::int64_t>(from, 0); r < std::min<std::int64_t>(to, rows_); ++r)
    total += (*this)[r];
  return total;
}

bool worth_comparing(std::int64_t L1, std::int64_t L2, int rows) {
  if (std::abs(L1 - L2) <= 9) return false;
  return (L1 >= 10 || L2 >= 10) && (L1 + 10 < rows || L2 + 10 < rows);
}

bool denser_beyond_first(const EdgeHistogram& histogram, std::int64_t L1, std::int64_t L2, Side side, int row_bytes) {
  const int threshold = row_bytes / 10;
  const RowPairs pairs = rows_beyond(L1, L2, histogram.rows(), side);
  std::int64_t beyond_first = 0;
  std::int64_t beyond_second = 0;
  for (std::int64_t i = 0; i < pairs.count; ++i) {
    const int a = histogram[pairs.first + i];
    const int b = histogram[pairs.second + i];
    if (std::abs(a - histogram[L1]) >= threshold && std::abs(b - histogram[L2]) >= threshold) {
      beyond_first += a;
      beyond_second += b;
    }
  }
  return beyond_first > 10 * beyond_second;
}

bool clear_beyond(const EdgeHistogram& histogram, std::int64_t L, Side side, int row_bytes) {
  const std::int64_t rows = histogram.rows();
  std::int64_t count = 0;
  std::int64_t area = 0;
  if (side == Side::kTop) {
    if (rows <= L + 3) return true;
    count = histogram.sum(L + 3, rows - 1);
    area = row_bytes * (rows - L - 3);
  } else {
    if (L < 3) return true;
    count = histogram.sum(0, L - 3);
    area = row_bytes * (L - 2);
  }
  return !(16 * count < area && area < 22 * count);
}

}  // namespace vantrel::lines
