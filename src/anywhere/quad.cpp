#include "anywhere/quad.h"

#include <algorithm>
#include <utility>

namespace vantrel::anywhere {

bool meet(const std::array<NormalLine, 4>& sides, const Quad& near, double most, Quad& quad) {
  Quad corners;
  for (std::size_t i = 0; i < 4; ++i) {
    if (!intersect(sides[(i + 3) % 4], sides[i], corners.corners[i])) return false;
    if (length(corners[i] - near[i]) > most) return false;
  }
  quad = corners;
  return true;
}

bool nearly_same(const Quad& a, const Quad& b, double reach) {
  for (std::size_t turn = 0; turn < 4; ++turn) {
    bool near = true;
    for (std::size_t i = 0; i < 4 && near; ++i) {
      const Point apart = a[i] - b[i + turn];
      near = std::abs(apart.x) <= reach && std::abs(apart.y) <= reach;
    }
    if (near) return true;
  }
  return false;
}

namespace {

/** The mean lengths of the longer and of the shorter pair of sides. */
std::pair<double, double> size_of(const Quad& quad) {
  const double one = length(quad[1] - quad[0]) + length(quad[3] - quad[2]);
  const double other = length(quad[2] - quad[1]) + length(quad[0] - quad[3]);
  return {std::max(one, other) / 2, std::min(one, other) / 2};
}

}  // namespace

bool alike_in_size(const Quad& a, const Quad& b) {
  constexpr double kTolerance = 0.1;
  const auto [long_a, short_a] = size_of(a);
  const auto [long_b, short_b] = size_of(b);
  return std::abs(long_a - long_b) <= kTolerance * long_a && std::abs(short_a - short_b) <= kTolerance * short_a;
}

std::size_t top_side(const Quad& clockwise) {
  std::size_t top = 0;
  double best = -2.0;
  for (std::size_t i = 0; i < 4; ++i) {
    // Opposite sides together: what perspective does to one it undoes on the other. Of a side (x, y) the part of the
    // outward normal that points up is x.
    const Point side = clockwise[i + 1] - clockwise[i], opposite = clockwise[i + 2] - clockwise[i + 3];
    const Point way = side * (1.0 / std::max(length(side), 1e-9)) + opposite * (1.0 / std::max(length(opposite), 1e-9));
    if (way.x > best) {
      best = way.x;
      top = i;
    }
  }
  return top;
}

}  // namespace vantrel::anywhere
