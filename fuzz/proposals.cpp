// What the finder proposes on small scans, by lines and by regions, before anything is measured.
#include <algorithm>
#include <array>
#include <cmath>

#include "anywhere/analysis.h"
#include "anywhere/region_candidates.h"
#include "fuzz/check.h"
#include "fuzz/scans.h"
#include "support/random.h"

namespace {

using support::Random;
using namespace vantrel::anywhere;

/** Clockwise, and no smaller than a card. */
void check_shape(const Quad& quad) {
  FUZZ_CHECK(area(quad) > 0);
  for (std::size_t i = 0; i < 4; ++i) FUZZ_CHECK(length(quad[i + 1] - quad[i]) >= kShortestSide - 1e-6);
}

/** At most a fifth of the frame's size outside the frame. */
void check_place(const Quad& quad, const Copy& copy) {
  constexpr double kOutside = 0.2 + 1e-9;
  for (std::size_t i = 0; i < 4; ++i) {
    FUZZ_CHECK(quad[i].x >= -kOutside * copy.cols && quad[i].x <= (1 + kOutside) * copy.cols);
    FUZZ_CHECK(quad[i].y >= -kOutside * copy.rows && quad[i].y <= (1 + kOutside) * copy.rows);
  }
}

void propose_by_lines(const Copy& copy, const Edges& edges, std::size_t most) {
  const Lines lines = find_lines(edges, copy.rows, copy.cols);
  FUZZ_CHECK(lines.done && lines.count >= 4 && lines.count <= kMostLines);
  for (const SupportedLine& line : lines.all()) FUZZ_CHECK(std::abs(length(line.line.normal) - 1.0) < 1e-9);
  Candidates candidates(Candidates::kMost);
  FUZZ_CHECK(candidates.ready() && add_line_candidates(lines, copy.rows, copy.cols, most, candidates));
  FUZZ_CHECK(candidates.count() <= most);
  for (const Candidate& candidate : candidates.all()) {
    check_shape(candidate.quad);
    check_place(candidate.quad, copy);
    FUZZ_CHECK(std::isfinite(candidate.plausibility));
  }
}

void propose_by_regions(const Copy& copy, std::size_t most) {
  const BarrierMap barriers = barrier_map(copy);
  FUZZ_CHECK(barriers.ready());
  const RegionCandidates regions = region_candidates(copy, barriers, most);
  FUZZ_CHECK(regions.ready && regions.count >= 0 && static_cast<std::size_t>(regions.count) <= most);
  for (int i = 0; i < regions.count; ++i) check_shape(regions.quads.at(static_cast<std::size_t>(i)));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  Random random(data, size);
  const Layout layout = random.one_in(2) ? Layout::kGray : Layout::kBgr;
  const bool by_lines = random.one_in(2);
  const auto most = static_cast<std::size_t>(random.one_in(4) ? 128 : random.pick(1, 8));
  const int rows = random.pick(kLeastCopySide, 40);
  const int cols = random.pick(kLeastCopySide, 50);
  Copy copy = reduce(fuzz::DrawnScan(random, layout, rows, cols).scan());
  FUZZ_CHECK(copy.ready());
  if (!by_lines) {
    propose_by_regions(copy, most);
    return 0;
  }
  const auto gradients = find_gradients(copy);
  FUZZ_CHECK(gradients.ready());
  const Edges edges = find_edges(copy, gradients.all());
  FUZZ_CHECK(edges.ready());
  propose_by_lines(copy, edges, most);
  return 0;
}
