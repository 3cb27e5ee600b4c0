/**
 * @file analysed_card.h
 * @brief A drawn card, and what is known of its scan before it is judged.
 */
#ifndef VANTREL_TESTS_ANYWHERE_ANALYSED_CARD_H
#define VANTREL_TESTS_ANYWHERE_ANALYSED_CARD_H

#include <gtest/gtest.h>

#include <cmath>
#include <memory>

#include "anywhere/analysis.h"
#include "anywhere/features.h"
#include "anywhere/slanted_card.h"

namespace support {

/** A card of 460 x 280 that lies level, its left upper corner at (90, 100), of 640 x 480. */
inline SlantedCard level_card() {
  SlantedCard card;
  card.slope = 0.0;
  card.centre_x = 320;
  card.centre_y = 240;
  return card;
}

/** A drawing with its analysis, which is too large for a stack of its own. */
class AnalysedCard {
 public:
  explicit AnalysedCard(const SlantedCard& card) : drawn_(card) { EXPECT_TRUE(analyse(scan(), *analysis_)); }

  vantrel::anywhere::Scan scan() const { return drawn_.scan(); }
  const vantrel::anywhere::Analysis& analysis() const { return *analysis_; }
  vantrel::anywhere::Features features(const vantrel::anywhere::Quad& quad) const {
    const vantrel::anywhere::Scene scene = analysis_->scene();
    return measure(vantrel::anywhere::Context(scene, analysis_->coarser(), analysis_->edges), quad);
  }

 private:
  DrawnCard drawn_;
  std::unique_ptr<vantrel::anywhere::Analysis> analysis_ = std::make_unique<vantrel::anywhere::Analysis>();
};

}  // namespace support

#endif
