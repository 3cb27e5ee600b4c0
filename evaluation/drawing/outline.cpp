#include "drawing/outline.h"

#include <algorithm>
#include <cmath>

#include "drawing/random.h"

namespace vantrel::drawing {
namespace {

constexpr double kHalfDiagonal = 0.7072;  // of a pixel: what is farther from a side lies wholly on one hand of it
constexpr int kSamples = 16;              // a direction, where more than a straight side crosses a pixel

// The part of a unit square on the inner hand of a straight line at signed distance d from its centre.
double half_plane_part(double a, double b, double d) {
  a = std::abs(a), b = std::abs(b);
  if (a < b) std::swap(a, b);
  if (std::abs(d) <= (a - b) / 2) return 0.5 + d / a;
  const double rest = (a + b) / 2 - std::abs(d);
  const double corner = rest > 0 ? rest * rest / (2 * a * b) : 0;
  return d > 0 ? 1 - corner : corner;
}

double crumple_at(const Bend& bend, double along) {
  const double at = along / bend.crumple_step;
  const double cell = std::floor(at), t = at - cell;
  const float* deviates = normal_deviates() + (bend.crumple_seed + static_cast<std::size_t>(cell + 4)) % kDeviates;
  return bend.crumple * (deviates[0] + (deviates[1] - deviates[0]) * t * t * (3 - 2 * t));
}

double part_in_disc(const Hole& hole, Point centre) {
  return std::clamp(hole.radius - length(centre - hole.middle) + 0.5, 0.0, 1.0);
}

}  // namespace

Outline::Outline(const Quad& corners, double radius) : corners_(corners), radius_(radius) {
  for (std::size_t i = 0; i < 4; ++i) {
    const Point from = corners[i], to = corners[(i + 1) % 4];
    const double size = length(to - from);
    const Point along = (to - from) * (1 / size);
    sides_[i] = {-along.y, along.x, along.y * from.x - along.x * from.y, from, along, size, {}};
  }
}

void Outline::bend(std::size_t side, const Bend& bend) {
  sides_[side].bend = bend;
  reach_ = std::max(reach_, std::abs(bend.bulge) + 5 * bend.crumple);
}

int Outline::first_row() const {
  const double top = std::min({corners_[0].y, corners_[1].y, corners_[2].y, corners_[3].y});
  return static_cast<int>(std::floor(top - reach_)) - 1;
}

int Outline::end_row() const {
  const double bottom = std::max({corners_[0].y, corners_[1].y, corners_[2].y, corners_[3].y});
  return static_cast<int>(std::ceil(bottom + reach_)) + 1;
}

// The columns whose centres are at least so far inside of every side.
Outline::Span Outline::columns_within(double distance, double y, int width) const {
  double least = -1, most = width;
  for (const Side& side : sides_) {
    const double rest = distance - side.b * y - side.c;  // a x >= rest
    if (side.a > 1e-9) {
      least = std::max(least, rest / side.a);
    } else if (side.a < -1e-9) {
      most = std::min(most, rest / side.a);
    } else if (rest > 0) {
      return {0, 0};
    }
  }
  const int first = std::max(0, static_cast<int>(std::ceil(least - 0.5)));
  const int end = std::min(width, static_cast<int>(std::floor(most - 0.5)) + 1);
  return end > first ? Span{first, end} : Span{0, 0};
}

double Outline::distance(const Side& side, Point p) const {
  double result = side.a * p.x + side.b * p.y + side.c;
  if (reach_ == 0) return result;
  const double along = (p.x - side.origin.x) * side.along.x + (p.y - side.origin.y) * side.along.y;
  const double t = std::clamp(along / side.length, 0.0, 1.0);
  result += side.bend.bulge * 4 * t * (1 - t);
  // Irregularities fade towards the corners, so that these stay true.
  if (side.bend.crumple > 0) result += crumple_at(side.bend, t * side.length) * std::min(1.0, 12 * t * (1 - t));
  return result;
}

bool Outline::inside(Point p) const {
  std::array<double, 4> distances;
  for (std::size_t i = 0; i < 4; ++i) {
    distances[i] = distance(sides_[i], p);
    if (distances[i] < 0) return false;
  }
  for (std::size_t i = 0; i < 4 && radius_ > 0; ++i) {
    const double u = radius_ - distances[i], v = radius_ - distances[(i + 1) % 4];
    // Sides that meet at another angle than a right one leave a slightly other curve, which nothing depends on.
    if (u > 0 && v > 0 && u * u + v * v > radius_ * radius_) return false;
  }
  return true;
}

double Outline::sampled_part(Point centre) const {
  int within = 0;
  for (int row = 0; row < kSamples; ++row) {
    for (int column = 0; column < kSamples; ++column) {
      within += inside({centre.x - 0.5 + (column + 0.5) / kSamples, centre.y - 0.5 + (row + 0.5) / kSamples});
    }
  }
  return static_cast<double>(within) / (kSamples * kSamples);
}

double Outline::part_of_pixel(Point centre) const {
  std::array<double, 4> distances;
  std::size_t crossing = 4;
  int crossings = 0;
  for (std::size_t i = 0; i < 4; ++i) {
    distances[i] = distance(sides_[i], centre);
    if (distances[i] <= -kHalfDiagonal) return 0;
    if (distances[i] < kHalfDiagonal) crossing = i, ++crossings;
  }
  for (std::size_t i = 0; i < 4 && radius_ > 0; ++i) {
    const double u = radius_ - distances[i], v = radius_ - distances[(i + 1) % 4];
    if (u <= -kHalfDiagonal || v <= -kHalfDiagonal) continue;
    const double from_middle = std::sqrt(std::max(u, 0.0) * std::max(u, 0.0) + std::max(v, 0.0) * std::max(v, 0.0));
    if (from_middle > radius_ + kHalfDiagonal) return 0;
    if (from_middle > radius_ - kHalfDiagonal) return sampled_part(centre);
  }
  if (crossings == 0) return 1;
  return crossings == 1 ? half_plane_part(sides_[crossing].a, sides_[crossing].b, distances[crossing])
                        : sampled_part(centre);
}

void Outline::cut_holes(int y, int width, Cover& cover) const {
  for (const Hole& hole : holes_) {
    if (std::abs(y + 0.5 - hole.middle.y) > hole.radius + 1) continue;
    const int first = std::max(cover.first, static_cast<int>(hole.middle.x - hole.radius) - 1);
    const int end = std::min({cover.end, width, static_cast<int>(hole.middle.x + hole.radius) + 2});
    for (int x = first; x < end; ++x) {
      cover.part[static_cast<std::size_t>(x)] *= static_cast<float>(1 - part_in_disc(hole, {x + 0.5, y + 0.5}));
    }
    cover.inner_end = cover.inner_first;
  }
}

void Outline::cover(int y, int width, Cover& cover) const {
  cover.part.resize(static_cast<std::size_t>(width));
  const Span outer = columns_within(-reach_ - 1, y + 0.5, width);
  // A pixel that is 0.3 radii inside of both sides is inside of their round corner; 0.45 allows for oblique ones.
  Span inner = columns_within(reach_ + 1 + 0.45 * radius_, y + 0.5, width);
  if (inner.first >= inner.end) inner = {outer.first, outer.first};
  cover.first = outer.first, cover.end = outer.end;
  cover.inner_first = inner.first, cover.inner_end = inner.end;
  float* part = cover.part.data();
  for (int x = outer.first; x < inner.first; ++x) part[x] = static_cast<float>(part_of_pixel({x + 0.5, y + 0.5}));
  std::fill(part + inner.first, part + inner.end, 1.0F);
  for (int x = inner.end; x < outer.end; ++x) part[x] = static_cast<float>(part_of_pixel({x + 0.5, y + 0.5}));
  cut_holes(y, width, cover);
}

void Outline::cover_softly(int y, int width, double softness, Cover& cover) const {
  cover.part.resize(static_cast<std::size_t>(width));
  const Span outer = columns_within(-softness, y + 0.5, width);
  Span inner = columns_within(softness, y + 0.5, width);
  if (inner.first >= inner.end) inner = {outer.first, outer.first};
  cover.first = outer.first, cover.end = outer.end;
  cover.inner_first = inner.first, cover.inner_end = inner.end;
  float* part = cover.part.data();
  std::fill(part + outer.first, part + outer.end, 1.0F);
  const auto soften = [&](int first, int end) {
    for (const Side& side : sides_) {
      const auto scale = 0.5 / softness;
      const auto slope = static_cast<float>(side.a * scale);
      const auto start = static_cast<float>((side.b * (y + 0.5) + side.c + softness + side.a * 0.5) * scale);
      for (int x = first; x < end; ++x) {
        const float t = std::clamp(start + slope * static_cast<float>(x), 0.0F, 1.0F);
        part[x] *= t * t * (3 - 2 * t);
      }
    }
  };
  soften(outer.first, inner.first);
  soften(inner.end, outer.end);
}

}  // namespace vantrel::drawing
