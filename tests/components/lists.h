/**
 * @file lists.h
 * @brief What the tests of the block list and of the components on it look at.
 */
#ifndef VANTREL_TESTS_COMPONENTS_LISTS_H
#define VANTREL_TESTS_COMPONENTS_LISTS_H

#include <gtest/gtest.h>

#include <ostream>
#include <vector>

#include "support/block_list.h"

namespace lists {

using support::List;
using support::rect;

inline void expect_rect(const MYRECT& actual, int left, int top, int right, int bottom) {
  EXPECT_EQ(actual.left, left);
  EXPECT_EQ(actual.top, top);
  EXPECT_EQ(actual.right, right);
  EXPECT_EQ(actual.bottom, bottom);
}

using Nodes = std::vector<const _BNODE*>;

/** The children in order; the links back must agree. */
inline Nodes children(const _BNODE* parent) {
  Nodes nodes;
  const _BNODE* before = nullptr;
  for (const _BNODE* node = parent->child; node != nullptr; before = node, node = node->next) {
    EXPECT_EQ(node->prev, before);
    EXPECT_EQ(node->parent, parent);
    nodes.push_back(node);
  }
  return nodes;
}

/** What a character records. */
struct Component {
  int left, top, right, bottom;
  unsigned pixels;
  int label;
  bool operator==(const Component&) const = default;
};

inline void PrintTo(const Component& c, std::ostream* out) {
  *out << '{' << c.left << ", " << c.top << ", " << c.right << ", " << c.bottom << "; " << c.pixels << " pixels, label "
       << c.label << '}';
}

inline Component component_of(const _BNODE& node) {
  return {node.rect.left, node.rect.top, node.rect.right, node.rect.bottom, node.pixelCount, node.label};
}

}  // namespace lists

#endif
