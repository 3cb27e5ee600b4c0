// Corners by gradient direction on images so slender that there is memory for an angle or two at a time.
#include <gtest/gtest.h>

#include <initializer_list>
#include <vector>

#include "autoclip/gradient_corners.h"

namespace {

using vantrel::autoclip::find_gradient_corners;
using vantrel::autoclip::GradientSearch;

void expect_no_pair(const std::vector<unsigned char>& gray, int rows, int cols) {
  const GradientSearch search = find_gradient_corners({gray.data(), rows, cols, cols});
  EXPECT_TRUE(search.complete);
  EXPECT_FALSE(search.has_lines);
}

TEST(GradientCorners, AreNotMadeOfTwoPixelsOfALevelEdge) {
  // In the middle a pixel votes for all angles alike, at one distance; far from there another one does not join it.
  constexpr int kCols = 40000;
  std::vector<unsigned char> gray(5 * kCols, 0);
  for (const int at : {kCols / 2, kCols - 1000}) gray[static_cast<std::size_t>(3 * kCols + at)] = 255;
  expect_no_pair(gray, 5, kCols);
}

TEST(GradientCorners, AreNotMadeOfALevelEdgeWithoutAnUprightOne) {
  // Two pixels above each other vote together most at the slanted angles: the first border leans as far as can be, and
  // beside its angle nothing is left for the second.
  constexpr int kRows = 40000;
  std::vector<unsigned char> gray(4 * kRows, 0);
  for (std::size_t i = 2 * kRows; i < gray.size(); ++i) gray[i] = 255;
  expect_no_pair(gray, kRows, 4);
}

}  // namespace
