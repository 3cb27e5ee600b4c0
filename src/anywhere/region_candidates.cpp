#include "anywhere/region_candidates.h"

#include <algorithm>
#include <span>

#include "anywhere/candidate_pool.h"
#include "anywhere/ground.h"
#include "anywhere/hull.h"
#include "anywhere/outline.h"
#include "anywhere/regions.h"
#include "anywhere/side_fit.h"
#include "anywhere/thresholds.h"

namespace vantrel::anywhere {
namespace {

using image::WorkArray;

/** No side of a card is shorter than this, in pixels of the copy. */
constexpr double kLeastSide = 12.0;
constexpr auto kLeastArea = static_cast<std::uint32_t>(kLeastSide * kLeastSide / 2);
/** The most candidates that are compared. */
constexpr std::size_t kPool = 1024;
/** A quadrilateral that describes its region less well than this is no candidate. */
constexpr double kLeastScore = 0.9;
/** From here on, a hull of four sides needs no rectangle beside it. */
constexpr double kGoodScore = 1.75;

/** What turns regions of a map into candidates. */
class Builder {
 public:
  Builder(const Relief& relief, CandidatePool& pool)
      : relief_(relief),
        finder_(relief.rows, relief.cols),
        outline_(relief.rows, relief.cols),
        hull_(relief.rows),
        fitter_(relief),
        pool_(pool) {}

  bool ready() const { return finder_.ready() && outline_.ready() && hull_.ready() && fitter_.ready(); }
  void add_all();

 private:
  void add_region(const Region& region);
  double add_quad(Quad quad);

  Relief relief_;
  RegionFinder finder_;
  Outline outline_;
  Hull hull_;
  SideFitter fitter_;
  CandidatePool& pool_;
};

bool is_large_enough(const Quad& quad) {
  if (!(area(quad) > 0)) return false;
  for (std::size_t i = 0; i < 4; ++i)
    if (length(quad[i + 1] - quad[i]) < kLeastSide) return false;
  return true;
}

/** Fits a quadrilateral and adds it where it is plausible; its score. */
double Builder::add_quad(Quad quad) {
  fitter_.fit(outline_, quad);
  if (!is_large_enough(quad)) return 0.0;
  const double score = fitter_.judge(outline_, quad).score();
  if (score >= kLeastScore) pool_.add(quad, score);
  return score;
}

void Builder::add_region(const Region& region) {
  outline_.trace(finder_, region);
  const int box_side = std::max(outline_.right() - outline_.left(), outline_.bottom() - outline_.top());
  if (box_side < kLeastSide) return;
  hull_.enclose(outline_);
  Quad rectangle;
  const bool is_rectangle = smallest_rectangle(hull_.corners(), rectangle);
  Quad quad;
  const double score = hull_.reduce_to_quad(quad) ? add_quad(quad) : 0.0;
  if (score < kGoodScore && is_rectangle) add_quad(rectangle);
}

void Builder::add_all() {
  const Thresholds thresholds = thresholds_of(relief_);
  for (std::size_t i = 0; i < thresholds.count; ++i)
    for (const Region& region : finder_.find(relief_, thresholds.values[i], kLeastArea)) add_region(region);
}

/** How far each pixel lies from the ground's first colour. */
void difference_map(const Copy& copy, const Ground& ground, WorkArray<std::uint16_t>& map) {
  for (std::size_t i = 0; i < map.size(); ++i)
    map[i] = static_cast<std::uint16_t>(difference(colour_at(copy, i), ground.colours[0]));
}

bool collect(const Copy& copy, const BarrierMap& map, CandidatePool& pool) {
  Builder barrier({map.distances.get(), copy.rows, copy.cols}, pool);
  if (!barrier.ready()) return false;
  barrier.add_all();
  return true;
}

bool collect_differences(const Copy& copy, const Ground& ground, CandidatePool& pool) {
  WorkArray<std::uint16_t> map(copy.size());
  if (!map.ready()) return false;
  difference_map(copy, ground, map);
  Builder builder({map.get(), copy.rows, copy.cols}, pool);
  if (!builder.ready()) return false;
  builder.add_all();
  return true;
}

}  // namespace

RegionCandidates region_candidates(const Copy& copy, const BarrierMap& map) {
  RegionCandidates found;
  CandidatePool pool(kPool);
  if (!pool.ready()) return found;
  if (copy.rows < 2 || copy.cols < 2) {
    found.ready = true;
    return found;
  }
  if (!collect(copy, map, pool) || !collect_differences(copy, map.ground, pool)) return found;
  found.count = static_cast<int>(pool.best(found.quads));
  found.ready = true;
  return found;
}

}  // namespace vantrel::anywhere
