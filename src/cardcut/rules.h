/**
 * @file rules.h
 * @brief The points in which the card is looked for differently in gray and in colour, member by member.
 *
 * Both searches are one procedure; everything not named here is common to them.
 */
#ifndef VANTREL_CARDCUT_RULES_H
#define VANTREL_CARDCUT_RULES_H

#include <algorithm>
#include <cstdint>
#include <optional>

#include "cardcut/difference.h"

namespace vantrel::cardcut {

/** Rows or columns from `first` to before `end`. */
struct Span {
  int first;
  int end;
};

/** Columns from `first`, by `step` (1 or -1), to before `end`. */
struct Walk {
  int first;
  int end;
  int step;
};

/** A rectangle before it is cut to 16 bits a member. */
struct Bounds {
  std::int64_t left;
  std::int64_t top;
  std::int64_t right;
  std::int64_t bottom;
};

/** The search by gray levels. */
struct GrayRules {
  using Pixel = GrayPixel;

  static constexpr int kEdge = 10;   // a difference above this is an edge
  static constexpr int kPrint = 29;  // rows whose column changes exceed their row changes by more hold print

  // What stays when a bound is not found: the image itself.
  static constexpr Bounds defaults(std::int64_t cols, std::int64_t rows) { return {0, rows - 1, cols - 1, 0}; }

  // The lower border. Its pixels in the side thirds only need to change across rows.
  static constexpr Span lower_rows(int rows) { return {5, rows / 3}; }
  static constexpr Contrasts& kSideContrasts = gray_row_contrasts;
  static constexpr Contrasts& kContrasts = gray_contrasts;
  static constexpr Span middle_columns(int cols) { return {cols / 3, 2 * cols / 3}; }
  static constexpr int kMiddleShare = 4;              // more than 1 / 4 of the width must lie on the middle line
  static constexpr bool kMiddleAddsRightHits = true;  // those on a refused line of the right third count as well
  static constexpr int kept_bottom(int bottom, int) { return bottom; }

  // The upper border's first row, from which it is looked for downwards.
  static constexpr int upper_row(int rows) { return 17 * rows / 20; }

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

  // A narrow margin is given away rather than kept.
  static constexpr Bounds defaults(std::int64_t cols, std::int64_t rows) { return {10, rows - 30, cols - 10, 50}; }

  static constexpr Span lower_rows(int rows) { return {50, rows / 4}; }
  static constexpr Contrasts& kSideContrasts = colour_contrasts;
  static constexpr Contrasts& kContrasts = colour_contrasts;
  static constexpr Span middle_columns(int cols) { return {cols / 3, 2 * cols / 3 + 1}; }
  static constexpr int kMiddleShare = 5;
  static constexpr bool kMiddleAddsRightHits = false;
  // No card begins above the lowest fifth: a line up there belongs to its print.
  static constexpr int kept_bottom(int bottom, int rows) { return bottom > rows / 5 ? rows / 6 : bottom; }

  static constexpr int upper_row(int rows) { return 18 * rows / 20; }

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
