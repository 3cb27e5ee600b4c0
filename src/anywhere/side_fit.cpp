#include "anywhere/side_fit.h"

#include <algorithm>
#include <cmath>

#include "anywhere/robust_line.h"

namespace vantrel::anywhere {
namespace {

/** The share of a side that is left out at each end: corners may be round. */
constexpr double kEnds = 0.12;
/** How far the outline may lie from a side at first, and from its line, fit after fit, in pixels. */
constexpr double kReaches[] = {4.0, 2.5, 1.5, 1.5};
/** A side needs so many places of the outline on its line. */
constexpr int kLeastPlaces = 5;
/** How far the strongest step of the copy may lie from the outline. */
constexpr int kSnapReach = 3;
/** A corner that moves farther than this has left its region. */
constexpr double kMostMove = 12.0;
/** A quadrilateral is worth fitting if this share of its region's outline lies so near to its sides. */
constexpr double kWorthShare = 0.35;
constexpr double kWorthReach = 4.0;
/** The outline lies beside a side that is so near. */
constexpr double kNear = 1.5;

/** How far a place lies from a line, across. */
double distance(const OffsetLine& line, const Place& place) {
  return std::abs(place.across - line.base - line.slope * (place.along + 0.5));
}

bool is_level(Point way) { return std::abs(way.x) >= std::abs(way.y); }

OffsetLine slope_of(Point from, Point to, bool level) {
  const double run = level ? to.x - from.x : to.y - from.y;
  const double rise = level ? to.y - from.y : to.x - from.x;
  const double slope = run == 0.0 ? 0.0 : rise / run;
  return {(level ? from.y - slope * from.x : from.x - slope * from.y), slope};
}

NormalLine line_of(const OffsetLine& line, bool level) {
  const Point from = level ? Point{0.0, line.base} : Point{line.base, 0.0};
  const Point way = level ? Point{1.0, line.slope} : Point{line.slope, 1.0};
  return line_through(from, from + way);
}

/** The position of the peak among three values, in steps from the middle one. */
double peak(double before, double middle, double after) {
  const double bend = 2 * middle - before - after;
  if (!(bend > 0)) return 0.0;
  return std::clamp((after - before) / (2 * bend), -0.5, 0.5);
}

/** The largest step of a plane from pixel `across` - 1 to pixel `across`; 0 at the frame. */
int step(const Copy& copy, bool level, int along, int across) {
  if (across <= 0 || across >= (level ? copy.rows : copy.cols)) return 0;
  const std::size_t at = level ? copy.index(across, along) : copy.index(along, across);
  const std::size_t before = at - (level ? static_cast<std::size_t>(copy.cols) : 1);
  int most = 0;
  for (std::size_t plane = 0; plane < copy.plane_count; ++plane)
    most = std::max(most, std::abs(copy.planes[plane][at] - copy.planes[plane][before]));
  return most;
}

/** The strongest step near the one to pixel `across`; of equals the nearest. */
double strongest_step(const Copy& copy, bool level, int along, int across) {
  constexpr int kSteps = 2 * kSnapReach + 3;  // one more at each end for the peak
  int steps[kSteps];
  for (int i = 0; i < kSteps; ++i) steps[i] = step(copy, level, along, across - kSnapReach - 1 + i);
  int best = kSnapReach + 1;
  for (int distance = 1; distance <= kSnapReach; ++distance) {
    for (const int i : {kSnapReach + 1 - distance, kSnapReach + 1 + distance})
      if (steps[i] > steps[best]) best = i;
  }
  return across - kSnapReach - 1 + best + peak(steps[best - 1], steps[best], steps[best + 1]);
}

/** What a place on the frame counts for: the region may go on beyond it. */
constexpr double kFrameWeight = 0.75;

/** The share of places within reach of a line. */
double share_near(const Copy& copy, const SidePlaces& side, const OffsetLine& line, double reach) {
  if (side.count == 0) return 0.0;
  const double end = side.level ? copy.rows : copy.cols;
  double near = 0.0;
  for (int i = 0; i < side.count; ++i) {
    const Place& place = side.places[static_cast<std::size_t>(i)];
    if (distance(line, place) <= reach) near += place.across > 0.0 && place.across < end ? 1.0 : kFrameWeight;
  }
  return near / side.count;
}

}  // namespace

double Plausibility::score() const {
  const double filled = fill > 1.0 ? 1 / fill : fill;
  return mean_share + least_share / 2 + filled / 2;
}

SidePlaces side_places(const Outline& outline, Point from, Point to) {
  SidePlaces side;
  const bool level = is_level(to - from);
  side.level = level;
  // Clockwise, the top side runs to the right and the left side up: the region begins there, and ends at the others.
  const bool begins = level ? to.x > from.x : to.y < from.y;
  const double start = level ? std::min(from.x, to.x) : std::min(from.y, to.y);
  const double stop = level ? std::max(from.x, to.x) : std::max(from.y, to.y);
  const double ends = (stop - start) * kEnds;
  const double least = level ? outline.left() : outline.top();
  const double most = level ? outline.right() : outline.bottom();
  const int first = static_cast<int>(std::floor(std::clamp(start + ends + 0.5, least, most)));
  const int last = static_cast<int>(std::floor(std::clamp(stop - ends + 0.5, least, most)));
  if (last <= first) return side;
  side.count = std::min(last - first, kMostOutlinePlaces);
  for (int i = 0; i < side.count; ++i) {
    const int along = first + (last - first) * i / side.count;
    const int across = level ? (begins ? outline.col_first(along) : outline.col_end(along))
                             : (begins ? outline.row_first(along) : outline.row_end(along));
    side.places[static_cast<std::size_t>(i)] = {along, static_cast<double>(across)};
  }
  return side;
}

void snap(const Copy& copy, SidePlaces& side) {
  const int end = side.level ? copy.rows : copy.cols;
  for (int i = 0; i < side.count; ++i) {
    Place& place = side.places[static_cast<std::size_t>(i)];
    const int across = static_cast<int>(place.across);
    if (across > 0 && across < end) place.across = strongest_step(copy, side.level, place.along, across);
  }
}

bool fit_line(const SidePlaces& side, Point from, Point to, NormalLine& line) {
  const double middle = side.level ? (from.x + to.x) / 2 : (from.y + to.y) / 2;
  OffsetLine fitted = slope_of(from, to, side.level);
  for (const double reach : kReaches) {
    LineSums sums;
    for (int i = 0; i < side.count; ++i) {
      const Place& place = side.places[static_cast<std::size_t>(i)];
      if (distance(fitted, place) <= reach) sums.add(place.along + 0.5 - middle, place.across, 1.0);
    }
    if (sums.count < kLeastPlaces || sums.count * 4 < side.count || !(sums.determinant() > 0.0)) return false;
    fitted = sums.line(middle);
  }
  line = line_of(fitted, side.level);
  return true;
}

namespace {

/** The shares of places within reach of each side. */
Plausibility judge(const Copy& copy, const std::array<SidePlaces, 4>& sides, const Quad& quad, double reach) {
  Plausibility plausibility;
  plausibility.least_share = 1.0;
  double around = 0.0;
  for (std::size_t i = 0; i < 4; ++i) {
    const double share = share_near(copy, sides[i], slope_of(quad[i], quad[i + 1], sides[i].level), reach);
    const double size = length(quad[i + 1] - quad[i]);
    plausibility.mean_share += share * size;
    plausibility.least_share = std::min(plausibility.least_share, share);
    around += size;
  }
  if (around > 0.0) plausibility.mean_share /= around;
  return plausibility;
}

}  // namespace

Plausibility fit_sides(const Copy& copy, const Outline& outline, Quad& quad) {
  std::array<SidePlaces, 4> sides;
  for (std::size_t i = 0; i < 4; ++i) sides[i] = side_places(outline, quad[i], quad[i + 1]);
  if (judge(copy, sides, quad, kWorthReach).mean_share < kWorthShare) return {};
  std::array<NormalLine, 4> lines;
  for (std::size_t i = 0; i < 4; ++i) {
    snap(copy, sides[i]);
    if (!fit_line(sides[i], quad[i], quad[i + 1], lines[i])) lines[i] = line_through(quad[i], quad[i + 1]);
  }
  meet(lines, quad, kMostMove, quad);
  Plausibility plausibility = judge(copy, sides, quad, kNear);
  const double inside = area(quad);
  if (inside > 0.0) plausibility.fill = outline.filled_area() / inside;
  return plausibility;
}

}  // namespace vantrel::anywhere
