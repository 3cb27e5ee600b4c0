#include "anywhere/rivalry.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "anywhere/overlap.h"

namespace vantrel::anywhere {
namespace {

/** Cards of a sheet: as likely as this, in log odds, and of about the same size. */
constexpr double kGoodScore = 0.0;
constexpr double kSameSize = 1.3;
/** What covers another one with others is as likely as this. */
constexpr double kLeastTile = -2.0;
/** Finalists with nearer corners than this share of the diagonal are no rivals, but the same border. */
constexpr double kSameBorder = 0.015;
/** How much better a rival is counts up to this, in log odds. */
constexpr double kMostBetter = 8.0;

void put(FinalFeatures& features, std::size_t feature, double value) { features[feature] = static_cast<float>(value); }

double better_by(const Finalist& rival, const Finalist& one) {
  return std::clamp(rival.first_score - one.first_score + kMostBetter, 0.0, 2 * kMostBetter);
}

/** How each finalist lies to each other one. */
class Relations {
 public:
  explicit Relations(std::span<const Finalist> finalists) {
    for (std::size_t i = 0; i < finalists.size(); ++i)
      for (std::size_t j = 0; j < finalists.size(); ++j) cells_[i][j] = relation(finalists[i].quad, finalists[j].quad);
  }
  /** How `a` lies to `b`. */
  Relation of(std::size_t a, std::size_t b) const { return cells_[a][b]; }

 private:
  std::array<std::array<Relation, kMostFinalists>, kMostFinalists> cells_{};
};

/** The rivals of a finalist by their relation to it. */
void measure_rivals(std::span<const Finalist> finalists, const Relations& relations, std::size_t at, FinalFeatures& f) {
  const Finalist& one = finalists[at];
  double around = 0.0, within = 0.0, across = 0.0, best = one.first_score;
  int alike = 0;
  for (std::size_t i = 0; i < finalists.size(); ++i) {
    if (i == at) continue;
    const Finalist& other = finalists[i];
    best = std::max(best, other.first_score);
    const double better = better_by(other, one);
    // Never: these are all relations.
    switch (relations.of(i, at)) {
      case Relation::kAround:
        around = std::max(around, better);
        break;
      case Relation::kWithin:
        within = std::max(within, better);
        break;
      case Relation::kAcross:
        across = std::max(across, better);
        break;
      case Relation::kApart: {
        const double ratio = area(other.quad) / std::max(area(one.quad), 1.0);
        alike += other.first_score > kGoodScore && ratio < kSameSize && ratio * kSameSize > 1.0;
        break;
      }
      case Relation::kSame:
        break;
    }
  }
  put(f, kAround, around);
  put(f, kWithin, within);
  put(f, kAcross, across);
  put(f, kAlikeBeside, alike);
  put(f, kBehindBest, best - one.first_score);
}

/** Those that cover another one, side by side, the likeliest first; finalists come in that order. */
struct Tiles {
  std::size_t count = 0;
  std::array<std::size_t, kMostFinalists> items{};
  double share = 0.0; /**< of its area */
};

Tiles tiles_of(std::span<const Finalist> finalists, const Relations& relations, std::size_t at) {
  Tiles tiles;
  double covered = 0.0;
  for (std::size_t i = 0; i < finalists.size(); ++i) {
    if (relations.of(i, at) != Relation::kWithin || finalists[i].first_score < kLeastTile) continue;
    const auto beside = [&](std::size_t other) { return relations.of(i, other) == Relation::kApart; };
    const auto end = tiles.items.begin() + static_cast<std::ptrdiff_t>(tiles.count);
    if (!std::all_of(tiles.items.begin(), end, beside)) continue;
    tiles.items[tiles.count++] = i;
    covered += area(finalists[i].quad);
  }
  if (tiles.count >= 2) tiles.share = covered / std::max(area(finalists[at].quad), 1.0);
  return tiles;
}

/** A pair of cards taken as one is covered by the two; a card is not covered by what is printed on it. */
void measure_tiles(std::span<Finalist> finalists, const Relations& relations) {
  for (std::size_t i = 0; i < finalists.size(); ++i) {
    const Tiles tiles = tiles_of(finalists, relations, i);
    put(finalists[i].features, kTiled, tiles.share);
    for (std::size_t n = 0; n < tiles.count; ++n) {
      float& most = finalists[tiles.items[n]].features[kTiles];
      most = std::max(most, static_cast<float>(tiles.share));
    }
  }
}

/** The shares and steps of the sides that do not lie on the frame; `seen` are theirs. */
void measure_sides(const Refined& refined, const SeenSides& seen, FinalFeatures& f) {
  const Summary share = summarise(refined.shares, seen), step = summarise(refined.contrasts, seen);
  put(f, kMeanShare, share.mean);
  put(f, kLeastShare, share.least);
  put(f, kSecondShare, share.second);
  put(f, kMeanStep, step.mean);
  put(f, kLeastStep, step.least);
}

}  // namespace

bool are_rivals(const Finalist& a, const Finalist& b) {
  const double reach = kSameBorder * length(a.refined.quad[2] - a.refined.quad[0]);
  return &a != &b && !nearly_same(a.refined.quad, b.refined.quad, reach) &&
         relation(a.refined.quad, b.refined.quad) != Relation::kApart;
}

void measure_finalists(const Context& context, std::span<Finalist> finalists) {
  const double unit = 1.0 / context.scene().copy.factor;
  const Relations relations(finalists);
  for (std::size_t i = 0; i < finalists.size(); ++i) {
    Finalist& one = finalists[i];
    FinalFeatures& f = one.features;
    Quad on_copy;
    double shift = 0.0;
    for (std::size_t corner = 0; corner < 4; ++corner) {
      on_copy.corners[corner] = one.refined.quad[corner] * unit;
      shift = std::max(shift, length(on_copy[corner] - one.quad[corner]));
    }
    put(f, kShift, shift);
    put(f, kFromRegion, one.from_region);
    measure_rivals(finalists, relations, i, f);
    measure_sides(one.refined, seen_sides(context.scene(), on_copy), f);
    const Features again = measure(context, on_copy);
    std::copy(again.begin(), again.end(), f.begin() + kFinalOnly);
  }
  measure_tiles(finalists, relations);
}

}  // namespace vantrel::anywhere