#include "anywhere/side_fit.h"

#include <algorithm>
#include <cmath>

namespace vantrel::anywhere {
namespace {

/** The share of a side that is left out at each end: corners may be round. */
constexpr double kEnds = 0.12;
/** How far the outline may lie from a side at first, and from its line, fit after fit, in pixels. */
constexpr double kReaches[] = {4.0, 2.5, 1.5, 1.5};
/** A side needs so many places of the outline on its line. */
constexpr std::size_t kLeastPlaces = 5;
/** How far the strongest step of the copy may lie from the outline. */
constexpr int kSnapReach = 3;
/** A corner that moves farther than this has left its region. */
constexpr double kMostMove = 12.0;
/** The outline lies beside a side that is so near. */
constexpr double kNear = 1.5;

/** across = offset + slope * along */
struct Slope {
  double offset = 0.0;
  double slope = 0.0;

  double distance(double along, double across) const { return std::abs(across - offset - slope * along); }
};

bool is_level(Point way) { return std::abs(way.x) >= std::abs(way.y); }

Slope slope_of(Point from, Point to, bool level) {
  const double run = level ? to.x - from.x : to.y - from.y;
  const double rise = level ? to.y - from.y : to.x - from.x;
  const double slope = run == 0.0 ? 0.0 : rise / run;
  return {(level ? from.y - slope * from.x : from.x - slope * from.y), slope};
}

NormalLine line_of(const Slope& slope, bool level) {
  const Point from = level ? Point{0.0, slope.offset} : Point{slope.offset, 0.0};
  const Point way = level ? Point{1.0, slope.slope} : Point{slope.slope, 1.0};
  return line_through(from, from + way);
}

/** The position of the peak among three values, in steps from the middle one. */
double peak(double before, double middle, double after) {
  const double bend = 2 * middle - before - after;
  if (!(bend > 0)) return 0.0;
  return std::clamp((after - before) / (2 * bend), -0.5, 0.5);
}

}  // namespace

double Plausibility::score() const {
  const double filled = fill > 1.0 ? 1 / fill : fill;
  return mean_share + least_share / 2 + filled / 2;
}

/** The largest step of a plane from pixel `across` - 1 to pixel `across`; 0 at the frame. */
int SideFitter::step(bool level, int along, int across) const {
  if (across <= 0 || across >= (level ? copy_.rows : copy_.cols)) return 0;
  const std::size_t at = level ? copy_.index(across, along) : copy_.index(along, across);
  const std::size_t before = at - (level ? static_cast<std::size_t>(copy_.cols) : 1);
  int most = 0;
  for (std::size_t plane = 0; plane < copy_.plane_count; ++plane)
    most = std::max(most, std::abs(copy_.planes[plane][at] - copy_.planes[plane][before]));
  return most;
}

/** The strongest step of the copy near an outline that lies before pixel `across`, to a fraction of a pixel. */
double SideFitter::snapped(bool level, int along, int across) const {
  if (across <= 0 || across >= (level ? copy_.rows : copy_.cols)) return across;
  int best = across;
  int most = step(level, along, across);
  for (int distance = 1; distance <= kSnapReach; ++distance) {
    for (const int at : {across - distance, across + distance}) {
      const int here = step(level, along, at);
      if (here <= most) continue;
      most = here;
      best = at;
    }
  }
  return best + peak(step(level, along, best - 1), most, step(level, along, best + 1));
}

/** Collects the outline's places beside a side, but for a share of it at each end. */
std::size_t SideFitter::collect(const Outline& outline, Point from, Point to, double margin, Snap snap) {
  const bool level = is_level(to - from);
  // Clockwise, the top side runs to the right and the right side down: what it bounds begins, or ends, there.
  const bool enters = level ? to.x > from.x : to.y < from.y;
  const double start = level ? std::min(from.x, to.x) : std::min(from.y, to.y);
  const double stop = level ? std::max(from.x, to.x) : std::max(from.y, to.y);
  const double ends = (stop - start) * margin;
  const int least = level ? outline.left() : outline.top();
  const int most = level ? outline.right() : outline.bottom();
  const int first = static_cast<int>(std::floor(std::clamp(start + ends + 0.5, 1.0 * least, 1.0 * most)));
  const int last = static_cast<int>(std::floor(std::clamp(stop - ends + 0.5, 1.0 * least, 1.0 * most)));
  std::size_t count = 0;
  for (int along = first; along < last; ++along) {
    const int across = level ? (enters ? outline.col_first(along) : outline.col_end(along))
                             : (enters ? outline.row_first(along) : outline.row_end(along));
    places_[count++] = {along + 0.5, snap == Snap::kYes ? snapped(level, along, across) : 1.0 * across};
  }
  return count;
}

bool SideFitter::fit_side(const Outline& outline, Point from, Point to, NormalLine& line) {
  const bool level = is_level(to - from);
  const std::size_t count = collect(outline, from, to, kEnds, Snap::kYes);
  Slope slope = slope_of(from, to, level);
  for (const double reach : kReaches) {
    double n = 0.0, sum_u = 0.0, sum_v = 0.0, sum_uu = 0.0, sum_uv = 0.0;
    const double middle = level ? (from.x + to.x) / 2 : (from.y + to.y) / 2;
    for (std::size_t i = 0; i < count; ++i) {
      if (slope.distance(places_[i].along, places_[i].across) > reach) continue;
      const double u = places_[i].along - middle;
      n += 1.0;
      sum_u += u;
      sum_v += places_[i].across;
      sum_uu += u * u;
      sum_uv += u * places_[i].across;
    }
    const double spread = n * sum_uu - sum_u * sum_u;
    if (n < kLeastPlaces || n * 4 < static_cast<double>(count) || spread <= 0.0) return false;
    slope.slope = (n * sum_uv - sum_u * sum_v) / spread;
    slope.offset = (sum_v - slope.slope * sum_u) / n - slope.slope * middle;
  }
  line = line_of(slope, level);
  return true;
}

void SideFitter::fit(const Outline& outline, Quad& quad) {
  std::array<NormalLine, 4> lines;
  for (std::size_t i = 0; i < 4; ++i)
    if (!fit_side(outline, quad[i], quad[i + 1], lines[i])) lines[i] = line_through(quad[i], quad[i + 1]);
  Quad moved;
  for (std::size_t i = 0; i < 4; ++i) {
    if (!intersect(lines[(i + 3) % 4], lines[i], moved.corners[i])) return;
    if (length(moved[i] - quad[i]) > kMostMove) return;
  }
  quad = moved;
}

Plausibility SideFitter::judge(const Outline& outline, const Quad& quad) {
  Plausibility plausibility;
  plausibility.least_share = 1.0;
  double around = 0.0;
  for (std::size_t i = 0; i < 4; ++i) {
    const bool level = is_level(quad[i + 1] - quad[i]);
    const Slope slope = slope_of(quad[i], quad[i + 1], level);
    const std::size_t count = collect(outline, quad[i], quad[i + 1], kEnds / 2, Snap::kYes);
    std::size_t near = 0;
    for (std::size_t k = 0; k < count; ++k) near += slope.distance(places_[k].along, places_[k].across) <= kNear;
    const double share = count == 0 ? 0.0 : static_cast<double>(near) / static_cast<double>(count);
    const double size = length(quad[i + 1] - quad[i]);
    plausibility.mean_share += share * size;
    plausibility.least_share = std::min(plausibility.least_share, share);
    around += size;
  }
  if (around > 0.0) plausibility.mean_share /= around;
  const double inside = area(quad);
  if (inside > 0.0) plausibility.fill = outline.filled_area() / inside;
  return plausibility;
}

}  // namespace vantrel::anywhere
