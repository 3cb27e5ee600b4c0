#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "segment/find_cards.h"
#include "segment/sheet_layout.h"

namespace {

using namespace vantrel::segment;
using vantrel::geometry::Rect;

// At 300 dots per inch a sheet is reduced by 3; a card is then 355 x 220 pixels.
constexpr int kFactor = 3;
constexpr float kResolution = 300.0f;

/** A white gray scan, drawn on in reduced pixels. */
class Scan {
 public:
  Scan(int cols, int rows) : rows_(kFactor * rows), cols_(kFactor * cols), pixels_(size(), 255) {}

  Scan& blacken(Rect reduced) {
    for (int r = kFactor * reduced.rows.first; r < kFactor * reduced.rows.end; ++r) {
      const auto row = pixels_.begin() + std::ptrdiff_t{r} * cols_;
      std::fill(row + kFactor * reduced.cols.first, row + kFactor * reduced.cols.end, static_cast<unsigned char>(0));
    }
    return *this;
  }

  CardSheet cards() const { return find_cards({pixels_.data(), rows_, cols_, cols_}, 8, kResolution); }

 private:
  std::size_t size() const { return static_cast<std::size_t>(rows_) * static_cast<std::size_t>(cols_); }

  int rows_;
  int cols_;
  std::vector<unsigned char> pixels_;
};

TEST(FindCards, ABlankSheetHasNone) {
  const CardSheet sheet = Scan(500, 400).cards();
  EXPECT_TRUE(sheet.ready);
  EXPECT_FALSE(sheet.two_columns);
  EXPECT_TRUE(sheet.columns[0].found().empty());
  EXPECT_TRUE(sheet.columns[1].found().empty());
}

TEST(FindCards, ACardReachesFromItsFirstToItsLastReducedPixel) {
  const CardSheet sheet = Scan(500, 400).blacken({{100, 320}, {60, 415}}).cards();
  ASSERT_EQ(sheet.columns[0].found().size(), 1u);
  EXPECT_EQ(sheet.columns[0].cards[0].rect, (Rect{{300, 958}, {180, 1243}}));
  EXPECT_EQ(sheet.columns[0].cards[0].share, 1.0);
}

TEST(FindCards, MarksBesideTheCardCostItsShare) {
  // 355 columns of the card and 45 far from it, of which none can lie in the card's.
  const CardSheet sheet = Scan(600, 400).blacken({{100, 320}, {60, 415}}).blacken({{100, 320}, {555, 600}}).cards();
  ASSERT_EQ(sheet.columns[0].found().size(), 1u);
  EXPECT_EQ(sheet.columns[0].cards[0].rect.cols, (Span{180, 1243}));
  EXPECT_EQ(sheet.columns[0].cards[0].share, 355.0 / 400.0);
}

TEST(FindCards, ASecondColumnHasCardsInItsOwnHalf) {
  const CardSheet sheet = Scan(800, 400).blacken({{100, 320}, {20, 375}}).blacken({{50, 270}, {430, 785}}).cards();
  EXPECT_TRUE(sheet.two_columns);
  ASSERT_EQ(sheet.columns[0].found().size(), 1u);
  ASSERT_EQ(sheet.columns[1].found().size(), 1u);
  EXPECT_EQ(sheet.columns[0].cards[0].rect, (Rect{{300, 958}, {60, 1123}}));
  EXPECT_EQ(sheet.columns[1].cards[0].rect, (Rect{{150, 808}, {1290, 2353}}));
}

TEST(FindCards, ASheetWithoutPixelsIsAnsweredWhateverItsOtherSide) {
  for (const ConstPixels scan : {ConstPixels{nullptr, 0, 2147483647, 0}, ConstPixels{nullptr, 2147483647, 0, 0},
                                 ConstPixels{nullptr, 2, 2147483647, 0}}) {
    const CardSheet sheet = find_cards(scan, 8, kResolution);
    EXPECT_TRUE(sheet.ready);
    EXPECT_TRUE(sheet.columns[0].found().empty());
  }
}

}  // namespace
