/**
 * @file exports_sibling_sort.h
 * @brief A stable merge sort of sibling nodes, in place and without allocation.
 */
#ifndef VANTREL_COMPONENTS_EXPORTS_SIBLING_SORT_H
#define VANTREL_COMPONENTS_EXPORTS_SIBLING_SORT_H

#include "components/exports.h"

namespace vantrel::components {

/** Cuts a chain after `count` nodes and returns the rest. */
inline _BNODE* cut_after(_BNODE* chain, unsigned long count) {
  for (; chain != nullptr && count > 1; --count) chain = chain->next;
  if (chain == nullptr) return nullptr;
  _BNODE* rest = chain->next;
  chain->next = nullptr;
  return rest;
}

/** Merges two sorted chains behind `tail`, the first one's nodes ahead of equal ones; returns the new tail. */
template <class Before>
_BNODE** merge_behind(_BNODE** tail, _BNODE* a, _BNODE* b, Before before) {
  while (a != nullptr || b != nullptr) {
    _BNODE*& taken = a == nullptr || (b != nullptr && before(*b, *a)) ? b : a;
    *tail = taken;
    tail = &taken->next;
    taken = taken->next;
  }
  return tail;
}

/** Sorts the siblings that start at `first` and returns the new first; equal ones keep their order. */
template <class Before>
_BNODE* sort_siblings(_BNODE* first, Before before) {
  for (unsigned long run = 1;; run *= 2) {
    unsigned long merges = 0;
    _BNODE* rest = first;
    _BNODE** tail = &first;
    while (rest != nullptr) {
      _BNODE* a = rest;
      _BNODE* b = cut_after(a, run);
      rest = cut_after(b, run);
      tail = merge_behind(tail, a, b, before);
      ++merges;
    }
    if (merges <= 1) break;
  }
  _BNODE* prev = nullptr;
  for (_BNODE* node = first; node != nullptr; node = node->next) {
    node->prev = prev;
    prev = node;
  }
  return first;
}

}  // namespace vantrel::components

#endif
