#include "anywhere/snap.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "anywhere/axis.h"
#include "anywhere/directions.h"

namespace vantrel::anywhere {
namespace {

/** How far an edge's direction may be from the side's, in bins of 0.7 degrees. */
constexpr int kTurn = 18;
/** The share of a side that must lie on edges before it moves. */
constexpr double kLeastShare = 0.3;

/** The line through the edges near a stretch from a to b; false where there are few. */
bool fit_near(const Edges& edges, Point a, Point b, double reach, NormalLine& line) {
  const NormalLine side = line_through(a, b);
  const int direction = direction_of(side.normal.x, side.normal.y);
  const Point way = {-side.normal.y, side.normal.x};
  const double start = dot(way, a), size = dot(way, b) - start;
  Moments moments;
  const double top = std::min(a.y, b.y) - reach, bottom = std::max(a.y, b.y) + reach;
  edges.for_each_near(direction, kTurn, top, bottom, [&](const Edge& edge) {
    const Point p = {edge.x, edge.y};
    const double along = dot(way, p) - start;
    if (std::abs(side.distance(p)) <= reach && along >= 0.0 && along <= size) moments.add(p);
  });
  return moments.n >= kLeastShare * size && principal_axis(moments, line);
}

}  // namespace

Quad snap(const Edges& edges, const Quad& quad, double reach) {
  Quad result = quad;
  for (const double width : {reach, reach / 2}) {
    std::array<NormalLine, 4> sides;
    for (std::size_t i = 0; i < 4; ++i) {
      const Point a = result[i], b = result[i + 1];
      // Corners may be round.
      const Point rim = (b - a) * 0.08;
      if (!fit_near(edges, a + rim, b - rim, width, sides[i])) sides[i] = line_through(a, b);
    }
    if (!meet(sides, quad, 3 * reach, result)) return result;
  }
  return result;
}

}  // namespace vantrel::anywhere
