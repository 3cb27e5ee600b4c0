// The block list: moving, sorting and tidying.
#include <gtest/gtest.h>

#include "components/exports.h"
#include "components/lists.h"

namespace {

using namespace lists;

TEST(BlockListChangeLine, GivesAnEmptyParentTheNodesRectangle) {
  List list;
  _BNODE* const group = list.group();
  _BNODE* const from = list.line(group);
  _BNODE* const to = list.line(group, rect(50, 60, 70, 80, 90));
  _BNODE* const node = list.character(from, rect(-1, 2, 3, -1, 5));
  list.ChangeLine(from, node, to);
  EXPECT_EQ(from->child, nullptr);
  EXPECT_EQ(children(to), (Nodes{node}));
  expect_rect(to->rect, -1, 2, 3, -1);
  EXPECT_EQ(to->rect.reserved, 90);
}

TEST(BlockListChangeLine, WidensAParentThatHasChildren) {
  List list;
  _BNODE* const group = list.group();
  _BNODE* const from = list.line(group);
  _BNODE* const to = list.line(group, rect(10, 40, 30, 20, 90));
  _BNODE* const old = list.character(to);
  _BNODE* const inside = list.character(from, rect(15, 35, 25, 25, 1));
  _BNODE* const outside = list.character(from, rect(-5, 100, 200, -7, 2));
  list.ChangeLine(from, inside, to);
  expect_rect(to->rect, 10, 40, 30, 20);
  list.ChangeLine(from, outside, to);
  expect_rect(to->rect, -5, 100, 200, -7);
  EXPECT_EQ(to->rect.reserved, 90);
  EXPECT_EQ(children(to), (Nodes{outside, inside, old}));
}

TEST(BlockListChangeLine, DoesNotWidenToALeftOrBottomOfMinusOne) {
  List list;
  _BNODE* const group = list.group();
  _BNODE* const from = list.line(group);
  _BNODE* const to = list.line(group, rect(10, 40, 30, 20));
  list.character(to);
  list.ChangeLine(from, list.character(from, rect(-1, 50, 60, -1)), to);
  expect_rect(to->rect, 10, 50, 60, 20);
}

TEST(BlockListChangeLine, LeavesRectanglesAloneForANodeWithoutType) {
  List list;
  _BNODE* const group = list.group();
  _BNODE* const from = list.line(group);
  _BNODE* const to = list.line(group, rect(10, 40, 30, 20));
  _BNODE* const node = list.character(from, rect(1, 99, 99, 1));
  node->type = BLOCK_NONE;
  list.ChangeLine(from, node, to);
  expect_rect(to->rect, 10, 40, 30, 20);
  EXPECT_EQ(children(to), (Nodes{node}));
}

TEST(BlockListChangeLine, TakesMiddleAndLastChildren) {
  List list;
  _BNODE* const group = list.group();
  _BNODE* const from = list.line(group);
  _BNODE* const to = list.line(group);
  _BNODE* const a = list.character(from);
  _BNODE* const b = list.character(from);
  _BNODE* const c = list.character(from);
  list.ChangeLine(from, b, to);
  EXPECT_EQ(children(from), (Nodes{a, c}));
  list.ChangeLine(from, c, to);
  EXPECT_EQ(children(from), (Nodes{a}));
  EXPECT_EQ(children(to), (Nodes{c, b}));
  EXPECT_EQ(list.TotalCharacters(), 3u);
  EXPECT_EQ(list.used, 6u);
}

TEST(BlockListChangeLine, WidensAParentByItsOwnOnlyChild) {
  List list;
  _BNODE* const line = list.line(list.group(), rect(10, 10, 10, 10));
  _BNODE* const node = list.character(line, rect(20, 30, 5, 25));
  list.ChangeLine(line, node, line);  // it had a child before the move, so nothing is copied
  expect_rect(line->rect, 10, 30, 10, 10);
  EXPECT_EQ(children(line), (Nodes{node}));
}

TEST(BlockListSort, OrdersByRightAscendingAndDescending) {
  List list;
  _BNODE* const line = list.line(list.group());
  _BNODE* const c = list.character(line, rect(0, 0, 300, 0));
  _BNODE* const a = list.character(line, rect(0, 0, -100, 0));
  _BNODE* const d = list.character(line, rect(0, 0, 400, 0));
  _BNODE* const b = list.character(line, rect(0, 0, 200, 0));
  list.SortCharacter(line, true);
  EXPECT_EQ(children(line), (Nodes{a, b, c, d}));
  list.SortCharacter(line, false);
  EXPECT_EQ(children(line), (Nodes{d, c, b, a}));
  list.SortCharacter(line, true);
  EXPECT_EQ(children(line), (Nodes{a, b, c, d}));
}

TEST(BlockListSort, OrdersByBottomAscending) {
  List list;
  _BNODE* const line = list.line(list.group());
  _BNODE* const c = list.character(line, rect(0, 0, 0, 300));
  _BNODE* const a = list.character(line, rect(0, 0, 0, -100));
  _BNODE* const d = list.character(line, rect(0, 0, 0, 400));
  _BNODE* const b = list.character(line, rect(0, 0, 0, 200));
  SortCharacter(list, line);
  EXPECT_EQ(children(line), (Nodes{a, b, c, d}));
}

TEST(BlockListSort, KeepsTheOrderOfEqualKeys) {
  List list;
  _BNODE* const line = list.line(list.group());
  _BNODE* const high1 = list.character(line, rect(0, 0, 9, 9));
  _BNODE* const low1 = list.character(line, rect(0, 0, 4, 4));
  _BNODE* const high2 = list.character(line, rect(0, 0, 9, 9));
  _BNODE* const low2 = list.character(line, rect(0, 0, 4, 4));
  const Nodes ascending{low1, low2, high1, high2};
  SortCharacter(list, line);
  EXPECT_EQ(children(line), ascending);
  list.SortCharacter(line, true);
  EXPECT_EQ(children(line), ascending);
  list.SortCharacter(line, false);
  EXPECT_EQ(children(line), (Nodes{high1, high2, low1, low2}));
}

TEST(BlockListSort, LeavesASingleChildInPlace) {
  List list;
  _BNODE* const line = list.line(list.group());
  _BNODE* const only = list.character(line, rect(1, 2, 3, 4));
  list.SortCharacter(line, true);
  list.SortCharacter(line, false);
  SortCharacter(list, line);
  EXPECT_EQ(children(line), (Nodes{only}));
}

TEST(BlockListSort, WidensTheParentWithEveryMove) {
  List list;
  _BNODE* const group = list.group();
  for (int order = 0; order < 3; ++order) {
    _BNODE* const line = list.line(group, rect(100, 0, 0, 100, 7));
    list.character(line, rect(20, 30, 40, 10));
    list.character(line, rect(30, 50, 35, 40));
    if (order == 2) {
      SortCharacter(list, line);
    } else {
      list.SortCharacter(line, order == 0);
    }
    expect_rect(line->rect, 20, 50, 40, 10);
    EXPECT_EQ(line->rect.reserved, 7);
  }
}

TEST(BlockListSort, AcceptsAParentWithoutChildren) {
  List list;
  _BNODE* const line = list.line(list.group(), rect(1, 2, 3, 4));
  list.SortCharacter(line, true);
  SortCharacter(list, line);
  EXPECT_EQ(line->child, nullptr);
  expect_rect(line->rect, 1, 2, 3, 4);
}

TEST(BlockListSort, OrdersManyCharacters) {
  List list;
  _BNODE* const line = list.line(list.group());
  for (int i = 0; i < 1000; ++i) list.character(line, rect(0, 0, 0, i * 7919 % 1009));
  SortCharacter(list, line);
  const Nodes sorted = children(line);
  ASSERT_EQ(sorted.size(), 1000u);
  for (std::size_t i = 1; i < sorted.size(); ++i) ASSERT_LT(sorted[i - 1]->rect.bottom, sorted[i]->rect.bottom);
}

TEST(BlockListAdjustGroupData, MakesEveryLineTheUnionOfItsCharacters) {
  List list;
  _BNODE* const group = list.group();
  group->rect = rect(1, 2, 3, 4, 5);
  _BNODE* const line = list.line(group, rect(500, 500, 500, 500, 11));
  line->type = BLOCK_NONE;
  _BNODE* const a = list.character(line, rect(30, 60, 40, 50));
  _BNODE* const b = list.character(line, rect(-3, 20, 90, 10));
  a->type = BLOCK_NONE;
  a->parent = nullptr;
  b->parent = group;
  list.AdjustGroupData(group);
  EXPECT_EQ(children(line), (Nodes{a, b}));
  EXPECT_EQ(a->type, BLOCK_CHARACTER);
  EXPECT_EQ(b->type, BLOCK_CHARACTER);
  EXPECT_EQ(line->type, BLOCK_LINE);
  expect_rect(line->rect, -3, 60, 90, 10);
  EXPECT_EQ(line->rect.reserved, 11);
  expect_rect(group->rect, 1, 2, 3, 4);
}

TEST(BlockListAdjustGroupData, StartsTheUnionAtZeroAndNineThousand) {
  List list;
  _BNODE* const group = list.group();
  _BNODE* const low = list.line(group);
  list.character(low, rect(-30, -5, -20, -10));
  _BNODE* const high = list.line(group);
  list.character(high, rect(12000, 15000, 13000, 14000));
  list.AdjustGroupData(group);
  expect_rect(low->rect, -30, 0, 0, -10);
  expect_rect(high->rect, 9999, 15000, 13000, 9999);
}

TEST(BlockListAdjustGroupData, ReturnsLinesWithoutCharacters) {
  List list;
  _BNODE* const group = list.group();
  list.line(group);
  _BNODE* const kept = list.line(group);
  list.character(kept, rect(1, 4, 3, 2));
  list.line(group);
  list.line(group);
  list.AdjustGroupData(group);
  EXPECT_EQ(children(group), (Nodes{kept}));
  EXPECT_EQ(list.TotalLines(), 1u);
  EXPECT_EQ(list.used, 3u);
}

TEST(BlockListAdjustGroupData, EmptiesAGroupOfEmptyLines) {
  List list;
  _BNODE* const group = list.group();
  list.line(group);
  list.line(group);
  list.AdjustGroupData(group);
  EXPECT_EQ(group->child, nullptr);
  EXPECT_EQ(list.TotalLines(), 0u);
  EXPECT_EQ(list.GetHead(), group);
  list.AdjustGroupData(group);
  EXPECT_EQ(list.used, 1u);
}

}  // namespace
