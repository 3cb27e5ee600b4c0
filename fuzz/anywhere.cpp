// The finder for cards anywhere on a scan, alone and on small scans, against what it promises.
#include <array>
#include <cmath>
#include <memory>

#include "anywhere/find.h"
#include "fuzz/check.h"
#include "fuzz/scans.h"
#include "support/random.h"

namespace {

using support::Random;
using namespace vantrel::anywhere;

void check(const Proposal& proposal) {
  FUZZ_CHECK(proposal.confidence >= 0 && proposal.confidence <= 1);
  for (const double share : proposal.shares) FUZZ_CHECK(share >= 0 && share <= 1);
  for (const auto& corner : proposal.quad.corners) FUZZ_CHECK(std::isfinite(corner.x) && std::isfinite(corner.y));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  Random random(data, size);
  constexpr std::array kLayouts = {Layout::kGray, Layout::kBgr, Layout::kRgb, Layout::kBgra, Layout::kRgba};
  const Layout layout = kLayouts[random.bits() % kLayouts.size()];
  const int rows = random.one_in(64) ? random.pick(1, 200) : random.pick(1, 40);
  const int cols = random.one_in(64) ? random.pick(1, 200) : random.pick(1, 50);
  const fuzz::DrawnScan drawn(random, layout, rows, cols);
  const int most = random.one_in(4) ? kMostCards : random.pick(1, 3);
  const auto found = std::make_unique<Findings>();
  find_anywhere(drawn.scan(), most, *found);
  FUZZ_CHECK(found->ready);
  FUZZ_CHECK(found->count >= 0 && found->count <= most);
  for (int i = 0; i < found->count; ++i) {
    const FoundCard& card = found->cards.at(static_cast<std::size_t>(i));
    check(card.card);
    FUZZ_CHECK(card.alternative_count >= 0 && card.alternative_count <= kMostAlternatives);
    for (int k = 0; k < card.alternative_count; ++k) check(card.alternatives.at(static_cast<std::size_t>(k)));
  }
  return 0;
}
