#include "anywhere/copy.h"

#include <algorithm>

#include "anywhere/stripes.h"

namespace vantrel::anywhere {
namespace {

using image::WorkArray;

constexpr int divide_rounded(int value, int by) { return (value >= 0 ? value + by / 2 : value - by / 2) / by; }

/** Adds rows of bytes up, so that reading a large scan is one sweep that vectorises. */
class ColumnSums {
 public:
  explicit ColumnSums(std::size_t bytes) : sums_(bytes) {}

  bool ready() const { return sums_.ready(); }
  void clear() { std::fill_n(sums_.get(), sums_.size(), std::uint16_t{0}); }
  // A sum holds 257 rows, far more than a factor has.
  void add(const unsigned char* row) {
    std::uint16_t* sum = sums_.get();
    const std::size_t count = sums_.size();
    for (std::size_t i = 0; i < count; ++i) sum[i] = static_cast<std::uint16_t>(sum[i] + row[i]);
  }
  const std::uint16_t* get() const { return sums_.get(); }

 private:
  WorkArray<std::uint16_t> sums_;
};

/** The sums of blue, green and red over a block of the scan. */
struct Sums {
  int blue = 0;
  int green = 0;
  int red = 0;
};

/** Writes one pixel of the copy from the sums over `count` pixels. */
void put(Copy& copy, std::size_t at, const Sums& sums, int count) {
  const PlaneSums planes = plane_sums(sums.blue, sums.green, sums.red);
  const auto mean = [&](Plane plane, int sum) {
    return static_cast<std::int16_t>(divide_rounded(sum * (kLevel / kPlaneParts[plane]), count));
  };
  copy.planes[kLight][at] = mean(kLight, planes.light);
  if (copy.plane_count == 1) return;
  copy.planes[kRedGreen][at] = mean(kRedGreen, planes.red_green);
  copy.planes[kBlueYellow][at] = mean(kBlueYellow, planes.blue_yellow);
}

template <class Pixels>
Sums block_sums(const std::uint16_t* column, int factor) {
  Sums sums;
  for (int i = 0; i < factor; ++i, column += Pixels::kBytes) {
    sums.blue += column[Pixels::kBlue];
    sums.green += column[Pixels::kGreen];
    sums.red += column[Pixels::kRed];
  }
  return sums;
}

template <class Pixels>
bool reduce_bytes(const image::ConstPixels& scan, Copy& copy) {
  const auto bytes = static_cast<std::size_t>(copy.cols) * static_cast<std::size_t>(copy.factor * Pixels::kBytes);
  ColumnSums columns(bytes);
  if (!columns.ready()) return false;
  std::size_t at = 0;
  for (int row = 0; row < copy.rows; ++row) {
    columns.clear();
    for (int i = 0; i < copy.factor; ++i) columns.add(scan.row(row * copy.factor + i));
    const std::uint16_t* column = columns.get();
    for (int col = 0; col < copy.cols; ++col, column += copy.factor * Pixels::kBytes)
      put(copy, at++, block_sums<Pixels>(column, copy.factor), copy.factor * copy.factor);
  }
  return true;
}

bool reduce_bits(const image::ConstPixels& scan, Copy& copy) {
  std::size_t at = 0;
  for (int row = 0; row < copy.rows; ++row) {
    for (int col = 0; col < copy.cols; ++col) {
      int sum = 0;
      for (int r = row * copy.factor; r < (row + 1) * copy.factor; ++r)
        for (int c = col * copy.factor; c < (col + 1) * copy.factor; ++c) sum += BilevelPixels::level(scan.row(r), c);
      put(copy, at++, {sum, sum, sum}, copy.factor * copy.factor);
    }
  }
  return true;
}

/** [1 2 1] / 4 along a line of values `step` apart, in place; the outermost values are repeated. */
void smooth_line(std::int16_t* value, int count, int step) {
  int before = *value;
  for (int i = 0; i < count; ++i, value += step) {
    const int here = *value;
    const int after = i + 1 < count ? value[step] : here;
    *value = static_cast<std::int16_t>((before + 2 * here + after + 2) >> 2);
    before = here;
  }
}

void smooth(Copy& copy, std::int16_t* plane) {
  for (int row = 0; row < copy.rows; ++row) smooth_line(plane + copy.index(row, 0), copy.cols, 1);
  for (int col = 0; col < copy.cols; ++col) smooth_line(plane + col, copy.rows, copy.cols);
}

Copy make_copy(int factor, int rows, int cols, std::size_t plane_count) {
  Copy copy;
  copy.factor = factor;
  copy.rows = rows;
  copy.cols = cols;
  copy.plane_count = plane_count;
  for (std::size_t plane = 0; plane < plane_count; ++plane) copy.planes[plane] = WorkArray<std::int16_t>(copy.size());
  return copy;
}

void halve_row(const std::int16_t* above, const std::int16_t* below, int cols, std::int16_t* to) {
  for (int col = 0; col < cols; ++col, above += 2, below += 2)
    to[col] = static_cast<std::int16_t>((above[0] + above[1] + below[0] + below[1] + 2) >> 2);
}

}  // namespace

int reduction_factor(int rows, int cols) { return std::max(1, (std::max(rows, cols) + kCopySide / 2) / kCopySide); }

Copy reduce(const Scan& scan) {
  const int factor = reduction_factor(scan.pixels.rows, scan.pixels.cols);
  Copy copy = make_copy(factor, scan.pixels.rows / factor, scan.pixels.cols / factor,
                        has_colour(scan.layout) ? std::size_t{kPlanes} : 1);
  if (!copy.ready() || copy.size() == 0) return copy;
  const bool done = with_pixels(scan.layout, [&](auto pixels) {
    using Pixels = decltype(pixels);
    if constexpr (Pixels::kBytes == 0) {
      return reduce_bits(scan.pixels, copy);
    } else {
      return reduce_bytes<Pixels>(scan.pixels, copy);
    }
  });
  if (!done) {
    copy.planes[0] = WorkArray<std::int16_t>();  // no memory: not ready
    return copy;
  }
  WorkArray<std::int16_t> offsets(static_cast<std::size_t>(std::max(copy.rows, copy.cols)));
  if (!offsets.ready()) {
    copy.planes[0] = WorkArray<std::int16_t>();
    return copy;
  }
  for (std::size_t plane = 0; plane < copy.plane_count; ++plane) {
    std::int16_t* data = copy.planes[plane].get();
    remove_stripes({data, copy.rows, copy.cols, copy.cols, 1}, {offsets.get(), static_cast<std::size_t>(copy.rows)});
    remove_stripes({data, copy.cols, copy.rows, 1, copy.cols}, {offsets.get(), static_cast<std::size_t>(copy.cols)});
    smooth(copy, data);
  }
  return copy;
}

Copy halved(const Copy& copy) {
  Copy half = make_copy(2 * copy.factor, copy.rows / 2, copy.cols / 2, copy.plane_count);
  if (!half.ready() || half.size() == 0) return half;
  for (std::size_t plane = 0; plane < copy.plane_count; ++plane) {
    std::int16_t* const data = half.planes[plane].get();
    for (int row = 0; row < half.rows; ++row) {
      const std::int16_t* above = copy.planes[plane].get() + copy.index(2 * row, 0);
      halve_row(above, above + copy.cols, half.cols, data + half.index(row, 0));
    }
    smooth(half, data);
  }
  return half;
}

}  // namespace vantrel::anywhere
