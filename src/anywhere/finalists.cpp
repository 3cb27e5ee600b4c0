#include "anywhere/finalists.h"

#include <algorithm>
#include <array>

#include "anywhere/duel.h"
#include "anywhere/model.h"
#include "anywhere/overlap.h"

namespace vantrel::anywhere {
namespace {

/** Candidates with nearer corners than this, in pixels of the copy, are laid onto the same border. */
constexpr double kSamePlace = 3.0;
/** So many finalists are taken whatever they overlap, for they may be the right one beside a tempting one. */
constexpr std::size_t kRivals = 16;
/** A further one may overlap so many others, and lie within so many: pairs of cards taken as one, sheets. */
constexpr int kFurtherRivals = 3;
constexpr int kFurtherAround = 16;
/** A further card is as likely as this, in log odds of the first model. */
constexpr double kLeastFurther = -3.0;

/** A candidate by its first score; of equal ones the first. */
struct Ranked {
  double score;
  std::size_t index;

  bool operator<(const Ranked& other) const { return score != other.score ? score > other.score : index < other.index; }
};

/** Whether a candidate is one of the finalists already, or lies where there are enough of them. */
bool is_taken(const Finalists& finalists, const Quad& quad, bool any) {
  int rivals = 0, around = 0;
  for (const Finalist& finalist : finalists.all()) {
    if (nearly_same(quad, finalist.quad, kSamePlace)) return true;
    const Relation to = relation(quad, finalist.quad);
    rivals += to != Relation::kApart && to != Relation::kWithin;
    around += to == Relation::kWithin;
  }
  return !any && (rivals > kFurtherRivals || around > kFurtherAround);
}

/** Of the ranked candidates those that differ; after the first few only further cards. */
void take(const Analysis& analysis, std::span<const Ranked> ranked, Finalists& finalists) {
  for (const Ranked& candidate : ranked) {
    if (finalists.count == kMostFinalists) return;
    const Candidate& from = analysis.candidates[candidate.index];
    const bool any = finalists.count < kRivals;
    if (!any && candidate.score < kLeastFurther) return;
    if (is_taken(finalists, from.quad, any)) continue;
    Finalist& added = finalists.items[finalists.count++];
    added = Finalist{};
    added.quad = from.quad;
    added.rank = finalists.count;
    added.first_score = candidate.score;
    added.from_region = from.lines[0] == kNoLine;
  }
}

void lay_onto(const Scan& scan, int factor, Finalist& finalist) {
  Quad start;
  for (std::size_t i = 0; i < 4; ++i) start.corners[i] = finalist.quad[i] * factor;
  finalist.refined = refine(scan, start, kBorderReach * factor);
}

/** How far a finalist's score is ahead of its best rival's, and of that of "no card here", which is 0. */
double lead(const Finalists& finalists, const Finalist& finalist) {
  double best = 0.0;
  for (const Finalist& rival : finalists.all())
    if (rival.score > best && are_rivals(finalist, rival)) best = rival.score;
  return finalist.score - best;
}

double confidence(const Finalist& finalist, double lead) {
  std::array<float, kClaimFeatures> features{};
  features[0] = static_cast<float>(lead);
  features[1] = static_cast<float>(finalist.score);
  std::copy(finalist.features.begin(), finalist.features.end(), features.begin() + 2);
  return kConfidence(kClaimModel(features));
}

}  // namespace

bool measure_likeliest(const Scan& scan, const Analysis& analysis, Finalists& finalists) {
  const std::size_t count = analysis.candidates.count();
  finalists.items = image::WorkArray<Finalist>(std::min(count, kMostFinalists));
  image::WorkArray<Ranked> ranked(count);
  if (!finalists.items.ready() || !ranked.ready()) return false;
  for (std::size_t i = 0; i < count; ++i) ranked[i] = {kFirstModel(analysis.features[i]), i};
  std::sort(ranked.get(), ranked.get() + count);
  take(analysis, ranked.all(), finalists);
  for (Finalist& finalist : finalists.all()) lay_onto(scan, analysis.copy.factor, finalist);
  if (finalists.count == 0) return true;
  const Scene scene = analysis.scene();
  measure_finalists(Context(scene, analysis.coarser(), analysis.edges), finalists.all());
  return true;
}

bool choose_finalists(const Scan& scan, const Analysis& analysis, Finalists& finalists) {
  if (!measure_likeliest(scan, analysis, finalists)) return false;
  for (Finalist& finalist : finalists.all()) finalist.final_score = kFinalModel(finalist.features);
  for (Finalist& finalist : finalists.all()) finalist.score = kDuelModel(measure_duel(finalists.all(), finalist));
  for (Finalist& finalist : finalists.all()) finalist.confidence = confidence(finalist, lead(finalists, finalist));
  const auto better = [](const Finalist& a, const Finalist& b) {
    return a.score != b.score ? a.score > b.score : a.rank < b.rank;
  };
  std::sort(finalists.items.get(), finalists.items.get() + finalists.count, better);
  return true;
}

}  // namespace vantrel::anywhere
