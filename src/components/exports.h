/**
 * @file exports.h
 * @brief Doors: the block list (a tree of groups, lines and characters in one fixed pool of nodes), and the components
 * of an edge map stored in one.
 *
 * Components take time in proportion to the pixels, and memory for the runs of two rows and at most 10,000 characters.
 * Of the list's operations, sorting n children takes time in proportion to n log n, what returns or adjusts a subtree
 * in proportion to its nodes, and all others the same for every list.
 */
#ifndef VANTREL_COMPONENTS_EXPORTS_H
#define VANTREL_COMPONENTS_EXPORTS_H

#include <cstdint>

#include "vantrel.h"

/** What a node is. 0 is no type: moving such a node changes no rectangle. */
enum _BLOCKTYPE : std::int32_t { BLOCK_NONE = 0, BLOCK_GROUP = 2, BLOCK_LINE = 3, BLOCK_CHARACTER = 4 };

/** A group, a line or a character. In its rectangle `top` is the largest memory row, `bottom` the smallest. */
struct _BNODE {
  MYRECT rect;
  _BLOCKTYPE type;
  std::int16_t flags;       /**< cleared when handed out, otherwise unused */
  std::uint32_t pixelCount; /**< foreground pixels of a character; cleared when handed out */
  std::int32_t label;       /**< number of a character; not cleared when handed out */
  _BNODE* prev;             /**< previous sibling, null for the first */
  _BNODE* next;             /**< next sibling; in a free node the next free one */
  _BNODE* parent;           /**< null for groups */
  _BNODE* child;            /**< first child, or null */
};

/**
 * The list and its pool. A plain record: callers run `Constructor` before and `Destructor` after use. Not for
 * concurrent use; distinct lists are independent. Node arguments are trusted, except where null is mentioned.
 */
struct VANTREL_API _BLIST {
  _BNODE* pool;
  _BNODE* free;
  _BNODE* head;
  unsigned long capacity;
  unsigned long growthStep;
  unsigned long prepared; /**< pool nodes that have been linked into the free list so far */
  unsigned long used;     /**< nodes handed out and not returned */
  unsigned long groups;
  unsigned long lines;
  unsigned long characters;

  /**
   * Allocates the pool of 10,000 nodes.
   *
   * @param initial nodes prepared at once, kept within 1 and 10,000.
   * @param step    nodes prepared whenever the free list runs dry.
   * @return false when there is no memory; the pool is then null and no other member is set.
   */
  bool Constructor(unsigned long initial, unsigned long step);

  /** Releases the pool, if there is one. */
  void Destructor();

  _BNODE* GetHead() const; /**< the first group, or null */
  bool IsEmpty() const;    /**< no group */
  unsigned long TotalGroups() const;
  unsigned long TotalLines() const;
  unsigned long TotalCharacters() const;

  /** Takes a node from the free list and fills it, without linking it to its relatives. Null: the pool is exhausted. */
  _BNODE* RequestNode(MYRECT rect, _BLOCKTYPE type, const _BNODE* prev, const _BNODE* next, const _BNODE* parent,
                      const _BNODE* child);

  /** Requests a node and links it between `prev` and `next`; without `prev` it becomes the first of its siblings. */
  _BNODE* RequestGroup(_BNODE* prev, _BNODE* next, MYRECT rect);
  _BNODE* RequestLine(_BNODE* parent, _BNODE* prev, _BNODE* next, MYRECT rect);
  _BNODE* RequestCharacter(_BNODE* parent, _BNODE* prev, _BNODE* next, MYRECT rect);

  /** Puts a node on the free list without unlinking it. */
  void ReturnNode(_BNODE* node);

  /** Unlinks a node and returns it with all its descendants. */
  void ReturnCharacter(_BNODE* character);
  void ReturnLine(_BNODE* line);
  void ReturnGroup(_BNODE* group);

  /**
   * Moves a node from the children of `from` to the front of the children of `to`, whose rectangle takes over the
   * node's (when `to` was empty) or is widened by it; a `left` or `bottom` of -1 does not widen.
   */
  void ChangeLine(_BNODE* from, _BNODE* node, _BNODE* to);

  /** Orders the children by `right`; equal ones keep their order. Widens the parent's rectangle as ChangeLine does. */
  void SortCharacter(_BNODE* parent, bool ascending);

  /** Returns the empty lines of a group and makes every other line's rectangle the union of its characters'. */
  void AdjustGroupData(_BNODE* group);
};

/** Orders the children by ascending `bottom`; equal ones keep their order. Widens the parent as ChangeLine does. */
VANTREL_API void SortCharacter(_BLIST& list, _BNODE* parent);

/** Links n consecutive nodes through `next`, ending in null. Returns the last, or null for n = 0. */
VANTREL_API _BNODE* InitFreeList(_BNODE* nodes, unsigned long n);

/** Fills a node as RequestNode does. */
VANTREL_API void SetNode(_BNODE* node, MYRECT rect, _BLOCKTYPE type, const _BNODE* prev, const _BNODE* next,
                         const _BNODE* parent, const _BNODE* child);

/** A run of foreground pixels in one row. */
struct _RUN {
  unsigned short start;
  unsigned short end; /**< inclusive */
  _BNODE* node;       /**< the character it belongs to */
};

/**
 * Stores the components of an edge map as the characters of one line of one group.
 *
 * @param edge rows x cols bytes, 0 = foreground, rows padded to whole 32-bit words.
 * @param list a constructed list.
 * @return true when there is at least one component; false also for sides above 32767 and for no memory.
 */
VANTREL_API bool Gray2Bin(unsigned char* edge, _BLIST& list, int rows, int cols);

/**
 * Stores the components of a 1-bit image (foreground 0) as the characters of one line of one group, in order of
 * creation. A character's `bottom` is its first row and `top` its last. Runs for which the pool has no node are
 * dropped.
 *
 * @param bitmap width and height are read as unsigned 16-bit values.
 * @return 1 when at least one character was stored, otherwise 0.
 */
VANTREL_API int Extract_Eight_Connected_Components(BITMAPPTR bitmap, _BLIST& list);

/**
 * Adds the run [start, end) of row `row` to the component it touches in the row before, merging components that it
 * connects, or to a new one. Trusts its arguments.
 *
 * @param prevRuns, prevCount the runs of the row before; `prevIndex` is the scan position among them.
 * @param curRuns, curCount   the runs of this row so far; the run is appended.
 * @param lastChar            the last character of the line, kept up to date.
 * @param width               unused.
 * @param label               the next label, advanced for a new character.
 * @return 1, or 0 when no node was left for a new character.
 */
VANTREL_API int ECC_SetRunComponent(unsigned short start, unsigned short end, unsigned short row, _RUN* prevRuns,
                                    _RUN* curRuns, unsigned short prevCount, unsigned short& prevIndex,
                                    unsigned short& curCount, _BLIST& list, _BNODE* line, _BNODE*& lastChar,
                                    unsigned short width, int& label);

#endif
