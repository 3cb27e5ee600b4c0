#include "components/block_list.h"

#include <algorithm>
#include <new>

#include "components/sibling_sort.h"

namespace vantrel {
namespace {

constexpr unsigned long kPoolNodes = 10'000;

/** The pointer to a node's first sibling: in its parent, or the list head for a group. */
_BNODE*& first_sibling(_BLIST& list, _BNODE* parent) { return parent == nullptr ? list.head : parent->child; }

/** Links a new node to the neighbours that it already names. */
void link(_BLIST& list, _BNODE* node) {
  if (node->next != nullptr) node->next->prev = node;
  if (node->prev != nullptr) {
    node->prev->next = node;
  } else {
    first_sibling(list, node->parent) = node;
  }
}

/** Takes a node out of its siblings, the first of which `first` points at. */
void unlink(_BNODE*& first, const _BNODE* node) {
  if (node->next != nullptr) node->next->prev = node->prev;
  if (node->prev != nullptr) node->prev->next = node->next;
  if (first == node) first = node->next;
}

/** Widens a rectangle by another; a left or bottom of -1 does not count. */
void widen(MYRECT& rect, const MYRECT& by) {
  if (by.left != -1) rect.left = std::min(rect.left, by.left);
  if (by.bottom != -1) rect.bottom = std::min(rect.bottom, by.bottom);
  rect.right = std::max(rect.right, by.right);
  rect.top = std::max(rect.top, by.top);
}

/** Takes over the four bounds, not the fifth member. */
void take_bounds(MYRECT& rect, const MYRECT& from) {
  rect.left = from.left;
  rect.right = from.right;
  rect.top = from.top;
  rect.bottom = from.bottom;
}

/** Sorting moves every child to the front once, which widens the parent by each of them. */
template <class Before>
void sort_children(_BNODE* parent, Before before) {
  parent->child = sort_siblings(parent->child, before);
  for (const _BNODE* node = parent->child; node != nullptr; node = node->next) {
    if (node->type != BLOCK_NONE) widen(parent->rect, node->rect);
  }
}

}  // namespace
}  // namespace vantrel

bool _BLIST::Constructor(unsigned long initial, unsigned long step) {
  pool = new (std::nothrow) _BNODE[vantrel::kPoolNodes];
  if (pool == nullptr) return false;
  head = nullptr;
  capacity = vantrel::kPoolNodes;
  growthStep = step;
  prepared = std::clamp(initial, 1ul, vantrel::kPoolNodes);
  used = groups = lines = characters = 0;
  free = pool;
  InitFreeList(pool, prepared);
  return true;
}

void _BLIST::Destructor() { delete[] pool; }

_BNODE* _BLIST::GetHead() const { return head; }
bool _BLIST::IsEmpty() const { return head == nullptr; }
unsigned long _BLIST::TotalGroups() const { return groups; }
unsigned long _BLIST::TotalLines() const { return lines; }
unsigned long _BLIST::TotalCharacters() const { return characters; }

_BNODE* _BLIST::RequestNode(MYRECT rect, _BLOCKTYPE type, const _BNODE* prev, const _BNODE* next, const _BNODE* parent,
                            const _BNODE* child) {
  if (free == nullptr) {
    const unsigned long more = std::min(capacity - prepared, growthStep);
    if (more == 0) return nullptr;
    free = pool + prepared;
    InitFreeList(free, more);
    prepared += more;
  }
  _BNODE* node = free;
  free = node->next;
  ++used;
  SetNode(node, rect, type, prev, next, parent, child);
  return node;
}

_BNODE* _BLIST::RequestGroup(_BNODE* prev, _BNODE* next, MYRECT rect) {
  _BNODE* group = RequestNode(rect, BLOCK_GROUP, prev, next, nullptr, nullptr);
  if (group == nullptr) return nullptr;
  vantrel::link(*this, group);
  ++groups;
  return group;
}

_BNODE* _BLIST::RequestLine(_BNODE* parent, _BNODE* prev, _BNODE* next, MYRECT rect) {
  _BNODE* line = RequestNode(rect, BLOCK_LINE, prev, next, parent, nullptr);
  if (line == nullptr) return nullptr;
  vantrel::link(*this, line);
  ++lines;
  return line;
}

_BNODE* _BLIST::RequestCharacter(_BNODE* parent, _BNODE* prev, _BNODE* next, MYRECT rect) {
  _BNODE* character = RequestNode(rect, BLOCK_CHARACTER, prev, next, parent, nullptr);
  if (character == nullptr) return nullptr;
  vantrel::link(*this, character);
  ++characters;
  return character;
}

void _BLIST::ReturnNode(_BNODE* node) {
  node->next = free;
  free = node;
  --used;
}

void _BLIST::ReturnCharacter(_BNODE* character) {
  vantrel::unlink(vantrel::first_sibling(*this, character->parent), character);
  ReturnNode(character);
  --characters;
}

void _BLIST::ReturnLine(_BNODE* line) {
  vantrel::unlink(vantrel::first_sibling(*this, line->parent), line);
  while (line->child != nullptr) ReturnCharacter(line->child);
  ReturnNode(line);
  --lines;
}

void _BLIST::ReturnGroup(_BNODE* group) {
  vantrel::unlink(head, group);
  while (group->child != nullptr) ReturnLine(group->child);
  ReturnNode(group);
  --groups;
}

void _BLIST::ChangeLine(_BNODE* from, _BNODE* node, _BNODE* to) {
  const bool was_empty = to->child == nullptr;
  vantrel::unlink(from->child, node);
  node->next = to->child;
  node->parent = to;
  node->prev = nullptr;
  if (to->child != nullptr) to->child->prev = node;
  to->child = node;
  if (node->type == BLOCK_NONE) return;
  if (was_empty) {
    vantrel::take_bounds(to->rect, node->rect);
  } else {
    vantrel::widen(to->rect, node->rect);
  }
}

void _BLIST::SortCharacter(_BNODE* parent, bool ascending) {
  if (ascending) {
    vantrel::sort_children(parent, [](const _BNODE& a, const _BNODE& b) { return a.rect.right < b.rect.right; });
  } else {
    vantrel::sort_children(parent, [](const _BNODE& a, const _BNODE& b) { return a.rect.right > b.rect.right; });
  }
}

void SortCharacter(_BLIST& /*list*/, _BNODE* parent) {
  vantrel::sort_children(parent, [](const _BNODE& a, const _BNODE& b) { return a.rect.bottom < b.rect.bottom; });
}

void _BLIST::AdjustGroupData(_BNODE* group) {
  _BNODE* following = nullptr;
  for (_BNODE* line = group->child; line != nullptr; line = following) {
    following = line->next;
    if (line->child == nullptr) {
      ReturnLine(line);
      continue;
    }
    MYRECT all = line->rect;
    // Rows and columns count from 0 and stay below 9999 on the images that this serves.
    vantrel::take_bounds(all, {9999, 0, 0, 9999, 0});
    for (_BNODE* character = line->child; character != nullptr; character = character->next) {
      character->type = BLOCK_CHARACTER;
      character->parent = line;
      all.left = std::min(all.left, character->rect.left);
      all.right = std::max(all.right, character->rect.right);
      all.top = std::max(all.top, character->rect.top);
      all.bottom = std::min(all.bottom, character->rect.bottom);
    }
    line->rect = all;
    line->type = BLOCK_LINE;
  }
}

_BNODE* InitFreeList(_BNODE* nodes, unsigned long n) {
  if (n == 0) return nullptr;
  for (unsigned long i = 0; i + 1 < n; ++i) nodes[i].next = &nodes[i + 1];
  nodes[n - 1].next = nullptr;
  return &nodes[n - 1];
}

void SetNode(_BNODE* node, MYRECT rect, _BLOCKTYPE type, const _BNODE* prev, const _BNODE* next, const _BNODE* parent,
             const _BNODE* child) {
  node->rect = rect;
  node->type = type;
  node->flags = 0;
  node->pixelCount = 0;
  // A node links its relatives for writing, though it is handed them for reading.
  node->prev = const_cast<_BNODE*>(prev);
  node->next = const_cast<_BNODE*>(next);
  node->parent = const_cast<_BNODE*>(parent);
  node->child = const_cast<_BNODE*>(child);
}
