#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "image/work_array.h"
#include "segment/kernels.h"
#include "segment/reduce.h"

namespace vantrel::segment {
namespace {

/** The largest sum: 256 times the largest level. */
constexpr std::uint16_t kMostSum = 256 * 255;

/** The scan turns round at the end of each row, so that the mean carries on. */
constexpr bool goes_backwards(int row) { return row % 2 != 0; }

/** Visits the columns of a row in the order of the scan. */
template <class Visit>
void walk_along(int row, int cols, Visit visit) {
  const bool backwards = goes_backwards(row);
  for (int i = 0; i < cols; ++i) visit(backwards ? cols - 1 - i : i);
}

/** Makes a row black and white by its sums and those noted before, `step` apart, whose places they then take. */
void mark_row(const Pixels& image, int row, std::uint16_t& sum, std::uint16_t* noted, int step) {
  unsigned char* levels = image.row(row);
  std::uint16_t kept = sum;
  walk_along(row, image.cols, [&](int c) {
    std::uint16_t& before = noted[std::ptrdiff_t{c} * step];
    kept = next_sum(kept, levels[c]);
    levels[c] = is_dark(levels[c], kept, before) ? 0 : 255;
    before = kept;
  });
  sum = kept;
}

/** Makes the first row black and white by its sums, `step` apart: there is no row before it, and they count twice. */
void mark_first_row(const Pixels& image, const std::uint16_t* noted, int step) {
  for (int c = 0; c < image.cols; ++c) {
    const int sum = noted[std::ptrdiff_t{c} * step];
    image.data[c] = is_dark(image.data[c], sum, sum) ? 0 : 255;
  }
}

/** The scan begins as if there had been nothing but pixels like the first. */
std::uint16_t first_sum(const Pixels& image) { return static_cast<std::uint16_t>(256 * image.data[0]); }

/** One row after the other. */
void mark_in_order(const Pixels& image, std::uint16_t* noted) {
  std::uint16_t sum = first_sum(image);
  walk_along(0, image.cols, [&](int c) { noted[c] = sum = next_sum(sum, image.data[c]); });
  mark_first_row(image, noted, 1);
  for (int r = 1; r < image.rows; ++r) mark_row(image, r, sum, noted, 1);
}

/** In so many pixels the mean forgets what was before, on nearly every scan. */
constexpr int kForgotten = 6144;

int rows_to_forget(int cols) { return (kForgotten + cols - 1) / cols; }

/**
 * All rows but the first, divided into bands that are scanned side by side: pairs of rows, so that all bands go the
 * same way. The last ones have a pair more where the pairs cannot be shared out, and a last row may be left over.
 */
struct Bands {
  int count;  /**< each longer than what it takes to forget; below 2 there are none */
  int pairs;  /**< of each band */
  int longer; /**< so many of the last bands have one more */

  Bands(int rows, int cols) : count(std::min(kLines, (rows - 1) / 2 / (rows_to_forget(cols) / 2 + 1))) {
    pairs = count < 2 ? 0 : (rows - 1) / 2 / count;
    longer = count < 2 ? 0 : (rows - 1) / 2 % count;
  }

  bool is_longer(int band) const { return band >= count - longer; }
  int first_row(int band) const { return 1 + 2 * (pairs * band + std::max(0, band - (count - longer))); }
};

/** The rows of bands that are walked along in step; lines that have none walk along an idle one. */
class BandRows {
 public:
  BandRows(const Pixels& image, const Bands& bands, unsigned char* idle_row)
      : image_(image), bands_(bands), idle_row_(idle_row) {}

  /** The row `offset` rows behind the first of each band that has it; the first band has none before its own. */
  Lines at(int offset) const {
    Lines lines{{}, image_.cols, goes_backwards(bands_.first_row(1) + offset)};
    std::fill_n(lines.levels, kLines, idle_row_);
    for (int k = 0; k < bands_.count; ++k) {
      const int row = bands_.first_row(k) + offset;
      const bool has_it = row >= 0 && (offset < 2 * bands_.pairs || bands_.is_longer(k));
      if (has_it) lines.levels[k] = image_.row(row);
    }
    return lines;
  }

 private:
  const Pixels& image_;
  const Bands& bands_;
  unsigned char* idle_row_;
};

/** What the sums of all bands can be: each lies between these two. */
struct SumRanges {
  LineSums least;
  LineSums most;

  int width(int band) const { return most[band] - least[band]; }
  void take(int band, const SumRanges& from) {
    least[band] = from.least[band];
    most[band] = from.most[band];
  }
};

/** Follows the bands through rows `from` to before `end`, counted from each band's first. */
void follow(const BandRows& rows, int from, int end, SumRanges& sums) {
  for (int offset = from; offset < end; ++offset) kernels->follow(rows.at(offset), sums.least, sums.most);
}

/** What the sums can be with which the scan comes to the row before each band, from the rows before that alone. */
SumRanges ranges_before(const Pixels& image, const BandRows& rows) {
  SumRanges sums;
  std::fill_n(sums.least, kLines, std::uint16_t{0});
  std::fill_n(sums.most, kLines, kMostSum);
  follow(rows, -rows_to_forget(image.cols) - 1, -1, sums);
  sums.least[0] = sums.most[0] = first_sum(image);
  return sums;
}

/** What they become on the way to the row before the next band. */
SumRanges ranges_after(const Bands& bands, const BandRows& rows, const SumRanges& before) {
  const int height = 2 * bands.pairs;
  SumRanges sums = before;
  follow(rows, -1, height - 1, sums);
  SumRanges longer = sums;
  if (bands.longer != 0) follow(rows, height - 1, height + 1, longer);
  for (int k = 0; k < bands.count; ++k) {
    if (bands.is_longer(k)) sums.take(k, longer);
  }
  return sums;
}

/** Follows one band on its own to the row before the next one. */
std::uint16_t sum_after(const Pixels& image, const Bands& bands, int band, std::uint16_t sum) {
  for (int r = bands.first_row(band) - 1; r < bands.first_row(band + 1) - 1; ++r) {
    const unsigned char* levels = image.row(r);
    walk_along(r, image.cols, [&](int c) { sum = next_sum(sum, levels[c]); });
  }
  return sum;
}

/**
 * Finds the sum with which the scan comes to the row before each band. A sum grows with the one before it, by as much
 * or by less. So what it can be lies between what the least and the largest beginning become; once these two meet,
 * there is only one. On a flat ground they do not, but stay as far apart as they were: then so does all between them.
 */
void find_sums(const Pixels& image, const Bands& bands, const BandRows& rows, LineSums& sums) {
  const SumRanges before = ranges_before(image, rows);
  std::copy_n(before.least, kLines, sums);
  if (std::equal(before.least, before.least + bands.count, before.most)) return;
  const SumRanges after = ranges_after(bands, rows, before);
  for (int k = 1; k < bands.count; ++k) {
    const int last = k - 1;
    if (before.width(k) == 0) continue;
    const bool kept_apart = after.width(last) == before.width(last);
    sums[k] = kept_apart ? static_cast<std::uint16_t>(after.least[last] + (sums[last] - before.least[last]))
                         : sum_after(image, bands, last, sums[last]);
  }
}

/** The same side by side; false, and nothing is done, where there are no bands. */
bool mark_in_bands(const Pixels& image, std::uint16_t* noted, unsigned char* idle_row) {
  const Bands bands(image.rows, image.cols);
  const bool rows_overlap = std::abs(image.stride) < image.cols;
  if (rows_overlap || bands.count < 2) return false;
  const BandRows rows(image, bands, idle_row);
  LineSums sums;
  find_sums(image, bands, rows, sums);

  kernels->note(rows.at(-1), sums, noted);
  mark_first_row(image, noted, kLines);
  const int height = 2 * (bands.pairs + (bands.longer != 0 ? 1 : 0));
  for (int offset = 0; offset < height; ++offset) kernels->mark(rows.at(offset), sums, noted);
  // The last band is among the longer ones, if there are any, and its sums are those of the row before the last.
  const int last = bands.count - 1;
  if (image.rows % 2 == 0) mark_row(image, image.rows - 1, sums[last], noted + last, kLines);
  return true;
}

/** The lines one after the other. `visit(level, sum, column)` gets the sum there, and may write the level. */
template <class Visit>
void walk_lines(const Lines& lines, LineSums& sums, Visit visit) {
  for (int k = 0; k < kLines; ++k) {
    for (int i = 0; i < lines.cols; ++i) {
      const int c = lines.backwards ? lines.cols - 1 - i : i;
      unsigned char& level = lines.levels[k][c];
      sums[k] = next_sum(sums[k], level);
      visit(level, sums[k], std::ptrdiff_t{c} * kLines + k);
    }
  }
}

}  // namespace

void plain::follow(const Lines& lines, LineSums& first, LineSums& second) {
  walk_lines(lines, first, [](int, int, std::ptrdiff_t) {});
  walk_lines(lines, second, [](int, int, std::ptrdiff_t) {});
}

void plain::note(const Lines& lines, LineSums& sums, std::uint16_t* noted) {
  walk_lines(lines, sums, [&](int, std::uint16_t sum, std::ptrdiff_t at) { noted[at] = sum; });
}

void plain::mark(const Lines& lines, LineSums& sums, std::uint16_t* noted) {
  walk_lines(lines, sums, [&](unsigned char& level, std::uint16_t sum, std::ptrdiff_t at) {
    level = is_dark(level, sum, noted[at]) ? 0 : 255;
    noted[at] = sum;
  });
}

bool binarise(Pixels image) {
  if (image.empty()) return true;
  const auto cols = static_cast<std::size_t>(image.cols);
  image::WorkArray<std::uint16_t> noted(kLines * cols);
  image::WorkArray<unsigned char> idle_row(noted.ready() ? cols : 0, image::Fill::kZero);
  if (!noted.ready() || !idle_row.ready()) return false;
  if (!mark_in_bands(image, noted.get(), idle_row.get())) mark_in_order(image, noted.get());
  return true;
}

}  // namespace vantrel::segment
