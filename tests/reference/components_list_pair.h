/**
 * @file components_list_pair.h
 * @brief The block list and its plain model, put through the same operations and compared.
 */
#ifndef VANTREL_TESTS_REFERENCE_COMPONENTS_LIST_PAIR_H
#define VANTREL_TESTS_REFERENCE_COMPONENTS_LIST_PAIR_H

#include <vector>

#include "reference/components_list_model.h"
#include "reference/components_nodes.h"
#include "support/random.h"

namespace reference::components {

/** A block list and its model, put through the same operations. */
class ListPair {
 public:
  ListPair(int initial, int step, const support::Random& random)
      : random_(random),
        model_(initial, step),
        list_(static_cast<unsigned long>(initial), static_cast<unsigned long>(step)) {}

  void any_operation();
  void compare();
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

  support::Random random_;
  ListModel model_;
  BlockList list_;
  std::vector<int> loose_;
};

}  // namespace reference::components

#endif
