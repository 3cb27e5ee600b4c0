#include "drawing/layers.h"

#include <algorithm>
#include <cmath>

namespace vantrel::drawing {
namespace {

double distance_to_line(Point p, Point from, Point to) {
  const Point along = to - from, off = p - from;
  const double square = along.x * along.x + along.y * along.y;
  const double t = square > 0 ? std::clamp((off.x * along.x + off.y * along.y) / square, 0.0, 1.0) : 0;
  return length(off - along * t);
}

void add_levels(Row& row, std::size_t x, double levels) {
  for (auto* plane : {&row.b, &row.g, &row.r}) {
    (*plane)[x] = std::clamp((*plane)[x] + static_cast<float>(levels), 0.0F, 255.0F);
  }
}

}  // namespace

Shade::Shade(const Quad& quad, double softness, double darkness)
    : outline_(quad), softness_(std::max(softness, 0.5)), darkness_(static_cast<float>(darkness)) {}

void Shade::draw(int y, Row& row) {
  if (y < outline_.first_row() - softness_ || y > outline_.end_row() + softness_) return;
  outline_.cover_softly(y, row.width(), softness_, cover_);
  const float* part = cover_.part.data();
  for (auto* plane : {&row.b, &row.g, &row.r}) {
    float* level = plane->data();
    for (int x = cover_.first; x < cover_.end; ++x) {
      level[x] *= 1 - darkness_ * part[x];
    }
  }
}

Sheet::Sheet(Outline outline, std::shared_ptr<const Texture> face, const Mapping& face_to_scan)
    : outline_(std::move(outline)), face_(std::move(face)), to_face_(face_to_scan.inverse()) {}

void Sheet::add_raster(double period, double angle, double contrast) {
  raster_period_ = period, raster_angle_ = angle, raster_contrast_ = contrast;
}

void Sheet::rasterize(int y, int first, int end) {
  static const std::array<float, 256> kWave = [] {
    std::array<float, 256> wave;
    for (std::size_t i = 0; i < 256; ++i) wave[i] = static_cast<float>(std::sin(static_cast<double>(i) * 0.0245436926));
    return wave;
  }();
  const Point axis = unit(raster_angle_) * (65536 / raster_period_);
  // Phases as integers that turn round by themselves, 65536 a period.
  auto phase = static_cast<std::int64_t>(axis.x * first + axis.y * y);
  auto other = static_cast<std::int64_t>(-axis.y * first + axis.x * y);
  const auto step = static_cast<std::int64_t>(axis.x), other_step = static_cast<std::int64_t>(-axis.y);
  for (auto x = static_cast<std::size_t>(first); x < static_cast<std::size_t>(end); ++x) {
    const float wave =
        kWave[static_cast<std::size_t>(phase >> 8 & 255)] * kWave[static_cast<std::size_t>(other >> 8 & 255)];
    const float factor = 1 + static_cast<float>(raster_contrast_) * wave;
    pixels_.b[x] *= factor, pixels_.g[x] *= factor, pixels_.r[x] *= factor;
    phase += step, other += other_step;
  }
}

void Sheet::shine(int y, int first, int end) {
  for (const Streak& streak : streaks_) {
    const Point normal = unit(streak.angle + 1.5707963267948966);
    for (int x = first; x < end; ++x) {
      const double at = ((x + 0.5 - streak.on.x) * normal.x + (y + 0.5 - streak.on.y) * normal.y) / streak.width;
      if (std::abs(at) > 3) continue;
      const double bell = 1 / (1 + at * at * (2 + at * at));
      add_levels(pixels_, static_cast<std::size_t>(x), bell * (streak.ridge + streak.slope * at));
    }
  }
}

void Sheet::draw(int y, Row& row) {
  if (y < outline_.first_row() || y >= outline_.end_row()) return;
  outline_.cover(y, row.width(), cover_);
  const int first = cover_.first, end = cover_.end;
  if (first >= end) return;
  if (pixels_.width() != row.width()) pixels_ = Row(row.width());
  face_->sample(to_face_, Beyond::kBorder, y, first, end, pixels_);
  if (raster_contrast_ > 0) rasterize(y, first, end);
  shine(y, first, end);
  const float* part = cover_.part.data();
  const std::array<std::pair<float*, const float*>, 3> planes{
      {{row.b.data(), pixels_.b.data()}, {row.g.data(), pixels_.g.data()}, {row.r.data(), pixels_.r.data()}}};
  for (auto [below, face] : planes) {
    if (transparent_) {
      for (int x = first; x < end; ++x) {
        const float seen = below[x] * face[x] * (1 / 255.0F);
        below[x] += (seen + (face[x] - seen) * haze_ - below[x]) * part[x];
      }
    } else {
      for (int x = first; x < end; ++x) {
        below[x] += (face[x] - below[x]) * part[x];
      }
    }
  }
}

void Specks::draw(int y, Row& row) {
  for (const Speck& speck : specks_) {
    const double reach = speck.width / 2 + 1;
    if (y + 1 < std::min(speck.from.y, speck.to.y) - reach || y > std::max(speck.from.y, speck.to.y) + reach) continue;
    const int first = std::max(0, static_cast<int>(std::min(speck.from.x, speck.to.x) - reach));
    const int end = std::min(row.width(), static_cast<int>(std::max(speck.from.x, speck.to.x) + reach) + 1);
    for (int x = first; x < end; ++x) {
      const double off = distance_to_line({x + 0.5, y + 0.5}, speck.from, speck.to);
      const double part = std::clamp(speck.width / 2 + 0.5 - off, 0.0, std::min(1.0, speck.width));
      if (part > 0) add_levels(row, static_cast<std::size_t>(x), part * speck.levels);
    }
  }
}

std::vector<Speck> drawn_specks(Random& random, int width, int height, double pixels_per_mm, double levels) {
  std::vector<Speck> specks;
  const auto place = [&] { return Point{random.uniform(0, width), random.uniform(0, height)}; };
  for (int dust = random.integer(0, 60); dust > 0; --dust) {
    const Point at = place();
    const Point reach = turned({random.between(0.05, 0.5) * pixels_per_mm, 0}, random.uniform(0, 6.3));
    specks.push_back({at, at + reach, random.between(0.05, 0.4) * pixels_per_mm, levels * random.uniform(0.2, 1)});
  }
  for (int hair = random.integer(0, 3); hair > 0; --hair) {
    Point at = place();
    double angle = random.uniform(0, 6.3);
    const double curl = random.normal() * 0.06, width_mm = random.between(0.05, 0.12),
                 strength = random.uniform(0.2, 0.8);
    for (int piece = random.integer(5, 25); piece > 0; --piece) {
      const Point next = at + unit(angle) * (0.6 * pixels_per_mm);
      specks.push_back({at, next, width_mm * pixels_per_mm, levels * strength});
      at = next;
      angle += curl + random.normal() * 0.1;
    }
  }
  for (int scratch = random.chance(0.3) ? random.integer(1, 3) : 0; scratch > 0; --scratch) {
    const Point at = place();
    const Point reach = turned({random.between(5, 120) * pixels_per_mm, 0}, random.uniform(0, 6.3));
    specks.push_back({at, at + reach, random.between(0.05, 0.15) * pixels_per_mm, levels * random.uniform(0.1, 0.5)});
  }
  return specks;
}

}  // namespace vantrel::drawing
