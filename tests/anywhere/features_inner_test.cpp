// What is measured along a side, and of a candidate.
#include <gtest/gtest.h>

#include <cmath>

#include "anywhere/analysed_card.h"
#include "anywhere/drawn_copy.h"
#include "anywhere/probe.h"

namespace {

using namespace vantrel::anywhere;
using support::AnalysedCard;
using support::level_card;
using support::SlantedCard;
using support::upright;

/** The level card, analysed once for all tests. */
const AnalysedCard& level() {
  static const AnalysedCard kLevelCard(level_card());
  return kLevelCard;
}

SideProbe probe(const AnalysedCard& card, Point a, Point b) { return probe_side(card.analysis().scene(), a, b); }

TEST(Probe, SeesTheBorderOfACard) {
  const SideProbe top = probe(level(), {90, 100}, {550, 100});
  EXPECT_EQ(top.size, 460.0);
  EXPECT_EQ(top.inside_frame, 1.0);
  EXPECT_EQ(top.coverage, 1.0);
  EXPECT_EQ(top.end_coverage, 1.0);
  EXPECT_EQ(top.overrun, 0.0);
  EXPECT_EQ(top.strength, 65.625);  // of a step of 175 levels, smoothed by [1 2 1] / 4, over two pixels
  EXPECT_EQ(top.contrast, 175.0);
  EXPECT_EQ(top.agreement, 1.0);
  EXPECT_EQ(top.drift, 0.0);
  EXPECT_EQ(top.outside_barrier, 0.0);
  EXPECT_EQ(top.inside_barrier, 175.0);
  EXPECT_EQ(top.inside.planes[kLight], 235.0);
  EXPECT_EQ(top.outside.planes[kLight], 60.0);
  EXPECT_NEAR(top.inside_spread, 0.0, 1e-3);
  EXPECT_NEAR(top.outside_spread, 0.0, 1e-3);
}

TEST(Probe, HasTheOutsideToTheLeftOfItsWay) {
  const SideProbe backwards = probe(level(), {550, 100}, {90, 100});
  EXPECT_EQ(backwards.inside.planes[kLight], 60.0);
  EXPECT_EQ(backwards.outside.planes[kLight], 235.0);
}

TEST(Probe, OfAStretchThatEndsHalfwaySeesHalf) {
  // Half of it beyond the card's right corner.
  const SideProbe half = probe(level(), {470, 100}, {630, 100});
  EXPECT_NEAR(half.coverage, 0.5, 0.02);
  EXPECT_EQ(half.end_coverage, 0.0);
  EXPECT_NEAR(half.overrun, 0.5, 0.01);
}

TEST(Probe, OfAStretchOfALongLineSeesItRunOn) {
  const SideProbe part = probe(level(), {200, 100}, {400, 100});
  EXPECT_EQ(part.coverage, 1.0);
  EXPECT_EQ(part.overrun, 1.0);
}

TEST(Probe, SeesParallelEdgesBeside) {
  const SideProbe within = probe(level(), {90, 105}, {550, 105});
  EXPECT_EQ(within.coverage, 0.0);
  EXPECT_EQ(within.outside_edges, 1.0);
  EXPECT_EQ(within.inside_edges, 0.0);
  const SideProbe without = probe(level(), {90, 95}, {550, 95});
  EXPECT_EQ(without.outside_edges, 0.0);
  EXPECT_EQ(without.inside_edges, 1.0);
}

TEST(Probe, SeesAShadowAsADrift) {
  SlantedCard card = level_card();
  card.shadow = 40;
  card.shadow_width = 5;
  EXPECT_EQ(probe(AnalysedCard(card), {90, 100}, {550, 100}).drift, 40.0);
}

TEST(Probe, MeasuresColoursThatAreEquallyLight) {
  SlantedCard card = level_card();
  card.card = {150, 150, 150};
  card.ground = {180, 140, 140};  // 20 more red than green, 10 less blue and yellow
  const SideProbe top = probe(AnalysedCard(card), {90, 100}, {550, 100});
  EXPECT_EQ(top.coverage, 1.0);
  EXPECT_NEAR(top.contrast, std::sqrt(20.0 * 20 + 10 * 10), 1e-9);
}

TEST(Probe, KeepsCountOfPlacesOffTheScan) {
  EXPECT_NEAR(probe(level(), {-100, 240}, {100, 240}).inside_frame, 0.5, 0.05);
  EXPECT_EQ(probe(level(), {0, -9}, {640, -9}).inside_frame, 0.0);
}

TEST(Features, OfACardThatLiesLevel) {
  const Features f = level().features(upright(90, 100, 550, 380));
  for (const Feature one : {kMeanCoverage, kLeastCoverage, kSecondCoverage, kMeanEnds, kLeastEnds, kMeanAgreement,
                            kLeastAgreement, kRingOutside, kSamePolarity, kInsideBarrier, kBarrierStep, kAreaBarrier})
    EXPECT_FLOAT_EQ(f[one], 1.0F) << one;
  for (const Feature none :
       {kMeanOverrun, kMostOverrun, kOutsideBarrier, kLowArea, kDrift, kRingInside, kSidesUnlike, kInsidesUnlike, kSkew,
        kTaper, kFrameSides, kNearFrame, kOutsideCorners, kEdgesOutside, kEdgesInside, kEdgeDensity, kLevelness})
    EXPECT_EQ(f[none], 0.0F) << none;
  for (const Feature contrast : {kMeanContrast, kLeastContrast, kSecondContrast, kTopContrast})
    EXPECT_FLOAT_EQ(f[contrast], 175.0F) << contrast;
  EXPECT_NEAR(f[kOutsideSpread], 0.0, 1e-5);
  EXPECT_NEAR(f[kInsideSpread], 0.0, 1e-5);
  EXPECT_FLOAT_EQ(f[kThreshold], 53 / 128.0F);
  EXPECT_FLOAT_EQ(f[kMeanStrength], 65.625F * 128 / 53);
  EXPECT_FLOAT_EQ(f[kLeastStrength], 65.625F * 128 / 53);
  EXPECT_FLOAT_EQ(f[kShareOfPicture], 460 * 280 / (640 * 480.0F));
  EXPECT_FLOAT_EQ(f[kShortSide], 280.0F);
  EXPECT_FLOAT_EQ(f[kElongation], 460 / 280.0F);
}

TEST(Features, OfAQuadrilateralThatIsHalfTheCard) {
  const Features f = level().features(upright(90, 100, 320, 380));
  EXPECT_FLOAT_EQ(f[kMeanCoverage], 0.75F);
  EXPECT_EQ(f[kLeastCoverage], 0.0F);
  EXPECT_EQ(f[kSecondCoverage], 1.0F);
  EXPECT_EQ(f[kLeastContrast], 0.0F);
  EXPECT_FLOAT_EQ(f[kMeanContrast], 175 * 0.75F);
  EXPECT_FLOAT_EQ(f[kMostOverrun], 0.5F);  // the upper and the lower side run on to the right
  EXPECT_FLOAT_EQ(f[kMeanOverrun], 0.25F);
  EXPECT_GT(f[kEdgesOutside], 0.3F);
}

TEST(Features, OfSidesOnTheFrameAreNotSeen) {
  SlantedCard card = level_card();
  card.centre_x = 200;  // the left 30 columns are not on the scan
  const AnalysedCard analysed(card);
  const Quad quad = upright(0, 100, 430, 380);
  const Scene scene = analysed.analysis().scene();
  EXPECT_EQ(seen_sides(scene, quad), (SeenSides{true, true, true, false}));
  EXPECT_EQ(seen_sides(scene, upright(2.4, 2.6, 637.6, 478.4)), (SeenSides{true, false, false, false}));
  const Features f = analysed.features(quad);
  EXPECT_EQ(f[kFrameSides], 1.0F);
  EXPECT_EQ(f[kNearFrame], 0.0F);
  EXPECT_FLOAT_EQ(f[kLeastContrast], 175.0F);
}

TEST(Features, CountSidesCloseToTheFrame) {
  const Features f = level().features(upright(8, 10, 632, 472));
  EXPECT_EQ(f[kNearFrame], 3.0F);
  EXPECT_EQ(f[kFrameSides], 0.0F);
}

TEST(Features, TellHowFarCornersLieOutside) {
  EXPECT_FLOAT_EQ(level().features(upright(-64, 100, 550, 380))[kOutsideCorners], 0.1F);
  EXPECT_FLOAT_EQ(level().features(upright(90, 100, 550, 504))[kOutsideCorners], 0.05F);
}

TEST(Features, OfASlantedCardAreItsShape) {
  SlantedCard card;
  card.slope = 0.75;
  card.half_width = 200;
  card.half_height = 100;
  const Features f = AnalysedCard(card).features(card.quad());
  EXPECT_NEAR(f[kElongation], 2.0, 1e-5);
  EXPECT_NEAR(f[kShortSide], 200.0, 1e-3);
  EXPECT_NEAR(f[kLevelness], 0.6, 1e-5);
  EXPECT_NEAR(f[kSkew], 0.0, 1e-5);
  EXPECT_GE(f[kLeastCoverage], 0.97);
  EXPECT_NEAR(f[kLeastContrast], 175.0, 2.0);
}

TEST(Features, TellAParallelogramAndATrapezium) {
  const AnalysedCard& analysed = level();
  const Features leaning = analysed.features({{Point{100, 100}, {400, 100}, {460, 180}, {160, 180}}});
  EXPECT_FLOAT_EQ(leaning[kSkew], 0.6F);
  EXPECT_EQ(leaning[kTaper], 0.0F);
  const Features tapering = analysed.features({{Point{100, 100}, {500, 100}, {400, 200}, {200, 200}}});
  EXPECT_FLOAT_EQ(tapering[kTaper], 1 / 3.0F);
}

TEST(Features, OfAnEdgeCrowdWithinTellIt) {
  SlantedCard card = level_card();
  card.frame_inset = 40;
  const Features f = AnalysedCard(card).features(upright(90, 100, 550, 380));
  EXPECT_GT(f[kEdgesInside], 0.5F);
  EXPECT_EQ(f[kEdgesOutside], 0.0F);
  EXPECT_FLOAT_EQ(f[kEdgeDensity], f[kEdgesInside] / f[kShareOfPicture]);
}

TEST(Features, OfCoarserCopiesSeeFaintBordersInNoise) {
  const Features clear = level().features(upright(90, 100, 550, 380));
  EXPECT_EQ(clear[kCoarseMeanCoverage], 1.0F);
  EXPECT_EQ(clear[kCoarseLeastCoverage], 1.0F);
  EXPECT_EQ(clear[kCoarseLeastAgreement], 1.0F);
  EXPECT_EQ(clear[kCoarseMeanOverrun], 0.0F);
  EXPECT_EQ(level().features(upright(90, 100, 320, 380))[kCoarseLeastCoverage], 0.0F);
  SlantedCard card = level_card();
  card.card = {66, 66, 66};  // 6 levels above its ground
  card.noise = 10;
  const AnalysedCard faint(card);
  const Features on = faint.features(upright(90, 100, 550, 380)), beside = faint.features(upright(130, 140, 500, 330));
  EXPECT_LT(on[kMeanCoverage], 0.3F);
  EXPECT_GT(on[kCoarseMeanCoverage], 0.9F);
  EXPECT_GT(on[kCoarsestMeanCoverage], 0.9F);
  EXPECT_LT(beside[kCoarseMeanCoverage], 0.05F);
  EXPECT_LT(beside[kCoarsestMeanCoverage], 0.05F);
}

TEST(Features, OfDegenerateQuadrilateralsAreFinite) {
  SlantedCard flat = level_card();
  flat.card = flat.ground;
  for (const SlantedCard& card : {level_card(), flat}) {
    const AnalysedCard analysed(card);
    for (const Quad& quad :
         {Quad{}, upright(300, 200, 300, 200), upright(90, 100, 550, 100), upright(300, 380, 300, 100),
          Quad{{Point{0, 0}, {100, 100}, {200, 200}, {300, 300}}}, upright(550, 100, 90, 380),
          Quad{{Point{90, 100}, {550, 380}, {550, 100}, {90, 380}}}, upright(5000, 5000, 6000, 6000),
          upright(-1e8, -1e8, 1e8, 1e8), Quad{{Point{0, 0}, {640, 0}, {640, 480}, {0, 480}}}}) {
      const Features f = analysed.features(quad);
      for (std::size_t i = 0; i < kFeatures; ++i) EXPECT_TRUE(std::isfinite(f[i])) << i;
    }
  }
}

TEST(Context, KnowsTheRingAlongTheFrame) {
  SlantedCard card = level_card();
  card.centre_y = 140;  // touches the upper frame from column 90 to 549
  const AnalysedCard analysed(card);
  const Scene scene = analysed.analysis().scene();
  const Context context(scene, analysed.analysis().coarser(), analysed.analysis().edges);
  EXPECT_NEAR(context.ring_share({{235, 0, 0}}), 460 / 640.0 / 4, 0.02);
  EXPECT_NEAR(context.ring_share({{60, 0, 0}}), 1 - 460 / 640.0 / 4, 0.02);
  EXPECT_NEAR(context.ring_share({{60, 9.9, 0}}), 1 - 460 / 640.0 / 4, 0.02);
  EXPECT_EQ(context.ring_share({{60, 10.1, 0}}), 0.0);
}

TEST(Context, KeepsSomeOfTheEdges) {
  const Scene scene = level().analysis().scene();
  EXPECT_EQ(Context(scene, level().analysis().coarser(), level().analysis().edges).greatest_barrier(), 175.0);
  SlantedCard card = level_card();
  card.noise = 60;
  const AnalysedCard many(card);
  ASSERT_GT(many.analysis().edges.count, 5000u);
  const Scene noisy = many.analysis().scene();
  const Context context(noisy, many.analysis().coarser(), many.analysis().edges);
  EXPECT_LE(context.sampled_edges().size(), 768u);
  EXPECT_GE(context.sampled_edges().size(), 700u);
}

}  // namespace
