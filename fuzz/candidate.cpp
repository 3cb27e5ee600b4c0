// What the finder does with one quadrilateral, of any kind, on small scans: what it is measured by, and where it is
// laid. A search does so with hundreds, of the likely kinds alone.
#include <algorithm>
#include <array>
#include <cmath>

#include "anywhere/analysis.h"
#include "anywhere/overlap.h"
#include "anywhere/refine.h"
#include "anywhere/snap.h"
#include "fuzz/check.h"
#include "fuzz/scans.h"
#include "support/random.h"

namespace {

using support::Random;
using namespace vantrel::anywhere;

/** Convex, clockwise, with no side shorter than a card's; corners up to a fifth of the frame's size outside. */
bool is_candidate(const Quad& quad, double width, double height) {
  constexpr double kOutside = 0.2;
  for (std::size_t i = 0; i < 4; ++i) {
    const Point corner = quad[i];
    if (length(quad[i + 1] - corner) < kShortestSide) return false;
    if (cross(quad[i + 1] - corner, quad[i + 2] - quad[i + 1]) <= 0) return false;
    if (corner.x < -kOutside * width || corner.x > (1 + kOutside) * width) return false;
    if (corner.y < -kOutside * height || corner.y > (1 + kOutside) * height) return false;
  }
  return true;
}

/** A turned rectangle, moved at its corners. */
Quad any_quad(Random& random, double width, double height) {
  const Point middle = {random.real(0, width), random.real(0, height)};
  const double turn = random.one_in(4) ? 0.0 : random.real(-1.6, 1.6);
  const Point along = {std::cos(turn), std::sin(turn)};
  const Point down = {-along.y, along.x};
  const double half_width = random.real(kShortestSide / 2, width);
  const double half_height = random.real(kShortestSide / 2, height);
  const double most = random.one_in(2) ? 0.0 : random.real(0, 12);
  constexpr std::array<Point, 4> kCorners = {Point{-1, -1}, Point{1, -1}, Point{1, 1}, Point{-1, 1}};
  Quad quad;
  for (std::size_t i = 0; i < 4; ++i) {
    const double x = random.real(-most, most);
    const Point moved = {x, random.real(-most, most)};
    quad.corners[i] = middle + along * (kCorners[i].x * half_width) + down * (kCorners[i].y * half_height) + moved;
    // On the frame, where sides of candidates often lie.
    if (random.one_in(5)) quad.corners[i].x = quad.corners[i].x < width / 2 ? 0.0 : width;
    if (random.one_in(5)) quad.corners[i].y = quad.corners[i].y < height / 2 ? 0.0 : height;
  }
  return quad;
}

void check_finite(const Quad& quad) {
  for (const Point& corner : quad.corners) FUZZ_CHECK(std::isfinite(corner.x) && std::isfinite(corner.y));
}

void check_relations(const Quad& a, const Quad& b) {
  const double shared = shared_area(a, b);
  FUZZ_CHECK(shared > -1e-6 && shared <= std::min(area(a), area(b)) * (1 + 1e-9) + 1e-6);
  FUZZ_CHECK(std::abs(shared - shared_area(b, a)) <= 1e-6 * (1 + shared));
  FUZZ_CHECK(relation(a, a) == Relation::kSame);
}

void lay_onto(const Scan& scan, const Quad& quad, double reach) {
  const Refined refined = refine(scan, quad, reach);
  check_finite(refined.quad);
  for (std::size_t i = 0; i < 4; ++i) {
    FUZZ_CHECK(refined.shares.at(i) >= 0 && refined.shares.at(i) <= 1);
    FUZZ_CHECK(std::isfinite(refined.contrasts.at(i)) && std::abs(refined.contrasts.at(i)) <= 255);
  }
}

/** As the finder does before it proposes anything. */
CoarseLevel level_of(Copy copy) {
  CoarseLevel level;
  level.gradients = find_gradients(copy);
  FUZZ_CHECK(level.gradients.ready());
  level.edge_threshold = edge_threshold(level.gradients.all());
  level.copy = std::move(copy);
  return level;
}

void measure_on_copy(Analysis& analysis, const Quad& quad) {
  analysis.half = level_of(halved(analysis.copy));
  analysis.quarter = level_of(halved(analysis.half.copy));
  analysis.gradients = find_gradients(analysis.copy);
  FUZZ_CHECK(analysis.gradients.ready());
  analysis.edges = find_edges(analysis.copy, analysis.gradients.all());
  analysis.barriers = barrier_map(analysis.copy);
  FUZZ_CHECK(analysis.edges.ready() && analysis.barriers.ready());
  check_finite(snap(analysis.edges, quad, 4.0));
  const Scene scene = analysis.scene();
  for (const float feature : measure(Context(scene, analysis.coarser(), analysis.edges), quad))
    FUZZ_CHECK(std::isfinite(feature));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  Random random(data, size);
  constexpr std::array kLayouts = {Layout::kGray, Layout::kBgr,  Layout::kRgb,
                                   Layout::kBgra, Layout::kRgba, Layout::kBilevel};
  const Layout layout = kLayouts[random.bits() % kLayouts.size()];
  const int rows = random.pick(kLeastCopySide, 40);
  const int cols = random.pick(kLeastCopySide, 50);
  const fuzz::DrawnScan drawn(random, layout, rows, cols);
  const Quad quad = any_quad(random, cols, rows);
  if (!is_candidate(quad, cols, rows)) return 0;
  const Quad other = any_quad(random, cols, rows);
  if (is_candidate(other, cols, rows)) check_relations(quad, other);
  if (random.one_in(2)) {
    lay_onto(drawn.scan(), quad, random.real(1, 20));
    return 0;
  }
  Analysis analysis;
  analysis.copy = reduce(drawn.scan());
  FUZZ_CHECK(analysis.copy.ready() && analysis.copy.factor == 1);
  measure_on_copy(analysis, quad);
  return 0;
}
