#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <initializer_list>
#include <string>

#include "cardcut/exports.h"
#include "reference/cardcut_finders.h"
#include "support/drawing.h"
#include "support/image.h"
#include "support/random.h"
#include "support/tally.h"

namespace {

using support::Image;
using support::Ink;
using support::Picture;
using support::Random;
namespace tally = support::tally;

/** A ground and a card's ink on it, gray or coloured. */
struct Inks {
  Ink ground;
  Ink card;
  Ink print;
};

Inks some_inks(Random& random, bool gray) {
  const int level = random.pick(0, 255);
  const int contrast = random.pick(8, 200);
  Inks inks{};
  for (std::size_t k = 0; k < 3; ++k) {
    const int tint = gray ? 0 : random.pick(-40, 40);
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
void draw_whole_card(Image& drawing, const Bands& bands, const Inks& inks, Random& random) {
  const int W = drawing.width();
  const double bottom = random.pick(bands.lower_from, std::max(bands.lower_from, bands.lower_to));
  const double top = random.pick(bands.upper_from - 4, bands.upper_to + 4);
  const double left = random.pick(0, W / 7);
  const double right = W - 1 - random.pick(0, W / 7);
  const double radius = random.pick(0, 12);
  const double angle = random.real(-0.05, 0.05);
  round_card(drawing, {(left + right) / 2, (bottom + top) / 2, (right - left) / 2, (top - bottom) / 2, radius, angle},
             inks.card);
}

/** Borders of their own in the three thirds of the width, some of them missing, with gaps near the corners. */
void draw_slabs(Image& drawing, const Bands& bands, const Inks& inks, Random& random) {
  const int W = drawing.width();
  const int H = drawing.height();
  const int row = random.pick(bands.lower_from, std::max(bands.lower_from, bands.lower_to - 3));
  const double slope = random.real(-0.09, 0.09);
  const bool far_apart = random.one_in(4);
  for (int third = 0; third < 3; ++third) {
    const int from = third * W / 3 + (third == 0 ? random.pick(0, 3) : 0);
    const int to = (third + 1) * W / 3 - (third == 2 ? random.pick(0, 3) : 0);
    const int fate = random.pick(1, 5);
    if (far_apart && third != 1) {
      slab(drawing, from, to, bands.lower_from + 2 + third * random.pick(15, 20), 0, H, inks.card);
      continue;
    }
    if (fate == 1) continue;
    const bool own = fate == 2;
    const int at = own ? random.pick(bands.lower_from, std::max(bands.lower_from, bands.lower_to - 3)) : row;
    const double rise = own ? random.real(-0.09, 0.09) : slope;
    slab(drawing, from, to, at, rise, random.pick(3 * H / 4 - 5, H), inks.card);
  }
  if (random.one_in(3)) fill(drawing, 10, W / 8 + random.pick(0, 1), 0, H, inks.ground);
  if (random.one_in(3)) fill(drawing, 7 * W / 8 + 1, W - 19, 0, H, inks.ground);
}

/** Columns, as many as just not enough for a check, in which every pixel of a band is an edge. */
void draw_ladders(Image& drawing, const Bands& bands, Random& random) {
  const int W = drawing.width();
  for (int third = 0; third < 3; ++third) {
    if (random.one_in(3)) continue;
    const int wide = W / 4 + (random.one_in(4) ? 1 : 0);
    const int from = third * W / 3 + random.pick(3, std::max(3, W / 3 - W / 4 - 3));
    ladder(drawing, from, from + wide, 0, bands.lower_to + 20);
  }
  if (random.one_in(2)) {
    const int from = random.pick(W / 8, 7 * W / 8 - W / 3);
    ladder(drawing, from, from + W / 3, bands.upper_from - 12, bands.upper_to + 12);
  }
}

/** A line that a column offset of about a ninth of the width brings into the middle third. */
void draw_line_left_of_the_middle(Image& drawing, const Bands& bands, const Inks& inks, Random& random) {
  const int W = drawing.width();
  const int row = random.pick(bands.lower_from + 2, std::max(bands.lower_from + 2, bands.lower_to - 3));
  const int from = random.pick(W / 5, W / 4);
  fill(drawing, from, from + W / 4 + random.pick(2, W / 8), row, drawing.height(), inks.card);
}

/** Print: upright bars in and around the band of the upper border, and some elsewhere. */
void draw_print(Image& drawing, const Bands& bands, const Inks& inks, Random& random) {
  const int W = drawing.width();
  const int from = random.pick(W / 10, W / 2);
  const int y = random.pick(bands.upper_from - 6, bands.upper_to);
  // One random number a statement: compilers differ in the order of arguments.
  const int to = from + random.pick(10, W / 2);
  const int high = y + random.pick(2, 12);
  stripes(drawing, from, to, y, high, random.pick(1, 4), inks.print);
  const int low = random.pick(0, drawing.height() / 2);
  const int left = random.pick(0, W / 2);
  stripes(drawing, left, random.pick(W / 2, W), low, low + 3, 2, inks.print);
}

Image some_drawing(int width, int height, int bits, const Bands& bands, bool gray, Random& random) {
  Inks inks = some_inks(random, gray);
  const int kind = random.pick(0, 9);
  const bool ladders = kind >= 8;
  if (ladders) inks.ground = 128;
  Image drawing(width, height, bits, 0xA5);  // padding that nothing should read
  fill(drawing, 0, width, 0, height, inks.ground);
  if (kind < 4) draw_whole_card(drawing, bands, inks, random);
  if (kind >= 4 && kind < 7) draw_slabs(drawing, bands, inks, random);
  if (kind == 7) draw_line_left_of_the_middle(drawing, bands, inks, random);
  if (ladders) draw_ladders(drawing, bands, random);
  if (!ladders && random.one_in(2)) draw_print(drawing, bands, inks, random);
  if (!ladders && random.one_in(2)) noise(drawing, random, random.pick(1, 12));
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

void compare_gray(Image& image) {
  MYRECT library{1, 2, 3, 4, 777};
  MYRECT expected{1, 2, 3, 4, 777};
  const Image before(image);
  ASSERT_EQ(CutCard(image.ptr(), library), reference::cut_card(Picture(image), expected));
  ASSERT_TRUE(same(library, expected)) << image.width() << " x " << image.height();
  ASSERT_EQ(image.block(), before.block()) << "the finder only reads";
}

void compare_colour(Image& image) {
  MYRECT library{1, 2, 3, 4, 777};
  MYRECT expected{1, 2, 3, 4, 777};
  const Image before(image);
  ASSERT_EQ(CutCard24(image.ptr(), library), reference::cut_card24(Picture(image), expected));
  ASSERT_TRUE(same(library, expected)) << image.width() << " x " << image.height();
  ASSERT_EQ(image.block(), before.block()) << "the finder only reads";
}

TEST(CardCutReference, GrayCardsOnAFlatGround) {
  tally::reset();
  for (unsigned seed = 0; seed < 3000; ++seed) {
    Random random(seed);
    const int width = random.one_in(2) ? random.pick(88, 160) : random.pick(161, 250);
    const int height = random.pick(80, 190);
    Image image = some_drawing(width, height, 8, gray_bands(height), true, random);
    compare_gray(image);
    ASSERT_FALSE(HasFatalFailure()) << "seed " << seed;
  }
  tally::expect({"left line only",
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
                 "upper candidate fails its check"},
                5);
}

TEST(CardCutReference, GrayFinderOnColourImages) {
  tally::reset();
  for (unsigned seed = 0; seed < 200; ++seed) {
    Random random(10000 + seed);
    const int width = random.pick(60, 170);
    const int height = random.pick(60, 150);
    Image image = some_drawing(width, height, 24, gray_bands(height), false, random);
    compare_gray(image);
    ASSERT_FALSE(HasFatalFailure()) << "seed " << seed;
  }
  tally::expect({"lines agree", "upper border found"}, 5);
}

TEST(CardCutReference, GrayNoiseOfEverySmallSize) {
  tally::reset();
  Random random(7);
  for (int width = 1; width <= 40; ++width) {
    for (int height = 1; height <= 40; ++height) {
      Image image(width, height, 8);
      randomise(image, random);
      compare_gray(image);
      ASSERT_FALSE(HasFatalFailure()) << width << " x " << height;
    }
  }
}

TEST(CardCutReference, LinesThatLeaveAWideLowImage) {
  tally::reset();
  for (unsigned seed = 0; seed < 60; ++seed) {
    Random random(20000 + seed);
    const int width = random.pick(300, 900);
    const int height = random.pick(20, 60);
    Image image = some_drawing(width, height, 8, gray_bands(height), true, random);
    if (seed % 2 == 0) randomise(image, random);
    compare_gray(image);
    ASSERT_FALSE(HasFatalFailure()) << "seed " << seed;
  }
}

TEST(CardCutReference, ColourCardsOnAFlatGround) {
  tally::reset();
  for (unsigned seed = 0; seed < 600; ++seed) {
    Random random(30000 + seed);
    const int width = random.pick(128, 200);
    const int height = random.one_in(3) ? random.pick(350, 400) : random.pick(210, 320);
    Image image = some_drawing(width, height, 24, colour_bands(height), random.one_in(3), random);
    compare_colour(image);
    ASSERT_FALSE(HasFatalFailure()) << "seed " << seed;
  }
  tally::expect({"left line only",
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
                 "upper candidate fails its check"},
                5);
}

TEST(CardCutReference, ColourNoise) {
  tally::reset();
  Random random(8);
  for (int round = 0; round < 40; ++round) {
    const int width = 120 + static_cast<int>(random.bits() % 60);
    Image image(width, 120 + static_cast<int>(random.bits() % 60), 24);
    randomise(image, random);
    compare_colour(image);
    ASSERT_FALSE(HasFatalFailure()) << "round " << round;
  }
}

TEST(CardCutReference, ColourLinesThatLeaveAWideLowImage) {
  tally::reset();
  Random random(9);
  for (int round = 0; round < 10; ++round) {
    const int width = 1500 + static_cast<int>(random.bits() % 1000);
    Image image(width, 212, 24, 0x80);
    for (int x = 0; x < width; ++x) {
      const int border = 52 + (x - width / 2) * (round % 2 == 0 ? 87 : -87) / 1000;
      for (int y = std::max(border, 0); y < image.height(); ++y) image.at(y, 3 * x + 1) = 0xF0;
    }
    for (int dot = 0; dot < 3000; ++dot) {
      const int row = static_cast<int>(random.bits() % 212);
      image.at(row, static_cast<int>(random.bits() % static_cast<unsigned>(3 * width))) = 0;
    }
    compare_colour(image);
    ASSERT_FALSE(HasFatalFailure()) << "round " << round;
  }
}

TEST(CardCutReference, ColourDistances) {
  Random random(10);
  for (int round = 0; round < 50000; ++round) {
    const auto bits = static_cast<unsigned>(random.bits());
    const auto more = static_cast<unsigned>(random.bits());
    const unsigned char c[6] = {static_cast<unsigned char>(bits),       static_cast<unsigned char>(bits >> 8),
                                static_cast<unsigned char>(bits >> 16), static_cast<unsigned char>(bits >> 24),
                                static_cast<unsigned char>(more),       static_cast<unsigned char>(more >> 8)};
    ASSERT_EQ(ColorDiff(c[0], c[1], c[2], c[3], c[4], c[5]), reference::color_diff(c[0], c[1], c[2], c[3], c[4], c[5]));
  }
}

}  // namespace
