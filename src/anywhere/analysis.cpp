#include "anywhere/analysis.h"

#include <algorithm>
#include <utility>

#include "anywhere/snap.h"

namespace vantrel::anywhere {
namespace {

/** How far a region's sides may be from the edges that bound it, in pixels of the copy. */
constexpr double kSnapReach = 4.0;
/** Candidates from regions nearer than this to another candidate are dropped, in pixels of the copy. */
constexpr double kSamePlace = 1.5;

bool is_new(const Candidates& candidates, const Quad& quad) {
  const auto same = [&](const Candidate& other) { return nearly_same(quad, other.quad, kSamePlace); };
  return std::none_of(candidates.all().begin(), candidates.all().end(), same);
}

void add(Candidates& candidates, const Quad& quad) {
  if (candidates.count == Candidates::kMost || !is_new(candidates, quad)) return;
  Candidate& added = candidates.items[static_cast<std::size_t>(candidates.count++)];
  added = Candidate{};
  added.quad = quad;
}

bool add_region_candidates(Analysis& analysis) {
  const RegionCandidates regions = region_candidates(analysis.copy, analysis.barriers);
  if (!regions.ready) return false;
  for (int i = 0; i < regions.count; ++i) {
    const Quad& quad = regions.quads[static_cast<std::size_t>(i)];
    add(analysis.candidates, snap(analysis.edges, quad, kSnapReach));
    add(analysis.candidates, quad);
  }
  return true;
}

bool measure_candidates(Analysis& analysis) {
  const Scene scene = analysis.scene();
  const Context context(scene, analysis.edges);
  const auto count = static_cast<std::size_t>(analysis.candidates.count);
  analysis.features = image::WorkArray<Features>(count);
  if (!analysis.features.ready()) return false;
  for (std::size_t i = 0; i < count; ++i) analysis.features[i] = measure(context, analysis.candidates.items[i].quad);
  return true;
}

}  // namespace

bool analyse(const Scan& scan, Analysis& analysis) {
  analysis.copy = reduce(scan);
  if (!analysis.copy.ready()) return false;
  const int rows = analysis.copy.rows, cols = analysis.copy.cols;
  if (std::min(rows, cols) < kLeastCopySide) return true;
  analysis.gradients = find_gradients(analysis.copy);
  if (!analysis.gradients.ready()) return false;
  analysis.edges = find_edges(analysis.copy, analysis.gradients.all());
  if (!analysis.edges.ready()) return false;
  analysis.barriers = barrier_map(analysis.copy);
  if (!analysis.barriers.ready()) return false;
  analysis.lines = find_lines(analysis.edges, rows, cols);
  if (!analysis.lines.done) return false;
  if (!add_line_candidates(analysis.lines, rows, cols, analysis.candidates)) return false;
  return add_region_candidates(analysis) && measure_candidates(analysis);
}

}  // namespace vantrel::anywhere
