#include "segment/card_window.h"

#include <algorithm>
#include <numeric>

namespace vantrel::segment {
namespace {

/** Fills the profile with the black pixels of the rows in the columns up to and including each. */
void sum_columns(ConstPixels strip, Span rows, std::span<int> profile) {
  std::fill(profile.begin(), profile.end(), 0);
  int* black = profile.data();
  for (int r = rows.first; r < rows.end; ++r) {
    const unsigned char* pixels = strip.row(r);
    for (int c = 0; c < strip.cols; ++c) black[c] += pixels[c] == 0;
  }
  std::partial_sum(profile.begin(), profile.end(), profile.begin());
}

/** The black pixels of some columns, from the sums over those up to each. */
int black_in(std::span<const int> sums, Span cols) {
  const int before = cols.first == 0 ? 0 : sums[static_cast<std::size_t>(cols.first - 1)];
  return sums[static_cast<std::size_t>(cols.last())] - before;
}

}  // namespace

Window fullest_window(ConstPixels strip, Span rows, int length, std::span<int> profile) {
  const std::span<int> sums = profile.first(static_cast<std::size_t>(strip.cols));
  sum_columns(strip, rows, sums);

  const int run = std::min(length, strip.cols);
  int most = -1;
  std::int64_t start_sum = 0;
  int starts = 0;
  for (int start = 0; start + run <= strip.cols; ++start) {
    const int black = black_in(sums, {start, start + run});
    if (black < most) continue;
    if (black > most) {
      most = black;
      start_sum = 0;
      starts = 0;
    }
    start_sum += start;
    ++starts;
  }
  const int start = static_cast<int>(start_sum / starts);
  const Span cols = {start, start + run};
  const int all = sums.back();
  return {cols, all == 0 ? 0.0 : static_cast<double>(black_in(sums, cols)) / all};
}

Span complete_height(Span card, int height, FreeRows below, FreeRows above) {
  const int missing = height - card.size();
  if (missing <= 0) return card;
  const bool below_first = below.rows <= above.rows;
  const int first = std::min(missing / 2, (below_first ? below : above).usable());
  const int second = std::min(missing - first, (below_first ? above : below).usable());
  card.first -= below_first ? first : second;
  card.end += below_first ? second : first;
  return card;
}

std::array<Span, kMostGroups> complete_heights(std::span<const Span> bands, const Groups& groups, int height,
                                               int sheet_rows) {
  std::array<Span, kMostGroups> cards{};
  for (int k = 0; k < groups.count; ++k) {
    const Span card = rows_of(bands, groups, k);
    const bool lowest = k == 0;
    const bool highest = k == groups.count - 1;
    const int floor = lowest ? 0 : cards[static_cast<std::size_t>(k - 1)].last();
    const int ceiling = highest ? sheet_rows - 1 : rows_of(bands, groups, k + 1).first;
    cards[static_cast<std::size_t>(k)] =
        complete_height(card, height, {card.first - floor, lowest}, {ceiling - card.last(), highest});
  }
  return cards;
}

}  // namespace vantrel::segment
