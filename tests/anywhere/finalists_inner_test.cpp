// Which candidates are laid onto the scan.
#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <vector>

#include "anywhere/analysed_card.h"
#include "anywhere/finalists.h"

namespace {

using namespace vantrel::anywhere;

/** A drawn card and what is known of its scan, but for the candidates, which the tests choose. */
class FinalistChoice : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    drawn_ = std::make_unique<support::DrawnCard>(support::level_card());
    analysis_ = std::make_unique<Analysis>();
    ASSERT_TRUE(analyse(drawn_->scan(), *analysis_));
    likely_ = analysis_->features[0];
  }
  static void TearDownTestSuite() {
    analysis_.reset();
    drawn_.reset();
  }

  /** How many of the quadrilaterals are taken, each of which looks like a card as much as the others. */
  static std::size_t taken_of(const std::vector<Quad>& quads) {
    analysis_->candidates = Candidates(Candidates::kMost);
    for (const Quad& quad : quads) analysis_->candidates.add({quad, {}, 1.0}, 0.0);
    EXPECT_EQ(analysis_->candidates.count(), quads.size());
    analysis_->features = vantrel::image::WorkArray<Features>(quads.size());
    for (std::size_t i = 0; i < quads.size(); ++i) analysis_->features[i] = likely_;
    Finalists finalists;
    EXPECT_TRUE(measure_likeliest(drawn_->scan(), *analysis_, finalists));
    return finalists.count;
  }

 private:
  static inline std::unique_ptr<support::DrawnCard> drawn_;
  static inline std::unique_ptr<Analysis> analysis_;
  static inline Features likely_;
};

Quad upright_of_size(double left, double top, double width, double height) {
  return {{Point{left, top}, Point{left + width, top}, Point{left + width, top + height}, Point{left, top + height}}};
}

TEST_F(FinalistChoice, IsOfNinetySixAtMost) {
  std::vector<Quad> quads;
  for (int i = 0; i < 110; ++i) quads.push_back(upright_of_size(10 + i % 11 * 50, 10 + i / 11 * 40, 40, 25));
  EXPECT_EQ(taken_of(quads), 96U);
}

TEST_F(FinalistChoice, LeavesOutWhatOverlapsFourOnceThereAreSixteen) {
  std::vector<Quad> quads;
  for (int i = 0; i < 16; ++i) quads.push_back(upright_of_size(10 + i % 8 * 60, 10 + i / 8 * 200, 40, 40));
  EXPECT_EQ(taken_of(quads), 16U);
  quads.push_back(upright_of_size(10, 5, 160, 50));  // around the first three
  EXPECT_EQ(taken_of(quads), 17U);
  quads.back() = upright_of_size(10, 5, 220, 50);  // around the first four
  EXPECT_EQ(taken_of(quads), 16U);
}

TEST_F(FinalistChoice, LeavesOutWhatLiesWithinSeventeen) {
  // Each is 0.9 times as large as the one around it: 0.81 of its area, too little to be the same.
  std::vector<Quad> quads;
  double scale = 1.0;
  for (int i = 0; i < 20; ++i, scale *= 0.9)
    quads.push_back(upright_of_size(320 - 280 * scale, 240 - 210 * scale, 560 * scale, 420 * scale));
  EXPECT_EQ(taken_of(quads), 17U);
}

}  // namespace
