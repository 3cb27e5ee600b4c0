#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdlib>
#include <optional>
#include <utility>

#include "image/work_array.h"
#include "segment/kernels.h"
#include "segment/reduce.h"

namespace vantrel::segment {
namespace {

/** The largest sum: 256 times the largest level. */
constexpr int kMostSum = 256 * 255;

/** 256 times a mean over about the last 256 pixels, after one more pixel. Grows with `sum`, and stays in 0..kMostSum.
 */
int next_sum(int sum, int level) { return sum + level - (sum >> 8); }

/** The order of a row's columns: the scan turns round at the end of each row, so that the mean carries on. */
struct Walk {
  int first;
  int step;

  Walk(int row, int cols) : first(row % 2 == 0 ? 0 : cols - 1), step(row % 2 == 0 ? 1 : -1) {}
};

/** Rows from `first` to before `end`, whose sums do not wait for those of the rows before. */
struct Band {
  int first = 0;
  int end = 0;
  int sum = 0;           /**< after the last pixel */
  int* sums = nullptr;   /**< of the present row's columns */
  int* before = nullptr; /**< of the row before */
};

/** So many bands have their sums computed in turns: each waits for its last one, and they do not wait for each other.
 */
constexpr int kBands = 4;
using Bands = std::array<Band, kBands>;

/** Computes the sums of a row. */
void sum_row(const Pixels& image, int row, int& sum, int* sums) {
  const unsigned char* levels = image.row(row);
  const auto [first, step] = Walk(row, image.cols);
  int kept = sum;
  for (int i = 0, c = first; i < image.cols; ++i, c += step) sums[c] = kept = next_sum(kept, levels[c]);
  sum = kept;
}

/** The same of the `offset`-th row of all bands, which begin with even rows or with odd ones, all of them. */
void sum_rows(const Pixels& image, int offset, Bands& bands) {
  const auto [first, step] = Walk(bands[0].first + offset, image.cols);
  auto& [a, b, c, d] = bands;
  const unsigned char* const levels[] = {image.row(a.first + offset), image.row(b.first + offset),
                                         image.row(c.first + offset), image.row(d.first + offset)};
  int* const sums[] = {a.sums, b.sums, c.sums, d.sums};
  int s[] = {a.sum, b.sum, c.sum, d.sum};
  for (int i = 0, at = first; i < image.cols; ++i, at += step) {
    for (int k = 0; k < kBands; ++k) sums[k][at] = s[k] = next_sum(s[k], levels[k][at]);
  }
  for (int k = 0; k < kBands; ++k) bands[static_cast<std::size_t>(k)].sum = s[k];
}

/** Makes a row black and white by its sums and those before, whose places they then take. */
void mark_row(const Pixels& image, int row, Band& band) {
  kernels->mark_dark(image.row(row), band.sums, band.before, image.cols);
  std::swap(band.sums, band.before);
}

/** In so many pixels the mean forgets what was before, on nearly every scan. */
constexpr int kForgotten = 6144;

int rows_to_forget(int cols) { return (kForgotten + cols - 1) / cols; }

/**
 * The sum at the end of a row without a look at what is long before it. As a sum grows with the one before it, all that
 * can be lie between those of the least and of the largest beginning, and once these two meet there is only one. On a
 * flat ground they may not: then there is none.
 */
std::optional<int> sum_after(const Pixels& image, int row) {
  int least = 0;
  int most = kMostSum;
  for (int r = row - rows_to_forget(image.cols) + 1; r <= row; ++r) {
    const unsigned char* levels = image.row(r);
    const auto [first, step] = Walk(r, image.cols);
    for (int i = 0, c = first; i < image.cols; ++i, c += step) {
      least = next_sum(least, levels[c]);
      most = next_sum(most, levels[c]);
    }
  }
  return least == most ? std::optional(least) : std::nullopt;
}

/** Divides all rows but the first into bands that can do without each other; false where they cannot. */
bool divide(const Pixels& image, Bands& bands) {
  const int height = (image.rows - 1) / kBands / 2 * 2;
  const bool rows_overlap = std::abs(image.stride) < image.cols;
  if (rows_overlap || height < 4 * (rows_to_forget(image.cols) + 1)) return false;
  int first = 1;
  for (Band& band : bands) {
    band.first = first;
    band.end = first += height;
  }
  bands.back().end = image.rows;
  for (Band& band : std::span(bands).subspan(1)) {
    // Two rows before the band: the sums of the row before it are needed, too.
    const std::optional<int> sum = sum_after(image, band.first - 2);
    if (!sum) return false;
    band.sum = *sum;
    sum_row(image, band.first - 1, band.sum, band.before);
  }
  return true;
}

}  // namespace

void plain::mark_dark(unsigned char* row, const int* sums, const int* before, int count) {
  // 27/32 of the mean is 27 * sum >> 13, and with two sums added, of the average of both means.
  for (int c = 0; c < count; ++c) row[c] = row[c] < (27 * (sums[c] + before[c])) >> 14 ? 0 : 255;
}

bool binarise(Pixels image) {
  if (image.empty()) return true;
  const auto cols = static_cast<std::size_t>(image.cols);
  image::WorkArray<int> rows_of_sums(2 * kBands * cols);
  if (!rows_of_sums.ready()) return false;
  Bands bands;
  for (std::size_t k = 0; k < kBands; ++k) {
    bands[k].before = rows_of_sums.get() + 2 * k * cols;
    bands[k].sums = bands[k].before + cols;
  }

  const bool divided = divide(image, bands);
  Band& top = bands[0];
  top.sum = 256 * image.data[0];
  sum_row(image, 0, top.sum, top.before);
  // There is no row before the first: its own sums count twice.
  kernels->mark_dark(image.data, top.before, top.before, image.cols);
  if (!divided) {
    for (int r = 1; r < image.rows; ++r) {
      sum_row(image, r, top.sum, top.sums);
      mark_row(image, r, top);
    }
    return true;
  }
  for (int offset = 0; offset < top.end - top.first; ++offset) {
    sum_rows(image, offset, bands);
    for (Band& band : bands) mark_row(image, band.first + offset, band);
  }
  Band& last = bands.back();
  for (int r = last.first + (top.end - top.first); r < last.end; ++r) {
    sum_row(image, r, last.sum, last.sums);
    mark_row(image, r, last);
  }
  return true;
}

}  // namespace vantrel::segment
