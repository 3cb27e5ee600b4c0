// The card with what is known of its sides.
#include <gtest/gtest.h>

#include "cardcut/find_card.h"
#include "support/drawing.h"

namespace {

using namespace vantrel::cardcut;
using support::Image;
using support::soft_slab;
using vantrel::geometry::Side;

constexpr int kGround = 50;
constexpr int kCard = 200;

ConstPixels pixels_of(Image& image) { return {image.row(0), image.height(), image.width(), image.stride()}; }

void expect_side(const FlatCard& card, Side side, bool found, double strength) {
  EXPECT_EQ(card.sides[side].found, found) << static_cast<int>(side);
  EXPECT_EQ(card.sides[side].strength, strength) << static_cast<int>(side);
}

TEST(FindCard, FindsNoSideOfAUniformImage) {
  Image gray(200, 100, 8, 128);
  Image colour(300, 250, 24, 128);
  const FlatCard by_gray = find_card(pixels_of(gray));
  const FlatCard by_colour = find_colour_card(pixels_of(colour));
  EXPECT_EQ(by_gray.rect, (Rect{{0, 100}, {0, 200}}));
  EXPECT_EQ(by_colour.rect, (Rect{{50, 221}, {10, 291}}));
  for (const FlatCard& card : {by_gray, by_colour}) {
    EXPECT_TRUE(card.ready);
    for (const Side side : vantrel::geometry::kSides) expect_side(card, side, false, 0.0);
  }
}

TEST(FindCard, FindsAllSides) {
  Image image(330, 250, 8, kGround);
  soft_slab(image, 10, 301, 20, 199, kGround, kCard);
  support::fill(image, 322, 330, 22, 199, kCard);
  const FlatCard card = find_card(pixels_of(image));
  EXPECT_EQ(card.rect, (Rect{{20, 201}, {10, 301}}));
  expect_side(card, Side::kLeft, true, 1.0);
  expect_side(card, Side::kRight, true, 1.0);
  expect_side(card, Side::kTop, true, 1.0);
  // The glass beside the card and its round corners are not on the lower border.
  EXPECT_TRUE(card.sides[Side::kBottom].found);
  EXPECT_GT(card.sides[Side::kBottom].strength, 0.8);
  EXPECT_LT(card.sides[Side::kBottom].strength, 0.95);
}

TEST(FindCard, ABorderIsAsStrongAsTheColumnsItRunsThrough) {
  // 31 of the 40 columns of the left third.
  Image left(120, 150, 8, kGround);
  support::fill(left, 3, 34, 20, 60, kCard);
  expect_side(find_card(pixels_of(left)), Side::kBottom, true, 31.0 / 40.0);
  // All 40 columns of the middle third.
  Image middle(120, 150, 8, kGround);
  support::fill(middle, 40, 80, 20, 60, kCard);
  expect_side(find_card(pixels_of(middle)), Side::kBottom, true, 1.0);
  // 60 of the 91 columns from an eighth of the width to seven eighths.
  Image upper(120, 200, 8, kGround);
  support::fill(upper, 20, 80, 160, 200, kCard);
  expect_side(find_card(pixels_of(upper)), Side::kTop, true, 60.0 / 91.0);
}

TEST(FindCard, ColumnsOfAnotherLineDoNotCountForTheMiddleOne) {
  Image image(120, 150, 8, 128);
  support::ladder(image, 45, 75, 0, 80);
  support::ladder(image, 84, 114, 0, 80);
  const FlatCard card = find_card(pixels_of(image));
  EXPECT_EQ(card.rect.rows.first, 6);
  expect_side(card, Side::kBottom, true, 30.0 / 40.0);
}

TEST(FindCard, ReadsColourAsGray) {
  Image gray(330, 250, 8, kGround);
  Image colour(330, 250, 24, kGround);
  for (Image* image : {&gray, &colour}) soft_slab(*image, 10, 301, 20, 199, kGround, kCard);
  const FlatCard by_gray = find_card(pixels_of(gray));
  const FlatCard by_levels = find_card_by_gray_levels(pixels_of(colour));
  EXPECT_TRUE(by_levels.ready);
  EXPECT_EQ(by_levels.rect, by_gray.rect);
  EXPECT_TRUE(by_levels.sides[Side::kBottom].found);
}

TEST(FindColourCard, ALowerBorderThatLiesTooHighIsNotFound) {
  // A fifth of the rows is 60, a quarter 75.
  for (const int row : {56, 66}) {
    Image image(300, 300, 24, kGround);
    support::fill(image, 0, 300, row, 300, kCard);
    const FlatCard card = find_colour_card(pixels_of(image));
    EXPECT_EQ(card.rect.rows.first, row == 56 ? 54 : 50);
    EXPECT_EQ(card.sides[Side::kBottom].found, row == 56);
    EXPECT_EQ(card.sides[Side::kBottom].strength > 0.0, row == 56);
  }
}

TEST(FindColourCard, TheStandInOfALowImageIsNotFound) {
  Image image(128, 128, 24, 128);
  const FlatCard card = find_colour_card(pixels_of(image));
  EXPECT_EQ(card.rect, (Rect{{21, 99}, {10, 119}}));
  expect_side(card, Side::kBottom, false, 0.0);
}

TEST(FindCard, AnImageWithoutPixelsIsAnsweredWhateverItsOtherSide) {
  for (const auto& [rows, cols] : {std::pair{0, 25000000}, std::pair{25000000, 0}}) {
    for (const auto find : {find_card, find_card_by_gray_levels}) {
      const FlatCard card = find({nullptr, rows, cols, 0});
      EXPECT_TRUE(card.ready);
      EXPECT_EQ(card.rect, (Rect{{0, rows}, {0, cols}}));
    }
  }
}

}  // namespace
