// Trees, and finalists beside their best rivals.
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <limits>
#include <vector>

#include "anywhere/duel.h"
#include "anywhere/forest.h"
#include "anywhere/model.h"

namespace {

using namespace vantrel::anywhere;

/** The second feature at the root, the first one below it on the right; everything else goes the first way. */
constexpr Tree kTree = {{1, 0, 0},
                        {0, 47, 1, 47, 47, 47, 47, 47, 47, 47, 47, 47, 47, 47, 47},
                        {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15}};

Forest<2> forest_of(std::span<const Tree> trees) {
  Forest<2> forest;
  forest.edges[0].fill(std::numeric_limits<float>::infinity());
  forest.edges[1].fill(std::numeric_limits<float>::infinity());
  forest.edges[0][0] = 1;
  forest.edges[0][1] = 2;
  forest.edges[1][0] = 5;
  forest.trees = trees;
  return forest;
}

TEST(Forest, WalksByBins) {
  const Forest<2> forest = forest_of({&kTree, 1});
  EXPECT_EQ(forest(std::array{9.0F, 5.0F}), 0.0);
  EXPECT_EQ(forest(std::array{2.0F, 5.5F}), 8.0 / 2048);
  EXPECT_EQ(forest(std::array{2.5F, 5.5F}), 12.0 / 2048);
  EXPECT_EQ(forest(std::array{1.0F, 4.0F}), 0.0);
}

TEST(Forest, AddsItsTreesUp) {
  Tree other = kTree;
  other.value[8] = -2000;
  const std::array trees = {kTree, other, kTree};
  EXPECT_EQ(forest_of(trees)(std::array{2.0F, 5.5F}), -1984.0 / 2048);
  EXPECT_EQ(forest_of({})(std::array{2.0F, 5.5F}), 0.0);
}

TEST(Forest, OfNoNumberTakesTheFirstBranch) {
  const float none = std::numeric_limits<float>::quiet_NaN();
  EXPECT_EQ(forest_of({&kTree, 1})(std::array{9.0F, none}), 0.0);
  EXPECT_EQ(forest_of({&kTree, 1})(std::array{none, 6.0F}), 8.0 / 2048);
}

template <std::size_t kCount>
void expect_sound(const Forest<kCount>& forest) {
  EXPECT_FALSE(forest.trees.empty());
  for (const auto& edges : forest.edges)
    for (std::size_t i = 1; i < edges.size(); ++i) EXPECT_LE(edges[i - 1], edges[i]);
  for (const Tree& tree : forest.trees)
    for (const std::uint8_t feature : tree.feature) EXPECT_LT(feature, kCount);
}

TEST(Model, HasTreesThatAskForWhatIsThere) {
  expect_sound(kFinalModel);
  expect_sound(kDuelModel);
}

constexpr std::size_t kCoverage = std::size_t{kFinalOnly} + kMeanCoverage;
constexpr std::size_t kCoverageAhead = std::size_t{kDuelOnly} + kFinalFeatures + kCoverage;

Finalist finalist_at(double left, double top, double right, double bottom, double score, float coverage) {
  static std::size_t made = 0;
  Finalist finalist;
  finalist.rank = ++made;
  finalist.quad = finalist.refined.quad = {{Point{left, top}, {right, top}, {right, bottom}, {left, bottom}}};
  finalist.final_score = score;
  finalist.features[kCoverage] = coverage;
  return finalist;
}

class Duel : public testing::Test {
 protected:
  const std::vector<Finalist> finalists = {finalist_at(0, 0, 100, 100, 1.0, 0.5F),
                                           finalist_at(0, 0, 200, 100, 3.0, 0.75F),     // overlaps it: its best rival
                                           finalist_at(0, 0, 101, 100, 4.0, 1.0F),      // the same border
                                           finalist_at(300, 0, 400, 100, 5.0, 1.0F),    // apart
                                           finalist_at(50, 50, 250, 150, 3.0, 0.25F)};  // overlaps it, later
  DuelFeatures measured(std::size_t i) const { return measure_duel(finalists, finalists[i]); }
};

TEST_F(Duel, KnowsRivals) {
  EXPECT_TRUE(are_rivals(finalists[0], finalists[1]));
  EXPECT_FALSE(are_rivals(finalists[0], finalists[0]));
  EXPECT_FALSE(are_rivals(finalists[0], finalists[2]));
  EXPECT_FALSE(are_rivals(finalists[0], finalists[3]));
}

TEST_F(Duel, IsWithTheBestRival) {
  const DuelFeatures f = measured(0);
  EXPECT_EQ(f[kFinalScore], 1.0F);
  EXPECT_EQ(f[kLead], -2.0F);
  EXPECT_EQ(f[kBehindTop], 4.0F);
  EXPECT_EQ(f[kRivalsArea], 2.0F);
  EXPECT_EQ(f[kDuelOnly + kCoverage], 0.5F);
  EXPECT_EQ(f[kCoverageAhead], -0.25F);
}

TEST_F(Duel, WithoutARivalIsWithNoCardAtAll) {
  const DuelFeatures f = measured(3);
  EXPECT_EQ(f[kLead], 5.0F);
  EXPECT_EQ(f[kBehindTop], 0.0F);
  EXPECT_EQ(f[kRivalsArea], 0.0F);
  EXPECT_EQ(f[kDuelOnly + kCoverage], 1.0F);
  EXPECT_EQ(f[kCoverageAhead], 0.0F);
}

}  // namespace
