#include "anywhere/candidate_pool.h"

#include <algorithm>

namespace vantrel::anywhere {
namespace {

/** Corners no farther apart than this, in both coordinates, are the same. */
constexpr double kSameCorner = 2.0;
/** So many of one size are kept: the tiles of a pattern must not crowd out the card that lies on it. */
constexpr std::ptrdiff_t kMostAlike = 80;

}  // namespace

std::size_t CandidatePool::best(std::span<Quad> quads) {
  for (std::size_t i = 0; i < count_; ++i) order_[i] = static_cast<std::uint32_t>(i);
  std::sort(order_.get(), order_.get() + count_, [&](std::uint32_t a, std::uint32_t b) {
    return candidates_[a].score != candidates_[b].score ? candidates_[a].score > candidates_[b].score : a < b;
  });
  std::size_t kept = 0;
  for (std::size_t i = 0; i < count_ && kept < quads.size(); ++i) {
    const Quad& quad = candidates_[order_[i]].quad;
    const auto same = [&](const Quad& other) { return nearly_same(quad, other, kSameCorner); };
    const auto alike = [&](const Quad& other) { return alike_in_size(quad, other); };
    const std::span<Quad> before = quads.first(kept);
    if (std::any_of(before.begin(), before.end(), same)) continue;
    if (std::count_if(before.begin(), before.end(), alike) < kMostAlike) quads[kept++] = quad;
  }
  return kept;
}

}  // namespace vantrel::anywhere
