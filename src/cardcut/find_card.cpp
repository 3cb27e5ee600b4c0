#include "cardcut/find_card.h"

#include <cstdlib>

#include "cardcut/corner.h"
#include "image/gray.h"
#include "image/work_array.h"

namespace vantrel::cardcut {
namespace {

/** The lower border as the two sides of the image show it. */
struct LowerBorder {
  Peak left = kLowestLine;
  Peak right = kLowestLine;
  bool agree = false;         // both sides found the same border
  std::optional<int> bottom;  // its row in the middle of the card
  double strength = 0.0;      // of what the row comes from
};

/** The part of the columns looked at that lie on an edge. */
double strength_of(int hits, int columns) { return static_cast<double>(hits) / columns; }

template <class Rules>
LowerBorder find_lower_border(Scene<Rules>& scene) {
  const HoughAccumulator& votes = scene.votes;
  const int cols = scene.image.cols;
  const Border left = left_lower_border(scene);
  const Border right = right_lower_border(scene);
  LowerBorder lower;
  if (left.found) lower.left = left.line;
  if (right.found) lower.right = right.line;
  if (left.found && right.found) {
    int left_row = votes.centre_row(left.line);
    int right_row = votes.centre_row(right.line);
    lower.agree = std::abs(left_row - right_row) <= kMostDisagreement;
    if (lower.agree) {
      left_row = votes.row_at(left.line, cols / 4);
      right_row = votes.row_at(right.line, 3 * cols / 4);
    }
    // Lines that disagree are averaged too: the card's border lies between them.
    lower.bottom = (left_row + right_row) / 2;
    lower.strength = strength_of(left.hits + right.hits, left.columns + right.columns);
    return lower;
  }
  const Border single = left.found ? left : right.found ? right : middle_lower_border(scene, right.hits);
  if (single.found) {
    lower.bottom = votes.centre_row(single.line);
    lower.strength = strength_of(single.hits, single.columns);
  }
  return lower;
}

/** Moves the left and the right bound to the card's corners. */
template <class Rules>
void find_corners(const Scene<Rules>& scene, const LowerBorder& lower, FlatCard& card) {
  constexpr SideEvidence kCorner = {true, 1.0};
  const int cols = scene.image.cols;
  const int bottom = card.rect.rows.first;
  if (const auto left = find_corner(scene, lower.left, Rules::left_walk(cols), Diagonal::kRising, bottom)) {
    card.rect.cols.first = *left;
    card.sides[geometry::Side::kLeft] = kCorner;
  }
  if (const auto right = find_corner(scene, lower.right, Rules::right_walk(cols), Diagonal::kFalling, bottom)) {
    card.rect.cols.end = *right + 1;
    card.sides[geometry::Side::kRight] = kCorner;
  }
}

template <class Rules>
void find_sides(Scene<Rules>& scene, FlatCard& card) {
  const LowerBorder lower = find_lower_border(scene);
  const int bottom = lower.bottom.value_or(card.rect.rows.first);
  card.rect.rows.first = Rules::kept_bottom(bottom, scene.image.rows);
  // A border that lies too high for a card's is not kept, and then another row stands in for it.
  if (lower.bottom && card.rect.rows.first == *lower.bottom) {
    card.sides[geometry::Side::kBottom] = {true, lower.strength};
  }
  if (lower.agree || !Rules::kCornersNeedAgreement) find_corners(scene, lower, card);
  if (const Border upper = upper_border(scene); upper.found) {
    card.rect.rows.end = scene.votes.centre_row(upper.line) + 1;
    card.sides[geometry::Side::kTop] = {true, strength_of(upper.hits, upper.columns)};
  }
}

template <class Rules>
FlatCard find(ConstPixels image) {
  FlatCard card = {false, Rules::default_card(image.rows, image.cols), {}};
  if (!HoughAccumulator::reaches(image.rows, image.cols)) return card;
  const Span inner = inner_rows(image);
  const Span bands[] = {common(Rules::lower_rows(image.rows), inner), common(Rules::upper_rows(image.rows), inner)};
  Scene<Rules> scene{image, HoughAccumulator(image.rows, image.cols, bands)};
  card.ready = scene.votes.ready();
  if (card.ready) find_sides(scene, card);
  return card;
}

}  // namespace

FlatCard find_card(ConstPixels gray) { return find<GrayRules>(gray); }

FlatCard find_card_by_gray_levels(ConstPixels bgr) {
  if (bgr.empty()) return find_card({nullptr, bgr.rows, bgr.cols, 0});
  image::WorkArray<unsigned char> levels(static_cast<std::size_t>(bgr.rows) * static_cast<std::size_t>(bgr.cols));
  if (!levels.ready()) return {false, default_gray_card(bgr.rows, bgr.cols), {}};
  const image::Pixels gray{levels.get(), bgr.rows, bgr.cols, bgr.cols};
  image::to_gray(bgr, gray);
  return find_card(gray);
}

FlatCard find_colour_card(ConstPixels bgr) { return find<ColourRules>(bgr); }

}  // namespace vantrel::cardcut
