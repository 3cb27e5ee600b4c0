/**
 * @file components_list_model.h
 * @brief The block list as a plain tree of vectors, its nodes known by their place in the pool.
 */
#ifndef VANTREL_TESTS_REFERENCE_COMPONENTS_LIST_MODEL_H
#define VANTREL_TESTS_REFERENCE_COMPONENTS_LIST_MODEL_H

#include <deque>
#include <vector>

#include "components/exports.h"

namespace reference::components {

constexpr int kNobody = -1;

/** What a handed out node holds. */
struct ModelNode {
  MYRECT rect{};
  int type = 0;
  long pixels = 0;
  int parent = kNobody;
  std::vector<int> children;
};

/** The operations of the block list on numbers of nodes. */
class ListModel {
 public:
  ListModel(int initial, int step);

  /** A node outside the tree, or nobody when the pool is exhausted. */
  int request(MYRECT rect, int type);
  /** A node of the tree behind the sibling `previous`, or in front of all when there is none. */
  int request_child(int parent, int previous, MYRECT rect, int type);
  int request_group(int previous, MYRECT rect);

  void give_back(int node);
  void remove_character(int node);
  void remove_line(int node);
  void remove_group(int node);
  void move_to_front(int from, int node, int to);
  void sort_by_right(int parent, bool ascending);
  void sort_by_bottom(int parent);
  void adjust(int group);

  ModelNode& node(int number) { return pool_.at(static_cast<std::size_t>(number)); }
  const std::vector<int>& groups() const { return groups_; }
  const std::vector<int>& free_list() const { return free_; }
  int prepared() const { return prepared_; }
  int used = 0;
  int lines = 0;
  int characters = 0;

 private:
  void unlink(int node);
  void widen(int parent, const MYRECT& rect);

  std::deque<ModelNode> pool_; /**< as many as are prepared */
  std::vector<int> groups_;
  std::vector<int> free_; /**< the next one to be handed out comes last */
  int prepared_ = 0;
  int step_ = 0;
};

}  // namespace reference::components

#endif
