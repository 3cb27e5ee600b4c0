/**
 * @file forest.h
 * @brief Sums of small decision trees: what was fitted, and how it is read.
 */
#ifndef VANTREL_ANYWHERE_FOREST_H
#define VANTREL_ANYWHERE_FOREST_H

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace vantrel::anywhere {

/** Asks for four features, one after the other; the first branch is that of the lower values. */
struct Tree {
  static constexpr std::size_t kDepth = 4;
  static constexpr std::size_t kLeaves = std::size_t{1} << kDepth;

  std::array<std::uint8_t, kLeaves - 1> feature{}; /**< level by level, the root first */
  std::array<std::uint8_t, kLeaves - 1> most{};    /**< the greatest bin of the feature that takes the first branch */
  std::array<std::int16_t, kLeaves> value{};       /**< in units of the forest */

  template <std::size_t kCount>
  int operator()(const std::array<std::uint8_t, kCount>& bins) const {
    std::size_t node = 0;
    for (std::size_t level = 0; level < kDepth; ++level)
      node = 2 * node + 1 + static_cast<std::size_t>(bins[feature[node]] > most[node]);
    return value[node - feature.size()];
  }
};

/** Boosted trees: J. Friedman, "Greedy function approximation", Annals of Statistics 29, 2001. The sum is of whole
 * numbers and so the same in any order. */
template <std::size_t kCount>
struct Forest {
  static constexpr std::size_t kEdges = 47;
  static constexpr double kUnit = 1.0 / 2048;
  static_assert(kCount <= 256, "a tree names a feature in a byte");

  std::array<std::array<float, kEdges>, kCount> edges{}; /**< between the bins of each feature, rising */
  std::span<const Tree> trees;

  double operator()(std::span<const float, kCount> features) const {
    std::array<std::uint8_t, kCount> bins{};
    for (std::size_t i = 0; i < kCount; ++i) bins[i] = bin_of(edges[i], features[i]);
    int sum = 0;
    for (const Tree& tree : trees) sum += tree(bins);
    return sum * kUnit;
  }

 private:
  static std::uint8_t bin_of(const std::array<float, kEdges>& edges, float x) {
    return static_cast<std::uint8_t>(std::lower_bound(edges.begin(), edges.end(), x) - edges.begin());
  }
};

}  // namespace vantrel::anywhere

#endif
