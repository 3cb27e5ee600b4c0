#include "anywhere/edges.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace vantrel::anywhere {
namespace {

using image::WorkArray;

/** Gradients that are computed together, step after step. */
constexpr int kSpan = 64;

/** Components of a gradient and its square, of some pixels of a row. */
struct Gradients {
  std::int16_t x[kSpan];
  std::int16_t y[kSpan];
  int square[kSpan];
};

/**
 * The gradients of `count` pixels from one on, by H. Scharr's 3 x 3 filters ("Optimale Operatoren in der Digitalen
 * Bildverarbeitung", 2000). The weights sum to 32 a level a pixel; a quarter of it fits 16 bits whatever the picture
 * holds.
 */
void compute(const std::int16_t* at, std::ptrdiff_t stride, int count, Gradients& found) {
  const std::int16_t *above = at - stride, *below = at + stride;
  for (int i = 0; i < count; ++i) {
    const int x = 3 * (above[i + 1] - above[i - 1]) + 10 * (at[i + 1] - at[i - 1]) + 3 * (below[i + 1] - below[i - 1]);
    found.x[i] = static_cast<std::int16_t>(x / 4);
  }
  for (int i = 0; i < count; ++i) {
    const int y = 3 * (below[i - 1] - above[i - 1]) + 10 * (below[i] - above[i]) + 3 * (below[i + 1] - above[i + 1]);
    found.y[i] = static_cast<std::int16_t>(y / 4);
  }
  for (int i = 0; i < count; ++i) found.square[i] = found.x[i] * found.x[i] + found.y[i] * found.y[i];
}
static_assert(kGradient == kLevel * 32 / 4);

/** Keeps of each pixel the greater gradient; of equals the one that was there. One choice a loop: several at once
 * become jumps. */
void keep_greater(const Gradients& found, int count, Gradients& best) {
  std::int16_t greater[kSpan];  // all bits set where the found one is
  for (int i = 0; i < count; ++i) greater[i] = static_cast<std::int16_t>(-(found.square[i] > best.square[i]));
  for (int i = 0; i < count; ++i) best.square[i] = std::max(found.square[i], best.square[i]);
  for (int i = 0; i < count; ++i)
    best.x[i] = static_cast<std::int16_t>((found.x[i] & greater[i]) | (best.x[i] & ~greater[i]));
  for (int i = 0; i < count; ++i)
    best.y[i] = static_cast<std::int16_t>((found.y[i] & greater[i]) | (best.y[i] & ~greater[i]));
}

/** The share of the picture that is taken to be without edges, how far above it edges begin, and the bounds of that. */
constexpr double kQuietShare = 0.4;
constexpr double kAboveQuiet = 2.6;
constexpr int kLeastThreshold = 42 * kGradient / 100;
constexpr int kMostThreshold = 5 * kGradient;

/** Whether the gradient at `g` is greatest along its direction; then the steps lead to where between the pixels it
 * peaks. */
bool is_ridge(const Gradient* g, std::ptrdiff_t stride, double& step_x, double& step_y) {
  const int ax = std::abs(g->x), ay = std::abs(g->y);
  const int larger = std::max(ax, ay);
  const std::ptrdiff_t sx = g->x < 0 ? -1 : 1, sy = (g->y < 0 ? -1 : 1) * stride;
  // One step along the gradient ends between a straight and a diagonal neighbour.
  const std::ptrdiff_t straight = ax >= ay ? sx : sy, diagonal = sx + sy;
  const double slant = static_cast<double>(std::min(ax, ay)) / larger;
  const auto between_them = [&](int sign) {
    return (1.0 - slant) * g[sign * straight].magnitude + slant * g[sign * diagonal].magnitude;
  };
  const double before = between_them(-1), here = g->magnitude, after = between_them(1);
  if (here < before || here <= after) return false;
  const double offset = 0.5 * (after - before) / (2 * here - before - after);
  step_x = offset * g->x / larger;
  step_y = offset * g->y / larger;
  return true;
}

/** A counting sort, which keeps the order within a direction. */
void sort_by_direction(std::span<const Edge> found, Edges& edges) {
  edges.places = WorkArray<Edge>(found.size());
  if (!edges.ready()) return;
  for (const Edge& edge : found) ++edges.starts[edge.direction + std::size_t{1}];
  for (std::size_t i = 1; i < edges.starts.size(); ++i) edges.starts[i] += edges.starts[i - 1];
  std::array<std::uint32_t, kDirections + 1> next = edges.starts;
  for (const Edge& edge : found) edges.places[next[edge.direction]++] = edge;
}

}  // namespace

WorkArray<Gradient> find_gradients(const Copy& copy) {
  WorkArray<Gradient> gradients(copy.size(), image::Fill::kZero);
  if (!gradients.ready()) return gradients;
  Gradients best, found;
  for (int row = 1; row + 1 < copy.rows; ++row) {
    for (int col = 1; col + 1 < copy.cols; col += kSpan) {
      const std::size_t at = copy.index(row, col);
      const int count = std::min(kSpan, copy.cols - 1 - col);
      compute(&copy.planes[0][at], copy.cols, count, best);
      for (std::size_t plane = 1; plane < copy.plane_count; ++plane) {
        compute(&copy.planes[plane][at], copy.cols, count, found);
        keep_greater(found, count, best);
      }
      Gradient* gradient = &gradients[at];
      for (int i = 0; i < count; ++i) {
        const double magnitude = std::sqrt(static_cast<double>(best.square[i]));
        gradient[i] = {best.x[i], best.y[i], static_cast<std::uint16_t>(magnitude)};
      }
    }
  }
  return gradients;
}

int edge_threshold(std::span<const Gradient> gradients) {
  // Finer than a percent of the range of thresholds; what is greater counts as greatest.
  constexpr int kBin = 4;
  std::array<std::uint32_t, kMostThreshold / kBin + 1> counts{};
  for (const Gradient& g : gradients) ++counts[std::min<std::size_t>(g.magnitude / kBin, counts.size() - 1)];
  const auto quiet = static_cast<std::uint64_t>(kQuietShare * static_cast<double>(gradients.size()));
  std::uint64_t seen = 0;
  std::size_t bin = 0;
  while (bin + 1 < counts.size() && (seen += counts[bin]) < quiet) ++bin;
  const auto threshold = static_cast<int>(kAboveQuiet * kBin * static_cast<double>(bin));
  return std::clamp(threshold, kLeastThreshold, kMostThreshold);
}

Edges find_edges(const Copy& copy, std::span<const Gradient> gradients) {
  Edges edges;
  // A ridge has no ridge before and behind it: hardly every second pixel is one, and further ones are dropped.
  const std::size_t most = copy.size() / 2 + 1;
  WorkArray<Edge> found(most);
  if (!found.ready()) {
    edges.places = WorkArray<Edge>(std::move(found));
    return edges;
  }
  edges.threshold = edge_threshold(gradients);
  for (int row = 2; row + 2 < copy.rows; ++row) {
    for (int col = 2; col + 2 < copy.cols; ++col) {
      const Gradient* g = &gradients[copy.index(row, col)];
      double step_x = 0.0, step_y = 0.0;
      if (g->magnitude < edges.threshold || !is_ridge(g, copy.cols, step_x, step_y) || edges.count == most) continue;
      found[edges.count++] = {static_cast<float>(col + 0.5 + step_x), static_cast<float>(row + 0.5 + step_y),
                              g->magnitude, static_cast<std::uint8_t>(direction_of(g->x, g->y))};
    }
  }
  sort_by_direction({found.get(), edges.count}, edges);
  return edges;
}

}  // namespace vantrel::anywhere
