// The finder as a whole: from a scan to cards.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <memory>
#include <utility>
#include <vector>

#include "anywhere/candidates.h"
#include "anywhere/drawn_copy.h"
#include "anywhere/find.h"
#include "anywhere/overlap.h"
#include "anywhere/slanted_card.h"
#include "support/random.h"

namespace {

using namespace vantrel::anywhere;
using support::DrawnCard;
using support::SlantedCard;
using support::worst_corner;

/** What is found, which is too large for the stack of many. */
class Answer {
 public:
  explicit Answer(const Scan& scan, int most_cards = kMostCards) { find_anywhere(scan, most_cards, *found_); }

  bool ready() const { return found_->ready; }
  int count() const { return found_->count; }
  const FoundCard& operator[](std::size_t i) const { return found_->cards[i]; }

 private:
  std::unique_ptr<Findings> found_ = std::make_unique<Findings>();
};

TEST(FindAnywhere, FindsACrispTiltedCard) {
  for (const double slope : {0.0, 0.1, -0.37, 0.9}) {
    SlantedCard card;
    card.slope = slope;
    card.half_width = 180;
    card.half_height = 110;
    const DrawnCard drawn(card);
    const Answer found(drawn.scan());
    ASSERT_TRUE(found.ready());
    ASSERT_EQ(found.count(), 1) << slope;
    // The drawn corners begin at the one that lies top left, for the card is turned by less than 45 degrees.
    EXPECT_LT(worst_corner(found[0].card.quad, card.quad()), 0.3) << slope;
    for (const double share : found[0].card.shares) EXPECT_GE(share, kFoundShare);
    EXPECT_GE(found[0].card.confidence, 0.5);
    EXPECT_LE(found[0].card.confidence, 1.0);
  }
}

TEST(FindAnywhere, FindsNoMoreThanSixtyFourCards) {
  // Nine times eight cards of 40 x 26 pixels.
  constexpr int kRows = 340, kCols = 515;
  std::vector<unsigned char> bytes(kRows * kCols, 60);
  for (std::size_t row = 15; row < 335; ++row)
    for (std::size_t col = 15; col < 510; ++col)
      if ((row - 15) % 40 < 26 && (col - 15) % 55 < 40) bytes[row * kCols + col] = 235;
  const Answer found({{bytes.data(), kRows, kCols, kCols}, Layout::kGray});
  ASSERT_TRUE(found.ready());
  EXPECT_EQ(found.count(), 64);
  for (std::size_t i = 0; i < 64; ++i) {
    EXPECT_NEAR(std::abs(area(found[i].card.quad)), 40 * 26, 20);
    EXPECT_GT(found[i].card.confidence, 0.9);
  }
}

TEST(FindAnywhere, FindsACardOnALargeScan) {
  SlantedCard card;
  card.width = 1400;
  card.height = 1100;
  card.centre_x = 700;
  card.centre_y = 550;
  card.half_width = 450;
  card.half_height = 270;
  const DrawnCard drawn(card);
  const Answer found(drawn.scan());
  ASSERT_EQ(found.count(), 1);
  EXPECT_LT(worst_corner(found[0].card.quad, card.quad()), 0.3);
}

TEST(FindAnywhere, BeginsWithTheCornerTopLeftAlsoOfAnUprightCard) {
  SlantedCard card;
  card.slope = 1.5;  // 56 degrees: what was its left side is its upper one
  card.half_width = 180;
  card.half_height = 110;
  const DrawnCard drawn(card);
  const Answer found(drawn.scan());
  ASSERT_EQ(found.count(), 1);
  const Quad quad = card.quad();
  EXPECT_LT(worst_corner(found[0].card.quad, {{quad[3], quad[0], quad[1], quad[2]}}), 0.3);
}

TEST(FindAnywhere, TellsWhichSidesItSaw) {
  for (const auto& [centre_y, unseen] : {std::pair{100.0, std::size_t{0}}, {380.0, std::size_t{2}}}) {
    SlantedCard card;
    card.slope = 0;
    card.centre_y = centre_y;  // 40 rows are not on the scan
    const DrawnCard drawn(card);
    const Answer found(drawn.scan());
    ASSERT_EQ(found.count(), 1);
    for (std::size_t side = 0; side < 4; ++side) {
      const double share = found[0].card.shares[side];
      if (side == unseen) {
        EXPECT_EQ(share, 0.0) << centre_y;
      } else {
        EXPECT_GE(share, kFoundShare) << centre_y << ", side " << side;
      }
    }
  }
}

/** Two cards beside each other on a scan of 800 x 480, the left one at `left` and the right one at `right`. */
struct TwoCards {
  SlantedCard left, right;
  std::vector<unsigned char> bytes;

  TwoCards() {
    left.width = right.width = 800;
    left.half_width = right.half_width = 150;
    left.half_height = right.half_height = 95;
    left.centre_x = 205;
    right.centre_x = 600;
    right.slope = -0.2;
    bytes = DrawnCard(left).bytes();
    const std::vector<unsigned char> other = DrawnCard(right).bytes();
    for (std::size_t i = 0; i < bytes.size(); ++i)
      if (i / 3 % 800 >= 400) bytes[i] = other[i];
  }
  Scan scan() const { return {{bytes.data(), 480, 800, 2400}, Layout::kRgb}; }
};

TEST(FindAnywhere, FindsTwoCards) {
  const TwoCards drawn;
  const Answer found(drawn.scan());
  ASSERT_EQ(found.count(), 2);
  for (std::size_t i = 0; i < 2; ++i) EXPECT_GE(found[i].card.confidence, 0.5);
  for (const Quad& truth : {drawn.left.quad(), drawn.right.quad()})
    EXPECT_LT(std::min(worst_corner(found[0].card.quad, truth), worst_corner(found[1].card.quad, truth)), 0.3);
}

TEST(FindAnywhere, FindsNoMoreCardsThanAskedFor) {
  const TwoCards drawn;
  const Answer both(drawn.scan()), one(drawn.scan(), 1), none(drawn.scan(), 0);
  ASSERT_EQ(both.count(), 2);
  ASSERT_EQ(one.count(), 1);
  EXPECT_EQ(worst_corner(one[0].card.quad, both[0].card.quad), 0.0);
  EXPECT_TRUE(none.ready());
  EXPECT_EQ(none.count(), 0);
}

TEST(FindAnywhere, IsTheSameInEveryLayout) {
  const DrawnCard drawn{SlantedCard{}};
  const std::vector<unsigned char>& rgb = drawn.bytes();
  const std::size_t count = rgb.size() / 3;
  std::vector<unsigned char> bgr(count * 3), rgba(count * 4), bgra(count * 4);
  for (std::size_t i = 0; i < count; ++i) {
    for (std::size_t c = 0; c < 3; ++c) {
      rgba[4 * i + c] = rgb[3 * i + c];
      bgr[3 * i + c] = bgra[4 * i + c] = rgb[3 * i + 2 - c];
    }
    rgba[4 * i + 3] = static_cast<unsigned char>(i);
  }
  const Answer first(drawn.scan());
  ASSERT_EQ(first.count(), 1);
  for (const Scan& scan : {Scan{{bgr.data(), 480, 640, 1920}, Layout::kBgr},
                           {{rgba.data(), 480, 640, 2560}, Layout::kRgba},
                           {{bgra.data(), 480, 640, 2560}, Layout::kBgra}}) {
    const Answer other(scan);
    ASSERT_EQ(other.count(), 1);
    EXPECT_EQ(worst_corner(other[0].card.quad, first[0].card.quad), 0.0);
    EXPECT_EQ(other[0].card.confidence, first[0].card.confidence);
  }
}

TEST(FindAnywhere, TellsOfAlternativesThatDiffer) {
  SlantedCard card;
  card.frame_inset = 40;
  card.noise = 3;
  const DrawnCard drawn(card);
  const Answer found(drawn.scan());
  ASSERT_EQ(found.count(), 1);
  const FoundCard& one = found[0];
  ASSERT_GE(one.alternative_count, 1);
  ASSERT_LE(one.alternative_count, kMostAlternatives);
  for (std::size_t i = 0; i < static_cast<std::size_t>(one.alternative_count); ++i) {
    const Relation to_card = relation(one.alternatives[i].quad, one.card.quad);
    EXPECT_TRUE(to_card != Relation::kSame && to_card != Relation::kApart) << i;
    EXPECT_LT(one.alternatives[i].confidence, one.card.confidence);
    for (std::size_t j = 0; j < i; ++j)
      EXPECT_NE(relation(one.alternatives[i].quad, one.alternatives[j].quad), Relation::kSame) << i << ", " << j;
  }
}

TEST(FindAnywhere, TellsOfTheFramePrintedOnACard) {
  SlantedCard card;
  card.frame_inset = 40;
  SlantedCard frame = card;
  frame.half_width -= 40;
  frame.half_height -= 40;
  const DrawnCard drawn(card);
  const Answer found(drawn.scan());
  ASSERT_EQ(found.count(), 1);
  EXPECT_LT(worst_corner(found[0].card.quad, card.quad()), 0.3);
  const auto& others = found[0].alternatives;
  EXPECT_TRUE(std::any_of(others.begin(), others.begin() + found[0].alternative_count,
                          [&](const Proposal& other) { return worst_corner(other.quad, frame.quad()) < 3.5; }));
}

TEST(FindAnywhere, FindsNothingOnAUniformScan) {
  for (const int level : {0, 60, 255}) {
    for (const Layout layout : {Layout::kGray, Layout::kRgb, Layout::kBgra, Layout::kBilevel}) {
      if (layout == Layout::kBilevel && level == 60) continue;  // its bits are stripes
      const std::vector<unsigned char> bytes(400 * 4 * 300, static_cast<unsigned char>(level));
      const Answer found({{bytes.data(), 300, 400, 1600}, layout});
      EXPECT_TRUE(found.ready());
      EXPECT_EQ(found.count(), 0);
    }
  }
}

TEST(FindAnywhere, AnswersTinyScans) {
  support::Random random(23);
  std::vector<unsigned char> bytes(60 * 240);
  for (unsigned char& byte : bytes) byte = random.byte();
  constexpr std::array kLayouts = {Layout::kGray, Layout::kBgr,  Layout::kRgb,
                                   Layout::kBgra, Layout::kRgba, Layout::kBilevel};
  for (const int rows : {1, 2, 3, 5, 8, 23, 24, 25, 31, 60}) {
    for (const int cols : {1, 2, 4, 7, 23, 24, 26, 40, 60}) {
      for (const Layout layout : kLayouts) {
        const Answer found({{bytes.data(), rows, cols, 240}, layout});
        EXPECT_TRUE(found.ready());
        if (rows < 24 || cols < 24) {
          EXPECT_EQ(found.count(), 0);
        }
        for (int i = 0; i < found.count(); ++i)
          for (const Point& corner : found[static_cast<std::size_t>(i)].card.quad.corners)
            EXPECT_TRUE(corner.x > -cols && corner.x < 2 * cols && corner.y > -rows && corner.y < 2 * rows);
      }
    }
  }
}

TEST(FindAnywhere, AnswersScansThatAreAllLength) {
  const std::vector<unsigned char> bytes(20000, 77);
  const Answer wide({{bytes.data(), 1, 20000, 20000}, Layout::kGray});
  EXPECT_TRUE(wide.ready());
  EXPECT_EQ(wide.count(), 0);
  const Answer high({{bytes.data(), 20000, 1, 1}, Layout::kGray});
  EXPECT_TRUE(high.ready());
  EXPECT_EQ(high.count(), 0);
}

TEST(FindAnywhere, AnswersNoPixels) {
  for (const Layout layout : {Layout::kGray, Layout::kRgb, Layout::kBilevel}) {
    const Answer found({{}, layout});
    EXPECT_TRUE(found.ready());
    EXPECT_EQ(found.count(), 0);
  }
}

TEST(FindAnywhere, ForgetsWhatWasFoundBefore) {
  const auto found = std::make_unique<Findings>();
  const DrawnCard drawn{SlantedCard{}};
  find_anywhere(drawn.scan(), kMostCards, *found);
  ASSERT_EQ(found->count, 1);
  find_anywhere({{}, Layout::kGray}, kMostCards, *found);
  EXPECT_EQ(found->count, 0);
  EXPECT_EQ(found->cards[0].card.confidence, 0.0);
  EXPECT_EQ(found->cards[0].alternative_count, 0);
}

}  // namespace
