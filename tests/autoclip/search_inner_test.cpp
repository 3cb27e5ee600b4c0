// What a corner search knows by its verdict, and where a card is clipped onto.
#include <gtest/gtest.h>

#include "autoclip/clip.h"
#include "autoclip/corner_finder.h"

namespace {

using vantrel::autoclip::CornerSearch;
using vantrel::autoclip::has_frame;
using vantrel::autoclip::Verdict;

CornerSearch ended(Verdict verdict) {
  CornerSearch search;
  search.verdict = verdict;
  return search;
}

TEST(CornerSearch, HasLinesOnceBordersWereLookedFor) {
  for (const Verdict verdict : {Verdict::kFound, Verdict::kTooSmall, Verdict::kDegenerate})
    EXPECT_TRUE(ended(verdict).has_lines());
  for (const Verdict verdict : {Verdict::kNoEdges, Verdict::kSideTooLong, Verdict::kNoMemory})
    EXPECT_FALSE(ended(verdict).has_lines());
}

TEST(CornerSearch, HasCornersWhereTheLinesMeet) {
  EXPECT_TRUE(ended(Verdict::kFound).has_corners());
  EXPECT_TRUE(ended(Verdict::kTooSmall).has_corners());
  EXPECT_FALSE(ended(Verdict::kDegenerate).has_corners());
}

TEST(ClipFrame, IsToldFromTheEdgeUpToTheWholeNumbersOfSinglePrecision) {
  constexpr int kLongest = 1 << 24;
  EXPECT_TRUE(has_frame(kLongest, kLongest));
  EXPECT_FALSE(has_frame(kLongest + 2, 100));
  EXPECT_FALSE(has_frame(100, kLongest + 2));
}

}  // namespace
