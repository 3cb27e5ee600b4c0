/**
 * @file components_nodes.h
 * @brief Exchange between plain component records and the library's block list.
 */
#ifndef VANTREL_TESTS_REFERENCE_COMPONENTS_NODES_H
#define VANTREL_TESTS_REFERENCE_COMPONENTS_NODES_H

#include <vector>

#include "reference/components_flood.h"
#include "support/block_list.h"

namespace reference::components {

/** A block list that component records go into and come out of. */
class BlockList {
 public:
  explicit BlockList(unsigned long initial = 500, unsigned long step = 100) : list_(initial, step) {}

  _BLIST& operator*() { return list_; }
  _BLIST* operator->() { return &list_; }

  /** The only line of the only group; it is made when there is none. */
  _BNODE* line() {
    if (list_.IsEmpty()) list_.line(list_.group());
    return list_.GetHead()->child;
  }

  /** Appends a character to the only line. */
  void append(const Character& c) {
    last_ = list_.RequestCharacter(line(), last_, nullptr, support::rect(c.left, c.top, c.right, c.bottom));
    last_->pixelCount = static_cast<std::uint32_t>(c.pixels);
    last_->label = c.label;
  }

  /** The characters of the only line, in order; none when the list is empty. */
  std::vector<Character> characters() const {
    std::vector<Character> all;
    if (list_.IsEmpty()) return all;
    for (const _BNODE* node = list_.GetHead()->child->child; node != nullptr; node = node->next) {
      all.push_back({node->rect.left, node->rect.right, node->rect.bottom, node->rect.top,
                     static_cast<long>(node->pixelCount), node->label});
    }
    return all;
  }

 private:
  support::List list_;
  _BNODE* last_ = nullptr;
};

}  // namespace reference::components

#endif
