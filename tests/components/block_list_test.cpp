// The block list: its pool, the links of its tree, moving, sorting and tidying.
#include "components/exports.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

MYRECT rect(int left, int top, int right, int bottom, int reserved = 0) {
  return {static_cast<std::int16_t>(left), static_cast<std::int16_t>(top), static_cast<std::int16_t>(right),
          static_cast<std::int16_t>(bottom), static_cast<std::int16_t>(reserved)};
}

void expect_rect(const MYRECT& actual, int left, int top, int right, int bottom) {
  EXPECT_EQ(actual.left, left);
  EXPECT_EQ(actual.top, top);
  EXPECT_EQ(actual.right, right);
  EXPECT_EQ(actual.bottom, bottom);
}

/** A constructed list, destroyed at the end of the scope. */
struct List : _BLIST {
  explicit List(unsigned long initial = 500, unsigned long step = 100) { EXPECT_TRUE(Constructor(initial, step)); }
  List(const List&) = delete;
  List& operator=(const List&) = delete;
  ~List() { Destructor(); }

  _BNODE* request() { return RequestNode(rect(0, 0, 0, 0), BLOCK_CHARACTER, nullptr, nullptr, nullptr, nullptr); }
  _BNODE* group() {
    _BNODE* last = head;
    while (last != nullptr && last->next != nullptr) last = last->next;
    return RequestGroup(last, nullptr, rect(0, 0, 0, 0));
  }
  /** A line or character behind the last child of `parent`. */
  _BNODE* line(_BNODE* parent, MYRECT r = rect(0, 0, 0, 0)) {
    return RequestLine(parent, last_child(parent), nullptr, r);
  }
  _BNODE* character(_BNODE* parent, MYRECT r = rect(0, 0, 0, 0)) {
    return RequestCharacter(parent, last_child(parent), nullptr, r);
  }
  static _BNODE* last_child(_BNODE* parent) {
    _BNODE* last = parent->child;
    while (last != nullptr && last->next != nullptr) last = last->next;
    return last;
  }
};

using Nodes = std::vector<const _BNODE*>;

/** The children in order; the links back must agree. */
Nodes children(const _BNODE* parent) {
  Nodes nodes;
  const _BNODE* before = nullptr;
  for (const _BNODE* node = parent->child; node != nullptr; before = node, node = node->next) {
    EXPECT_EQ(node->prev, before);
    EXPECT_EQ(node->parent, parent);
    nodes.push_back(node);
  }
  return nodes;
}

TEST(BlockListConstructor, PreparesTheFirstNodesInPoolOrder) {
  List list(500, 100);
  ASSERT_NE(list.pool, nullptr);
  EXPECT_EQ(list.free, list.pool);
  EXPECT_EQ(list.head, nullptr);
  EXPECT_EQ(list.capacity, 10000u);
  EXPECT_EQ(list.growthStep, 100u);
  EXPECT_EQ(list.prepared, 500u);
  EXPECT_EQ(list.used, 0u);
  EXPECT_EQ(list.groups, 0u);
  EXPECT_EQ(list.lines, 0u);
  EXPECT_EQ(list.characters, 0u);
  for (int i = 0; i < 499; ++i) ASSERT_EQ(list.pool[i].next, list.pool + i + 1);
  EXPECT_EQ(list.pool[499].next, nullptr);
  EXPECT_TRUE(list.IsEmpty());
  EXPECT_EQ(list.GetHead(), nullptr);
}

TEST(BlockListConstructor, StaysInsideThePoolForAnyFirstCount) {
  List none(0, 100);
  EXPECT_NE(none.request(), nullptr);
  List many(20000, 100);
  for (int i = 0; i < 10000; ++i) ASSERT_NE(many.request(), nullptr);
  EXPECT_EQ(many.request(), nullptr);
}

TEST(BlockListDestructor, IsHarmlessWithoutAPool) {
  _BLIST list{};
  list.Destructor();
  EXPECT_EQ(list.pool, nullptr);
}

TEST(BlockListRequest, PreparesAStepOfNodesWhenTheFreeListRunsDry) {
  List list(500, 100);
  for (int i = 0; i < 500; ++i) ASSERT_EQ(list.request(), list.pool + i);
  EXPECT_EQ(list.free, nullptr);
  EXPECT_EQ(list.prepared, 500u);
  EXPECT_EQ(list.request(), list.pool + 500);
  EXPECT_EQ(list.prepared, 600u);
  EXPECT_EQ(list.free, list.pool + 501);
  for (int i = 501; i < 599; ++i) ASSERT_EQ(list.pool[i].next, list.pool + i + 1);
  EXPECT_EQ(list.pool[599].next, nullptr);
}

TEST(BlockListRequest, EndsAtTenThousandLiveNodes) {
  List list(500, 100);
  for (int i = 0; i < 10000; ++i) ASSERT_EQ(list.request(), list.pool + i);
  EXPECT_EQ(list.request(), nullptr);
  EXPECT_EQ(list.used, 10000u);
  EXPECT_EQ(list.RequestGroup(nullptr, nullptr, rect(0, 0, 0, 0)), nullptr);
  EXPECT_EQ(list.groups, 0u);
  EXPECT_TRUE(list.IsEmpty());
}

TEST(BlockListRequest, PreparesOnlyWhatIsLeftInTheLastStep) {
  List list(500, 300);  // 500 + 31 * 300 = 9800
  for (int i = 0; i < 9801; ++i) ASSERT_NE(list.request(), nullptr);
  EXPECT_EQ(list.prepared, 10000u);
  for (int i = 9801; i < 10000; ++i) ASSERT_NE(list.request(), nullptr);
  EXPECT_EQ(list.request(), nullptr);
}

TEST(BlockListRequest, GivesNothingWhenTheStepIsZero) {
  List list(1, 0);
  EXPECT_NE(list.request(), nullptr);
  EXPECT_EQ(list.request(), nullptr);
}

TEST(BlockListRequest, ReusesReturnedNodesBeforePreparingMore) {
  List list(2, 100);
  _BNODE* const first = list.request();
  list.request();
  list.ReturnNode(first);
  EXPECT_EQ(list.request(), first);
  EXPECT_EQ(list.prepared, 2u);
}

TEST(BlockListRequest, FillsTheNodeAndLinksNothing) {
  List list;
  _BNODE relatives[4] = {};
  list.pool[0].flags = 5;
  list.pool[0].pixelCount = 6;
  list.pool[0].label = 7;
  _BNODE* const node =
      list.RequestNode(rect(1, 2, 3, 4, 5), BLOCK_LINE, relatives, relatives + 1, relatives + 2, relatives + 3);
  ASSERT_EQ(node, list.pool);
  expect_rect(node->rect, 1, 2, 3, 4);
  EXPECT_EQ(node->rect.reserved, 5);
  EXPECT_EQ(node->type, BLOCK_LINE);
  EXPECT_EQ(node->flags, 0);
  EXPECT_EQ(node->pixelCount, 0u);
  EXPECT_EQ(node->label, 7);  // not cleared
  EXPECT_EQ(node->prev, relatives);
  EXPECT_EQ(node->next, relatives + 1);
  EXPECT_EQ(node->parent, relatives + 2);
  EXPECT_EQ(node->child, relatives + 3);
  EXPECT_EQ(relatives[0].next, nullptr);
  EXPECT_EQ(relatives[1].prev, nullptr);
  EXPECT_EQ(relatives[2].child, nullptr);
  EXPECT_EQ(list.used, 1u);
  EXPECT_EQ(list.lines, 0u);
  EXPECT_EQ(list.free, list.pool + 1);
}

TEST(BlockListRequest, LinksGroupsBetweenTheirNeighbours) {
  List list;
  _BNODE* const a = list.RequestGroup(nullptr, nullptr, rect(1, 2, 3, 4));
  EXPECT_EQ(list.GetHead(), a);
  EXPECT_EQ(a->type, BLOCK_GROUP);
  EXPECT_EQ(a->child, nullptr);
  EXPECT_EQ(a->parent, nullptr);
  _BNODE* const c = list.RequestGroup(a, nullptr, rect(0, 0, 0, 0));
  _BNODE* const b = list.RequestGroup(a, c, rect(0, 0, 0, 0));
  _BNODE* const first = list.RequestGroup(nullptr, a, rect(0, 0, 0, 0));
  EXPECT_EQ(list.GetHead(), first);
  EXPECT_EQ(first->next, a);
  EXPECT_EQ(a->prev, first);
  EXPECT_EQ(a->next, b);
  EXPECT_EQ(b->prev, a);
  EXPECT_EQ(b->next, c);
  EXPECT_EQ(c->prev, b);
  EXPECT_EQ(c->next, nullptr);
  EXPECT_EQ(list.TotalGroups(), 4u);
  EXPECT_EQ(list.used, 4u);
  EXPECT_FALSE(list.IsEmpty());
}

TEST(BlockListRequest, LinksLinesAndCharactersUnderTheirParents) {
  List list;
  _BNODE* const group = list.group();
  _BNODE* const second = list.RequestLine(group, nullptr, nullptr, rect(0, 0, 0, 0));
  _BNODE* const first = list.RequestLine(group, nullptr, second, rect(0, 0, 0, 0));
  EXPECT_EQ(children(group), (Nodes{first, second}));
  EXPECT_EQ(first->type, BLOCK_LINE);
  _BNODE* const a = list.RequestCharacter(first, nullptr, nullptr, rect(1, 2, 3, 4));
  _BNODE* const c = list.RequestCharacter(first, a, nullptr, rect(0, 0, 0, 0));
  _BNODE* const b = list.RequestCharacter(first, a, c, rect(0, 0, 0, 0));
  EXPECT_EQ(children(first), (Nodes{a, b, c}));
  EXPECT_EQ(a->type, BLOCK_CHARACTER);
  EXPECT_EQ(a->child, nullptr);
  EXPECT_EQ(list.TotalGroups(), 1u);
  EXPECT_EQ(list.TotalLines(), 2u);
  EXPECT_EQ(list.TotalCharacters(), 3u);
  expect_rect(first->rect, 0, 0, 0, 0);  // a request widens nothing
}

TEST(BlockListReturn, OfANodeNeitherUnlinksNorCounts) {
  List list;
  _BNODE* const group = list.group();
  _BNODE* const line = list.line(group);
  list.ReturnNode(line);
  EXPECT_EQ(list.free, line);
  EXPECT_EQ(list.used, 1u);
  EXPECT_EQ(list.TotalLines(), 1u);
  EXPECT_EQ(group->child, line);
}

TEST(BlockListReturn, OfACharacterUnlinksIt) {
  List list;
  _BNODE* const line = list.line(list.group());
  _BNODE* nodes[5];
  for (_BNODE*& node : nodes) node = list.character(line);
  list.ReturnCharacter(nodes[2]);
  EXPECT_EQ(children(line), (Nodes{nodes[0], nodes[1], nodes[3], nodes[4]}));
  EXPECT_EQ(list.free, nodes[2]);
  list.ReturnCharacter(nodes[0]);
  EXPECT_EQ(children(line), (Nodes{nodes[1], nodes[3], nodes[4]}));
  list.ReturnCharacter(nodes[4]);
  EXPECT_EQ(children(line), (Nodes{nodes[1], nodes[3]}));
  EXPECT_EQ(list.TotalCharacters(), 2u);
  EXPECT_EQ(list.used, 4u);
  list.ReturnCharacter(nodes[1]);
  list.ReturnCharacter(nodes[3]);
  EXPECT_EQ(line->child, nullptr);
  EXPECT_EQ(list.TotalCharacters(), 0u);
}

TEST(BlockListReturn, OfALineReturnsItsCharacters) {
  List list;
  _BNODE* const group = list.group();
  _BNODE* const before = list.line(group);
  _BNODE* const line = list.line(group);
  _BNODE* const after = list.line(group);
  list.character(before);
  _BNODE* const a = list.character(line);
  _BNODE* const b = list.character(line);
  _BNODE* const c = list.character(line);
  list.ReturnLine(line);
  EXPECT_EQ(children(group), (Nodes{before, after}));
  EXPECT_EQ(list.TotalLines(), 2u);
  EXPECT_EQ(list.TotalCharacters(), 1u);
  EXPECT_EQ(list.used, 4u);
  // pushed in order, the line last: they come back the other way round
  for (const _BNODE* expected : {line, c, b, a}) EXPECT_EQ(list.request(), expected);
}

TEST(BlockListReturn, OfAGroupReturnsItsLines) {
  List list;
  _BNODE* const first = list.group();
  _BNODE* const second = list.group();
  _BNODE* const third = list.group();
  for (_BNODE* group : {first, second, third}) {
    for (int i = 0; i < 2; ++i) {
      _BNODE* const line = list.line(group);
      list.character(line);
      list.character(line);
    }
  }
  EXPECT_EQ(list.used, 21u);
  list.ReturnGroup(second);
  EXPECT_EQ(first->next, third);
  EXPECT_EQ(third->prev, first);
  EXPECT_EQ(list.GetHead(), first);
  EXPECT_EQ(list.free, second);
  list.ReturnGroup(first);
  EXPECT_EQ(list.GetHead(), third);
  EXPECT_EQ(third->prev, nullptr);
  EXPECT_EQ(list.TotalGroups(), 1u);
  EXPECT_EQ(list.TotalLines(), 2u);
  EXPECT_EQ(list.TotalCharacters(), 4u);
  EXPECT_EQ(list.used, 7u);
  list.ReturnGroup(third);
  EXPECT_TRUE(list.IsEmpty());
  EXPECT_EQ(list.used, 0u);
}

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

TEST(InitFreeList, LinksNodesAndReturnsTheLast) {
  _BNODE nodes[4] = {};
  nodes[2].next = nodes;
  nodes[3].next = nodes + 1;
  EXPECT_EQ(InitFreeList(nodes, 3), nodes + 2);
  EXPECT_EQ(nodes[0].next, nodes + 1);
  EXPECT_EQ(nodes[1].next, nodes + 2);
  EXPECT_EQ(nodes[2].next, nullptr);
  EXPECT_EQ(nodes[3].next, nodes + 1);
  EXPECT_EQ(InitFreeList(nodes, 1), nodes);
  EXPECT_EQ(nodes[0].next, nullptr);
}

TEST(InitFreeList, OfNoNodesIsNull) {
  _BNODE node{};
  node.next = &node;
  EXPECT_EQ(InitFreeList(&node, 0), nullptr);
  EXPECT_EQ(node.next, &node);
}

TEST(SetNode, FillsEverythingButTheLabel) {
  _BNODE relatives[4] = {};
  _BNODE node{rect(9, 9, 9, 9, 9), BLOCK_GROUP, 5, 6, 7, nullptr, nullptr, nullptr, nullptr};
  SetNode(&node, rect(1, 2, 3, 4, 5), BLOCK_CHARACTER, relatives, relatives + 1, relatives + 2, relatives + 3);
  expect_rect(node.rect, 1, 2, 3, 4);
  EXPECT_EQ(node.rect.reserved, 5);
  EXPECT_EQ(node.type, BLOCK_CHARACTER);
  EXPECT_EQ(node.flags, 0);
  EXPECT_EQ(node.pixelCount, 0u);
  EXPECT_EQ(node.label, 7);
  EXPECT_EQ(node.prev, relatives);
  EXPECT_EQ(node.next, relatives + 1);
  EXPECT_EQ(node.parent, relatives + 2);
  EXPECT_EQ(node.child, relatives + 3);
}

}  // namespace
