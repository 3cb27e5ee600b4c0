#include "anywhere/refine.h"

#include <algorithm>
#include <cmath>

#include "anywhere/border_choice.h"
#include "anywhere/border_signal.h"
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
};

/** Work memory for a side. */
struct Work {
  SideProfiles profiles;
  Evidence evidence;
  BorderSignal signal;
  Noise noise{}; /**< of single pixels; 0 where none was judged yet */
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

void move_side(SideLine& side, const OffsetLine& by) {
  side.base += side.outward * by.base;
  side.slope += side.outward * by.slope;
}

/** Looks for a border within `reach` pixels of a side; moves it there and says what speaks for it. */
bool search_side(const Scan& scan, double reach, Work& work, SideLine& side, RefinedSide& refined) {
  SideProfiles& profiles = work.profiles;
  sample_side(scan, side, reach / side.cosine(), profiles);
  if (profiles.places < kLeastPlaces || profiles.count_with(5) * 2 < profiles.places) return false;
  const Noise noise = settled_noise(work);
  gather_evidence(profiles, noise, work.evidence);
  const int samples = static_cast<int>(round_up(reach / side.cosine() / profiles.step));
  SampleLine found = search_line(work.evidence, profiles.centre, samples);
  if (!(found.evidence > 0.0)) return false;
  found = outermost_line(work.evidence, found, profiles.centre, samples);
  mix_planes(profiles, noise, found, work.signal);
  const SampleLine flank = inner_flank(profiles, work.signal, found);
  BorderCourse course = locate_border(profiles, work.signal, flank);
  refined.share = share_on_course(profiles, work.signal, course);
  if (flank.begin != found.begin && refined.share < kLeastFlank) {
    course = locate_border(profiles, work.signal, found);
    refined.share = share_on_course(profiles, work.signal, course);
  }
  refined.contrast = contrast_at(profiles, course);
  move_side(side, reach > kLastReach ? course.line : between_ends(course, side));
  return true;
}

RefinedSide refine_side(const Scan& scan, Point a, Point b, double reach, Work& work) {
  const RefinedSide stays{line_through(a, b)};
  for (const Point end : {a, b})
    if (!(std::abs(end.x) < kMostCoordinate && std::abs(end.y) < kMostCoordinate)) return stays;
  if (!(length(b - a) >= kLeastLength) || on_frame(scan, a, b)) return stays;
  work.noise = {};
  SideLine side = side_line(a, b);
  RefinedSide refined = stays;
  while (true) {
    if (!search_side(scan, reach, work, side, refined)) return stays;
    if (reach <= kLastReach) break;
    reach = std::max(reach / kGain, kLastReach);
  }
  refined.line = side.line();
  refined.found = true;
  if (dot(refined.line.normal, stays.line.normal) < 0.0)
    refined.line = {refined.line.normal * -1.0, -refined.line.offset};
  return refined;
}

}  // namespace

Refined refine(const Scan& scan, const Quad& start, double reach) {
  Refined refined{start};
  if (scan.pixels.empty()) return refined;
  reach = reach > kLastReach ? std::min(reach, kMostReach) : kLastReach;
  Work work;
  std::array<RefinedSide, 4> sides;
  for (std::size_t i = 0; i < 4; ++i) {
    sides[i] = refine_side(scan, start[i], start[i + 1], reach, work);
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
