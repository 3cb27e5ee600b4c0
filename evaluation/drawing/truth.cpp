// What is true of a finished scan: its cards, and which of their sides can be seen.
#include <algorithm>
#include <array>
#include <cmath>

#include "drawing/scene.h"

namespace vantrel::drawing {
namespace {

constexpr int kStretches = 8;          // of a side, judged one by one
constexpr int kPointsEach = 24;        // of a stretch
constexpr double kLeastStep = 2;       // levels, that an eye or a program could see
constexpr double kLeastOnScan = 0.25;  // part of a side

using Levels = std::array<double, 3>;

Levels level_at(const DrawnScan& scan, Point p) {
  const auto at =
      (static_cast<std::size_t>(p.y) * static_cast<std::size_t>(scan.width) + static_cast<std::size_t>(p.x)) * 3;
  return {static_cast<double>(scan.bgr[at]), static_cast<double>(scan.bgr[at + 1]),
          static_cast<double>(scan.bgr[at + 2])};
}

bool on_scan(const DrawnScan& scan, Point p, double margin) {
  return p.x >= margin && p.y >= margin && p.x < scan.width - margin && p.y < scan.height - margin;
}

// A stretch of a side: how many of its points are on the scan and not hidden, and the step of the levels across it.
struct Stretch {
  int points = 0;
  double step = 0;
};

Stretch measure(const Scene& scene, const DrawnScan& scan, const LaidCard& card, Point from, Point along,
                double sigma) {
  // Near enough for a shadow line, far enough for the point spread.
  const double off = 1 + 1.3 * sigma;
  const Point outward = Point{along.y, -along.x} * (off / length(along));
  std::array<Levels, 3> sums{};
  Stretch stretch;
  for (int i = 0; i < kPointsEach; ++i) {
    const Point at = from + along * ((i + 0.5) / kPointsEach);
    if (!on_scan(scan, at, off + 1)) continue;
    bool hidden = false;
    for (std::size_t layer = card.layer + 1; layer < scene.layers.size() && !hidden; ++layer)
      hidden = scene.layers[layer]->hides(at);
    if (hidden) continue;
    ++stretch.points;
    for (int place = 0; place < 3; ++place) {
      const Levels levels = level_at(scan, at + outward * (place - 1));
      for (std::size_t channel = 0; channel < 3; ++channel)
        sums[static_cast<std::size_t>(place)][channel] += levels[channel];
    }
  }
  for (std::size_t channel = 0; channel < 3 && stretch.points > 0; ++channel) {
    const auto [least, most] = std::minmax({sums[0][channel], sums[1][channel], sums[2][channel]});
    stretch.step = std::max(stretch.step, (most - least) / stretch.points);
  }
  return stretch;
}

enum class Sight { kOffScan, kUnseen, kSeen };

Sight sight_of_side(const Scene& scene, const DrawnScan& scan, const LaidCard& card, Point from, Point to) {
  int on_scan_points = 0, judged = 0, seen = 0;
  for (int i = 0; i < kStretches; ++i) {
    const Point along = (to - from) * (1.0 / kStretches);
    const Stretch stretch = measure(scene, scan, card, from + along * i, along, scene.capture.blur);
    on_scan_points += stretch.points;
    if (stretch.points < kPointsEach / 3) continue;
    // Noise alone makes a step of about two deviations of a mean.
    const double noise = std::hypot(scene.capture.noise, scene.capture.grain) / std::sqrt(stretch.points);
    ++judged;
    seen += stretch.step > std::max(kLeastStep, 2.5 * noise);
  }
  if (on_scan_points < kLeastOnScan * kStretches * kPointsEach) return Sight::kOffScan;
  return 2 * seen > judged ? Sight::kSeen : Sight::kUnseen;
}

// The corner from which the sides go round as top, right, bottom and left of the card as it lies.
std::size_t top_left_of(const Quad& quad) {
  std::size_t best = 0;
  double most = -2;
  for (std::size_t i = 0; i < 4; ++i) {
    const Point top = quad[(i + 1) % 4] - quad[i], bottom = quad[(i + 2) % 4] - quad[(i + 3) % 4];
    const double level = top.x / length(top) + bottom.x / length(bottom);
    if (level > most) most = level, best = i;
  }
  return best;
}

}  // namespace

bool find_truth(const Scene& scene, DrawnScan& scan) {
  bool all_seen = true;
  for (const LaidCard& card : scene.cards) {
    TrueCard truth;
    const std::size_t first = top_left_of(card.corners);
    for (std::size_t i = 0; i < 4; ++i) truth.corners[i] = card.corners[(first + i) % 4];
    for (std::size_t i = 0; i < 4; ++i) {
      const Sight sight = sight_of_side(scene, scan, card, truth.corners[i], truth.corners[(i + 1) % 4]);
      truth.visible[i] = sight == Sight::kSeen;
      all_seen = all_seen && sight != Sight::kUnseen;
    }
    scan.cards.push_back(truth);
  }
  return all_seen;
}

}  // namespace vantrel::drawing
