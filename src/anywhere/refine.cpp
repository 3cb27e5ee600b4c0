#include "anywhere/refine.h"

#include <algorithm>
#include <cmath>
#include <span>

#include "anywhere/border_choice.h"
#include "anywhere/border_signal.h"
#include "anywhere/edge_fit.h"
#include "anywhere/line_search.h"
#include "anywhere/robust_line.h"
#include "anywhere/side_profiles.h"

namespace vantrel::anywhere {
namespace {

/** The reach of the last search, in pixels. */
constexpr double kLastReach = 3.5;

/** Each search is so much better than the one before. */
constexpr double kGain = 6.0;

/** The reach of a first search is bounded, and so are the places that are looked at. */
constexpr double kMostReach = 256.0;
constexpr double kMostCoordinate = 1e6;

/** Sides with fewer places, or shorter ones in pixels, are left alone. */
constexpr int kLeastPlaces = 8;
constexpr double kLeastLength = 12.0;

/** A side is on the frame where both of its ends are so near to it, in pixels. */
constexpr double kOnFrame = 1.0;

/** What is seen at fewer places than this is no flank of a shadow. */
constexpr double kLeastFlank = 0.5;

/** A bow is followed so far from the middle, in halves of what was seen of the side. */
constexpr double kFarthestEnd = 1.2;

/** A side where it was found to lie. */
struct RefinedSide {
  NormalLine line;
  bool found = false;
  double share = 0.0;
  double contrast = 0.0;
  DarkLine dark;   /**< that it was found on the inner flank of */
  EdgeFits fits{}; /**< where beside that its edge is */
};

/** Work memory for a side. */
struct Work {
  SideProfiles profiles;
  Evidence evidence;
  BorderSignal signal;
  Noise noise{};    /**< of single pixels; 0 where none was judged yet */
  bool rim = false; /**< whether dark lines are the card's own */
};

bool on_frame(const Scan& scan, Point a, Point b) {
  const double right = scan.pixels.cols - kOnFrame;
  const double bottom = scan.pixels.rows - kOnFrame;
  return (a.x <= kOnFrame && b.x <= kOnFrame) || (a.y <= kOnFrame && b.y <= kOnFrame) ||
         (a.x >= right && b.x >= right) || (a.y >= bottom && b.y >= bottom);
}

/** The noise of the profiles. A narrow search sees little but the border: what a wider one saw is nearer the truth. */
Noise settled_noise(Work& work) {
  const Noise noise = noise_of(work.profiles);
  if (work.profiles.step > 1) return noise;
  for (std::size_t i = 0; i < noise.size(); ++i)
    work.noise[i] = work.noise[i] > 0.0F ? std::min(work.noise[i], noise[i]) : noise[i];
  return work.noise;
}

/** The line between the ends of a side that runs along a course: where a bowed side meets its neighbours. */
OffsetLine between_ends(const BorderCourse& course, const SideLine& side) {
  // Where less of the side is on the scan the bow is not known as far as its ends.
  const double most = kFarthestEnd * course.half;
  const double from = std::max(side.from, course.middle - most);
  const double to = std::min(side.to, course.middle + most);
  const double slope = (course.off_line(to) - course.off_line(from)) / (to - from);
  return {course.line.base + course.off_line(from) - slope * from, course.line.slope + slope};
}

/** Lays a course onto the border along a line; returns the share of the places that show it. */
double follow(Work& work, const Noise& noise, const SampleLine& line, BorderCourse& course) {
  mix_planes(work.profiles, noise, line, work.signal);
  course = locate_border(work.profiles, work.signal, line);
  return share_on_course(work.profiles, work.signal, course);
}

/** Moves a side onto a course, which then is told from there. */
void move_side(SideLine& side, const OffsetLine& by, BorderCourse& course) {
  side.base += side.outward * by.base;
  side.slope += side.outward * by.slope;
  course.line.base -= by.base;
  course.line.slope -= by.slope;
}

/** Looks for a border within `reach` pixels of a side; moves it there and says what speaks for it. */
bool search_side(const Scan& scan, double reach, Work& work, SideLine& side, RefinedSide& refined,
                 BorderCourse& course) {
  SideProfiles& profiles = work.profiles;
  sample_side(scan, side, reach / side.cosine(), profiles);
  if (profiles.places < kLeastPlaces || profiles.count_with(5) * 2 < profiles.places) return false;
  const Noise noise = settled_noise(work);
  gather_evidence(profiles, noise, work.evidence);
  const int samples = static_cast<int>(round_up(reach / side.cosine() / profiles.step));
  SampleLine found = search_line(work.evidence, profiles.centre, samples);
  if (!(found.evidence > 0.0)) return false;
  found = outermost_line(work.evidence, found, profiles.centre, samples);
  refined.dark = work.rim ? DarkLine{found} : dark_line(profiles, work.evidence, found);
  refined.share = follow(work, noise, refined.dark.inner, course);
  if (refined.dark.width > 0.0 && refined.share < kLeastFlank) {
    refined.dark = {found};
    refined.share = follow(work, noise, found, course);
  }
  refined.contrast = contrast_at(profiles, course);
  move_side(side, reach > kLastReach ? course.line : between_ends(course, side), course);
  return true;
}

RefinedSide refine_side(const Scan& scan, Point a, Point b, double reach, Work& work) {
  RefinedSide stays;
  stays.line = line_through(a, b);
  for (const Point end : {a, b})
    if (!(std::abs(end.x) < kMostCoordinate && std::abs(end.y) < kMostCoordinate)) return stays;
  if (!(length(b - a) >= kLeastLength) || on_frame(scan, a, b)) return stays;
  work.noise = {};
  SideLine side = side_line(a, b);
  RefinedSide refined = stays;
  BorderCourse course;
  while (true) {
    if (!search_side(scan, reach, work, side, refined, course)) return stays;
    if (reach <= kLastReach) break;
    reach = std::max(reach / kGain, kLastReach);
  }
  const double cosine = side.cosine();
  sample_side(scan, side, (kFitOutside - 1) / cosine, work.profiles);
  refined.fits = fit_edge(work.profiles, course, cosine);
  refined.line = side.line();
  refined.found = true;
  if (dot(refined.line.normal, stays.line.normal) < 0.0)
    refined.line = {refined.line.normal * -1.0, -refined.line.offset};
  return refined;
}

using Sides = std::array<RefinedSide, 4>;

Sides refine_sides(const Scan& scan, const Quad& start, double reach, Work& work) {
  Sides sides;
  for (std::size_t i = 0; i < sides.size(); ++i) sides[i] = refine_side(scan, start[i], start[i + 1], reach, work);
  return sides;
}

/** Whether the dark lines along all sides that were found are a rim. */
bool have_rim(const Sides& sides) {
  std::array<DarkLine, 4> dark;
  std::size_t count = 0;
  for (const RefinedSide& side : sides)
    if (side.found) dark[count++] = side.dark;
  return is_rim(std::span(dark).first(count));
}

/** Moves the sides to where their edges are by the one blur that explains them all. */
void settle(Sides& sides) {
  std::array<const EdgeFits*, 4> fits{};
  for (std::size_t i = 0; i < sides.size(); ++i) fits[i] = &sides[i].fits;
  const std::size_t blur = best_blur(fits);
  if (blur == kBlurs) return;
  for (RefinedSide& side : sides)
    if (side.found) side.line.offset += side.fits[blur].offset;
}

}  // namespace

Refined refine(const Scan& scan, const Quad& start, double reach) {
  Refined refined{start};
  if (scan.pixels.empty()) return refined;
  reach = reach > kLastReach ? std::min(reach, kMostReach) : kLastReach;
  Work work;
  Sides sides = refine_sides(scan, start, reach, work);
  if (have_rim(sides)) {
    work.rim = true;
    sides = refine_sides(scan, start, reach, work);
  }
  settle(sides);
  for (std::size_t i = 0; i < 4; ++i) {
    refined.shares[i] = sides[i].share;
    refined.contrasts[i] = sides[i].contrast;
  }
  for (std::size_t i = 0; i < 4; ++i) {
    if (!sides[(i + 3) % 4].found && !sides[i].found) continue;
    Point corner;
    if (!intersect(sides[(i + 3) % 4].line, sides[i].line, corner)) continue;
    if (length(corner - start[i]) <= 4.0 * reach) refined.quad.corners[i] = corner;
  }
  return refined;
}

}  // namespace vantrel::anywhere
