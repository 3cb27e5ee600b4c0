// The block list: its pool and the links of its tree.
#include <gtest/gtest.h>

#include "components/exports.h"
#include "components/lists.h"

namespace {

using namespace lists;

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
