// Eight-connected components of edge maps and bilevel images.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "components/exports.h"
#include "components/lists.h"
#include "support/block_list.h"
#include "support/image.h"

namespace {

using lists::Component;
using lists::component_of;
using support::Image;
using support::List;
using support::stride_of;

/** An edge map from rows of text, first row first: '#' is an edge pixel. Padding bytes are none. */
struct EdgeMap {
  int rows;
  int cols;
  std::vector<unsigned char> bytes;

  EdgeMap(int rows_, int cols_, unsigned char fill = 255)
      : rows(rows_),
        cols(cols_),
        bytes(static_cast<std::size_t>(rows_) * static_cast<std::size_t>(stride_of(cols_, 8)), fill) {}
  explicit EdgeMap(const std::vector<std::string>& text)
      : EdgeMap(static_cast<int>(text.size()), static_cast<int>(text[0].size())) {
    for (int r = 0; r < rows; ++r) {
      for (int c = 0; c < cols; ++c) {
        if (text[static_cast<std::size_t>(r)][static_cast<std::size_t>(c)] == '#') at(r, c) = 0;
      }
    }
  }
  unsigned char& at(int r, int c) {
    return bytes[static_cast<std::size_t>(r) * static_cast<std::size_t>(stride_of(cols, 8)) +
                 static_cast<std::size_t>(c)];
  }
  bool extract(_BLIST& list) { return Gray2Bin(bytes.data(), list, rows, cols); }
};

using Components = std::vector<Component>;

/** The characters of the only line of the only group. */
Components characters(const _BLIST& list) {
  EXPECT_EQ(list.TotalGroups(), 1u);
  EXPECT_EQ(list.TotalLines(), 1u);
  Components found;
  for (const _BNODE* node = list.GetHead()->child->child; node != nullptr; node = node->next) {
    EXPECT_EQ(node->parent, list.GetHead()->child);
    EXPECT_EQ(node->type, BLOCK_CHARACTER);
    found.push_back(component_of(*node));
  }
  EXPECT_EQ(list.TotalCharacters(), found.size());
  EXPECT_EQ(list.used, found.size() + 2);
  return found;
}

Components components(const std::vector<std::string>& text) {
  List list;
  EXPECT_TRUE(EdgeMap(text).extract(list));
  return characters(list);
}

TEST(Gray2Bin, FindsNothingInABlankMapAndReturnsTheGroup) {
  List list;
  EXPECT_FALSE(EdgeMap(20, 30).extract(list));
  EXPECT_TRUE(list.IsEmpty());
  EXPECT_EQ(list.TotalGroups(), 0u);
  EXPECT_EQ(list.TotalLines(), 0u);
  EXPECT_EQ(list.used, 0u);
}

TEST(Gray2Bin, StoresOneGroupWithOneLineOfZeroRectangles) {
  List list;
  EXPECT_TRUE(EdgeMap({"..", ".#"}).extract(list));
  const _BNODE* const group = list.GetHead();
  EXPECT_EQ(group->type, BLOCK_GROUP);
  EXPECT_EQ(group->next, nullptr);
  const _BNODE* const line = group->child;
  EXPECT_EQ(line->type, BLOCK_LINE);
  EXPECT_EQ(line->next, nullptr);
  for (const _BNODE* node : {group, line}) {
    EXPECT_EQ(node->rect.left, 0);
    EXPECT_EQ(node->rect.top, 0);
    EXPECT_EQ(node->rect.right, 0);
    EXPECT_EQ(node->rect.bottom, 0);
  }
  EXPECT_EQ(characters(list), (Components{{1, 1, 1, 1, 1, 1}}));
}

TEST(Gray2Bin, CountsOnlyBytesOfZeroAsForeground) {
  EdgeMap map(1, 5);
  const unsigned char row[5] = {1, 0, 128, 0, 254};
  std::memcpy(map.bytes.data(), row, 5);
  List list;
  EXPECT_TRUE(map.extract(list));
  EXPECT_EQ(characters(list), (Components{{1, 0, 1, 0, 1, 1}, {3, 0, 3, 0, 1, 2}}));
}

TEST(Gray2Bin, DoesNotLookAtPadding) {
  EdgeMap map(3, 5, 0);
  for (int r = 0; r < 3; ++r) {
    for (int c = 0; c < 5; ++c) map.at(r, c) = 255;
  }
  List list;
  EXPECT_FALSE(map.extract(list));
  map.at(1, 4) = 0;
  EXPECT_TRUE(map.extract(list));
  EXPECT_EQ(characters(list), (Components{{4, 1, 4, 1, 1, 1}}));
}

TEST(Gray2Bin, TakesSidesUpTo32767) {
  for (const bool tall : {true, false}) {
    const auto map = [tall](int side) {
      EdgeMap made(tall ? side : 1, tall ? 1 : side);
      made.at(tall ? side - 1 : 0, tall ? 0 : side - 1) = 0;
      return made;
    };
    List list;
    ASSERT_TRUE(map(32767).extract(list));
    EXPECT_EQ(characters(list),
              tall ? (Components{{0, 32766, 0, 32766, 1, 1}}) : (Components{{32766, 0, 32766, 0, 1, 1}}));
    List too_long;
    EXPECT_FALSE(map(32768).extract(too_long));
    EXPECT_TRUE(too_long.IsEmpty());
    EXPECT_FALSE(map(65537).extract(too_long));
  }
}

TEST(Gray2Bin, FindsNothingWithoutRowsOrColumns) {
  unsigned char byte = 0;
  List list;
  const struct { int rows, cols; } cases[] = {{0, 0}, {0, 5}, {5, 0}, {-1, 5}, {5, -1}, {-5, -5}, {-65535, 1}};
  for (const auto& c : cases) {
    EXPECT_FALSE(Gray2Bin(&byte, list, c.rows, c.cols)) << c.rows << " x " << c.cols;
    EXPECT_TRUE(list.IsEmpty());
  }
}

TEST(Components, TouchAtACornerInConsecutiveRows) {
  EXPECT_EQ(components({"#.", ".#"}), (Components{{0, 1, 1, 0, 2, 1}}));
  EXPECT_EQ(components({".#", "#."}), (Components{{0, 1, 1, 0, 2, 1}}));
}

TEST(Components, AreSeparateAcrossAGap) {
  EXPECT_EQ(components({"#..", "..#"}), (Components{{0, 0, 0, 0, 1, 1}, {2, 1, 2, 1, 1, 2}}));
  EXPECT_EQ(components({"#", ".", "#"}), (Components{{0, 0, 0, 0, 1, 1}, {0, 2, 0, 2, 1, 2}}));
  EXPECT_EQ(components({"#.#"}), (Components{{0, 0, 0, 0, 1, 1}, {2, 0, 2, 0, 1, 2}}));
}

TEST(Components, HaveTheFirstRowAsBottomAndTheLastAsTop) {
  EXPECT_EQ(components({".....", "..#..", ".##..", "..##.", "....."}), (Components{{1, 3, 3, 1, 5, 1}}));
}

TEST(Components, MergeWhereTheBarOfAUJoinsItsArms) {
  EXPECT_EQ(components({"#....", "#...#", "#...#", "#####"}), (Components{{0, 3, 4, 0, 10, 1}}));
  // the right arm starts earlier: it survives, though the bar meets the left one first
  EXPECT_EQ(components({"....#", "#...#", "#...#", "#####"}), (Components{{0, 3, 4, 0, 10, 1}}));
  EXPECT_EQ(components({"...#", "...#", "#..#", "####"}), (Components{{0, 3, 3, 0, 8, 1}}));
}

TEST(Components, KeepTheLeftArmWhenBothStartInOneRow) {
  EXPECT_EQ(components({"#...#", "#...#", "#####"}), (Components{{0, 2, 4, 0, 9, 1}}));
}

TEST(Components, KeepTheEarlierArmWhicheverSideItIsOn) {
  // created in the order middle, left, right; the bar meets left, middle, right
  EXPECT_EQ(components({"..#..", "..#..", "#.#.#", "#####"}), (Components{{0, 3, 4, 0, 10, 1}}));
}

TEST(Components, OfACombBecomeOne) {
  EXPECT_EQ(components({"#.#.#.#.#.#", "###########"}), (Components{{0, 1, 10, 0, 17, 1}}));
}

TEST(Components, StandInOrderOfCreationWithoutTheMergedOnes) {
  // label 2 is absorbed by label 1, 4 is the last to be made
  EXPECT_EQ(components({"#.#...#", "###....", "......#"}),
            (Components{{0, 1, 2, 0, 5, 1}, {6, 0, 6, 0, 1, 3}, {6, 2, 6, 2, 1, 4}}));
}

TEST(Components, AddNewOnesBehindTheLastAfterTheLastWasAbsorbed) {
  EXPECT_EQ(components({"#.#....", "###...#", "......."}), (Components{{0, 1, 2, 0, 5, 1}, {6, 1, 6, 1, 1, 3}}));
}

TEST(Components, GrowThroughARunThatReachesFurtherThanTheNextRows) {
  EXPECT_EQ(components({"#########", "#.#.#.#.#"}), (Components{{0, 1, 8, 0, 14, 1}}));
  EXPECT_EQ(components({"####.####", "#.#.#.#.#"}), (Components{{0, 1, 8, 0, 13, 1}}));
}

TEST(Components, CountWholeBytesOfForegroundAsOneRun) {
  for (const int cols : {7, 8, 9, 16, 23, 24, 25, 32, 33}) {
    EdgeMap map(2, cols, 0);
    List list;
    ASSERT_TRUE(map.extract(list));
    EXPECT_EQ(characters(list), (Components{{0, 1, cols - 1, 0, static_cast<unsigned>(2 * cols), 1}}));
  }
}

TEST(Components, CloseARunAtTheEndOfARowOfWholeBytes) {
  EXPECT_EQ(components({"......##........", ".......#.......#"}),
            (Components{{6, 1, 7, 0, 3, 1}, {15, 1, 15, 1, 1, 2}}));
  EXPECT_EQ(components({"........", ".....###"}), (Components{{5, 1, 7, 1, 3, 1}}));
}

TEST(Components, DoNotWrapFromOneRowsEndToTheNextRowsStart) {
  EXPECT_EQ(components({".......#", "........", "#......."}), (Components{{7, 0, 7, 0, 1, 1}, {0, 2, 0, 2, 1, 2}}));
  EXPECT_EQ(components({".......#", "#......."}), (Components{{7, 0, 7, 0, 1, 1}, {0, 1, 0, 1, 1, 2}}));
}

TEST(Components, CloseRunsAtByteBoundaries) {
  EXPECT_EQ(components({"########........########"}), (Components{{0, 0, 7, 0, 8, 1}, {16, 0, 23, 0, 8, 2}}));
  EXPECT_EQ(components({"....####........########....."}), (Components{{4, 0, 7, 0, 4, 1}, {16, 0, 23, 0, 8, 2}}));
}

TEST(Components, FillTheWidestRowOfRuns) {
  for (const int cols : {1, 2, 3, 8, 9, 17}) {
    EdgeMap map(1, cols);
    for (int c = 0; c < cols; c += 2) map.at(0, c) = 0;
    List list;
    ASSERT_TRUE(map.extract(list));
    EXPECT_EQ(list.TotalCharacters(), static_cast<unsigned long>((cols + 1) / 2));
  }
}

TEST(Components, AreDroppedWhenThePoolIsExhausted) {
  EdgeMap map(250, 250);
  for (int r = 0; r < 250; r += 2) {
    for (int c = 0; c < 250; c += 2) map.at(r, c) = 0;
  }
  List list;
  EXPECT_TRUE(map.extract(list));
  EXPECT_EQ(list.TotalCharacters(), 9998u);  // 10,000 nodes without the group and the line
  const Components found = characters(list);
  // 125 a row: the last one stored is the 123rd of the 80th row
  EXPECT_EQ(found.back(), (Component{244, 158, 244, 158, 1, 9998}));
}

TEST(Components, GrowOnAfterThePoolIsExhausted) {
  EdgeMap map(163, 250);
  for (int r = 0; r < 160; r += 2) {
    for (int c = 0; c < 250; c += 2) map.at(r, c) = 0;
  }
  map.at(159, 0) = map.at(160, 0) = 0;  // continue the first component of row 158
  map.at(161, 249) = 0;                 // a new one, dropped
  map.at(162, 249) = 0;
  List list;
  EXPECT_TRUE(map.extract(list));
  const Components found = characters(list);
  ASSERT_EQ(found.size(), 9998u);
  EXPECT_EQ(found[79 * 125], (Component{0, 160, 0, 158, 3, 79 * 125 + 1}));
}

TEST(Components, FailWithoutANodeForTheGroup) {
  List list;
  for (int i = 0; i < 10000; ++i) list.RequestNode(MYRECT{}, BLOCK_NONE, nullptr, nullptr, nullptr, nullptr);
  EXPECT_FALSE(EdgeMap({"#"}).extract(list));
  EXPECT_TRUE(list.IsEmpty());
}

TEST(Components, LeaveTheGroupWithoutANodeForTheLine) {
  List list;
  for (int i = 0; i < 9999; ++i) list.RequestNode(MYRECT{}, BLOCK_NONE, nullptr, nullptr, nullptr, nullptr);
  EXPECT_FALSE(EdgeMap({"#"}).extract(list));
  EXPECT_EQ(list.TotalGroups(), 1u);
  EXPECT_EQ(list.TotalLines(), 0u);
  ASSERT_NE(list.GetHead(), nullptr);
  EXPECT_EQ(list.GetHead()->child, nullptr);
}

TEST(Components, ReturnTheGroupWithoutANodeForAnyCharacter) {
  List list;
  for (int i = 0; i < 9998; ++i) list.RequestNode(MYRECT{}, BLOCK_NONE, nullptr, nullptr, nullptr, nullptr);
  EXPECT_FALSE(EdgeMap({"#.#", "..."}).extract(list));
  EXPECT_TRUE(list.IsEmpty());
  EXPECT_EQ(list.used, 9998u);
}

TEST(ExtractComponents, ReadABilevelImageWithForegroundZero) {
  Image image(10, 3, 1, 0xFF);
  image.at(0, 0) = 0x7F;  // column 0
  image.at(1, 0) = 0xBF;  // column 1
  image.at(2, 1) = 0xBF;  // column 9
  List list;
  EXPECT_EQ(Extract_Eight_Connected_Components(*image.ptr(), list), 1);
  EXPECT_EQ(characters(list), (Components{{0, 1, 1, 0, 2, 1}, {9, 2, 9, 2, 1, 2}}));
}

TEST(ExtractComponents, OfAWhiteImageIsNothing) {
  Image image(10, 3, 1, 0xFF);
  List list;
  EXPECT_EQ(Extract_Eight_Connected_Components(*image.ptr(), list), 0);
  EXPECT_TRUE(list.IsEmpty());
}

TEST(ExtractComponents, DropWhatThePoolHasNoNodeFor) {
  Image image(250, 250, 1, 0xFF);
  for (int r = 0; r < 250; r += 2) {
    for (int i = 0; i < 32; ++i) image.at(r, i) = 0x55;
  }
  List list;
  EXPECT_EQ(Extract_Eight_Connected_Components(*image.ptr(), list), 1);
  EXPECT_EQ(list.TotalCharacters(), 9998u);
  EXPECT_EQ(characters(list).back(), (Component{244, 158, 244, 158, 1, 9998}));
}

TEST(ExtractComponents, TakeWidthAndHeightAsSixteenBits) {
  Image image(8, 2, 1, 0xFF);
  image.at(0, 0) = 0xFE;
  image.at(1, 0) = 0xFE;
  image.header().biWidth = 0x30008;
  image.header().biHeight = 0x10001;
  List list;
  EXPECT_EQ(Extract_Eight_Connected_Components(*image.ptr(), list), 1);
  EXPECT_EQ(characters(list), (Components{{7, 0, 7, 0, 1, 1}}));
}

TEST(ExtractComponents, WrapColumnsBeyond32767InTheirRectangles) {
  Image image(40000, 1, 1, 0xFF);
  image.at(0, 4999) = 0xFC;  // columns 39998 and 39999
  List list;
  EXPECT_EQ(Extract_Eight_Connected_Components(*image.ptr(), list), 1);
  EXPECT_EQ(characters(list), (Components{{39998 - 65536, 0, 39999 - 65536, 0, 2, 1}}));
}

}  // namespace
