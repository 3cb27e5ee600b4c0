/**
 * @file block_list.h
 * @brief A block list that is constructed and destroyed with its scope, and filled in a line each.
 */
#ifndef VANTREL_TESTS_SUPPORT_BLOCK_LIST_H
#define VANTREL_TESTS_SUPPORT_BLOCK_LIST_H

#include <gtest/gtest.h>

#include <cstdint>

#include "components/exports.h"

namespace support {

inline MYRECT rect(int left, int top, int right, int bottom, int reserved = 0) {
  return {static_cast<std::int16_t>(left), static_cast<std::int16_t>(top), static_cast<std::int16_t>(right),
          static_cast<std::int16_t>(bottom), static_cast<std::int16_t>(reserved)};
}

/** The list; what is added goes behind the last of its kind. */
struct List : _BLIST {
  explicit List(unsigned long initial = 500, unsigned long step = 100) : _BLIST{} {
    EXPECT_TRUE(Constructor(initial, step));
  }
  List(const List&) = delete;
  List& operator=(const List&) = delete;
  ~List() { Destructor(); }

  _BNODE* request() { return RequestNode(rect(0, 0, 0, 0), BLOCK_CHARACTER, nullptr, nullptr, nullptr, nullptr); }
  _BNODE* group() { return RequestGroup(last_of(head), nullptr, rect(0, 0, 0, 0)); }
  _BNODE* line(_BNODE* parent, MYRECT r = rect(0, 0, 0, 0)) {
    return RequestLine(parent, last_of(parent->child), nullptr, r);
  }
  _BNODE* character(_BNODE* parent, MYRECT r = rect(0, 0, 0, 0)) {
    return RequestCharacter(parent, last_of(parent->child), nullptr, r);
  }

 private:
  static _BNODE* last_of(_BNODE* node) {
    while (node != nullptr && node->next != nullptr) node = node->next;
    return node;
  }
};

/** The only line of a list, as the component extraction leaves it, and the pieces on it. */
class Pieces {
 public:
  Pieces() : line_(list_.line(list_.group())) {}

  /** `count` pieces of width x height pixels whose first column and first memory row are given. */
  Pieces& add(int width, int height, int left, int bottom, int count = 1) {
    for (int i = 0; i < count; ++i) {
      // Behind the last one at once: there are tests with many.
      last_ = list_.RequestCharacter(line_, last_, nullptr, rect(left, bottom + height - 1, left + width - 1, bottom));
    }
    return *this;
  }
  _BNODE* line() { return line_; }

 private:
  List list_;
  _BNODE* line_;
  _BNODE* last_ = nullptr;
};

}  // namespace support

#endif
