/**
 * @file components_nodes.h
 * @brief Exchange between plain component records and the library's block list.
 */
#ifndef VANTREL_TESTS_REFERENCE_COMPONENTS_NODES_H
#define VANTREL_TESTS_REFERENCE_COMPONENTS_NODES_H

#include <vector>

#include "components/exports.h"
#include "reference/components_flood.h"

namespace reference::components {

/** A block list that is destroyed at the end of the scope. */
class BlockList {
 public:
  explicit BlockList(unsigned long initial = 500, unsigned long step = 100) { list_.Constructor(initial, step); }
  BlockList(const BlockList&) = delete;
  BlockList& operator=(const BlockList&) = delete;
  ~BlockList() { list_.Destructor(); }

  _BLIST& operator*() { return list_; }
  _BLIST* operator->() { return &list_; }

  /** The only line of the only group; it is made when there is none. */
  _BNODE* line() {
    if (list_.IsEmpty()) list_.RequestLine(list_.RequestGroup(nullptr, nullptr, MYRECT{}), nullptr, nullptr, MYRECT{});
    return list_.GetHead()->child;
  }

  /** Appends a character to the only line. */
  void append(const Character& c) {
    const MYRECT rect{static_cast<short>(c.left), static_cast<short>(c.top), static_cast<short>(c.right),
                      static_cast<short>(c.bottom), 0};
    last_ = list_.RequestCharacter(line(), last_, nullptr, rect);
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
  _BLIST list_{};
  _BNODE* last_ = nullptr;
};

}  // namespace reference::components

#endif
