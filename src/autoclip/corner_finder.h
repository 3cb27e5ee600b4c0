/**
 * @file corner_finder.h
 * @brief Finding the four corners of a card on a gray scan.
 */
#ifndef VANTREL_AUTOCLIP_CORNER_FINDER_H
#define VANTREL_AUTOCLIP_CORNER_FINDER_H

#include "autoclip/corners.h"
#include "components/components.h"
#include "geometry/span.h"
#include "lines/edges.h"
#include "lines/levels.h"

namespace vantrel::autoclip {

/** The longest side of a scan that is searched: that of an edge map whose components are found. */
inline constexpr int kLongestSide = components::kLongestSide;

/** Where a border is looked for, and what stands in for one that is not found. */
struct SideBand {
  geometry::Rect area;
  lines::Direction direction;
  Line frame_line;
};

/** The band along one side of an image: an eighth of the rows or a fifth of the columns. */
SideBand side_band(geometry::Side side, int rows, int cols);

/** Why a search ended as it did. */
enum class Verdict {
  kFound,       /**< four corners, judged to be a card */
  kTooSmall,    /**< four corners, but their box covers less than half of the image */
  kDegenerate,  /**< two border lines have no single intersection */
  kNoEdges,     /**< no edge pixel in the bands */
  kSideTooLong, /**< a side is longer than boxes of components can be, or negative */
  kNoMemory     /**< for the maps or the components */
};

/** One side as it was found. */
struct FoundSide {
  Line line{};
  bool found = false; /**< false: the image's frame stands in */
  double votes = 0;   /**< edge pixels that voted for the line */
};

/** What a search saw. */
struct CornerSearch {
  Verdict verdict = Verdict::kNoMemory;
  bool complete = true;     /**< false: memory was missing in the search for a side, which shows as not found */
  PerSide<FoundSide> sides; /**< unless the search ended before it */
  Corners corners{};        /**< when found or too small; y counts from the top */
  CornerBox box{};          /**< likewise */

  bool has_lines() const { return has_corners() || verdict == Verdict::kDegenerate; }
  // Never: what is found is not too small, as find_corners says.
  bool has_corners() const { return verdict == Verdict::kFound || verdict == Verdict::kTooSmall; }
};

/** Finds the corners. A search that missed memory anywhere reports kNoMemory or is not complete. */
CornerSearch find_corners(const lines::Levels& gray);

}  // namespace vantrel::autoclip

#endif
