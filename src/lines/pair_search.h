/**
 * @file pair_search.h
 * @brief The search for two opposite borders at once, without looking at the image.
 */
#ifndef VANTREL_LINES_PAIR_SEARCH_H
#define VANTREL_LINES_PAIR_SEARCH_H

#include <algorithm>
#include <span>

#include "lines/hough.h"

namespace vantrel::lines {

/** Fewer edge points than this make no pair of borders. */
inline constexpr int kLeastPairPoints = 2;

/** Top and bottom, or left and right. */
struct BorderPair {
  bool found = false;
  geometry::Line first{};
  geometry::Line second{};
};

/**
 * Where points vote for a pair of borders, where each of the two is looked for, and the votes that they need. Of two
 * horizontal ones the first is the stronger, so that it needs no fewer; of two vertical ones any first will do.
 */
struct PairRules {
  Angles voted;
  Angles first;
  Angles second;
  int first_quorum;
  int quorum; /**< of the second */

  static PairRules of(int rows, int cols, bool horizontal);
};

/**
 * A search for the two strongest near-horizontal borders, or for two near-vertical ones: the left one's normal at 150
 * to 179 degrees, the right one's at 0 to 29.
 */
class PairSearch {
 public:
  PairSearch(int rows, int cols, bool horizontal, const AngleTables& tables);

  bool ready() const { return votes_.ready(); }
  void vote(std::span<const EdgePoint> centred_points) { votes_.vote(centred_points); }
  bool vote(PointMap&& points) { return votes_.vote(std::move(points)); }
  BorderPair find();

 private:
  PairRules rules_;
  HoughAccumulator votes_;
};

/**
 * The same search with cells for a few angles at a time, so that a long, narrow image takes no more memory than its
 * pixels justify. The points vote anew for each few angles: `feed(votes)` has them all vote.
 */
template <class Feed>
class SlicedPairSearch {
 public:
  /** @param angles at a time, at least one. */
  SlicedPairSearch(int rows, int cols, bool horizontal, const AngleTables& tables, int angles, Feed feed)
      : rows_(rows),
        cols_(cols),
        rules_(PairRules::of(rows, cols, horizontal)),
        tables_(tables),
        angles_(angles),
        feed_(feed) {}

  /** @param ready false when memory was missing, and nothing is found. */
  BorderPair find(bool& ready) const {
    ready = true;
    const Winner first = strongest(rules_.first, nullptr);
    const Winner second = first.ready ? strongest(rules_.second, &first.peak) : first;
    ready = second.ready;
    if (!ready || second.peak.votes < rules_.quorum) return {};
    return {true, first.line, second.line};
  }

 private:
  /** A peak and its line, which only the cells that it was found in can tell. */
  struct Winner {
    bool ready = true;
    Peak peak{};
    geometry::Line line{};
  };

  Winner strongest(const Angles& searched, const Peak* excluded) const {
    Winner best;
    bool any = false;
    for (const AngleSpan& span : {searched.low, searched.high}) {
      for (int from = span.first; from <= span.last; from += angles_) {
        const Angles slice{{from, std::min(from + angles_ - 1, span.last)}};
        HoughAccumulator votes(rows_, cols_, slice, tables_);
        if (!votes.ready()) return {false};
        feed_(votes);
        const Peak peak = votes.strongest(slice, excluded);
        // Of equal cells the one at the least distance counts, and among those the one at the least angle.
        const bool stronger = peak.votes > best.peak.votes ||
                              // Never: votes are numbers.
                              (peak.votes == best.peak.votes && peak.votes > 0 && peak.distance < best.peak.distance);
        if (any && !stronger) continue;
        best = {true, peak, votes.line(peak)};
        any = true;
      }
    }
    return best;
  }

  int rows_;
  int cols_;
  PairRules rules_;
  AngleTables tables_;
  int angles_;
  Feed feed_;
};

}  // namespace vantrel::lines

#endif
