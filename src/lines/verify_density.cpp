#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "image/bitmap.h"
#include "image/work_array.h"
#include "lines/border_line.h"
#include "lines/sobel.h"
#include "lines/verify.h"

namespace vantrel {
namespace {

/** How many bytes of every row are edge pixels, modulo 2^16. Rows outside the map have none. */
class EdgeHistogram {
 public:
  EdgeHistogram(const unsigned char* edge, int rows, int row_bytes)
      : rows_(std::max(rows, 0)), counts_(static_cast<std::size_t>(rows_)) {
    if (!ready()) return;
    for (int r = 0; r < rows_; ++r) {
      const unsigned char* row = edge + std::ptrdiff_t{r} * row_bytes;
      counts_[static_cast<std::size_t>(r)] =
          static_cast<std::uint16_t>(std::count(row, row + std::max(row_bytes, 0), kEdge));
    }
  }

  bool ready() const { return counts_.ready(); }
  int operator[](std::int64_t row) const {
    return row >= 0 && row < rows_ ? counts_[static_cast<std::size_t>(row)] : 0;
  }

  /** Edge pixels in rows [from, to). */
  std::int64_t sum(std::int64_t from, std::int64_t to) const {
    std::int64_t total = 0;
    for (std::int64_t r = std::max<std::int64_t>(from, 0); r < std::min<std::int64_t>(to, rows_); ++r)
      total += (*this)[r];
    return total;
  }

 private:
  int rows_;
  WorkArray<std::uint16_t> counts_;
};

/** Two ranges of rows walked in step, one beyond each candidate. */
struct RowPairs {
  std::int64_t first;  /**< start beyond the first candidate */
  std::int64_t second; /**< start beyond the second */
  std::int64_t count;
};

/** The rows up to ten beyond each line; the line nearer to the image's edge says how many there are. */
RowPairs rows_beyond(std::int64_t L1, std::int64_t L2, int rows, int side) {
  if (side == kTop) {
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
}  // namespace vantrel

bool VerifyCorrectLineV_0(unsigned char* edge, double* /*lineNormal*/, double* /*lineDistance*/, int L1, int L2,
                          int rows, int cols, int side) {
  const std::int64_t first = L1;
  const std::int64_t second = L2;
  if (std::abs(first - second) <= 9) return false;
  if (first < 10 && second < 10) return false;
  if (first + 10 >= rows && second + 10 >= rows) return false;

  const auto stride = static_cast<int>(vantrel::stride_bytes(cols, 8));
  const vantrel::EdgeHistogram histogram(edge, rows, stride);
  if (!histogram.ready()) return false;
  const int threshold = stride / 10;
  const vantrel::RowPairs pairs = vantrel::rows_beyond(first, second, rows, side);
  std::int64_t beyond_first = 0;
  std::int64_t beyond_second = 0;
  for (std::int64_t i = 0; i < pairs.count; ++i) {
    const int a = histogram[pairs.first + i];
    const int b = histogram[pairs.second + i];
    if (std::abs(a - histogram[first]) >= threshold && std::abs(b - histogram[second]) >= threshold) {
      beyond_first += a;
      beyond_second += b;
    }
  }
  return beyond_first > 10 * beyond_second;
}

bool VerifyCorrectLineV_1(unsigned char* edge, float* /*a*/, float* /*b*/, int L, int rows, int rowBytes, int side) {
  const vantrel::EdgeHistogram histogram(edge, rows, rowBytes);
  if (!histogram.ready()) return false;
  const std::int64_t line = L;
  std::int64_t count = 0;
  std::int64_t area = 0;
  if (side == vantrel::kTop) {
    if (rows <= line + 3) return true;
    count = histogram.sum(line + 3, std::int64_t{rows} - 1);
    area = rowBytes * (rows - line - 3);
  } else {
    if (line < 3) return true;
    count = histogram.sum(0, line - 3);
    area = rowBytes * (line - 2);
  }
  return !(16 * count < area && area < 22 * count);
}
