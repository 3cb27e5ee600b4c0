#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <initializer_list>
#include <random>
#include <string>

#include "cardcut/card_cut.h"
#include "images.h"
#include "reference/cardcut_drawing.h"
#include "reference/cardcut_finders.h"

namespace {

using reference::CutDrawing;
using reference::Ink;
using reference::Outcomes;
using reference::Picture;
using testing_images::Image;

/** Draws numbers; every call consumes the generator in a fixed order, so a seed gives one image. */
struct Dice {
  std::mt19937 random;

  int between(int low, int high) { return low + static_cast<int>(random() % static_cast<unsigned>(high - low + 1)); }
  bool one_in(int n) { return between(1, n) == 1; }
  double real(double low, double high) { return low + (high - low) * between(0, 1 << 20) / (1 << 20); }
};

/** A ground and a card's ink on it, gray or coloured. */
struct Inks {
  Ink ground;
  Ink card;
  Ink print;
};

Inks some_inks(Dice& dice, bool gray) {
  const int level = dice.between(0, 255);
  const int contrast = dice.between(8, 200);
  Inks inks{};
  for (std::size_t k = 0; k < 3; ++k) {
    const int tint = gray ? 0 : dice.between(-40, 40);
    inks.ground[k] = std::clamp(level + tint, 0, 255);
    inks.card[k] = level > 127 ? std::max(level - contrast, 0) : std::min(level + contrast, 255);
    inks.print[k] = 255 - inks.card[k];
  }
  return inks;
}

/** Where the rows of a picture in which each finder looks begin and end. */
struct Bands {
  int lower_from;
  int lower_to;
  int upper_from;
  int upper_to;
};

Bands gray_bands(int height) { return {5, height / 3, 3 * height / 4 + 1, 17 * height / 20}; }
Bands colour_bands(int height) { return {50, height / 4, 3 * height / 4 + 1, 18 * height / 20}; }

/** A whole card with round corners, a little askew. */
void draw_whole_card(CutDrawing& drawing, const Bands& bands, const Inks& inks, Dice& dice) {
  const int W = drawing.width();
  const double bottom = dice.between(bands.lower_from, std::max(bands.lower_from, bands.lower_to));
  const double top = dice.between(bands.upper_from - 4, bands.upper_to + 4);
  const double left = dice.between(0, W / 7);
  const double right = W - 1 - dice.between(0, W / 7);
  drawing.card((left + right) / 2, (bottom + top) / 2, (right - left) / 2, (top - bottom) / 2, dice.between(0, 12),
               dice.real(-0.05, 0.05), inks.card);
}

/** Borders of their own in the three thirds of the width, some of them missing, with gaps near the corners. */
void draw_slabs(CutDrawing& drawing, const Bands& bands, const Inks& inks, Dice& dice) {
  const int W = drawing.width();
  const int H = drawing.height();
  const int row = dice.between(bands.lower_from, std::max(bands.lower_from, bands.lower_to - 3));
  const double slope = dice.real(-0.09, 0.09);
  const bool far_apart = dice.one_in(4);
  for (int third = 0; third < 3; ++third) {
    const int from = third * W / 3 + (third == 0 ? dice.between(0, 3) : 0);
    const int to = (third + 1) * W / 3 - (third == 2 ? dice.between(0, 3) : 0);
    const int fate = dice.between(1, 5);
    if (far_apart && third != 1) {
      drawing.slab(from, to, bands.lower_from + 2 + third * dice.between(15, 20), 0, H, inks.card);
      continue;
    }
    if (fate == 1) continue;
    const bool own = fate == 2;
    const int at = own ? dice.between(bands.lower_from, std::max(bands.lower_from, bands.lower_to - 3)) : row;
    const double rise = own ? dice.real(-0.09, 0.09) : slope;
    drawing.slab(from, to, at, rise, dice.between(3 * H / 4 - 5, H), inks.card);
  }
  if (dice.one_in(3)) drawing.fill(10, W / 8 + dice.between(0, 1), 0, H, inks.ground);
  if (dice.one_in(3)) drawing.fill(7 * W / 8 + 1, W - 19, 0, H, inks.ground);
}

/** Columns, as many as just not enough for a check, in which every pixel of a band is an edge. */
void draw_ladders(CutDrawing& drawing, const Bands& bands, Dice& dice) {
  const int W = drawing.width();
  const Ink dark{0, 0, 0};
  const Ink light{255, 255, 255};
  for (int third = 0; third < 3; ++third) {
    if (dice.one_in(3)) continue;
    const int wide = W / 4 + (dice.one_in(4) ? 1 : 0);
    const int from = third * W / 3 + dice.between(3, std::max(3, W / 3 - W / 4 - 3));
    drawing.ladder(from, from + wide, 0, bands.lower_to + 20, dark, light);
  }
  if (dice.one_in(2)) {
    const int from = dice.between(W / 8, 7 * W / 8 - W / 3);
    drawing.ladder(from, from + W / 3, bands.upper_from - 12, bands.upper_to + 12, dark, light);
  }
}

/** A line that a column offset of about a ninth of the width brings into the middle third. */
void draw_line_left_of_the_middle(CutDrawing& drawing, const Bands& bands, const Inks& inks, Dice& dice) {
  const int W = drawing.width();
  const int row = dice.between(bands.lower_from + 2, std::max(bands.lower_from + 2, bands.lower_to - 3));
  const int from = dice.between(W / 5, W / 4);
  drawing.fill(from, from + W / 4 + dice.between(2, W / 8), row, drawing.height(), inks.card);
}

/** Print: upright bars in and around the band of the upper border, and some elsewhere. */
void draw_print(CutDrawing& drawing, const Bands& bands, const Inks& inks, Dice& dice) {
  const int W = drawing.width();
  const int from = dice.between(W / 10, W / 2);
  const int y = dice.between(bands.upper_from - 6, bands.upper_to);
  // One random number a statement: compilers differ in the order of arguments.
  const int to = from + dice.between(10, W / 2);
  const int high = y + dice.between(2, 12);
  drawing.stripes(from, to, y, high, dice.between(1, 4), inks.print);
  const int low = dice.between(0, drawing.height() / 2);
  const int left = dice.between(0, W / 2);
  drawing.stripes(left, dice.between(W / 2, W), low, low + 3, 2, inks.print);
}

CutDrawing some_drawing(int width, int height, const Bands& bands, bool gray, Dice& dice) {
  Inks inks = some_inks(dice, gray);
  const int kind = dice.between(0, 9);
  const bool ladders = kind >= 8;
  if (ladders) inks.ground = Ink{128, 128, 128};
  CutDrawing drawing(width, height, inks.ground);
  if (kind < 4) draw_whole_card(drawing, bands, inks, dice);
  if (kind >= 4 && kind < 7) draw_slabs(drawing, bands, inks, dice);
  if (kind == 7) draw_line_left_of_the_middle(drawing, bands, inks, dice);
  if (ladders) draw_ladders(drawing, bands, dice);
  if (!ladders && dice.one_in(2)) draw_print(drawing, bands, inks, dice);
  if (!ladders && dice.one_in(2)) drawing.noise(dice.random, dice.between(1, 12));
  return drawing;
}

::testing::AssertionResult same(const MYRECT& library, const MYRECT& expected) {
  if (library.left == expected.left && library.top == expected.top && library.right == expected.right &&
      library.bottom == expected.bottom && library.reserved == expected.reserved) {
    return ::testing::AssertionSuccess();
  }
  return ::testing::AssertionFailure() << "(" << library.left << ", " << library.top << ", " << library.right << ", "
                                       << library.bottom << ", " << library.reserved << ") instead of ("
                                       << expected.left << ", " << expected.top << ", " << expected.right << ", "
                                       << expected.bottom << ", " << expected.reserved << ")";
}

void compare_gray(Image& image, Outcomes& seen) {
  MYRECT library{1, 2, 3, 4, 777};
  MYRECT expected{1, 2, 3, 4, 777};
  const Image before(image);
  ASSERT_EQ(CutCard(image.ptr(), library), reference::cut_card(Picture(*image.ptr()), expected, seen));
  ASSERT_TRUE(same(library, expected)) << image.width() << " x " << image.height();
  ASSERT_EQ(image.block(), Image(before).block()) << "the finder only reads";
}

void compare_colour(Image& image, Outcomes& seen) {
  MYRECT library{1, 2, 3, 4, 777};
  MYRECT expected{1, 2, 3, 4, 777};
  const Image before(image);
  ASSERT_EQ(CutCard24(image.ptr(), library), reference::cut_card24(Picture(*image.ptr()), expected, seen));
  ASSERT_TRUE(same(library, expected)) << image.width() << " x " << image.height();
  ASSERT_EQ(image.block(), Image(before).block()) << "the finder only reads";
}

void expect_reached(const Outcomes& seen, std::initializer_list<const char*> names) {
  for (const char* name : names) {
    const auto found = seen.find(name);
    EXPECT_TRUE(found != seen.end() && found->second >= 5) << "not reached often enough: " << name;
    if (found != seen.end()) ::testing::Test::RecordProperty(name, found->second);
  }
}

TEST(CardCutReference, GrayCardsOnAFlatGround) {
  Outcomes seen;
  for (unsigned seed = 0; seed < 3000; ++seed) {
    Dice dice{std::mt19937(seed)};
    const int width = dice.one_in(2) ? dice.between(88, 160) : dice.between(161, 250);
    const int height = dice.between(80, 190);
    Image image = some_drawing(width, height, gray_bands(height), true, dice).image(8);
    compare_gray(image, seen);
    ASSERT_FALSE(HasFatalFailure()) << "seed " << seed;
  }
  expect_reached(seen, {"left line only",
                        "right line only",
                        "lines agree",
                        "lines disagree",
                        "middle line only",
                        "middle line with a carried count",
                        "middle line only by the carried count",
                        "no lower border",
                        "left candidate fails its check",
                        "right candidate fails its check",
                        "middle candidate fails its check",
                        "left corner found",
                        "left corner: line too low",
                        "left corner: border reached",
                        "left corner: columns run out",
                        "right corner found",
                        "right corner: line too low",
                        "right corner: border reached",
                        "right corner: columns run out",
                        "upper border found",
                        "upper scan stopped",
                        "no upper border",
                        "upper candidate fails its check"});
}

TEST(CardCutReference, GrayFinderOnColourImages) {
  Outcomes seen;
  for (unsigned seed = 0; seed < 200; ++seed) {
    Dice dice{std::mt19937(10000 + seed)};
    const int width = dice.between(60, 170);
    const int height = dice.between(60, 150);
    Image image = some_drawing(width, height, gray_bands(height), false, dice).image(24);
    compare_gray(image, seen);
    ASSERT_FALSE(HasFatalFailure()) << "seed " << seed;
  }
  expect_reached(seen, {"lines agree", "upper border found"});
}

TEST(CardCutReference, GrayNoiseOfEverySmallSize) {
  Outcomes seen;
  std::mt19937 random(7);
  for (int width = 1; width <= 40; ++width) {
    for (int height = 1; height <= 40; ++height) {
      Image image(width, height, 8);
      randomise(image, random);
      compare_gray(image, seen);
      ASSERT_FALSE(HasFatalFailure()) << width << " x " << height;
    }
  }
}

TEST(CardCutReference, LinesThatLeaveAWideLowImage) {
  Outcomes seen;
  for (unsigned seed = 0; seed < 60; ++seed) {
    Dice dice{std::mt19937(20000 + seed)};
    const int width = dice.between(300, 900);
    const int height = dice.between(20, 60);
    Image image = some_drawing(width, height, gray_bands(height), true, dice).image(8);
    if (seed % 2 == 0) randomise(image, dice.random);
    compare_gray(image, seen);
    ASSERT_FALSE(HasFatalFailure()) << "seed " << seed;
  }
}

TEST(CardCutReference, ColourCardsOnAFlatGround) {
  Outcomes seen;
  for (unsigned seed = 0; seed < 600; ++seed) {
    Dice dice{std::mt19937(30000 + seed)};
    const int width = dice.between(128, 200);
    const int height = dice.one_in(3) ? dice.between(350, 400) : dice.between(210, 320);
    Image image = some_drawing(width, height, colour_bands(height), dice.one_in(3), dice).image(24);
    compare_colour(image, seen);
    ASSERT_FALSE(HasFatalFailure()) << "seed " << seed;
  }
  expect_reached(seen, {"left line only",
                        "right line only",
                        "lines agree",
                        "lines disagree",
                        "middle line only",
                        "no lower border",
                        "left candidate fails its check",
                        "right candidate fails its check",
                        "middle candidate fails its check",
                        "bottom clamped",
                        "bottom not clamped",
                        "left corner found",
                        "left corner found more than once",
                        "left corner not found",
                        "right corner found",
                        "right corner found more than once",
                        "right corner not found",
                        "upper border found",
                        "upper scan stopped",
                        "no upper border",
                        "upper candidate fails its check"});
}

TEST(CardCutReference, ColourNoise) {
  Outcomes seen;
  std::mt19937 random(8);
  for (int round = 0; round < 40; ++round) {
    const int width = 120 + static_cast<int>(random() % 60);
    Image image(width, 120 + static_cast<int>(random() % 60), 24);
    randomise(image, random);
    compare_colour(image, seen);
    ASSERT_FALSE(HasFatalFailure()) << "round " << round;
  }
}

TEST(CardCutReference, ColourLinesThatLeaveAWideLowImage) {
  Outcomes seen;
  std::mt19937 random(9);
  for (int round = 0; round < 10; ++round) {
    const int width = 1500 + static_cast<int>(random() % 1000);
    Image image(width, 212, 24, 0x80);
    for (int x = 0; x < width; ++x) {
      const int border = 52 + (x - width / 2) * (round % 2 == 0 ? 87 : -87) / 1000;
      for (int y = std::max(border, 0); y < image.height(); ++y) image.at(y, 3 * x + 1) = 0xF0;
    }
    for (int dot = 0; dot < 3000; ++dot) {
      const int row = static_cast<int>(random() % 212);
      image.at(row, static_cast<int>(random() % static_cast<unsigned>(3 * width))) = 0;
    }
    compare_colour(image, seen);
    ASSERT_FALSE(HasFatalFailure()) << "round " << round;
  }
}

TEST(CardCutReference, ColourDistances) {
  std::mt19937 random(10);
  for (int round = 0; round < 50000; ++round) {
    const auto bits = static_cast<unsigned>(random());
    const auto more = static_cast<unsigned>(random());
    const unsigned char c[6] = {static_cast<unsigned char>(bits),       static_cast<unsigned char>(bits >> 8),
                                static_cast<unsigned char>(bits >> 16), static_cast<unsigned char>(bits >> 24),
                                static_cast<unsigned char>(more),       static_cast<unsigned char>(more >> 8)};
    ASSERT_EQ(ColorDiff(c[0], c[1], c[2], c[3], c[4], c[5]), reference::color_diff(c[0], c[1], c[2], c[3], c[4], c[5]));
  }
}

}  // namespace
