// From features to an order: summaries, curves, rivals and finalists.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <memory>
#include <span>
#include <vector>

#include "anywhere/analysed_card.h"
#include "anywhere/curve.h"
#include "anywhere/finalists.h"
#include "anywhere/model.h"
#include "anywhere/rivalry.h"
#include "anywhere/summary.h"

namespace {

using namespace vantrel::anywhere;
using support::AnalysedCard;
using support::level_card;
using support::SlantedCard;

constexpr SeenSides kAllSeen = {true, true, true, true};

void expect_summary(const Summary& summary, const std::array<double, 4>& expected) {
  EXPECT_EQ(summary.mean, expected[0]);
  EXPECT_EQ(summary.least, expected[1]);
  EXPECT_EQ(summary.second, expected[2]);
  EXPECT_EQ(summary.most, expected[3]);
}

TEST(Summary, DoesNotDependOnTheOrder) {
  std::array<double, 4> values = {1, 2, 4, 9};
  do expect_summary(summarise(values, kAllSeen), {4, 1, 2, 9});
  while (std::next_permutation(values.begin(), values.end()));
}

TEST(Summary, IsOfTheSeenSidesAlone) {
  expect_summary(summarise({-5, 7, 3, 99}, {false, true, true, false}), {5, 3, 7, 7});
  expect_summary(summarise({-5, 7, 3, 99}, {false, false, true, false}), {3, 3, 3, 3});
  expect_summary(summarise({-5, 7, 3, 99}, {false, false, false, false}), {0, 0, 0, 0});
}

constexpr Curve kCurve = {{1, 2, 3, 4, 5, 6, 7, 11}, {10, 20, 20, -20, 0, 0, 0, 8}};

TEST(Curve, IsLevelBeyondItsEnds) {
  EXPECT_EQ(kCurve(-1e30), 10.0);
  EXPECT_EQ(kCurve(0.5), 10.0);
  EXPECT_EQ(kCurve(1), 10.0);
  EXPECT_EQ(kCurve(11), 8.0);
  EXPECT_EQ(kCurve(1e30), 8.0);
}

TEST(Curve, IsStraightBetweenItsPoints) {
  EXPECT_EQ(kCurve(1.5), 15.0);
  EXPECT_EQ(kCurve(2), 20.0);
  EXPECT_EQ(kCurve(3.25), 10.0);
  EXPECT_EQ(kCurve(3.5), 0.0);
  EXPECT_EQ(kCurve(10), 6.0);
}

TEST(Curve, OfNoNumberIsItsFirstValue) { EXPECT_EQ(kCurve(std::numeric_limits<double>::quiet_NaN()), 10.0); }

TEST(AdditiveModel, AddsItsCurvesUp) {
  constexpr AdditiveModel<2> kModel = {-1.5, {kCurve, {{0, 1, 2, 3, 4, 5, 6, 7}, {0, 2, 4, 6, 8, 10, 12, 14}}}};
  EXPECT_EQ(kModel(std::array{1.5F, 2.25F}), 18.0);
}

void expect_rising_points(const Curve& curve) {
  for (std::size_t i = 1; i < Curve::kKnots; ++i) EXPECT_LE(curve.at[i - 1], curve.at[i]);
  for (const float value : curve.value) EXPECT_TRUE(std::isfinite(value));
}

TEST(Model, HasCurvesWithRisingPoints) {
  for (const Curve& curve : kFirstModel.curves) expect_rising_points(curve);
  for (const Curve& curve : kClaimModel.curves) expect_rising_points(curve);
  expect_rising_points(kConfidence);
}

TEST(Model, IsSurerTheHigherTheScore) {
  for (double score = -30; score < 30; score += 0.25) {
    EXPECT_LE(kConfidence(score), kConfidence(score + 0.25));
    EXPECT_GE(kConfidence(score), 0.0);
    EXPECT_LE(kConfidence(score), 1.0);
  }
}

Finalist finalist_at(double left, double top, double right, double bottom, double first_score) {
  Finalist finalist;
  finalist.quad = {{Point{left, top}, {right, top}, {right, bottom}, {left, bottom}}};
  finalist.refined.quad = finalist.quad;
  finalist.first_score = first_score;
  return finalist;
}

class Rivalry : public testing::Test {
 protected:
  static void measure(std::span<Finalist> finalists) {
    static const AnalysedCard kCard(level_card());
    const Scene scene = kCard.analysis().scene();
    measure_finalists(Context(scene, kCard.analysis().coarser(), kCard.analysis().edges), finalists);
  }
};

TEST_F(Rivalry, SeesAPairTakenAsOne) {
  std::vector<Finalist> finalists = {finalist_at(100, 100, 300, 200, 4.0),   // a pair
                                     finalist_at(100, 100, 200, 200, 3.0),   // its left half
                                     finalist_at(205, 100, 300, 200, 2.0),   // its right one
                                     finalist_at(210, 110, 290, 190, 1.0),   // the frame within it
                                     finalist_at(110, 110, 190, 190, -3.0),  // and an unlikely one in the other
                                     finalist_at(400, 100, 500, 200, 1.0),   // a card with a frame
                                     finalist_at(410, 110, 490, 190, 0.5)};
  measure(finalists);
  EXPECT_FLOAT_EQ(finalists[0].features[kTiled], 0.975F);
  EXPECT_FLOAT_EQ(finalists[1].features[kTiles], 0.975F);
  EXPECT_FLOAT_EQ(finalists[2].features[kTiles], 0.975F);
  for (const std::size_t i : {1U, 2U, 3U, 4U, 5U, 6U}) EXPECT_EQ(finalists[i].features[kTiled], 0.0F) << i;
  for (const std::size_t i : {0U, 3U, 4U, 5U, 6U}) EXPECT_EQ(finalists[i].features[kTiles], 0.0F) << i;
}

TEST_F(Rivalry, SeesHowMuchBetterTheBestRivalIs) {
  std::vector<Finalist> finalists = {finalist_at(100, 100, 200, 200, 1.0),
                                     finalist_at(80, 80, 220, 220, 3.0),     // around it
                                     finalist_at(50, 50, 260, 260, -2.0),    // around it, worse
                                     finalist_at(120, 120, 180, 180, -4.0),  // within it
                                     finalist_at(150, 100, 250, 200, 0.5),   // across it
                                     finalist_at(101, 101, 201, 201, 9.0)};  // the same
  measure(finalists);
  const FinalFeatures& f = finalists[0].features;
  EXPECT_EQ(f[kAround], 10.0F);  // 2 better, from 8 worse on
  EXPECT_EQ(f[kWithin], 3.0F);
  EXPECT_EQ(f[kAcross], 7.5F);
  EXPECT_EQ(f[kBehindBest], 8.0F);
  EXPECT_EQ(finalists[5].features[kBehindBest], 0.0F);
}

TEST_F(Rivalry, HasNoRivalsWhereThereAreNone) {
  std::vector<Finalist> finalists = {finalist_at(100, 100, 200, 200, 1.0), finalist_at(300, 100, 400, 200, -0.5)};
  measure(finalists);
  for (const FinalFeature rival : {kAround, kWithin, kAcross, kAlikeBeside})
    EXPECT_EQ(finalists[0].features[rival], 0.0F);
}

TEST_F(Rivalry, BoundsHowMuchBetterARivalIs) {
  std::vector<Finalist> finalists = {finalist_at(100, 100, 200, 200, 1.0), finalist_at(80, 80, 220, 220, 50.0)};
  measure(finalists);
  EXPECT_EQ(finalists[0].features[kAround], 16.0F);
  EXPECT_EQ(finalists[1].features[kWithin], 0.0F);
}

TEST_F(Rivalry, CountsGoodOnesOfItsSizeBesideIt) {
  std::vector<Finalist> finalists = {finalist_at(0, 0, 100, 100, 1.0),     finalist_at(200, 0, 300, 100, 0.5),  // alike
                                     finalist_at(400, 0, 500, 129, 0.5),      // alike, 1.29 times as large
                                     finalist_at(400, 200, 500, 331, 0.5),    // too large
                                     finalist_at(0, 200, 100, 276, 0.5),      // too small: 1 / 1.3 is 0.769
                                     finalist_at(200, 200, 300, 300, -0.5)};  // not good
  measure(finalists);
  EXPECT_EQ(finalists[0].features[kAlikeBeside], 2.0F);
}

TEST_F(Rivalry, TellsWhatTheScanShowed) {
  std::vector<Finalist> finalists = {finalist_at(90, 100, 550, 380, 1.0)};
  Finalist& one = finalists[0];
  one.refined.shares = {0.5, 1.0, 0.75, 0.25};
  one.refined.contrasts = {10, 40, 30, 20};
  one.refined.quad.corners[2] = one.quad[2] + Point{3, 4};
  one.from_region = true;
  measure(finalists);
  EXPECT_EQ(one.features[kMeanShare], 0.625F);
  EXPECT_EQ(one.features[kLeastShare], 0.25F);
  EXPECT_EQ(one.features[kSecondShare], 0.5F);
  EXPECT_EQ(one.features[kMeanStep], 25.0F);
  EXPECT_EQ(one.features[kLeastStep], 10.0F);
  EXPECT_EQ(one.features[kShift], 5.0F);
  EXPECT_EQ(one.features[kFromRegion], 1.0F);
}

TEST_F(Rivalry, MeasuresAgainWhatTheRefinedOneLooksLike) {
  std::vector<Finalist> finalists = {finalist_at(93, 97, 553, 377, 1.0)};
  finalists[0].refined.quad = {{Point{90, 100}, {550, 100}, {550, 380}, {90, 380}}};
  measure(finalists);
  EXPECT_EQ(finalists[0].features[std::size_t{kFinalOnly} + kMeanCoverage], 1.0F);
  EXPECT_FLOAT_EQ(finalists[0].features[std::size_t{kFinalOnly} + kMeanContrast], 175.0F);
}

SlantedCard lively_card() {
  SlantedCard card;
  card.frame_inset = 30;
  card.writing = true;
  card.noise = 8;
  return card;
}

TEST(Finalists, AreJudgedAndInOrder) {
  const AnalysedCard card(lively_card());
  Finalists finalists;
  ASSERT_TRUE(choose_finalists(card.scan(), card.analysis(), finalists));
  ASSERT_GE(finalists.count, 10u);
  EXPECT_LE(finalists.count, 96u);
  for (std::size_t i = 0; i < finalists.count; ++i) {
    const Finalist& one = finalists.items[i];
    EXPECT_EQ(one.final_score, kFinalModel(one.features));
    EXPECT_EQ(one.score, kDuelModel(measure_duel(finalists.all(), one)));
    EXPECT_TRUE(one.confidence >= 0.0 && one.confidence <= 1.0);
    if (i > 0) {
      EXPECT_GE(finalists.items[i - 1].score, one.score);
    }
  }
}

TEST(Finalists, AreTakenByTheirFirstScoreAndDiffer) {
  const AnalysedCard card(lively_card());
  Finalists finalists;
  ASSERT_TRUE(measure_likeliest(card.scan(), card.analysis(), finalists));
  ASSERT_GE(finalists.count, 10u);
  for (std::size_t i = 0; i < finalists.count; ++i) {
    EXPECT_EQ(finalists.items[i].rank, i + 1);
    if (i > 0) {
      EXPECT_GE(finalists.items[i - 1].first_score, finalists.items[i].first_score);
    }
    for (std::size_t j = 0; j < i; ++j)
      EXPECT_FALSE(nearly_same(finalists.items[i].quad, finalists.items[j].quad, 3.0));
  }
}

TEST(Finalists, AreTheSameEachTime) {
  Finalists first, second;
  const AnalysedCard card(lively_card()), again(lively_card());
  ASSERT_TRUE(choose_finalists(card.scan(), card.analysis(), first));
  ASSERT_TRUE(choose_finalists(again.scan(), again.analysis(), second));
  ASSERT_EQ(first.count, second.count);
  for (std::size_t i = 0; i < first.count; ++i) {
    EXPECT_EQ(first.items[i].score, second.items[i].score);
    for (std::size_t corner = 0; corner < 4; ++corner) {
      EXPECT_EQ(first.items[i].refined.quad[corner].x, second.items[i].refined.quad[corner].x);
      EXPECT_EQ(first.items[i].refined.quad[corner].y, second.items[i].refined.quad[corner].y);
    }
  }
}

TEST(Finalists, OfNoCandidatesAreNone) {
  const AnalysedCard card(level_card());
  const auto nothing = std::make_unique<Analysis>();
  Finalists finalists;
  ASSERT_TRUE(choose_finalists(card.scan(), *nothing, finalists));
  EXPECT_EQ(finalists.count, 0u);
}

}  // namespace
