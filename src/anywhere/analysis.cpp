#include "anywhere/analysis.h"

#include <algorithm>
#include <utility>

#include "anywhere/snap.h"

namespace vantrel::anywhere {
namespace {

/** How often the copy is halved to look on coarser ones, too. */
constexpr int kHalvings = 2;
static_assert(kLeastCopySide >> kHalvings >= 4, "the coarsest copy has an inside");
/** How far a candidate's sides may be from the edges that bound it, in pixels of the copy. */
constexpr double kSnapReach = 4.0;
/** Candidates nearer than this to another one are dropped, in pixels of the copy. */
constexpr double kSamePlace = 1.5;
/** And those of a coarser copy than this, for they are only good to a pixel of it. */
constexpr double kSameCoarse = 3.0;

void add(const Quad& quad, Candidates& candidates) {
  Candidate candidate;
  candidate.quad = quad;
  candidates.add(candidate, kSamePlace);
}

bool add_region_candidates(std::size_t most, Analysis& analysis) {
  const RegionCandidates regions = region_candidates(analysis.copy, analysis.barriers, most);
  if (!regions.ready) return false;
  for (int i = 0; i < regions.count; ++i) {
    const Quad& quad = regions.quads[static_cast<std::size_t>(i)];
    add(snap(analysis.edges, quad, kSnapReach), analysis.candidates);
    add(quad, analysis.candidates);
  }
  return true;
}

void add_coarse_candidates(const Candidates& coarse, Analysis& analysis) {
  for (const Candidate& candidate : coarse.all()) {
    Quad quad;
    for (std::size_t i = 0; i < 4; ++i) quad.corners[i] = candidate.quad[i] * 2.0;
    if (!analysis.candidates.has(quad, kSameCoarse)) add(snap(analysis.edges, quad, kSnapReach), analysis.candidates);
  }
}

bool propose(int halvings, Analysis& analysis);

/** What is kept of an analysis once its candidates are taken. */
CoarseLevel level_of(Analysis& analysis) {
  return {std::move(analysis.copy), std::move(analysis.gradients), analysis.edges.threshold};
}

/** Looks at a copy half as large, and at still smaller ones; takes their candidates. */
bool propose_on_half(int halvings, Analysis& analysis, Candidates& candidates) {
  Analysis half;
  half.copy = halved(analysis.copy);
  if (!half.copy.ready() || !propose(halvings, half)) return false;
  candidates = std::move(half.candidates);
  analysis.quarter = std::move(half.half);
  analysis.half = level_of(half);
  return true;
}

/** Finds the candidates of the copy of an analysis; none where it is too small. */
bool propose(int halvings, Analysis& analysis) {
  // The smaller copies come first: what they took is given back before the larger one takes more.
  Candidates coarse;
  if (halvings > 0 && !propose_on_half(halvings - 1, analysis, coarse)) return false;
  analysis.candidates = Candidates(Candidates::kMost);
  if (!analysis.candidates.ready()) return false;
  analysis.gradients = find_gradients(analysis.copy);
  if (!analysis.gradients.ready()) return false;
  analysis.edges = find_edges(analysis.copy, analysis.gradients.all());
  if (!analysis.edges.ready()) return false;
  const int rows = analysis.copy.rows, cols = analysis.copy.cols;
  if (std::min(rows, cols) < kLeastCopySide) return true;
  analysis.barriers = barrier_map(analysis.copy);
  if (!analysis.barriers.ready()) return false;
  analysis.lines = find_lines(analysis.edges, rows, cols);
  if (!analysis.lines.done) return false;
  const int halved = kHalvings - halvings;  // a copy of half the size gives half as many
  if (!add_line_candidates(analysis.lines, rows, cols, kMostLineCandidates >> halved, analysis.candidates))
    return false;
  if (!add_region_candidates(kMostRegions >> halved, analysis)) return false;
  add_coarse_candidates(coarse, analysis);
  return true;
}

bool measure_candidates(Analysis& analysis) {
  const Scene scene = analysis.scene();
  const Context context(scene, analysis.coarser(), analysis.edges);
  const std::size_t count = analysis.candidates.count();
  analysis.features = image::WorkArray<Features>(count);
  if (!analysis.features.ready()) return false;
  for (std::size_t i = 0; i < count; ++i) analysis.features[i] = measure(context, analysis.candidates[i].quad);
  return true;
}

}  // namespace

bool analyse(const Scan& scan, Analysis& analysis) {
  analysis.copy = reduce(scan);
  if (!analysis.copy.ready()) return false;
  if (std::min(analysis.copy.rows, analysis.copy.cols) < kLeastCopySide) return true;
  return propose(kHalvings, analysis) && measure_candidates(analysis);
}

}  // namespace vantrel::anywhere
