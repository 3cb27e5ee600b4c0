#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>
#include <random>
#include <vector>

#include "anywhere/barrier_map.h"
#include "anywhere/ground.h"

namespace {

using vantrel::anywhere::barrier_map;
using vantrel::anywhere::BarrierMap;
using vantrel::anywhere::Copy;
using vantrel::image::WorkArray;

/** A copy without colour, or with one plane beside the light. */
Copy copy_of_levels(int rows, int cols, const std::vector<int>& light, const std::vector<int>& red_green = {}) {
  Copy copy;
  copy.rows = rows;
  copy.cols = cols;
  copy.plane_count = red_green.empty() ? 1 : 3;
  for (std::size_t plane = 0; plane < copy.plane_count; ++plane) {
    copy.planes[plane] = WorkArray<std::int16_t>(copy.size(), vantrel::image::Fill::kZero);
    const std::vector<int>& values = plane == 0 ? light : red_green;
    for (std::size_t i = 0; plane < 2 && i < values.size(); ++i)
      copy.planes[plane][i] = static_cast<std::int16_t>(values[i]);
  }
  return copy;
}

std::vector<int> distances(const Copy& copy) {
  const BarrierMap map = barrier_map(copy);
  EXPECT_TRUE(map.ready());
  return {map.distances.get(), map.distances.get() + map.distances.size()};
}

TEST(BarrierMap, OfASinglePixelIsItsStep) {
  EXPECT_EQ(distances(copy_of_levels(3, 3,
                                     {100, 100, 100,  //
                                      100, 700, 100,  //
                                      100, 100, 100})),
            (std::vector<int>{0, 0, 0,    //
                              0, 600, 0,  //
                              0, 0, 0}));
}

TEST(BarrierMap, FollowsTheGroundWhereItChangesSlowly) {
  // Every pixel of the frame is ground, so the middle row is 20 from the nearest of it, not 80.
  EXPECT_EQ(distances(copy_of_levels(5, 3,
                                     {100, 100, 100,  //
                                      120, 120, 120,  //
                                      140, 160, 140,  //
                                      120, 120, 120,  //
                                      100, 100, 100})),
            (std::vector<int>{0, 0, 0, 0, 0, 0, 0, 20, 0, 0, 0, 0, 0, 0, 0}));
}

TEST(BarrierMap, TakesTheLargestMinusTheSmallestAlongThePath) {
  // A wall of 900 around a pixel of 50: the path rises by 800 and falls by 850.
  EXPECT_EQ(distances(copy_of_levels(5, 5, {100, 100, 100, 100, 100,  //
                                            100, 900, 900, 900, 100,  //
                                            100, 900, 50,  900, 100,  //
                                            100, 900, 900, 900, 100,  //
                                            100, 100, 100, 100, 100})),
            (std::vector<int>{0, 0,   0,   0,   0,  //
                              0, 800, 800, 800, 0,  //
                              0, 800, 850, 800, 0,  //
                              0, 800, 800, 800, 0,  //
                              0, 0,   0,   0,   0}));
}

TEST(BarrierMap, SeesACardThatTouchesTheFrame) {
  EXPECT_EQ(distances(copy_of_levels(4, 6, {100, 100, 900, 900, 100, 100,  //
                                            100, 100, 900, 900, 100, 100,  //
                                            100, 100, 100, 100, 100, 100,  //
                                            100, 100, 100, 100, 100, 100})),
            (std::vector<int>{0, 0, 800, 800, 0, 0,  //
                              0, 0, 800, 800, 0, 0,  //
                              0, 0, 0,   0,   0, 0,  //
                              0, 0, 0,   0,   0, 0}));
}

TEST(BarrierMap, SeesWhatDiffersInColourAlone) {
  std::vector<int> red_green(9, 0);
  red_green[4] = -300;
  EXPECT_EQ(distances(copy_of_levels(3, 3, std::vector<int>(9, 1000), red_green)),
            (std::vector<int>{0, 0, 0, 0, 300, 0, 0, 0, 0}));
}

TEST(BarrierMap, OfWhatHasNoInsideIsZero) {
  EXPECT_EQ(distances(copy_of_levels(1, 3, {5, 9, 7})), (std::vector<int>{0, 0, 0}));
  EXPECT_EQ(distances(copy_of_levels(3, 1, {5, 9, 7})), (std::vector<int>{0, 0, 0}));
  EXPECT_EQ(distances(copy_of_levels(0, 0, {})), std::vector<int>{});
  EXPECT_EQ(distances(copy_of_levels(2, 2, {5, 5, 7, 6})), (std::vector<int>{0, 0, 0, 0}));
}

/** The least difference of extremes over all paths: for each pair of bounds, what they let through. */
std::vector<int> exact_distances(int rows, int cols, const std::vector<int>& values) {
  std::vector<int> best(values.size(), 1 << 20);
  for (const int low : values) {
    for (const int high : values) {
      if (high < low) continue;
      const auto open = [&](int i) {
        return values[static_cast<std::size_t>(i)] >= low && values[static_cast<std::size_t>(i)] <= high;
      };
      std::vector<bool> reached(values.size());
      std::vector<int> stack;
      const auto reach = [&](int i) {
        if (!open(i) || reached[static_cast<std::size_t>(i)]) return;
        reached[static_cast<std::size_t>(i)] = true;
        stack.push_back(i);
      };
      for (int i = 0; i < rows * cols; ++i)
        if (i / cols == 0 || i / cols == rows - 1 || i % cols == 0 || i % cols == cols - 1) reach(i);
      while (!stack.empty()) {
        const int i = stack.back();
        stack.pop_back();
        best[static_cast<std::size_t>(i)] = std::min(best[static_cast<std::size_t>(i)], high - low);
        if (i / cols > 0) reach(i - cols);
        if (i / cols < rows - 1) reach(i + cols);
        if (i % cols > 0) reach(i - 1);
        if (i % cols < cols - 1) reach(i + 1);
      }
    }
  }
  return best;
}

TEST(BarrierMap, IsNeverBelowTheExactDistanceAndMostlyEqualsIt) {
  std::mt19937 random(7);
  int equal = 0;
  int all = 0;
  for (int picture = 0; picture < 20; ++picture) {
    std::vector<int> values(8 * 7);
    // All of the frame is ground: no value is further from its middle than the ground's tolerance.
    for (int& value : values) value = 200 + static_cast<int>(random() % 150);
    const std::vector<int> exact = exact_distances(8, 7, values);
    const std::vector<int> found = distances(copy_of_levels(8, 7, values));
    for (std::size_t i = 0; i < values.size(); ++i) {
      EXPECT_GE(found[i], exact[i]);
      equal += found[i] == exact[i];
      ++all;
    }
  }
  EXPECT_EQ(all, 1120);
  EXPECT_GT(equal, 1008);  // 90 %, of noise without any ground
}

TEST(Ground, FrameRunsClockwiseOncePerPixel) {
  const Copy copy = copy_of_levels(3, 4, std::vector<int>(12));
  std::vector<std::size_t> frame;
  for (int i = 0; i < vantrel::anywhere::frame_length(copy); ++i) frame.push_back(frame_index(copy, i));
  EXPECT_EQ(frame, (std::vector<std::size_t>{0, 1, 2, 3, 7, 11, 10, 9, 8, 4}));
}

TEST(Ground, HasTheColoursThatTheFrameShowsMost) {
  // 14 pixels of 100, of which 8 are kept apart; 6 of 1000 are enough for a second colour, 2 of 3000 are not.
  const Copy copy = copy_of_levels(5, 7, {100, 100, 100, 100, 100, 1000, 1000,  //
                                          100, 0,   0,   0,   0,   0,    1000,  //
                                          100, 0,   0,   0,   0,   0,    1000,  //
                                          110, 0,   0,   0,   0,   0,    3000,  //
                                          110, 110, 110, 110, 110, 1000, 3000});
  const vantrel::anywhere::Ground ground = find_ground(copy);
  ASSERT_EQ(ground.count, 2u);
  EXPECT_EQ(ground.colours[0][0], 104);
  EXPECT_EQ(ground.colours[1][0], 1000);
  EXPECT_TRUE(belongs_to(ground, {104 + 160, 0, 0}));
  EXPECT_FALSE(belongs_to(ground, {104 + 161, 0, 0}));
  EXPECT_FALSE(belongs_to(ground, {104, 161, 0}));
}

TEST(Ground, HasSheetsThatHideMuchOfIt) {
  std::vector<int> values(100, 100);
  for (std::size_t row = 2; row < 8; ++row)
    for (std::size_t col = 2; col < 8; ++col) values[row * 10 + col] = row < 5 ? 900 : 2000;
  values[55] = 1500;
  const Copy copy = copy_of_levels(10, 10, values);
  const vantrel::anywhere::Ground sheets = find_sheets(copy, find_ground(copy));
  ASSERT_EQ(sheets.count, 2u);
  EXPECT_EQ(sheets.colours[0][0] + sheets.colours[1][0], 2900);
}

}  // namespace
