#include "anywhere/copy.h"

#include <algorithm>

#include "anywhere/stripes.h"

namespace vantrel::anywhere {
namespace {

using image::WorkArray;

/**
 * Divides whole numbers by one that stays the same, rounding halves away from 0. With half of a unit more the quotient
 * is never near a whole number: its distance is half of 1 / `by` at least, and what a product of doubles lacks is far
 * less for values of 31 bits.
 */
class RoundedDivision {
 public:
  explicit RoundedDivision(int by) : up_(by / 2 + 0.5), reciprocal_(1.0 / by) {}
  int operator()(int value) const { return static_cast<int>((value + (value < 0 ? -up_ : up_)) * reciprocal_); }

 private:
  double up_;
  double reciprocal_;
};

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

/** Writes one pixel of the copy from the sums over as many pixels as `mean` divides by. */
void put(Copy& copy, std::size_t at, const Sums& sums, const RoundedDivision& mean) {
  const PlaneSums planes = plane_sums(sums.blue, sums.green, sums.red);
  const auto level = [&](Plane plane, int sum) {
    return static_cast<std::int16_t>(mean(sum * (kLevel / kPlaneParts[plane])));
  };
  copy.planes[kLight][at] = level(kLight, planes.light);
  if (copy.plane_count == 1) return;
  copy.planes[kRedGreen][at] = level(kRedGreen, planes.red_green);
  copy.planes[kBlueYellow][at] = level(kBlueYellow, planes.blue_yellow);
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
  const RoundedDivision mean(copy.factor * copy.factor);
  std::size_t at = 0;
  for (int row = 0; row < copy.rows; ++row) {
    columns.clear();
    for (int i = 0; i < copy.factor; ++i) columns.add(scan.row(row * copy.factor + i));
    const std::uint16_t* column = columns.get();
    for (int col = 0; col < copy.cols; ++col, column += copy.factor * Pixels::kBytes)
      put(copy, at++, block_sums<Pixels>(column, copy.factor), mean);
  }
  return true;
}

bool reduce_bits(const image::ConstPixels& scan, Copy& copy) {
  const RoundedDivision mean(copy.factor * copy.factor);
  std::size_t at = 0;
  for (int row = 0; row < copy.rows; ++row) {
    for (int col = 0; col < copy.cols; ++col) {
      int sum = 0;
      for (int r = row * copy.factor; r < (row + 1) * copy.factor; ++r)
        for (int c = col * copy.factor; c < (col + 1) * copy.factor; ++c) sum += BilevelPixels::level(scan.row(r), c);
      put(copy, at++, {sum, sum, sum}, mean);
    }
  }
  return true;
}

/** [1 2 1] / 4 of three values. */
constexpr std::int16_t smoothed(int before, int here, int after) {
  return static_cast<std::int16_t>((before + 2 * here + after + 2) >> 2);
}

/** Values that are smoothed at once; they are kept as they were, for those that follow. */
constexpr int kSpan = 64;

/** Smooths along a row, in place; the outermost values are repeated. */
void smooth_row(std::int16_t* row, int cols) {
  std::array<std::int16_t, kSpan + 2> kept;
  kept[0] = row[0];
  for (int from = 0; from < cols; from += kSpan) {
    const int count = std::min(kSpan, cols - from);
    std::int16_t* values = row + from;
    std::copy_n(values, count, kept.data() + 1);
    kept[static_cast<std::size_t>(count) + 1] = values[from + count < cols ? count : count - 1];
    const std::int16_t* before = kept.data();
    for (int i = 0; i < count; ++i) values[i] = smoothed(before[i], before[i + 1], before[i + 2]);
    kept[0] = kept[static_cast<std::size_t>(count)];
  }
}

/** Smooths down some columns, at most kSpan. */
void smooth_columns(Copy& copy, std::int16_t* top, int count) {
  std::array<std::int16_t, kSpan> before;
  std::copy_n(top, count, before.data());
  for (int row = 0; row < copy.rows; ++row) {
    std::int16_t* here = top + copy.index(row, 0);
    const std::int16_t* after = row + 1 < copy.rows ? here + copy.cols : here;
    for (int i = 0; i < count; ++i) {
      const std::int16_t kept = here[i];
      here[i] = smoothed(before[static_cast<std::size_t>(i)], kept, after[i]);
      before[static_cast<std::size_t>(i)] = kept;
    }
  }
}

void smooth(Copy& copy, std::int16_t* plane) {
  for (int row = 0; row < copy.rows; ++row) smooth_row(plane + copy.index(row, 0), copy.cols);
  for (int col = 0; col < copy.cols; col += kSpan) smooth_columns(copy, plane + col, std::min(kSpan, copy.cols - col));
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
