/** The block list against a plain model of it, over long random sequences of operations. */
#include <gtest/gtest.h>

#include "components/exports.h"
#include "reference/components_list_model.h"
#include "reference/components_nodes.h"
#include "support/random.h"
#include "support/scans.h"
#include "support/tally.h"

namespace {

using reference::components::BlockList;
using reference::components::kNobody;
using reference::components::ListModel;
using reference::components::ModelNode;
using support::Random;
namespace tally = support::tally;

bool same_rect(const MYRECT& p, const MYRECT& q) {
  return p.left == q.left && p.top == q.top && p.right == q.right && p.bottom == q.bottom && p.reserved == q.reserved;
}

/** A block list and its model, put through the same operations. */
class Pair {
 public:
  Pair(int initial, int step, unsigned seed)
      : random_(seed),
        model_(initial, step),
        list_(static_cast<unsigned long>(initial), static_cast<unsigned long>(step)) {}

  void any_operation();
  void compare();
  Random& random() { return random_; }
  void request_character(int parent, int previous);
  ListModel& model() { return model_; }

 private:
  _BNODE* at(int number) { return number == kNobody ? nullptr : list_->pool + number; }
  int number_of(const _BNODE* node) { return node == nullptr ? kNobody : static_cast<int>(node - list_->pool); }
  MYRECT random_rect();
  void expect_node(int expected, const _BNODE* actual) { ASSERT_EQ(expected, number_of(actual)); }
  int behind(const std::vector<int>& siblings, int previous);
  int some_sibling(const std::vector<int>& siblings);
  int some_group();
  int some_line();
  int some_character();
  void request_group();
  void request_line();
  void loose_node();
  void move_character();
  void move_line();
  void sort();
  void compare_siblings(const std::vector<int>& expected, const _BNODE* first, int parent);

  Random random_;
  ListModel model_;
  BlockList list_;
  std::vector<int> loose_;
};

MYRECT Pair::random_rect() {
  const auto number = [this] { return static_cast<short>(random_.pick(-3, 12)); };
  return {number(), number(), number(), number(), number()};
}

/** The sibling that follows `previous`; the first when there is none. */
int Pair::behind(const std::vector<int>& siblings, int previous) {
  if (previous == kNobody) return siblings.empty() ? kNobody : siblings.front();
  const auto found = std::find(siblings.begin(), siblings.end(), previous) + 1;
  return found == siblings.end() ? kNobody : *found;
}

/** One of them, or nobody for the place in front of all. */
int Pair::some_sibling(const std::vector<int>& siblings) {
  const int place = random_.pick(0, static_cast<int>(siblings.size()));
  return place == 0 ? kNobody : siblings.at(static_cast<std::size_t>(place - 1));
}

int Pair::some_group() {
  if (model_.groups().empty()) return kNobody;
  return model_.groups().at(random_.bits() % model_.groups().size());
}

int Pair::some_line() {
  const int group = some_group();
  if (group == kNobody || model_.node(group).children.empty()) return kNobody;
  return model_.node(group).children.at(random_.bits() % model_.node(group).children.size());
}

int Pair::some_character() {
  const int line = some_line();
  if (line == kNobody || model_.node(line).children.empty()) return kNobody;
  return model_.node(line).children.at(random_.bits() % model_.node(line).children.size());
}

void Pair::request_group() {
  const MYRECT rect = random_rect();
  const int previous = some_sibling(model_.groups());
  const int next = behind(model_.groups(), previous);
  expect_node(model_.request_group(previous, rect), list_->RequestGroup(at(previous), at(next), rect));
}

void Pair::request_line() {
  const int group = some_group();
  if (group == kNobody) return;
  const MYRECT rect = random_rect();
  const int previous = some_sibling(model_.node(group).children);
  const int next = behind(model_.node(group).children, previous);
  expect_node(model_.request_child(group, previous, rect, BLOCK_LINE),
              list_->RequestLine(at(group), at(previous), at(next), rect));
}

void Pair::request_character(int line, int previous) {
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
void Pair::loose_node() {
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

void Pair::move_character() {
  const int character = some_character();
  const int to = some_line();
  if (character == kNobody || to == kNobody) return;
  const int from = model_.node(character).parent;
  model_.move_to_front(from, character, to);
  list_->ChangeLine(at(from), at(character), at(to));
}

void Pair::move_line() {
  const int line = some_line();
  const int to = some_group();
  if (line == kNobody) return;
  const int from = model_.node(line).parent;
  model_.move_to_front(from, line, to);
  list_->ChangeLine(at(from), at(line), at(to));
}

void Pair::sort() {
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

void Pair::any_operation() {
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

void Pair::compare_siblings(const std::vector<int>& expected, const _BNODE* first, int parent) {
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

void Pair::compare() {
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

TEST(BlockListReference, RandomOperations) {
  tally::reset();
  for (unsigned round = 0; round < 150; ++round) {
    SCOPED_TRACE(round);
    Random sizes(round);
    Pair pair(sizes.pick(1, 40), sizes.pick(1, 20), round);
    for (int operation = 0; operation < 200; ++operation) {
      SCOPED_TRACE(operation);
      pair.any_operation();
      pair.compare();
      if (HasFatalFailure()) return;
    }
  }
  tally::expect("list: grown", 100);
  tally::expect("list: moved without a type", 20);
  tally::expect("list: moved into others", 500);
  tally::expect("list: moved into nothing", 100);
  tally::expect("list: empty line returned", 100);
}

TEST(BlockListReference, ExhaustedPool) {
  tally::reset();
  Pair pair(500, 300, 1);
  while (pair.model().lines == 0) pair.any_operation();
  const auto first_line = [&pair] {
    for (const int group : pair.model().groups()) {
      if (!pair.model().node(group).children.empty()) return pair.model().node(group).children.front();
    }
    return kNobody;
  };
  for (int round = 0; round < 3; ++round) {
    for (int i = 0; i < 10005; ++i) pair.request_character(first_line(), kNobody);
    pair.compare();
    if (HasFatalFailure()) return;
    for (int operation = 0; operation < 15; ++operation) pair.any_operation();
    pair.compare();
    if (HasFatalFailure() || first_line() == kNobody) return;
  }
  tally::expect("list: exhausted", 10);
}

}  // namespace
