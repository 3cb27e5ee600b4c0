#include "anywhere/region_candidates.h"

#include <algorithm>
#include <span>

#include "anywhere/candidate_pool.h"
#include "anywhere/candidates.h"
#include "anywhere/ground.h"
#include "anywhere/hull.h"
#include "anywhere/outline.h"
#include "anywhere/regions.h"
#include "anywhere/reliefs.h"
#include "anywhere/side_fit.h"
#include "anywhere/thresholds.h"

namespace vantrel::anywhere {
namespace {

using image::WorkArray;

constexpr auto kLeastArea = static_cast<std::uint32_t>(kShortestSide * kShortestSide / 2);
/** The most candidates that are compared. */
constexpr std::size_t kPool = 1024;
/** A quadrilateral that describes its region less well than this is no candidate. */
constexpr double kLeastScore = 0.9;
/** From here on, a hull of four sides needs no rectangle beside it. */
constexpr double kGoodScore = 1.75;

/** What turns regions of maps of one size into candidates. */
class Builder {
 public:
  explicit Builder(const Copy& copy)
      : copy_(copy), finder_(copy.rows, copy.cols), outline_(copy.rows, copy.cols), hull_(copy.rows), pool_(kPool) {}

  bool ready() const { return finder_.ready() && outline_.ready() && hull_.ready() && pool_.ready(); }
  void add(const Relief& relief, const Thresholds& thresholds);
  std::size_t best(std::span<Quad> quads) { return pool_.best(quads); }

 private:
  void add_region(const Region& region);
  double add_quad(Quad quad);

  const Copy& copy_;
  RegionFinder finder_;
  Outline outline_;
  Hull hull_;
  CandidatePool pool_;
};

bool is_large_enough(const Quad& quad) {
  if (!(area(quad) > 0)) return false;
  for (std::size_t i = 0; i < 4; ++i)
    if (length(quad[i + 1] - quad[i]) < kShortestSide) return false;
  return true;
}

bool is_whole(const Quad& quad, const Copy& copy) {
  constexpr double kAtFrame = 2.0;
  const double right = copy.cols;
  const double bottom = copy.rows;
  const Quad frame{{Point{0.0, 0.0}, Point{right, 0.0}, Point{right, bottom}, Point{0.0, bottom}}};
  return nearly_same(quad, frame, kAtFrame);
}

/** Fits a quadrilateral and adds it where it is plausible; its score. */
double Builder::add_quad(Quad quad) {
  const double score = fit_sides(copy_, outline_, quad).score();
  if (!is_large_enough(quad) || is_whole(quad, copy_)) return 0.0;
  if (score >= kLeastScore) pool_.add(quad, score);
  return score;
}

void Builder::add_region(const Region& region) {
  outline_.trace(finder_, region);
  const int box_side = std::max(outline_.right() - outline_.left(), outline_.bottom() - outline_.top());
  if (box_side < kShortestSide) return;
  hull_.enclose(outline_);
  const Quad rectangle = smallest_rectangle(hull_.corners());
  if (add_quad(hull_.reduce_to_quad()) < kGoodScore) add_quad(rectangle);
}

void Builder::add(const Relief& relief, const Thresholds& thresholds) {
  for (std::size_t i = 0; i < thresholds.count; ++i)
    for (const Region& region : finder_.find(relief, thresholds.values[i], kLeastArea)) add_region(region);
}

/** Adds regions that differ from a ground's first colour. */
void add_differences(const Copy& copy, const Ground& ground, WorkArray<std::uint16_t>& values, Builder& builder) {
  if (ground.count == 0) return;
  const Relief relief{values.get(), copy.rows, copy.cols};
  write_difference(copy, ground.colours[0], values.all());
  builder.add(relief, thresholds_of(relief));
}

}  // namespace

RegionCandidates region_candidates(const Copy& copy, const BarrierMap& map, std::size_t most) {
  RegionCandidates found;
  if (copy.rows < 2 || copy.cols < 2) {
    found.ready = true;
    return found;
  }
  Builder builder(copy);
  WorkArray<std::uint16_t> values(copy.size());
  if (!builder.ready() || !values.ready()) return found;
  const Relief barriers{map.distances.get(), copy.rows, copy.cols};
  builder.add(barriers, thresholds_of(barriers));
  add_differences(copy, map.ground, values, builder);
  add_differences(copy, find_sheets(copy, map.ground), values, builder);
  const Relief flatness{values.get(), copy.rows, copy.cols};
  write_flatness(copy, values.all());
  builder.add(flatness, flatness_thresholds_of(flatness));
  found.count = static_cast<int>(builder.best(std::span(found.quads).first(most)));
  found.ready = true;
  return found;
}

}  // namespace vantrel::anywhere
