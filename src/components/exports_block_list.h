/**
 * @file exports_block_list.h
 * @brief The block list as the other doors of this room use it, without going through its exported operations.
 */
#ifndef VANTREL_COMPONENTS_EXPORTS_BLOCK_LIST_H
#define VANTREL_COMPONENTS_EXPORTS_BLOCK_LIST_H

#include "components/exports.h"

namespace vantrel::components {

/** The nodes that a node is linked to. */
struct Relatives {
  _BNODE* prev;
  _BNODE* next;
  _BNODE* parent;
  _BNODE* child;
};

/** Each does what the exported operation of that name does. */
_BNODE* link_free(_BNODE* nodes, unsigned long n);
void fill(_BNODE& node, const MYRECT& rect, _BLOCKTYPE type, const Relatives& relatives);
_BNODE* request_group(_BLIST& list, _BNODE* prev, _BNODE* next, const MYRECT& rect);
_BNODE* request_line(_BLIST& list, _BNODE* parent, _BNODE* prev, _BNODE* next, const MYRECT& rect);
_BNODE* request_character(_BLIST& list, _BNODE* parent, _BNODE* prev, _BNODE* next, const MYRECT& rect);
void return_character(_BLIST& list, _BNODE* character);
void return_line(_BLIST& list, _BNODE* line);
void return_group(_BLIST& list, _BNODE* group);

}  // namespace vantrel::components

#endif
