/**
 * @file rules.h
 * @brief The points in which the card is looked for differently in gray and in colour, member by member.
 *
 * Both searches are one procedure; everything not named here is common to them.
 */
#ifndef VANTREL_CARDCUT_RULES_H
#define VANTREL_CARDCUT_RULES_H

#include <algorithm>
#include <optional>

#include "cardcut/difference.h"
#include "cardcut/find_card.h"
#include "geometry/hough.h"

namespace vantrel::cardcut {

/** Columns from `first`, by `step` (1 or -1), to before `end`. */
struct Walk {
  int first;
  int end;
  int step;
};

// A line is voted for, and then lies on edges, in more than one in so many columns of the image's width.
inline constexpr int kLowerShare = 4;
inline constexpr int kUpperShare = 3;

/** Lower borders of both sides are one when they lie at most so many rows apart in the middle of the image. */
inline constexpr int kMostDisagreement = 33;

/** A row of print has more pixels than this that change more across columns than across rows. */
inline constexpr int kMostChangesWithoutPrint = 7;

/** The lines that the upper border is looked for among: 86.5 to 92.5 degrees. */
inline constexpr geometry::AngleSpan kUpperAngles = {3, 15};

/** The search by gray levels. */
struct GrayRules {
  using Pixel = GrayPixel;

  static constexpr int kEdge = 10;   // a difference above this is an edge
  static constexpr int kPrint = 29;  // rows whose column changes exceed their row changes by more hold print

  static constexpr Rect default_card(int rows, int cols) { return default_gray_card(rows, cols); }

  // The lower border. Its pixels in the side thirds only need to change across rows.
  static constexpr Span lower_rows(int rows) { return {5, rows / 3}; }
  static constexpr Contrasts& kSideContrasts = gray_row_contrasts;
  static constexpr Contrasts& kContrasts = gray_contrasts;
  static constexpr Span middle_columns(int cols) { return {cols / 3, 2 * cols / 3}; }
  static constexpr int kMiddleShare = 4;              // more than 1 / 4 of the width must lie on the middle line
  static constexpr bool kMiddleAddsRightHits = true;  // those on a refused line of the right third count as well
  static constexpr int kept_bottom(int bottom, int) { return bottom; }

  // The upper border, looked for downwards.
  static constexpr Span upper_rows(int rows) { return {3 * rows / 4 + 1, 17 * rows / 20 + 1}; }

  // Every pixel votes by its own bytes.
  static constexpr int right_shift(int) { return 0; }
  static constexpr int middle_shift(int) { return 0; }
  static constexpr int upper_shift(int) { return 0; }

  // The corners: only along lines that agree; the walk inwards ends near the image's edge and where the border runs on
  // without a corner.
  static constexpr bool kCornersNeedAgreement = true;
  static constexpr Walk left_walk(int cols) { return {10, cols / 8, 1}; }
  static constexpr Walk right_walk(int cols) { return {cols - 20, 7 * cols / 8, -1}; }
  static constexpr std::optional<int> corner_row(int row, int) {
    return row <= 8 ? std::nullopt : std::optional<int>(row);
  }
  static constexpr int kCorner = 5;  // a corner measures more than this
  static constexpr bool kBorderEndsWalk = true;
};

/** The search by colour distances. */
struct ColourRules {
  using Pixel = ColourPixel;

  static constexpr int kEdge = 20;
  static constexpr int kPrint = 59;

  static constexpr Rect default_card(int rows, int cols) { return default_colour_card(rows, cols); }

  static constexpr Span lower_rows(int rows) { return {50, rows / 4}; }
  static constexpr Contrasts& kSideContrasts = colour_contrasts;
  static constexpr Contrasts& kContrasts = colour_contrasts;
  static constexpr Span middle_columns(int cols) { return {cols / 3, 2 * cols / 3 + 1}; }
  static constexpr int kMiddleShare = 5;
  static constexpr bool kMiddleAddsRightHits = false;
  // No card begins above the lowest fifth: a line up there belongs to its print.
  static constexpr int kept_bottom(int bottom, int rows) { return bottom > rows / 5 ? rows / 6 : bottom; }

  static constexpr Span upper_rows(int rows) { return {3 * rows / 4 + 1, 18 * rows / 20 + 1}; }

  // By how many bytes those examined lie behind the pixel that votes. The right band begins at two thirds of the row's
  // bytes and the upper band at an eighth, which need not be where a pixel begins; the middle band begins at byte
  // 2 * cols / 3, about a ninth of the width to the left of its columns. Which pixels vote depends on it, so it stays.
  static constexpr int right_shift(int cols) { return 2 * cols - 3 * (2 * cols / 3); }
  static constexpr int middle_shift(int cols) { return 2 * cols / 3 - 3 * (cols / 3); }
  static constexpr int upper_shift(int cols) { return 3 * cols / 8 - 3 * (cols / 8); }

  // The corners: always, along the image's lower edge when there is no line; the outermost corner wins.
  static constexpr bool kCornersNeedAgreement = false;
  static constexpr Walk left_walk(int cols) { return {10, cols / 10 + 1, 1}; }
  static constexpr Walk right_walk(int cols) { return {cols - 11, 9 * cols / 10 - 1, -1}; }
  static constexpr std::optional<int> corner_row(int row, int bottom) {
    return std::max(row <= 8 ? bottom + 10 : row, 17);
  }
  static constexpr int kCorner = 10000;
  static constexpr bool kBorderEndsWalk = false;
};

}  // namespace vantrel::cardcut

#endif
