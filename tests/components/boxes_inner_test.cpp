#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "components/components.h"
#include "components/exports.h"

namespace vantrel::components {
namespace {

using geometry::Rect;

/** An edge map of padded rows. */
struct Map {
  int rows;
  int cols;
  int stride;
  std::vector<unsigned char> bytes;

  Map(int row_count, int col_count)
      : rows(row_count), cols(col_count), stride(static_cast<int>(image::stride_bytes(col_count, 8))) {
    bytes.assign(static_cast<std::size_t>(rows * stride), 255);
  }
  void mark(int row, int col) { bytes[static_cast<std::size_t>(row * stride + col)] = 0; }
  image::ConstPixels view() const { return {bytes.data(), rows, cols, stride}; }
};

std::vector<Rect> boxes_of(const Map& map) {
  const ComponentBoxes boxes(map.view());
  EXPECT_TRUE(boxes.ready());
  return {boxes.all().begin(), boxes.all().end()};
}

/** The same through the block list. */
std::vector<Rect> list_of(Map& map) {
  _BLIST list{};
  EXPECT_TRUE(list.Constructor(500, 100));
  std::vector<Rect> boxes;
  if (Gray2Bin(map.bytes.data(), list, map.rows, map.cols)) {
    for (const _BNODE* node = list.GetHead()->child->child; node != nullptr; node = node->next) {
      boxes.push_back({{node->rect.bottom, node->rect.top + 1}, {node->rect.left, node->rect.right + 1}});
    }
  }
  list.Destructor();
  return boxes;
}

TEST(ComponentBoxes, AreThoseOfEightConnectedPixels) {
  Map map(8, 10);
  map.mark(1, 1);
  map.mark(2, 2);  // touches at a corner
  map.mark(1, 7);
  map.mark(6, 9);
  EXPECT_EQ(boxes_of(map), (std::vector<Rect>{{{1, 3}, {1, 3}}, {{1, 2}, {7, 8}}, {{6, 7}, {9, 10}}}));
}

TEST(ComponentBoxes, MergeWhatALaterRowConnects) {
  Map map(3, 7);
  for (const int col : {1, 5}) map.mark(0, col);
  for (const int col : {1, 5}) map.mark(1, col);
  for (int col = 1; col <= 5; ++col) map.mark(2, col);
  EXPECT_EQ(boxes_of(map), (std::vector<Rect>{{{0, 3}, {1, 6}}}));
}

TEST(ComponentBoxes, AreNoneOnAMapWithoutEdgesOrPixels) {
  EXPECT_TRUE(boxes_of(Map(5, 5)).empty());
  EXPECT_TRUE(boxes_of(Map(0, 5)).empty());
  EXPECT_TRUE(boxes_of(Map(5, 0)).empty());
}

TEST(ComponentBoxes, AreThoseOfTheListInItsOrder) {
  std::mt19937 random(11);
  for (int round = 0; round < 200; ++round) {
    Map map(1 + static_cast<int>(random() % 60), 1 + static_cast<int>(random() % 70));
    const auto share = 1 + random() % 9;
    for (int r = 0; r < map.rows; ++r) {
      for (int c = 0; c < map.cols; ++c) {
        if (random() % 10 < share) map.mark(r, c);
      }
    }
    ASSERT_EQ(boxes_of(map), list_of(map)) << "round " << round;
  }
}

TEST(ComponentBoxes, AreAtMost9998AndTheRestIsDropped) {
  Map map(301, 301);
  for (int r = 0; r < map.rows; r += 2) {
    for (int c = 0; c < map.cols; c += 2) map.mark(r, c);
  }
  const std::vector<Rect> boxes = boxes_of(map);
  ASSERT_EQ(boxes.size(), 9998u);
  // 151 to a row: the last one kept is the 32nd of the 67th row of specks.
  EXPECT_EQ(boxes.back(), (Rect{{132, 133}, {62, 63}}));
  EXPECT_EQ(boxes, list_of(map));
}

TEST(ComponentBoxes, UseAgainWhatMergersGiveUp) {
  // Combs whose teeth meet below: every row of combs starts with as many components as there are teeth.
  Map map(900, 401);
  for (int top = 0; top + 2 < map.rows; top += 4) {
    for (int c = 0; c < map.cols; c += 2) map.mark(top, c);
    for (int c = 0; c < map.cols; ++c) map.mark(top + 1, c);
  }
  const std::vector<Rect> boxes = boxes_of(map);
  ASSERT_EQ(boxes.size(), 225u);
  EXPECT_EQ(boxes.back(), (Rect{{896, 898}, {0, 401}}));
}

}  // namespace
}  // namespace vantrel::components
