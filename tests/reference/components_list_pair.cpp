#include "reference/components_list_pair.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace reference::components {
namespace {

bool same_rect(const MYRECT& p, const MYRECT& q) {
  return p.left == q.left && p.top == q.top && p.right == q.right && p.bottom == q.bottom && p.reserved == q.reserved;
}

}  // namespace

MYRECT ListPair::random_rect() {
  const auto number = [this] { return static_cast<short>(random_.pick(-3, 12)); };
  return {number(), number(), number(), number(), number()};
}

/** The sibling that follows `previous`; the first when there is none. */
int ListPair::behind(const std::vector<int>& siblings, int previous) {
  if (previous == kNobody) return siblings.empty() ? kNobody : siblings.front();
  const auto found = std::find(siblings.begin(), siblings.end(), previous) + 1;
  return found == siblings.end() ? kNobody : *found;
}

/** One of them, or nobody for the place in front of all. */
int ListPair::some_sibling(const std::vector<int>& siblings) {
  const int place = random_.pick(0, static_cast<int>(siblings.size()));
  return place == 0 ? kNobody : siblings.at(static_cast<std::size_t>(place - 1));
}

int ListPair::some_group() {
  if (model_.groups().empty()) return kNobody;
  return model_.groups().at(random_.bits() % model_.groups().size());
}

int ListPair::some_line() {
  const int group = some_group();
  if (group == kNobody || model_.node(group).children.empty()) return kNobody;
  return model_.node(group).children.at(random_.bits() % model_.node(group).children.size());
}

int ListPair::some_character() {
  const int line = some_line();
  if (line == kNobody || model_.node(line).children.empty()) return kNobody;
  return model_.node(line).children.at(random_.bits() % model_.node(line).children.size());
}

void ListPair::request_group() {
  const MYRECT rect = random_rect();
  const int previous = some_sibling(model_.groups());
  const int next = behind(model_.groups(), previous);
  expect_node(model_.request_group(previous, rect), list_->RequestGroup(at(previous), at(next), rect));
}

void ListPair::request_line() {
  const int group = some_group();
  if (group == kNobody) return;
  const MYRECT rect = random_rect();
  const int previous = some_sibling(model_.node(group).children);
  const int next = behind(model_.node(group).children, previous);
  expect_node(model_.request_child(group, previous, rect, BLOCK_LINE),
              list_->RequestLine(at(group), at(previous), at(next), rect));
}

void ListPair::request_character(int line, int previous) {
  if (line == kNobody) return;
  const MYRECT rect = random_rect();
  const int next = behind(model_.node(line).children, previous);
  const int expected = model_.request_child(line, previous, rect, BLOCK_CHARACTER);
  expect_node(expected, list_->RequestCharacter(at(line), at(previous), at(next), rect));
  if (expected != kNobody && random_.chance(10)) {
    model_.node(expected).type = BLOCK_NONE;
    at(expected)->type = BLOCK_NONE;
  }
}

/** Takes a node that is in no tree, or gives one back. */
void ListPair::loose_node() {
  if (!loose_.empty() && random_.chance(50)) {
    model_.give_back(loose_.back());
    list_->ReturnNode(at(loose_.back()));
    loose_.pop_back();
    return;
  }
  const MYRECT rect = random_rect();
  const int expected = model_.request(rect, BLOCK_LINE);
  const _BNODE* parent = at(some_group());
  const _BNODE* child = at(some_character());
  const _BNODE* actual = list_->RequestNode(rect, BLOCK_LINE, nullptr, nullptr, parent, child);
  expect_node(expected, actual);
  if (expected == kNobody) return;
  loose_.push_back(expected);
  ASSERT_TRUE(same_rect(actual->rect, rect));
  ASSERT_EQ(actual->parent, parent);
  ASSERT_EQ(actual->child, child);
  ASSERT_EQ(actual->pixelCount, 0u);
  ASSERT_EQ(actual->flags, 0);
  at(expected)->pixelCount = 7;  // what is left in a returned node must not come back
  at(expected)->flags = 7;
}

void ListPair::move_character() {
  const int character = some_character();
  const int to = some_line();
  if (character == kNobody || to == kNobody) return;
  const int from = model_.node(character).parent;
  model_.move_to_front(from, character, to);
  list_->ChangeLine(at(from), at(character), at(to));
}

void ListPair::move_line() {
  const int line = some_line();
  const int to = some_group();
  if (line == kNobody) return;
  const int from = model_.node(line).parent;
  model_.move_to_front(from, line, to);
  list_->ChangeLine(at(from), at(line), at(to));
}

void ListPair::sort() {
  const int parent = random_.chance(80) ? some_line() : some_group();
  if (parent == kNobody) return;
  const int order = random_.pick(0, 2);
  if (order == 2) {
    model_.sort_by_bottom(parent);
    SortCharacter(*list_, at(parent));
  } else {
    model_.sort_by_right(parent, order == 1);
    list_->SortCharacter(at(parent), order == 1);
  }
}

void ListPair::any_operation() {
  const int which = random_.pick(0, 99);
  if (which < 5) return request_group();
  if (which < 20) return request_line();
  if (which < 60) {
    const int line = some_line();
    return request_character(line, line == kNobody ? kNobody : some_sibling(model_.node(line).children));
  }
  if (which < 66) return loose_node();
  if (which < 76) return move_character();
  if (which < 80) return move_line();
  if (which < 85) return sort();
  if (which < 87) {
    const int group = some_group();
    if (group == kNobody) return;
    model_.adjust(group);
    return list_->AdjustGroupData(at(group));
  }
  if (which < 96) {
    const int character = some_character();
    if (character == kNobody) return;
    model_.remove_character(character);
    return list_->ReturnCharacter(at(character));
  }
  if (which < 99) {
    const int line = some_line();
    if (line == kNobody) return;
    model_.remove_line(line);
    return list_->ReturnLine(at(line));
  }
  const int group = some_group();
  if (group == kNobody) return;
  model_.remove_group(group);
  list_->ReturnGroup(at(group));
}

void ListPair::compare_siblings(const std::vector<int>& expected, const _BNODE* first, int parent) {
  const _BNODE* node = first;
  const _BNODE* before = nullptr;
  for (const int number : expected) {
    ASSERT_EQ(number, number_of(node));
    ASSERT_EQ(node->prev, before);
    ASSERT_EQ(node->parent, at(parent));
    const ModelNode& model = model_.node(number);
    ASSERT_TRUE(same_rect(model.rect, node->rect)) << "node " << number;
    ASSERT_EQ(model.type, node->type);
    ASSERT_EQ(model.pixels, static_cast<long>(node->pixelCount));
    ASSERT_EQ(node->flags, 0);
    compare_siblings(model.children, node->child, number);
    if (testing::Test::HasFatalFailure()) return;
    before = node;
    node = node->next;
  }
  ASSERT_EQ(node, nullptr);
}

void ListPair::compare() {
  compare_siblings(model_.groups(), list_->GetHead(), kNobody);
  if (testing::Test::HasFatalFailure()) return;
  ASSERT_EQ(list_->IsEmpty(), model_.groups().empty());
  ASSERT_EQ(list_->TotalGroups(), model_.groups().size());
  ASSERT_EQ(list_->TotalLines(), static_cast<unsigned long>(model_.lines));
  ASSERT_EQ(list_->TotalCharacters(), static_cast<unsigned long>(model_.characters));
  ASSERT_EQ(list_->used, static_cast<unsigned long>(model_.used));
  ASSERT_EQ(list_->prepared, static_cast<unsigned long>(model_.prepared()));
  const _BNODE* node = list_->free;
  for (auto number = model_.free_list().rbegin(); number != model_.free_list().rend(); ++number) {
    ASSERT_EQ(*number, number_of(node));
    node = node->next;
  }
  ASSERT_EQ(node, nullptr);
}

}  // namespace reference::components
