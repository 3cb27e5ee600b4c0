// A quadrilateral laid onto the borders of a scan.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <vector>

#include "anywhere/drawn_copy.h"
#include "anywhere/refine.h"
#include "anywhere/slanted_card.h"

namespace {

using namespace vantrel::anywhere;
using support::DrawnCard;
using support::SlantedCard;
using support::worst_corner;

constexpr double kReach = 6.0;

/** A quadrilateral beside the card's, as a reduced copy might yield it. */
Quad beside(const Quad& quad) {
  return {
      {quad[0] + Point{3.5, -2.5}, quad[1] + Point{-3.0, -4.0}, quad[2] + Point{2.5, 3.0}, quad[3] + Point{-4.0, 1.5}}};
}

Refined refine_near(const SlantedCard& card) { return refine(DrawnCard(card).scan(), beside(card.quad()), kReach); }

void expect_found(const SlantedCard& card, double tolerance) {
  const Refined refined = refine_near(card);
  EXPECT_LT(worst_corner(refined.quad, card.quad()), tolerance);
  for (const double share : refined.shares) EXPECT_GE(share, 0.8);
}

TEST(Refine, LaysAQuadrilateralOnACleanCard) {
  for (const double slope : {0.0, 0.003, 0.1, -0.4}) {
    SlantedCard card;
    card.slope = slope;
    card.half_width = slope < -0.3 ? 180 : 230;
    expect_found(card, 0.05);
  }
}

TEST(Refine, LeavesSidesAloneThatLieMostlyBesideTheScan) {
  // The left side leaves the scan a tenth of the way up, of the lower one there are the last few pixels.
  const Quad quad{{Point{-60, 100}, Point{500, 100}, Point{12, 380}, Point{5, 380}}};
  const Refined beside_left = refine(DrawnCard(SlantedCard{}).scan(), quad, kReach);
  EXPECT_EQ(beside_left.shares[3], 0.0);
  EXPECT_EQ(beside_left.contrasts[3], 0.0);
  const Quad cut{{Point{100, 100}, Point{500, 100}, Point{12, 380}, Point{-100, 375}}};
  const Refined beside_below = refine(DrawnCard(SlantedCard{}).scan(), cut, kReach);
  EXPECT_EQ(beside_below.shares[2], 0.0);
  EXPECT_EQ(beside_below.contrasts[2], 0.0);
}

TEST(Refine, IsNotFooledByNoise) {
  SlantedCard card;
  card.noise = 12;
  expect_found(card, 0.15);
}

TEST(Refine, FindsACardThatDiffersInHueAlone) {
  SlantedCard card;
  card.card = {150, 150, 150};
  card.ground = {180, 140, 140};
  card.noise = 3;
  expect_found(card, 0.1);
}

TEST(Refine, PrefersTheBorderToAFramePrintedWithinIt) {
  SlantedCard card;
  card.frame_inset = 4;
  card.noise = 3;
  expect_found(card, 0.15);
}

TEST(Refine, PrefersAFaintBorderAllAlongToBlackWriting) {
  SlantedCard card;
  card.card = {240, 240, 240};
  card.ground = {230, 230, 230};
  card.writing = true;
  card.noise = 2;
  expect_found(card, 0.3);
}

TEST(Refine, TakesTheInnerFlankOfAShadowForTheEdge) {
  SlantedCard card;
  card.card = {246, 246, 246};
  card.ground = {248, 248, 248};
  card.shadow = 40;
  card.shadow_width = 4;
  card.noise = 2;
  expect_found(card, 0.15);
  card.shadow_width = 1.5;
  expect_found(card, 0.8);
}

TEST(Refine, PrefersTheEdgeToTheFarFlankOfAWideShadow) {
  SlantedCard card;
  card.shadow = 20;
  card.shadow_width = 7;
  card.noise = 2;
  expect_found(card, 0.15);
}

TEST(Refine, TakesTheOuterFlankOfARimAllAround) {
  SlantedCard card;
  card.ground = {200, 200, 200};
  card.frame_inset = 0.01;
  card.noise = 2;
  expect_found(card, 0.15);
}

/** A level at a signed distance from a card's edge, as a scanner's point spread blurs it; the shadow fades outward. */
double blurred_level(double outside, bool shadowed) {
  double sum = 0.0;
  double weights = 0.0;
  for (int i = -15; i <= 15; ++i) {
    const double weight = 16 - std::abs(i);
    const double at = outside + i / 8.0;
    const double shadow = shadowed ? 0.35 * std::max(0.0, 1.0 - at / 3.0) : 0.0;
    sum += weight * (at < 0.0 ? 240.0 : 200.0 * (1.0 - shadow));
    weights += weight;
  }
  return sum / weights;
}

TEST(Refine, IsNotDrawnInwardByAShadowOnTwoSides) {
  constexpr int kWidth = 600, kHeight = 440;
  const Quad truth{{Point{100.3, 100.6}, Point{500.4, 100.6}, Point{500.4, 340.2}, Point{100.3, 340.2}}};
  std::vector<unsigned char> gray;
  for (int y = 0; y < kHeight; ++y) {
    for (int x = 0; x < kWidth; ++x) {
      const double right = x + 0.5 - 500.4, left = 100.3 - (x + 0.5);
      const double below = y + 0.5 - 340.2, above = 100.6 - (y + 0.5);
      const bool shadowed = std::max(right, below) > std::max(left, above);
      gray.push_back(static_cast<unsigned char>(blurred_level(std::max({right, left, below, above}), shadowed) + 0.5));
    }
  }
  const Refined refined = refine({{gray.data(), kHeight, kWidth, kWidth}, Layout::kGray}, beside(truth), kReach);
  EXPECT_LT(worst_corner(refined.quad, truth), 0.2);
}

TEST(Refine, FindsASideThatIsAllButOnTheFrame) {
  SlantedCard card;
  card.slope = 0.008;
  card.centre_y = 144.2;  // the upper side is 2.4 to 6 pixels from the frame
  Quad start = card.quad();
  for (Point& corner : start.corners) corner = corner + Point{1.5, 1.5};
  const Refined refined = refine(DrawnCard(card).scan(), start, kReach);
  EXPECT_LT(worst_corner(refined.quad, card.quad()), 0.1);
  EXPECT_GE(refined.shares[0], 0.8);
}

TEST(Refine, FollowsABowedSideToItsEnds) {
  constexpr int kWidth = 600, kHeight = 440;
  const Quad truth{{Point{100, 100}, Point{500, 100}, Point{500, 340}, Point{100, 340}}};
  std::vector<unsigned char> gray(std::size_t{kWidth} * kHeight, 60);
  for (int y = 0; y < 340; ++y) {
    for (int x = 100; x < 500; ++x) {
      const double t = (x + 0.5 - 100) / 400;
      const double top = 100 - 3.0 * 4 * t * (1 - t);  // bows out by three pixels
      const double part = std::clamp(y + 1 - top, 0.0, 1.0);
      gray[static_cast<std::size_t>(y * kWidth + x)] = static_cast<unsigned char>(60 + 150 * part + 0.5);
    }
  }
  const Refined refined = refine({{gray.data(), kHeight, kWidth, kWidth}, Layout::kGray}, beside(truth), kReach);
  EXPECT_LT(worst_corner(refined.quad, truth), 0.3);
  for (const double share : refined.shares) EXPECT_GE(share, 0.8);
}

TEST(Refine, TellsWhatTheSidesDifferBy) {
  SlantedCard card;
  for (const double contrast : refine_near(card).contrasts) EXPECT_NEAR(contrast, 175.0, 1.0);
}

TEST(Refine, SeesNoSidesWhereThereIsNothing) {
  SlantedCard card;
  card.card = card.ground;
  card.noise = 4;
  for (const double share : refine_near(card).shares) EXPECT_LT(share, 0.5);
}

TEST(Refine, LeavesAUniformScanAlone) {
  SlantedCard card;
  card.card = card.ground;
  const Refined refined = refine_near(card);
  EXPECT_EQ(worst_corner(refined.quad, beside(card.quad())), 0.0);
  EXPECT_EQ(refined.shares, (std::array<double, 4>{}));
}

TEST(Refine, LeavesASideOnTheFrame) {
  SlantedCard card;
  card.slope = 0.0;
  card.centre_y = 100;  // the upper 40 pixels are not on the scan
  Quad start = beside(card.quad());
  start.corners[0].y = 0.0;
  start.corners[1].y = 0.0;
  const Refined refined = refine(DrawnCard(card).scan(), start, kReach);
  EXPECT_EQ(refined.shares[0], 0.0);
  EXPECT_EQ(refined.contrasts[0], 0.0);
  EXPECT_GE(refined.shares[1], 0.8);
  EXPECT_NEAR(refined.quad[0].x, 90.3, 0.05);
  EXPECT_NEAR(refined.quad[0].y, 0.0, 1e-9);
  EXPECT_NEAR(refined.quad[1].x, 550.3, 0.05);
  EXPECT_NEAR(refined.quad[1].y, 0.0, 1e-9);
}

TEST(Refine, ReadsEveryLayout) {
  SlantedCard card;
  const DrawnCard drawn(card);
  const std::size_t count = drawn.bytes().size() / 3;
  std::vector<unsigned char> gray(count), bgra(count * 4);
  const std::ptrdiff_t bit_stride = (card.width + 7) / 8;
  std::vector<unsigned char> bits(static_cast<std::size_t>(bit_stride * card.height));
  for (std::size_t i = 0; i < count; ++i) {
    gray[i] = drawn.bytes()[3 * i];
    for (std::size_t c = 0; c < 3; ++c) bgra[4 * i + c] = drawn.bytes()[3 * i + 2 - c];
    const std::size_t row = i / static_cast<std::size_t>(card.width);
    const std::size_t col = i % static_cast<std::size_t>(card.width);
    if (gray[i] >= 148)
      bits[row * static_cast<std::size_t>(bit_stride) + col / 8] |= static_cast<unsigned char>(128U >> (col % 8));
  }
  const Quad start = beside(card.quad());
  const Refined rgb = refine(drawn.scan(), start, kReach);
  const int w = card.width;
  const Refined by_bgra = refine({{bgra.data(), card.height, w, 4 * w}, Layout::kBgra}, start, kReach);
  EXPECT_EQ(worst_corner(by_bgra.quad, rgb.quad), 0.0);
  const Refined by_gray = refine({{gray.data(), card.height, w, w}, Layout::kGray}, start, kReach);
  EXPECT_LT(worst_corner(by_gray.quad, card.quad()), 0.05);
  const Refined by_bits = refine({{bits.data(), card.height, w, bit_stride}, Layout::kBilevel}, start, kReach);
  EXPECT_LT(worst_corner(by_bits.quad, card.quad()), 0.15);
}

TEST(Refine, AnswersAnyQuadrilateral) {
  const DrawnCard drawn{SlantedCard{}};
  for (const double far : {0.0, 1.0, 500.0, 32767.0, 9e5, 1e12, 1e300}) {
    for (const double reach : {-1.0, 0.0, 7.0, 85.0, 1e9}) {
      const std::array<Quad, 4> quads = {Quad{{Point{0, 0}, {far, 0}, {far, far}, {0, far}}},
                                         Quad{{Point{far, far}, {far, far}, {far, far}, {far, far}}},
                                         Quad{{Point{-far, -far}, {far, 0}, {2 * far, 1}, {0, -far}}},
                                         Quad{{Point{far, 100}, {0, 101}, {far, 102}, {0, -far}}}};
      for (const Quad& quad : quads) {
        const Refined refined = refine(drawn.scan(), quad, reach);
        for (std::size_t i = 0; i < 4; ++i) {
          EXPECT_TRUE(refined.shares[i] >= 0.0 && refined.shares[i] <= 1.0);
          EXPECT_TRUE(refined.quad[i].x == refined.quad[i].x && refined.quad[i].y == refined.quad[i].y);
        }
      }
    }
  }
  EXPECT_EQ(refine({{}, Layout::kGray}, {}, kReach).shares, (std::array<double, 4>{}));
}

}  // namespace
