#include <gtest/gtest.h>

#include <array>
#include <vector>

#include "anywhere/candidate_pool.h"
#include "anywhere/drawn_copy.h"
#include "anywhere/outline.h"
#include "anywhere/region_candidates.h"
#include "anywhere/regions.h"
#include "anywhere/reliefs.h"
#include "anywhere/side_fit.h"
#include "anywhere/thresholds.h"

namespace {

using namespace vantrel::anywhere;
using support::corners_of;
using vantrel::image::WorkArray;

TEST(Thresholds, RiseFromTheNoiseToWhatStandsOut) {
  std::vector<std::uint16_t> values(100, 16);
  for (std::size_t i = 60; i < 100; ++i) values[i] = 1600;
  const Thresholds thresholds = thresholds_of({values.data(), 10, 10});
  ASSERT_EQ(thresholds.count, 5u);
  EXPECT_EQ(thresholds.values[0], 24);  // a level and a half
  EXPECT_EQ(thresholds.values[2], 175);
  EXPECT_EQ(thresholds.values[4], 1281);  // 0.8 times 1600, in the middle of its cell
}

TEST(Thresholds, OfFlatnessFollowTheTypicalSlope) {
  std::vector<std::uint16_t> values(100, kFlattest - 40);
  const Thresholds thresholds = flatness_thresholds_of({values.data(), 10, 10});
  ASSERT_EQ(thresholds.count, 6u);
  // The cell of 4055 lies around 4054: a slope of 41.
  EXPECT_EQ(thresholds.values[0], kFlattest - 12 * 41);
  EXPECT_EQ(thresholds.values[5], kFlattest - 61);
}

/** A copy of one plane with these values. */
Copy copy_of(int rows, int cols, const std::vector<int>& light) {
  Copy copy;
  copy.rows = rows;
  copy.cols = cols;
  copy.plane_count = 1;
  copy.planes[0] = WorkArray<std::int16_t>(copy.size());
  for (std::size_t i = 0; i < copy.size(); ++i) copy.planes[0][i] = static_cast<std::int16_t>(light[i]);
  return copy;
}

TEST(Reliefs, OfADifferenceTakeThePlaneThatDiffersMost) {
  Copy copy = copy_of(1, 3, {100, 130, 70});
  copy.plane_count = 3;
  for (const std::size_t plane : {std::size_t{1}, std::size_t{2}})
    copy.planes[plane] = WorkArray<std::int16_t>(3, vantrel::image::Fill::kZero);
  copy.planes[2][0] = -50;
  std::array<std::uint16_t, 3> relief;
  write_difference(copy, {100, 0, 10}, relief);
  EXPECT_EQ(relief, (std::array<std::uint16_t, 3>{60, 30, 30}));
}

TEST(Reliefs, OfFlatnessFallWithTheSlope) {
  std::array<std::uint16_t, 12> relief;
  write_flatness(copy_of(3, 4, {0, 0, 80, 80, 0, 0, 80, 80, 0, 0, 80, 80}), relief);
  EXPECT_EQ(relief,
            (std::array<std::uint16_t, 12>{4095, 4015, 4015, 4095, 4095, 4015, 4015, 4095, 4095, 4015, 4015, 4095}));
  write_flatness(copy_of(3, 4, {0, 0, 0, 0, 0, 0, 0, 0, 9000, 9000, 9000, 9000}), relief);
  EXPECT_EQ(relief, (std::array<std::uint16_t, 12>{4095, 4095, 4095, 4095, 0, 0, 0, 0, 0, 0, 0, 0}));
}

TEST(CandidatePool, GivesTheBestWithoutNearTwins) {
  const Quad square{{Point{0, 0}, Point{20, 0}, Point{20, 20}, Point{0, 20}}};
  const Quad turned{{Point{21, 0}, Point{21, 20}, Point{0, 20}, Point{0, 1}}};
  const Quad other{{Point{0, 0}, Point{24, 0}, Point{24, 20}, Point{0, 20}}};
  CandidatePool pool(8);
  ASSERT_TRUE(pool.ready());
  pool.add(square, 0.5);
  pool.add(other, 0.25);
  pool.add(turned, 1.0);
  std::array<Quad, 4> quads;
  ASSERT_EQ(pool.best(quads), 2u);
  EXPECT_EQ(corners_of(quads[0]), corners_of(turned));
  EXPECT_EQ(corners_of(quads[1]), corners_of(other));
  EXPECT_EQ(pool.best(std::span(quads).first(1)), 1u);
}

TEST(CandidatePool, DropsWhatItHasNoRoomFor) {
  CandidatePool pool(1);
  ASSERT_TRUE(pool.ready());
  const Quad first{{Point{0, 0}, Point{20, 0}, Point{20, 20}, Point{0, 20}}};
  pool.add(first, 0.5);
  pool.add({{Point{0, 0}, Point{60, 0}, Point{60, 40}, Point{0, 40}}}, 1.0);
  std::array<Quad, 2> quads;
  ASSERT_EQ(pool.best(quads), 1U);
  EXPECT_EQ(corners_of(quads[0]), corners_of(first));
}

TEST(CandidatePool, KeepsOnlySoManyOfOneSize) {
  CandidatePool pool(200);
  ASSERT_TRUE(pool.ready());
  for (int i = 0; i < 100; ++i) {
    const double x = 30.0 * i;
    pool.add({{Point{x, 0}, Point{x + 20, 0}, Point{x + 20, 20}, Point{x, 20}}}, 2.0);
  }
  const Quad card{{Point{0, 0}, Point{300, 0}, Point{300, 200}, Point{0, 200}}};
  pool.add(card, 1.0);
  std::array<Quad, 90> quads;
  ASSERT_EQ(pool.best(quads), 81U);
  EXPECT_EQ(corners_of(quads[80]), corners_of(card));
}

/** A gray scan with polygons on it, which is large enough to be its own copy. */
class DrawnCopy {
 public:
  DrawnCopy(int rows, int cols, int ground) {
    copy.rows = rows;
    copy.cols = cols;
    copy.plane_count = 1;
    copy.planes[0] = WorkArray<std::int16_t>(copy.size());
    for (std::size_t i = 0; i < copy.size(); ++i) copy.planes[0][i] = static_cast<std::int16_t>(ground * kLevel);
  }
  /** Blends 16 samples a pixel, so that slanted borders are smooth. */
  void draw(const Quad& quad, int level) {
    for (int row = 0; row < copy.rows; ++row)
      for (int col = 0; col < copy.cols; ++col) {
        int inside = 0;
        for (int i = 0; i < 16; ++i) inside += contains(quad, {col + (i % 4 + 0.5) / 4, row + (i / 4 + 0.5) / 4});
        std::int16_t& value = copy.planes[0][copy.index(row, col)];
        value = static_cast<std::int16_t>((value * (16 - inside) + level * kLevel * inside) / 16);
      }
  }
  RegionCandidates candidates() const {
    const BarrierMap map = barrier_map(copy);
    EXPECT_TRUE(map.ready());
    RegionCandidates found = region_candidates(copy, map);
    EXPECT_TRUE(found.ready);
    return found;
  }

  Copy copy;

 private:
  static bool contains(const Quad& quad, Point p) {
    for (std::size_t i = 0; i < 4; ++i)
      if (cross(quad[i + 1] - quad[i], p - quad[i]) < 0) return false;
    return true;
  }
};

/** The outline of what is brighter than a level, in the copy itself. */
Outline outline_above(const Copy& copy, int level) {
  std::vector<std::uint16_t> values;
  for (std::size_t i = 0; i < copy.size(); ++i) values.push_back(static_cast<std::uint16_t>(copy.planes[0][i]));
  RegionFinder finder(copy.rows, copy.cols);
  Outline outline(copy.rows, copy.cols);
  outline.trace(finder, finder.find({values.data(), copy.rows, copy.cols}, level * kLevel, 1)[0]);
  return outline;
}

TEST(SideFit, LooksAtTheSideThatRunsClockwise) {
  DrawnCopy scan(40, 50, 0);
  scan.draw({{Point{10, 10}, Point{40, 10}, Point{40, 30}, Point{10, 30}}}, 100);
  const Outline outline = outline_above(scan.copy, 50);
  // From 10 to 40, without an eighth at each end: columns 14 to 35.
  const SidePlaces top = side_places(outline, {10, 10}, {40, 10});
  EXPECT_TRUE(top.level);
  EXPECT_EQ(top.count, 22);
  EXPECT_EQ(top.places[0].along, 14);
  EXPECT_EQ(top.places[21].along, 35);
  EXPECT_EQ(top.places[0].across, 10.0);
  EXPECT_EQ(side_places(outline, {40, 30}, {10, 30}).places[0].across, 30.0);
  const SidePlaces right = side_places(outline, {40, 10}, {40, 30});
  EXPECT_FALSE(right.level);
  EXPECT_EQ(right.places[0].across, 40.0);
  EXPECT_EQ(side_places(outline, {10, 30}, {10, 10}).places[0].across, 10.0);
}

TEST(SideFit, SnapsToTheStrongestStepWithinThreePixels) {
  const Copy copy = copy_of(1, 10, {0, 0, 10, 10, 10, 110, 110, 110, 110, 310});
  SidePlaces side;
  side.count = 5;
  side.places = {Place{0, 0.0}, Place{0, 2.0}, Place{0, 3.0}, Place{0, 7.0}, Place{0, 10.0}};
  snap(copy, side);
  EXPECT_EQ(side.places[0].across, 0.0);  // the frame
  EXPECT_EQ(side.places[1].across, 5.0);
  EXPECT_EQ(side.places[2].across, 5.0);
  EXPECT_EQ(side.places[3].across, 9.0);
  EXPECT_EQ(side.places[4].across, 10.0);
}

TEST(SideFit, LeavesStragglersOut) {
  SidePlaces side;
  side.level = true;
  side.count = 12;
  for (int i = 0; i < 12; ++i) side.places[static_cast<std::size_t>(i)] = {i * 2, i % 4 == 3 ? 30.0 : 10.25 + 0.5 * i};
  NormalLine line;
  ASSERT_TRUE(fit_line(side, {0, 10}, {24, 16}, line));
  EXPECT_NEAR(line.distance({0.5, 10.25}), 0.0, 1e-9);
  EXPECT_NEAR(line.distance({20.5, 15.25}), 0.0, 1e-9);
  side.count = 4;
  EXPECT_FALSE(fit_line(side, {0, 10}, {24, 16}, line));
}

TEST(SideFit, FindsNoLineFromSoFarThatAllPlacesAreOne) {
  SidePlaces side;
  side.level = true;
  side.count = 10;
  for (int i = 0; i < 10; ++i) side.places[static_cast<std::size_t>(i)] = {i, 20.0};
  NormalLine line;
  EXPECT_TRUE(fit_line(side, {0, 20}, {10, 20}, line));
  EXPECT_FALSE(fit_line(side, {0, 20}, {0x1p61, 20}, line));  // a step of 2^60 - 2^52 is 256
}

TEST(SideFit, OfAPointIsWorthNothing) {
  DrawnCopy scan(40, 50, 0);
  scan.draw({{Point{10, 10}, Point{40, 10}, Point{40, 30}, Point{10, 30}}}, 100);
  const Point point{25, 20};
  Quad quad{{point, point, point, point}};
  EXPECT_EQ(fit_sides(scan.copy, outline_above(scan.copy, 50), quad).score(), 0.0);
}

TEST(SideFit, MovesAQuadOntoItsRegionAndJudgesIt) {
  DrawnCopy scan(60, 60, 0);
  const Quad card{{Point{10, 12}, Point{50, 12}, Point{50, 40}, Point{10, 40}}};
  scan.draw(card, 100);
  const Outline outline = outline_above(scan.copy, 50);
  Quad quad{{Point{12, 10}, Point{49, 13}, Point{52, 39}, Point{8, 42}}};
  const Plausibility plausibility = fit_sides(scan.copy, outline, quad);
  EXPECT_TRUE(nearly_same(quad, card, 1e-6));
  EXPECT_EQ(plausibility.mean_share, 1.0);
  EXPECT_EQ(plausibility.least_share, 1.0);
  EXPECT_NEAR(plausibility.fill, 1.0, 1e-6);
  Quad elsewhere{{Point{0, 0}, Point{59, 0}, Point{59, 59}, Point{0, 59}}};
  EXPECT_EQ(fit_sides(scan.copy, outline, elsewhere).score(), 0.0);
}

/** Which candidate has all corners within half a pixel of a quadrilateral's; -1: none. */
int place_of(const Quad& quad, const RegionCandidates& found) {
  for (int i = 0; i < found.count; ++i)
    if (nearly_same(quad, found.quads[static_cast<std::size_t>(i)], 0.5)) return i;
  return -1;
}

const Quad kTilted{{Point{40, 20}, Point{110, 50}, Point{90, 95}, Point{20, 65}}};

TEST(RegionCandidates, BeginWithTheOnlyCard) {
  DrawnCopy scan(120, 140, 60);
  scan.draw(kTilted, 200);
  EXPECT_EQ(place_of(kTilted, scan.candidates()), 0);
}

TEST(RegionCandidates, AreClockwiseWithAnArea) {
  DrawnCopy scan(120, 140, 60);
  scan.draw(kTilted, 200);
  const RegionCandidates found = scan.candidates();
  ASSERT_GT(found.count, 0);
  for (int i = 0; i < found.count; ++i) EXPECT_GT(area(found.quads[static_cast<std::size_t>(i)]), 0.0);
}

TEST(RegionCandidates, SeeDarkOnBrightAndThreeLevels) {
  for (const int level : {30, 197, 203}) {
    DrawnCopy scan(120, 140, 200);
    scan.draw(kTilted, level);
    EXPECT_EQ(place_of(kTilted, scan.candidates()), 0) << level;
  }
}

TEST(RegionCandidates, SeeACardInsideACard) {
  const Quad inner{{Point{50, 45}, Point{80, 45}, Point{80, 65}, Point{50, 65}}};
  DrawnCopy scan(120, 140, 20);
  scan.draw({{Point{20, 20}, Point{120, 20}, Point{120, 90}, Point{20, 90}}}, 100);
  scan.draw(inner, 220);
  EXPECT_GE(place_of(inner, scan.candidates()), 0);
  EXPECT_GE(place_of({{Point{20, 20}, Point{120, 20}, Point{120, 90}, Point{20, 90}}}, scan.candidates()), 0);
}

TEST(RegionCandidates, SeeSixtyCards) {
  DrawnCopy scan(400, 300, 230);
  std::vector<Quad> cards;
  for (int i = 0; i < 60; ++i) {
    const double x = 8 + i % 6 * 48;
    const double y = 8 + i / 6 * 38;
    cards.push_back({{Point{x, y}, Point{x + 40, y + 2}, Point{x + 39, y + 28}, Point{x - 1, y + 26}}});
    scan.draw(cards.back(), 20 + i * 2);
  }
  const RegionCandidates found = scan.candidates();
  for (const Quad& card : cards) EXPECT_GE(place_of(card, found), 0);
}

TEST(RegionCandidates, SeeACardThatTheFrameCuts) {
  DrawnCopy scan(120, 140, 60);
  scan.draw({{Point{60, -30}, Point{110, -30}, Point{110, 50}, Point{60, 50}}}, 200);
  EXPECT_GE(place_of({{Point{60, 0}, Point{110, 0}, Point{110, 50}, Point{60, 50}}}, scan.candidates()), 0);
}

TEST(RegionCandidates, SeeCardsThatTouch) {
  const Quad left{{Point{20, 20}, Point{60, 20}, Point{60, 80}, Point{20, 80}}};
  const Quad right{{Point{60, 20}, Point{110, 20}, Point{110, 80}, Point{60, 80}}};
  DrawnCopy scan(120, 140, 60);
  scan.draw(left, 200);
  scan.draw(right, 140);
  const RegionCandidates found = scan.candidates();
  EXPECT_GE(place_of(left, found), 0);
  EXPECT_GE(place_of(right, found), 0);
}

TEST(RegionCandidates, SeeACardOnASheetAcrossItsEdge) {
  const Quad card{{Point{10, 40}, Point{60, 40}, Point{60, 75}, Point{10, 75}}};
  DrawnCopy scan(120, 140, 20);
  scan.draw({{Point{30, 0}, Point{140, 0}, Point{140, 120}, Point{30, 120}}}, 120);
  scan.draw(card, 220);
  EXPECT_GE(place_of(card, scan.candidates()), 0);
}

TEST(RegionCandidates, AreNoneOnABareGroundOrATinyScan) {
  EXPECT_EQ(DrawnCopy(120, 140, 60).candidates().count, 0);
  EXPECT_EQ(DrawnCopy(1, 140, 60).candidates().count, 0);
  EXPECT_EQ(DrawnCopy(120, 1, 60).candidates().count, 0);
  EXPECT_EQ(DrawnCopy(2, 2, 60).candidates().count, 0);
}

}  // namespace
