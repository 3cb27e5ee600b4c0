#include "components/exports_block_list.h"

#include <algorithm>
#include <new>

#include "components/components.h"
#include "components/exports.h"
#include "components/exports_sibling_sort.h"

namespace vantrel::components {
namespace {

constexpr unsigned long kCapacity = kPoolNodes;

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

/** Takes the first free node, after preparing more of the pool when there is none; null when it is exhausted. */
_BNODE* take_node(_BLIST& list) {
  if (list.free == nullptr) {
    const unsigned long more = std::min(list.capacity - list.prepared, list.growthStep);
    if (more == 0) return nullptr;
    list.free = list.pool + list.prepared;
    link_free(list.free, more);
    list.prepared += more;
  }
  _BNODE* node = list.free;
  list.free = node->next;
  ++list.used;
  return node;
}

void give_back(_BLIST& list, _BNODE* node) {
  node->next = list.free;
  list.free = node;
  --list.used;
}

/** Fills a node that was taken, and links it to the relatives it names. */
_BNODE* take_linked(_BLIST& list, const MYRECT& rect, _BLOCKTYPE type, _BNODE* prev, _BNODE* next, _BNODE* parent) {
  _BNODE* node = take_node(list);
  if (node == nullptr) return nullptr;
  fill(*node, rect, type, {prev, next, parent, nullptr});
  link(list, node);
  return node;
}

}  // namespace

_BNODE* link_free(_BNODE* nodes, unsigned long n) {
  if (n == 0) return nullptr;
  for (unsigned long i = 0; i + 1 < n; ++i) nodes[i].next = &nodes[i + 1];
  nodes[n - 1].next = nullptr;
  return &nodes[n - 1];
}

void fill(_BNODE& node, const MYRECT& rect, _BLOCKTYPE type, const Relatives& relatives) {
  node.rect = rect;
  node.type = type;
  node.flags = 0;
  node.pixelCount = 0;
  node.prev = relatives.prev;
  node.next = relatives.next;
  node.parent = relatives.parent;
  node.child = relatives.child;
}

_BNODE* request_group(_BLIST& list, _BNODE* prev, _BNODE* next, const MYRECT& rect) {
  _BNODE* group = take_linked(list, rect, BLOCK_GROUP, prev, next, nullptr);
  if (group != nullptr) ++list.groups;
  return group;
}

_BNODE* request_line(_BLIST& list, _BNODE* parent, _BNODE* prev, _BNODE* next, const MYRECT& rect) {
  _BNODE* line = take_linked(list, rect, BLOCK_LINE, prev, next, parent);
  if (line != nullptr) ++list.lines;
  return line;
}

_BNODE* request_character(_BLIST& list, _BNODE* parent, _BNODE* prev, _BNODE* next, const MYRECT& rect) {
  _BNODE* character = take_linked(list, rect, BLOCK_CHARACTER, prev, next, parent);
  if (character != nullptr) ++list.characters;
  return character;
}

void return_character(_BLIST& list, _BNODE* character) {
  unlink(first_sibling(list, character->parent), character);
  give_back(list, character);
  --list.characters;
}

void return_line(_BLIST& list, _BNODE* line) {
  unlink(first_sibling(list, line->parent), line);
  while (line->child != nullptr) return_character(list, line->child);
  give_back(list, line);
  --list.lines;
}

void return_group(_BLIST& list, _BNODE* group) {
  unlink(list.head, group);
  while (group->child != nullptr) return_line(list, group->child);
  give_back(list, group);
  --list.groups;
}

}  // namespace vantrel::components

namespace components = vantrel::components;

bool _BLIST::Constructor(unsigned long initial, unsigned long step) {
  pool = new (std::nothrow) _BNODE[components::kCapacity];
  if (pool == nullptr) return false;
  head = nullptr;
  capacity = components::kCapacity;
  growthStep = step;
  prepared = std::clamp(initial, 1ul, components::kCapacity);
  used = groups = lines = characters = 0;
  free = pool;
  components::link_free(pool, prepared);
  return true;
}

void _BLIST::Destructor() { delete[] pool; }

_BNODE* _BLIST::GetHead() const { return head; }
bool _BLIST::IsEmpty() const { return head == nullptr; }
unsigned long _BLIST::TotalGroups() const { return groups; }
unsigned long _BLIST::TotalLines() const { return lines; }
unsigned long _BLIST::TotalCharacters() const { return characters; }

// A node links its relatives for writing, though it is handed them for reading.
static components::Relatives relatives_of(const _BNODE* prev, const _BNODE* next, const _BNODE* parent,
                                          const _BNODE* child) {
  return {const_cast<_BNODE*>(prev), const_cast<_BNODE*>(next), const_cast<_BNODE*>(parent),
          const_cast<_BNODE*>(child)};
}

_BNODE* _BLIST::RequestNode(MYRECT rect, _BLOCKTYPE type, const _BNODE* prev, const _BNODE* next, const _BNODE* parent,
                            const _BNODE* child) {
  _BNODE* node = components::take_node(*this);
  if (node != nullptr) components::fill(*node, rect, type, relatives_of(prev, next, parent, child));
  return node;
}

_BNODE* _BLIST::RequestGroup(_BNODE* prev, _BNODE* next, MYRECT rect) {
  return components::request_group(*this, prev, next, rect);
}

_BNODE* _BLIST::RequestLine(_BNODE* parent, _BNODE* prev, _BNODE* next, MYRECT rect) {
  return components::request_line(*this, parent, prev, next, rect);
}

_BNODE* _BLIST::RequestCharacter(_BNODE* parent, _BNODE* prev, _BNODE* next, MYRECT rect) {
  return components::request_character(*this, parent, prev, next, rect);
}

void _BLIST::ReturnNode(_BNODE* node) { components::give_back(*this, node); }

void _BLIST::ReturnCharacter(_BNODE* character) { components::return_character(*this, character); }

void _BLIST::ReturnLine(_BNODE* line) { components::return_line(*this, line); }

void _BLIST::ReturnGroup(_BNODE* group) { components::return_group(*this, group); }

void _BLIST::ChangeLine(_BNODE* from, _BNODE* node, _BNODE* to) {
  const bool was_empty = to->child == nullptr;
  components::unlink(from->child, node);
  node->next = to->child;
  node->parent = to;
  node->prev = nullptr;
  if (to->child != nullptr) to->child->prev = node;
  to->child = node;
  if (node->type == BLOCK_NONE) return;
  if (was_empty) {
    components::take_bounds(to->rect, node->rect);
  } else {
    components::widen(to->rect, node->rect);
  }
}

void _BLIST::SortCharacter(_BNODE* parent, bool ascending) {
  if (ascending) {
    components::sort_children(parent, [](const _BNODE& a, const _BNODE& b) { return a.rect.right < b.rect.right; });
  } else {
    components::sort_children(parent, [](const _BNODE& a, const _BNODE& b) { return a.rect.right > b.rect.right; });
  }
}

void SortCharacter(_BLIST& /*list*/, _BNODE* parent) {
  components::sort_children(parent, [](const _BNODE& a, const _BNODE& b) { return a.rect.bottom < b.rect.bottom; });
}

void _BLIST::AdjustGroupData(_BNODE* group) {
  _BNODE* following = nullptr;
  for (_BNODE* line = group->child; line != nullptr; line = following) {
    following = line->next;
    if (line->child == nullptr) {
      components::return_line(*this, line);
      continue;
    }
    MYRECT all = line->rect;
    // Rows and columns count from 0 and stay below 9999 on the images that this serves.
    components::take_bounds(all, {9999, 0, 0, 9999, 0});
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

_BNODE* InitFreeList(_BNODE* nodes, unsigned long n) { return components::link_free(nodes, n); }

void SetNode(_BNODE* node, MYRECT rect, _BLOCKTYPE type, const _BNODE* prev, const _BNODE* next, const _BNODE* parent,
             const _BNODE* child) {
  components::fill(*node, rect, type, relatives_of(prev, next, parent, child));
}
