// Which of several parallel lines beside a side is the card's edge.
#include <gtest/gtest.h>

#include <array>
#include <memory>

#include "anywhere/border_choice.h"

namespace {

using namespace vantrel::anywhere;

using Row = std::array<std::array<float, kPlanes>, 25>; /**< levels from the inside to the outside */

/** A card, a line beside it from sample 8 to 13, and the ground. */
Row row_of(std::array<float, kPlanes> card, std::array<float, kPlanes> line, std::array<float, kPlanes> ground) {
  Row row;
  for (std::size_t i = 0; i < row.size(); ++i) row[i] = i < 8 ? card : i < 14 ? line : ground;
  return row;
}

/** What lies inside of the line between samples 13 and 14. */
DarkLine dark_line_of(const Row& row) {
  auto profiles = std::make_unique<SideProfiles>();
  profiles->places = 30;
  profiles->centre = 12;
  profiles->samples = 25;
  for (std::size_t place = 0; place < 30; ++place) {
    profiles->last[place] = 24;
    for (std::size_t plane = 0; plane < kPlanes; ++plane)
      for (std::size_t i = 0; i < row.size(); ++i) profiles->levels[place][plane][i] = row[i][plane];
  }
  auto evidence = std::make_unique<Evidence>();
  gather_evidence(*profiles, {1.0F, 1.0F, 1.0F}, *evidence);
  SampleLine outer{13.5, 13.5};
  outer.evidence = evidence_along(*evidence, outer);
  return dark_line(*profiles, *evidence, outer);
}

TEST(DarkLineBeside, IsAShadowOfTheGround) {
  const DarkLine line = dark_line_of(row_of({220, 0, 0}, {100, -10, 20}, {150, -15, 30}));
  EXPECT_NEAR(line.width, 6.0, 0.01);
  EXPECT_NEAR(line.inner.begin, 7.5, 0.01);
  EXPECT_NEAR(line.level, 2.0 / 3, 0.01);
  EXPECT_TRUE(line.soft);
}

TEST(DarkLineBeside, EndsWhereTheHueChanges) {
  // The card is as dark as the shadow.
  const DarkLine line = dark_line_of(row_of({100, 30, -25}, {100, 0, 0}, {150, 0, 0}));
  EXPECT_NEAR(line.width, 6.0, 0.01);
}

TEST(DarkLineBeside, IsNoneOfAnotherHue) {
  EXPECT_EQ(dark_line_of(row_of({220, 0, 0}, {100, 40, -30}, {150, -15, 30})).width, 0.0);
}

TEST(DarkLineBeside, IsNoneThatIsLighterThanTheGround) {
  EXPECT_EQ(dark_line_of(row_of({120, 0, 0}, {180, 0, 0}, {150, 0, 0})).width, 0.0);
}

TEST(DarkLineBeside, IsNoneWhereTheCardIsNoLighterThanTheLine) {
  EXPECT_EQ(dark_line_of(row_of({100, 0, 0}, {100, 0, 0}, {150, 0, 0})).width, 0.0);
  EXPECT_EQ(dark_line_of(row_of({110, 0, 0}, {100, 0, 0}, {150, 0, 0})).width, 0.0);
}

/** A line that darkens inward, by little from sample to sample, as far as to where the card begins. */
Row darkening_row(std::size_t begin) {
  Row row;
  for (std::size_t i = 0; i < row.size(); ++i)
    row[i] = {i < begin ? 220.0F : i < 14 ? 100.0F + 2.0F * static_cast<float>(i - begin) : 150.0F, 0, 0};
  return row;
}

TEST(DarkLineBeside, IsNoneThatIsWiderThanTenSamples) {
  EXPECT_NEAR(dark_line_of(darkening_row(5)).width, 9.0, 0.05);
  EXPECT_EQ(dark_line_of(darkening_row(1)).width, 0.0);
}

DarkLine dark(double width, double level, bool soft) { return {{}, width, level, soft}; }

TEST(Rim, IsAlikeAllAroundAndSteeperOutside) {
  EXPECT_TRUE(
      is_rim(std::array{dark(4, 0.8, false), dark(4.4, 0.82, false), dark(4, 0.8, false), dark(4, 0.8, false)}));
  EXPECT_FALSE(is_rim(std::array{dark(4, 0.8, true), dark(4, 0.8, false), dark(4, 0.8, false), dark(4, 0.8, false)}));
  EXPECT_FALSE(is_rim(std::array{dark(4, 0.8, false), dark(6, 0.8, false), dark(4, 0.8, false), dark(4, 0.8, false)}));
  EXPECT_FALSE(is_rim(std::array{dark(4, 0.8, false), dark(0, 1, false), dark(4, 0.8, false), dark(4, 0.8, false)}));
}

TEST(Rim, MayBeDarkerThanShadowsAreOnAllSides) {
  EXPECT_TRUE(is_rim(std::array{dark(4, 0.4, true), dark(4, 0.4, true), dark(4, 0.4, true), dark(4, 0.4, true)}));
  EXPECT_FALSE(is_rim(std::array{dark(4, 0.4, true), dark(4, 0.7, true), dark(4, 0.4, true), dark(4, 0.4, true)}));
}

TEST(Rim, IsNotTheFaintestOfLines) {
  EXPECT_FALSE(is_rim(std::array{dark(4, 0.95, false), dark(4, 0.95, false), dark(4, 0.95, false)}));
}

TEST(Rim, IsNotJudgedByTwoSides) { EXPECT_FALSE(is_rim(std::array{dark(4, 0.8, false), dark(4, 0.8, false)})); }

}  // namespace
