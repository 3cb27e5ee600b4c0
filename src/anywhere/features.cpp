#include "anywhere/features.h"

#include <algorithm>
#include <cmath>

namespace vantrel::anywhere {
namespace {

using Probes = std::array<SideProbe, 4>;

/** Colours nearer than this, in levels, are the same ground. */
constexpr double kSameColour = 10.0;
/** How far a side may lie from the frame to lie on it, and to lie close to it, in pixels of the copy. */
constexpr double kOnFrame = 2.5;
constexpr double kCloseToFrame = 9.0;
/** An edge nearer to the border than this belongs to it. */
constexpr double kBorderWidth = 3.0;
/** Barriers below this share of the greatest hardly differ from the ground. */
constexpr double kLowBarrier = 0.15;
/** Points of the area that are looked at, in both directions. */
constexpr int kGrid = 12;

double largest_offset(const Scene& scene, Point a, Point b) {
  // How far the middle half of a side lies from the nearest side of the frame.
  const auto depth = [&](Point p) { return std::min({p.x, p.y, scene.copy.cols - p.x, scene.copy.rows - p.y}); };
  return std::max(depth(a + (b - a) * 0.25), depth(a + (b - a) * 0.75));
}

/** A measure of each side, summarised. */
template <class Value>
Summary summarise_probes(const Probes& probes, const SeenSides& seen, Value value) {
  return summarise({value(probes[0]), value(probes[1]), value(probes[2]), value(probes[3])}, seen);
}

void put(Features& features, Feature feature, double value) { features[feature] = static_cast<float>(value); }

void measure_sides(const Context& context, const Probes& probes, const SeenSides& seen, Features& f) {
  const auto all = [&](auto value) { return summarise_probes(probes, seen, value); };
  const Summary coverage = all([](const SideProbe& p) { return p.coverage; });
  put(f, kMeanCoverage, coverage.mean);
  put(f, kLeastCoverage, coverage.least);
  put(f, kSecondCoverage, coverage.second);
  const Summary ends = all([](const SideProbe& p) { return p.end_coverage; });
  put(f, kMeanEnds, ends.mean);
  put(f, kLeastEnds, ends.least);
  const Summary overrun = all([](const SideProbe& p) { return p.overrun; });
  put(f, kMeanOverrun, overrun.mean);
  put(f, kMostOverrun, overrun.most);
  const double unit = static_cast<double>(kGradient) / context.scene().edge_threshold;
  const Summary strength = all([](const SideProbe& p) { return p.strength; });
  put(f, kMeanStrength, strength.mean * unit);
  put(f, kLeastStrength, strength.least * unit);
  const Summary contrast = all([](const SideProbe& p) { return p.contrast; });
  put(f, kMeanContrast, contrast.mean);
  put(f, kLeastContrast, contrast.least);
  put(f, kSecondContrast, contrast.second);
  put(f, kTopContrast, contrast.most);
  const Summary agreement = all([](const SideProbe& p) { return p.agreement; });
  put(f, kMeanAgreement, agreement.mean);
  put(f, kLeastAgreement, agreement.least);
  put(f, kOutsideSpread, all([](const SideProbe& p) { return p.outside_spread / (p.contrast + 2.0); }).mean);
  put(f, kInsideSpread, all([](const SideProbe& p) { return p.inside_spread / (p.contrast + 2.0); }).mean);
  const Summary outside = all([](const SideProbe& p) { return p.outside_edges; });
  put(f, kOutsideEdges, outside.mean);
  put(f, kMostOutsideEdges, outside.most);
  const Summary inside = all([](const SideProbe& p) { return p.inside_edges; });
  put(f, kInsideEdges, inside.mean);
  put(f, kMostInsideEdges, inside.most);
  put(f, kDrift, all([](const SideProbe& p) { return p.drift / (p.contrast + 2.0); }).mean);
}

void measure_barriers(const Context& context, const Quad& quad, const Probes& probes, const SeenSides& seen,
                      Features& f) {
  const double unit = 1.0 / std::max(context.greatest_barrier(), 1.0);
  const auto all = [&](auto value) { return summarise_probes(probes, seen, value); };
  put(f, kOutsideBarrier, all([](const SideProbe& p) { return p.outside_barrier; }).mean * unit);
  put(f, kInsideBarrier, all([](const SideProbe& p) { return p.inside_barrier; }).mean * unit);
  put(f, kBarrierStep, all([](const SideProbe& p) { return p.inside_barrier - p.outside_barrier; }).least * unit);
  double sum = 0.0;
  int low = 0;
  for (int i = 0; i < kGrid; ++i) {
    const double down = (i + 0.5) / kGrid;
    const Point left = quad[0] + (quad[3] - quad[0]) * down, right = quad[1] + (quad[2] - quad[1]) * down;
    for (int j = 0; j < kGrid; ++j) {
      const double barrier = context.scene().barrier(left + (right - left) * ((j + 0.5) / kGrid)) * unit;
      sum += barrier;
      low += barrier < kLowBarrier;
    }
  }
  put(f, kAreaBarrier, sum / (kGrid * kGrid));
  put(f, kLowArea, static_cast<double>(low) / (kGrid * kGrid));
}

/** How much colours differ among the seen sides: the mean distance from their mean. */
template <class Value>
double unlikeness(const Probes& probes, const SeenSides& seen, Value colour) {
  Levels sum;
  int count = 0;
  for (std::size_t i = 0; i < 4; ++i) {
    if (!seen[i]) continue;
    sum += colour(probes[i]);
    ++count;
  }
  const Levels mean = sum * (1.0 / std::max(count, 1));
  double distance = 0.0;
  for (std::size_t i = 0; i < 4; ++i) {
    if (!seen[i]) continue;
    const Levels apart = colour(probes[i]) - mean;
    distance += std::sqrt(dot(apart, apart));
  }
  return distance / std::max(count, 1);
}

void measure_colours(const Context& context, const Probes& probes, const SeenSides& seen, Features& f) {
  const auto all = [&](auto value) { return summarise_probes(probes, seen, value); };
  put(f, kRingOutside, all([&](const SideProbe& p) { return context.ring_share(p.outside); }).mean);
  put(f, kRingInside, all([&](const SideProbe& p) { return context.ring_share(p.inside); }).mean);
  const double contrast = f[kMeanContrast] + 2.0;
  put(f, kSidesUnlike, unlikeness(probes, seen, [](const SideProbe& p) { return p.outside; }) / contrast);
  put(f, kInsidesUnlike, unlikeness(probes, seen, [](const SideProbe& p) { return p.inside; }) / contrast);
  Levels sum;
  for (std::size_t i = 0; i < 4; ++i)
    if (seen[i]) sum += probes[i].inside - probes[i].outside;
  const double size = std::max(std::sqrt(dot(sum, sum)), 1e-6);
  put(f, kSamePolarity, all([&](const SideProbe& p) {
                          return dot(p.inside - p.outside, sum) / (size * std::max(p.contrast, 1e-6));
                        }).least);
}

void measure_shape(const Context& context, const Quad& quad, const SeenSides& seen, Features& f) {
  const Copy& copy = context.scene().copy;
  std::array<double, 4> sizes{};
  double skew = 0.0, outside = 0.0, levelness = 0.0;
  int near = 0;
  for (std::size_t i = 0; i < 4; ++i) {
    const Point side = quad[i + 1] - quad[i], next = quad[i + 2] - quad[i + 1];
    sizes[i] = length(side);
    skew = std::max(skew, std::abs(dot(side, next)) / std::max(sizes[i] * length(next), 1e-6));
    levelness += std::min(std::abs(side.x), std::abs(side.y)) / std::max(sizes[i], 1e-6) / 4;
    outside = std::max({outside, -quad[i].x / copy.cols, -quad[i].y / copy.rows, quad[i].x / copy.cols - 1,
                        quad[i].y / copy.rows - 1});
    near += seen[i] && largest_offset(context.scene(), quad[i], quad[i + 1]) < kCloseToFrame;
  }
  const double a = (sizes[0] + sizes[2]) / 2, b = (sizes[1] + sizes[3]) / 2;
  put(f, kShareOfPicture, area(quad) / (static_cast<double>(copy.rows) * copy.cols));
  put(f, kShortSide, std::min(a, b));
  put(f, kElongation, std::max(a, b) / std::max(std::min(a, b), 1e-6));
  put(f, kSkew, skew);
  put(f, kTaper,
      std::max(std::abs(sizes[0] - sizes[2]) / std::max(sizes[0] + sizes[2], 1e-6),
               std::abs(sizes[1] - sizes[3]) / std::max(sizes[1] + sizes[3], 1e-6)));
  put(f, kFrameSides, static_cast<double>(std::count(seen.begin(), seen.end(), false)));
  put(f, kNearFrame, near);
  put(f, kOutsideCorners, outside);
  put(f, kLevelness, levelness);
}

void measure_edges(const Context& context, const Quad& quad, Features& f) {
  std::array<NormalLine, 4> sides;
  for (std::size_t i = 0; i < 4; ++i) sides[i] = line_through(quad[i], quad[i + 1]);
  int outside = 0, inside = 0;
  for (const Point& edge : context.sampled_edges()) {
    double farthest = -1e9;
    for (const NormalLine& side : sides) farthest = std::max(farthest, side.distance(edge));
    outside += farthest > kBorderWidth;
    inside += farthest < -kBorderWidth;
  }
  const double count = std::max<double>(1.0, static_cast<double>(context.sampled_edges().size()));
  put(f, kEdgesOutside, outside / count);
  put(f, kEdgesInside, inside / count);
  put(f, kEdgeDensity, inside / count / std::max<double>(f[kShareOfPicture], 1e-3));
}

Probes probes_of(const Scene& scene, const Quad& quad, double scale) {
  Probes probes;
  for (std::size_t i = 0; i < 4; ++i) probes[i] = probe_side(scene, quad[i] * scale, quad[i + 1] * scale);
  return probes;
}

void measure_coarsely(const Context& context, const Quad& quad, const SeenSides& seen, Features& f) {
  const Probes half = probes_of(context.coarser().half, quad, 0.5);
  const auto on_half = [&](auto value) { return summarise_probes(half, seen, value); };
  const Summary coverage = on_half([](const SideProbe& p) { return p.coverage; });
  put(f, kCoarseMeanCoverage, coverage.mean);
  put(f, kCoarseLeastCoverage, coverage.least);
  put(f, kCoarseSecondCoverage, coverage.second);
  put(f, kCoarseLeastAgreement, on_half([](const SideProbe& p) { return p.agreement; }).least);
  put(f, kCoarseMeanOverrun, on_half([](const SideProbe& p) { return p.overrun; }).mean);
  put(f, kCoarseMostOutsideEdges, on_half([](const SideProbe& p) { return p.outside_edges; }).most);
  const Probes quarter = probes_of(context.coarser().quarter, quad, 0.25);
  const Summary coarsest = summarise_probes(quarter, seen, [](const SideProbe& p) { return p.coverage; });
  put(f, kCoarsestMeanCoverage, coarsest.mean);
  put(f, kCoarsestLeastCoverage, coarsest.least);
  put(f, kCoarsestSecondCoverage, coarsest.second);
}

}  // namespace

Context::Context(const Scene& scene, const CoarseScenes& coarser, const Edges& edges)
    : scene_(scene), coarser_(coarser) {
  const Copy& copy = scene.copy;
  const double width = copy.cols - 3.0, height = copy.rows - 3.0;
  for (std::size_t i = 0; i < kRing; ++i) {
    const double way = (static_cast<double>(i) + 0.5) / kRing * 4;
    const double along = way - static_cast<int>(way);
    const Point places[4] = {{1.5 + along * width, 1.5},
                             {1.5 + width, 1.5 + along * height},
                             {1.5 + along * width, 1.5 + height},
                             {1.5, 1.5 + along * height}};
    ring_[i] = scene.colour(places[static_cast<int>(way)]);
  }
  const std::size_t step = std::max<std::size_t>(1, (edges.count + kMostEdges - 1) / kMostEdges);
  for (std::size_t i = 0; i < edges.count; i += step) edges_[edge_count_++] = {edges.places[i].x, edges.places[i].y};
  for (const std::uint16_t barrier : scene.barriers)
    greatest_barrier_ = std::max(greatest_barrier_, barrier * (1.0 / kLevel));
}

double Context::ring_share(const Levels& colour) const {
  int near = 0;
  for (const Levels& ring : ring_) {
    const Levels apart = ring - colour;
    near += dot(apart, apart) < kSameColour * kSameColour;
  }
  return static_cast<double>(near) / kRing;
}

SeenSides seen_sides(const Scene& scene, const Quad& quad) {
  SeenSides seen{};
  for (std::size_t i = 0; i < 4; ++i) seen[i] = largest_offset(scene, quad[i], quad[i + 1]) > kOnFrame;
  return seen;
}

Features measure(const Context& context, const Quad& quad) {
  Features f{};
  const Probes probes = probes_of(context.scene(), quad, 1.0);
  const SeenSides seen = seen_sides(context.scene(), quad);
  measure_sides(context, probes, seen, f);
  measure_barriers(context, quad, probes, seen, f);
  measure_colours(context, probes, seen, f);
  measure_shape(context, quad, seen, f);
  measure_edges(context, quad, f);
  measure_coarsely(context, quad, seen, f);
  put(f, kThreshold, static_cast<double>(context.scene().edge_threshold) / kGradient);
  return f;
}

}  // namespace vantrel::anywhere
