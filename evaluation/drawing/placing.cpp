// Beds, and where on them a card lies.
#include <algorithm>
#include <cmath>

#include "drawing/scene.h"

namespace vantrel::drawing {
namespace {

struct Bounds {
  Point low, high;
};

Bounds bounds_of(const Quad& quad) {
  Bounds bounds{quad[0], quad[0]};
  for (Point p : quad) {
    bounds.low = {std::min(bounds.low.x, p.x), std::min(bounds.low.y, p.y)};
    bounds.high = {std::max(bounds.high.x, p.x), std::max(bounds.high.y, p.y)};
  }
  return bounds;
}

// Where a card of that size begins along one axis of the bed.
double inside(Random& random, double size, double bed) {
  const double rest = bed - size, margin = std::min(0.01 * bed, rest / 2);
  return rest > 0 ? random.uniform(margin, rest - margin) : rest / 2;
}

double beyond(Random& random, double size, double bed, double most) {
  const double cut = random.uniform(0.01, most) * size;
  return random.chance(0.5) ? -cut : bed - size + cut;
}

double touching(Random& random, double size, double bed, double pixels_per_mm) {
  const double off = random.chance(0.5) ? 0 : random.uniform(-0.5, 1) * pixels_per_mm;
  return random.chance(0.5) ? off : bed - size - off;
}

}  // namespace

Bed bed_of(double width_mm, double height_mm, double dpi, double most_pixels) {
  double scale = dpi / 25.4;
  scale *= std::min(1.0, std::sqrt(most_pixels / (width_mm * height_mm * scale * scale)));
  return {static_cast<int>(std::lround(width_mm * scale)), static_cast<int>(std::lround(height_mm * scale)), scale};
}

Bed pick_bed(Random& random) {
  constexpr double kMostPixels = 2.2e6;
  const double kind = random.uniform();
  if (kind < 0.3) return bed_of(210, 297, random.between(75, 150), kMostPixels);
  if (kind < 0.5) return bed_of(215.9, random.chance(0.3) ? 355.6 : 279.4, random.between(75, 150), kMostPixels);
  if (kind < 0.65)
    return bed_of(random.uniform(90, 110), random.uniform(60, 80), random.between(150, 600), kMostPixels);
  if (kind < 0.8)
    return bed_of(random.uniform(105, 115), random.uniform(148, 160), random.between(100, 300), kMostPixels);
  if (kind < 0.87)
    return bed_of(random.uniform(120, 297), random.uniform(100, 210), random.between(80, 200), kMostPixels);
  const int width = random.integer(640, 1600);
  const int height = random.chance(0.7) ? width * 3 / 4 : width * 9 / 16;
  const double scale = std::max(width, height) / random.uniform(110, 300);
  return random.chance(0.6) ? Bed{width, height, scale} : Bed{height, width, scale};
}

double pick_tilt(Random& random) {
  if (random.chance(0.5)) return random.uniform(0, 6.283185307);
  const double quarter = random.chance(0.75) ? 0 : 1.5707963268 * random.integer(1, 3);
  return quarter + random.uniform(-0.2094, 0.2094);
}

Quad moved(const Quad& quad, Point by) { return {quad[0] + by, quad[1] + by, quad[2] + by, quad[3] + by}; }

Quad foreshortened(Random& random, const Quad& quad, double amount) {
  const Point axis = unit(random.uniform(0, 6.3)), middle = middle_of(quad);
  double reach = 0;
  for (Point p : quad) reach = std::max(reach, length(p - middle));
  Quad result;
  for (std::size_t i = 0; i < 4; ++i) {
    const Point off = quad[i] - middle;
    const double depth = (off.x * axis.x + off.y * axis.y) / reach;
    result[i] = middle + off * (1 / (1 + amount / 2 * depth));
  }
  return convex(result) ? result : quad;
}

Quad strongly_foreshortened(Random& random, const Quad& quad) {
  const Point middle = middle_of(quad);
  double reach = 0;
  for (Point p : quad) reach = std::max(reach, length(p - middle));
  for (int attempt = 0; attempt < 20; ++attempt) {
    const double shrinking = random.uniform(0.12, 0.35), away = std::sqrt(1 - (1 - shrinking) * (1 - shrinking));
    const double distance = random.uniform(1.8, 5);
    const Point axis = unit(random.uniform(0, 6.3)), across{-axis.y, axis.x};
    Quad seen;
    for (std::size_t i = 0; i < 4; ++i) {
      const Point off = quad[i] - middle;
      const double u = off.x * axis.x + off.y * axis.y, v = off.x * across.x + off.y * across.y;
      const double scale = 1 / (1 + u * away / (distance * reach));
      seen[i] = middle + axis * (u * (1 - shrinking) * scale) + across * (v * scale);
    }
    double most = 0;  // cosine of the corners
    for (std::size_t i = 0; i < 4; ++i) {
      const Point a = seen[(i + 1) % 4] - seen[i], b = seen[(i + 3) % 4] - seen[i];
      most = std::max(most, std::abs(a.x * b.x + a.y * b.y) / (length(a) * length(b)));
    }
    if (most <= 0.5 && convex(seen)) return seen;
  }
  return quad;
}

Quad placed(Random& random, const Quad& quad, const Bed& bed, const std::string& place) {
  const Bounds bounds = bounds_of(quad);
  const Point size = bounds.high - bounds.low;
  Point to{inside(random, size.x, bed.width), inside(random, size.y, bed.height)};
  const bool across = random.chance(0.5);
  if (place == "edge") {
    (across ? to.x : to.y) =
        touching(random, across ? size.x : size.y, across ? bed.width : bed.height, bed.pixels_per_mm);
  } else if (place == "corner") {
    to = {touching(random, size.x, bed.width, bed.pixels_per_mm),
          touching(random, size.y, bed.height, bed.pixels_per_mm)};
  } else if (place == "cut") {
    (across ? to.x : to.y) = beyond(random, across ? size.x : size.y, across ? bed.width : bed.height, 0.15);
  } else if (place == "cut twice") {
    to = {beyond(random, size.x, bed.width, 0.15), beyond(random, size.y, bed.height, 0.15)};
  }
  return moved(quad, to - bounds.low);
}

Quad half_plane(const Bed& bed, Point on, double angle) {
  const double reach = 3.0 * (bed.width + bed.height);
  return rectangle(on + unit(angle + 1.5707963267948966) * (reach / 2), reach, reach, angle);
}

Quad border_strip(Random& random, const Bed& bed, int side, double part) {
  const double w = bed.width, h = bed.height, depth = part * (side % 2 == 0 ? h : w), out = 0.2 * std::max(w, h);
  const double lean = random.chance(0.5) ? 0 : random.normal() * 0.01 * (side % 2 == 0 ? w : h);
  switch (side) {
    case 0:
      return {{{-out, -out}, {w + out, -out}, {w + out, depth + lean}, {-out, depth - lean}}};
    case 1:
      return {{{w - depth + lean, -out}, {w + out, -out}, {w + out, h + out}, {w - depth - lean, h + out}}};
    case 2:
      return {{{-out, h - depth - lean}, {w + out, h - depth + lean}, {w + out, h + out}, {-out, h + out}}};
    default:
      return {{{-out, -out}, {depth + lean, -out}, {depth - lean, h + out}, {-out, h + out}}};
  }
}

}  // namespace vantrel::drawing
