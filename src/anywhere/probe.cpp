#include "anywhere/probe.h"

#include <algorithm>
#include <cmath>

namespace vantrel::anywhere {
namespace {

/** Places along a side: one a pixel, within these bounds, between the corners, which may be round. */
constexpr int kLeastPlaces = 8;
constexpr int kMostPlaces = 64;
constexpr double kCornerShare = 0.04;
/** How far beside the side its colours are taken: the copy is smooth over about two pixels. */
constexpr double kBeside = 2.5;
constexpr double kFarther = 6.5;
/** Where a parallel edge is one of something else, in pixels beside the side. */
constexpr double kParallels[] = {3.0, 5.0, 7.0};
/** The least cosine between an edge's gradient and the side's normal: 18 degrees, for faint gradients are noisy. */
constexpr double kLeastCosine = 0.951;
/** A pixel this near to the copy's rim has no edge. */
constexpr double kRim = 2.0;
/** The share of a side that counts as its end. */
constexpr double kEnd = 0.2;

/** A sum of colours and of their squares. */
struct Spread {
  int count = 0;
  Levels sum;
  double squares = 0.0;

  void add(const Levels& colour) {
    ++count;
    sum += colour;
    squares += dot(colour, colour);
  }
  Levels mean() const { return sum * (1.0 / std::max(count, 1)); }
  double deviation() const {
    const Levels m = mean();
    return std::sqrt(std::max(0.0, squares / std::max(count, 1) - dot(m, m)));
  }
};

/** The side as a way to walk. */
struct Walk {
  Point start;
  Point step;    /**< of length 1 */
  Point outward; /**< to the left of a clockwise way */
  double size;

  Point at(double along, double out) const { return start + step * along + outward * out; }
};

Walk walk_along(Point a, Point b) {
  const Point way = b - a;
  const double size = length(way);
  const Point step = size > 0.0 ? way * (1.0 / size) : Point{1.0, 0.0};
  const Point outward = {step.y, -step.x};
  return {a, step, outward, size};
}

/** The share of places from one to another along the walk, moved outward, that lie on edges. */
double edge_share(const Scene& scene, const Walk& walk, double from, double to, double out) {
  const int count = std::clamp(static_cast<int>(to - from), 2, 24);
  int hits = 0, seen = 0;
  for (int i = 0; i < count; ++i) {
    const Point p = walk.at(from + (to - from) * (i + 0.5) / count, out);
    if (!scene.contains(p)) continue;
    ++seen;
    hits += scene.has_edge(p, walk.outward, nullptr);
  }
  return seen == 0 ? 0.0 : static_cast<double>(hits) / count;
}

/** What is counted on a walk along the side itself. */
struct Counts {
  std::array<Levels, kMostPlaces> steps;
  Spread inside, outside, farther;
  int places = 0, in_frame = 0, hits = 0, ends[2] = {0, 0}, end_hits[2] = {0, 0};
  double strength = 0.0, inside_barrier = 0.0, outside_barrier = 0.0;
};

void look(const Scene& scene, const Walk& walk, double share, Counts& counts) {
  const double along = share * walk.size;
  const Point p = walk.at(along, 0.0), in = walk.at(along, -kBeside), out = walk.at(along, kBeside);
  const Levels inside = scene.colour(in), outside = scene.colour(out);
  counts.steps[static_cast<std::size_t>(counts.places++)] = inside - outside;
  counts.inside.add(inside);
  counts.outside.add(outside);
  counts.farther.add(scene.colour(walk.at(along, kFarther)));
  counts.inside_barrier += scene.barrier(in);
  counts.outside_barrier += scene.barrier(out);
  counts.in_frame += p.x >= kRim && p.y >= kRim && p.x < scene.copy.cols - kRim && p.y < scene.copy.rows - kRim;
  double strength = 0.0;
  const bool hit = scene.has_edge(p, walk.outward, &strength);
  counts.hits += hit;
  counts.strength += strength;
  if (share > kEnd && share < 1.0 - kEnd) return;
  const int end = share > 0.5;
  ++counts.ends[end];
  counts.end_hits[end] += hit;
}

double share_of(int part, int whole) { return static_cast<double>(part) / std::max(whole, 1); }

void conclude(const Counts& counts, SideProbe& probe) {
  const double places = counts.places;
  probe.inside_frame = counts.in_frame / places;
  probe.coverage = counts.hits / places;
  probe.end_coverage =
      std::min(share_of(counts.end_hits[0], counts.ends[0]), share_of(counts.end_hits[1], counts.ends[1]));
  probe.strength = counts.hits == 0 ? 0.0 : counts.strength / counts.hits;
  probe.inside = counts.inside.mean();
  probe.outside = counts.outside.mean();
  const Levels step = probe.inside - probe.outside;
  probe.contrast = std::sqrt(dot(step, step));
  int agreeing = 0;
  for (int i = 0; i < counts.places; ++i)
    agreeing += dot(counts.steps[static_cast<std::size_t>(i)], step) > 0.25 * dot(step, step);
  probe.agreement = agreeing / places;
  probe.inside_spread = counts.inside.deviation();
  probe.outside_spread = counts.outside.deviation();
  const Levels drift = counts.farther.mean() - probe.outside;
  probe.drift = std::sqrt(dot(drift, drift));
  probe.inside_barrier = counts.inside_barrier / places;
  probe.outside_barrier = counts.outside_barrier / places;
}

}  // namespace

Levels Scene::colour(Point p) const {
  const int col = std::clamp(static_cast<int>(p.x), 0, copy.cols - 1);
  const int row = std::clamp(static_cast<int>(p.y), 0, copy.rows - 1);
  Levels colour;
  for (std::size_t plane = 0; plane < copy.plane_count; ++plane)
    colour.planes[plane] = copy.at(plane, row, col) * (1.0 / kLevel);
  return colour;
}

double Scene::barrier(Point p) const {
  if (barriers.empty() || !contains(p)) return 0.0;
  return barriers[copy.index(static_cast<int>(p.y), static_cast<int>(p.x))] * (1.0 / kLevel);
}

bool Scene::has_edge(Point p, Point normal, double* strength) const {
  int best = 0;
  for (int beside = -1; beside <= 1; ++beside) {
    const Point q = p + normal * static_cast<double>(beside);
    if (!contains(q)) continue;
    const Gradient& g = gradients[copy.index(static_cast<int>(q.y), static_cast<int>(q.x))];
    if (g.magnitude < edge_threshold || g.magnitude <= best) continue;
    if (std::abs(g.x * normal.x + g.y * normal.y) >= kLeastCosine * g.magnitude) best = g.magnitude;
  }
  if (strength != nullptr) *strength = best * (1.0 / kGradient);
  return best > 0;
}

SideProbe probe_side(const Scene& scene, Point a, Point b) {
  const Walk walk = walk_along(a, b);
  const int places = std::clamp(static_cast<int>(walk.size), kLeastPlaces, kMostPlaces);
  Counts counts;
  for (int i = 0; i < places; ++i)
    look(scene, walk, kCornerShare + (1.0 - 2 * kCornerShare) * (i + 0.5) / places, counts);
  SideProbe probe;
  probe.size = walk.size;
  conclude(counts, probe);
  const double beyond = std::clamp(walk.size / 4, 6.0, 24.0);
  probe.overrun = (edge_share(scene, walk, -beyond, -3.0, 0.0) +
                   edge_share(scene, walk, walk.size + 3.0, walk.size + beyond, 0.0)) /
                  2;
  for (const double out : kParallels) {
    probe.outside_edges = std::max(probe.outside_edges, edge_share(scene, walk, 0.0, walk.size, out));
    probe.inside_edges = std::max(probe.inside_edges, edge_share(scene, walk, 0.0, walk.size, -out));
  }
  return probe;
}

}  // namespace vantrel::anywhere
