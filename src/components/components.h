/**
 * @file components.h
 * @brief Eight-connected components of an edge map, by run-length coding in one pass.
 */
#ifndef VANTREL_COMPONENTS_COMPONENTS_H
#define VANTREL_COMPONENTS_COMPONENTS_H

#include "components/block_list.h"

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
