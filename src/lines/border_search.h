/**
 * @file border_search.h
 * @brief The search for the border of one side among edge points: a Hough vote, and what must hold for its peaks.
 */
#ifndef VANTREL_LINES_BORDER_SEARCH_H
#define VANTREL_LINES_BORDER_SEARCH_H

#include <optional>
#include <span>

#include "geometry/line.h"
#include "lines/hough.h"
#include "lines/levels.h"
#include "lines/verify_components.h"

namespace vantrel::lines {

/** What a search knows of the image besides its edge points. */
struct BorderScene {
  Levels gray;
  image::ConstPixels edge;                    /**< rows padded to whole 32-bit words, the padding included */
  std::span<const geometry::Rect> components; /**< boxes of the edge map's components */
  geometry::Side side;
  Brightness brightness; /**< of the whole image */
};

/** The points in which the two ways to accept a horizontal border differ. */
struct HorizontalRules {
  int bottom_quorum;          /**< votes needed at the bottom: the width over this (at the top: over 4) */
  bool level;                 /**< report the level line through the peak's distance */
  bool differs_in_brightness; /**< the strongest line needs a brightness beyond it other than the image's */
  bool eager_for_runner_up;   /**< more reasons to prefer the runner-up */
  bool judges_clutter;        /**< the band beyond must pass BandClutter too */
  CutRules cuts;
};

inline constexpr HorizontalRules kTiltedBorders{4, false, true, false, true, kTiltedCuts};
inline constexpr HorizontalRules kLevelBorders{5, true, false, true, false, kLevelCuts};

/** Fewer edge points than this make no border. */
inline constexpr int kLeastPoints = 50;

/** How a border was found. */
enum class Acceptance : int {
  kNone = 0,
  kClear = 1, /**< one clear horizontal line */
  kChosen = 2 /**< one of two horizontal candidates, or a vertical line */
};

/** How much of a line was settled when a search ended, accepted or not. */
enum class Settled { kNothing, kNormal, kLine };

/** The answer of a search. */
struct Border {
  Acceptance acceptance = Acceptance::kNone;
  Settled settled = Settled::kNothing;
  geometry::Line line{}; /**< every value rounded to single precision; as far as it is settled */
  double votes = 0;      /**< for that line */
  bool complete = true;  /**< false: a test had no memory, and was taken to fail */
};

/** A search for one border. Near-horizontal borders lie within 15 degrees, near-vertical ones within 20. */
class BorderSearch {
 public:
  /**
   * @param direction that of the points; one that makes no border finds nothing to object to, and settles nothing.
   * @param rules     for horizontal borders.
   * @param area      where the points lie, if that is known.
   */
  BorderSearch(const BorderScene& scene, Direction direction, const AngleTables& tables, const HorizontalRules& rules,
               std::optional<geometry::Rect> area = std::nullopt);

  bool ready() const { return votes_.ready(); }
  void vote(std::span<const EdgePoint> centred_points) { votes_.vote(centred_points); }
  bool vote(PointMap&& points) { return votes_.vote(std::move(points)); }
  Border accept();

 private:
  Border accept_horizontal();
  Border accept_vertical();
  bool background_beyond(int L) const;
  bool strongest_passes(int L) const;
  bool prefers_runner_up(const Peak& strongest, const Peak& runner_up, int L1, int L2, Border& border) const;

  const BorderScene& scene_;
  Direction direction_;
  const HorizontalRules& rules_;
  HoughAccumulator votes_;
};

/** Searches among the edge points of one band. */
Border find_border(const BorderScene& scene, const EdgeMaps& maps, const geometry::Rect& band, Direction direction,
                   const AngleTables& tables);

}  // namespace vantrel::lines

#endif
