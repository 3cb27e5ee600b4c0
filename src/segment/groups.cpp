#include "segment/groups.h"

#include <algorithm>
#include <utility>

namespace vantrel::segment {
namespace {

constexpr int kMostRounds = 6;

/** Bands [from, to) as one run of rows. */
Span hull(std::span<const Span> bands, int from, int to) {
  return {bands[static_cast<std::size_t>(from)].first, bands[static_cast<std::size_t>(to - 1)].end};
}

int& start_of(Groups& groups, int k) { return groups.start[static_cast<std::size_t>(k)]; }
int start_of(const Groups& groups, int k) { return groups.start[static_cast<std::size_t>(k)]; }

/** The mean of all rows in the bands [from, to). Sums of rows outgrow 32 bits on a high sheet. */
int centre(std::span<const Span> bands, int from, int to) {
  std::int64_t row_sum = 0;
  std::int64_t rows = 0;
  for (const Span& band : bands.subspan(static_cast<std::size_t>(from), static_cast<std::size_t>(to - from))) {
    row_sum += (std::int64_t{band.first} + band.last()) * band.size() / 2;
    rows += band.size();
  }
  return static_cast<int>(row_sum / rows);  // NOLINT(clang-analyzer-core.DivideZero): a group has a band
}

/** The first of the bands [from, to) whose midpoint is at or past the line, or `to`. */
int first_past(std::span<const Span> bands, int from, int to, int line) {
  const auto past = std::partition_point(bands.begin() + from, bands.begin() + to,
                                         [line](const Span& band) { return middle_row(band) < line; });
  return static_cast<int>(past - bands.begin());
}

/** Applies `balance_pair(k)`, true for a change, to all pairs (k, k + 1) forwards and backwards until nothing changes.
 */
template <class BalancePair>
void sweep_pairs(int groups, BalancePair balance_pair) {
  for (int round = 0; round < kMostRounds; ++round) {
    bool changed = false;
    for (int k = 0; k <= groups - 2; ++k) changed |= balance_pair(k);
    for (int k = groups - 2; k >= 0; --k) changed |= balance_pair(k);
    if (!changed) return;
  }
}

float height_ratio(const Span& a, const Span& b) {
  const int low = std::min(a.size(), b.size());
  const int high = std::max(a.size(), b.size());
  return static_cast<float>(low) / static_cast<float>(high);
}

/** The groups k and k + 1 as bands [from, to), with the boundary between them open. */
struct Pair {
  std::span<const Span> bands;
  int from;
  int to;

  Span lower(int boundary) const { return hull(bands, from, boundary); }
  Span upper(int boundary) const { return hull(bands, boundary, to); }
  int gap(int boundary) const { return upper(boundary).first - lower(boundary).last(); }
  float ratio(int boundary) const { return height_ratio(lower(boundary), upper(boundary)); }
};

bool looks_like_two_cards(const Pair& pair, int boundary, const CardSize& size) {
  return pair.gap(boundary) >= size.least_gap && pair.lower(boundary).size() <= size.height &&
         pair.upper(boundary).size() <= size.height && pair.ratio(boundary) >= 0.75f;
}

/** The height ratio with the boundary moved there, or 0 when that is not acceptable. */
float ratio_if_moved(const Pair& pair, int boundary, float ratio_now, const CardSize& size) {
  if (boundary <= pair.from || boundary >= pair.to || pair.gap(boundary) < size.least_gap) return 0.0f;
  const float ratio = pair.ratio(boundary);
  return ratio >= ratio_now * 3.0f * 0.25f ? ratio : 0.0f;
}

}  // namespace

Span rows_of(std::span<const Span> bands, const Groups& groups, int k) {
  return hull(bands, start_of(groups, k), start_of(groups, k + 1));
}

Groups merge_bands(std::span<const Span> bands, int card_height) {
  Groups groups;
  const int count = static_cast<int>(bands.size());
  int band = 0;
  while (band < count && groups.count < kMostGroups) {
    const int from = band++;
    while (band < count && hull(bands, from, band + 1).size() <= card_height) ++band;
    start_of(groups, ++groups.count) = band;
  }
  return groups;
}

void reassign_by_centre(std::span<const Span> bands, Groups& groups) {
  const Groups old = groups;
  const int end = start_of(old, old.count);
  for (int k = 1; k < old.count; ++k) {
    const int lower = centre(bands, start_of(old, k - 1), start_of(old, k));
    const int upper = centre(bands, start_of(old, k), start_of(old, k + 1));
    start_of(groups, k) = first_past(bands, 0, end, (lower + upper) / 2);
  }
  const auto starts = groups.start.begin();
  const auto kept = std::unique(starts, starts + groups.count + 1);
  groups.count = static_cast<int>(kept - starts) - 1;
}

void balance_by_midpoint(std::span<const Span> bands, Groups& groups) {
  sweep_pairs(groups.count, [&](int k) {
    const int from = start_of(groups, k);
    const int to = start_of(groups, k + 2);
    const int boundary = first_past(bands, from, to, middle_row(hull(bands, from, to)));
    return std::exchange(start_of(groups, k + 1), boundary) != boundary;
  });
}

void balance_by_height(std::span<const Span> bands, Groups& groups, const CardSize& size) {
  sweep_pairs(groups.count, [&](int k) {
    const Pair pair{bands, start_of(groups, k), start_of(groups, k + 2)};
    int& boundary = start_of(groups, k + 1);
    if (looks_like_two_cards(pair, boundary, size)) return false;
    const float ratio = pair.ratio(boundary);
    const float down = ratio_if_moved(pair, boundary - 1, ratio, size);
    const float up = ratio_if_moved(pair, boundary + 1, ratio, size);
    if (down == up) return false;
    boundary += down > up ? -1 : 1;
    return true;
  });
}

}  // namespace vantrel::segment
