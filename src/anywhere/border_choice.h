/**
 * @file border_choice.h
 * @brief Which of several parallel lines beside a side is the card's edge.
 */
#ifndef VANTREL_ANYWHERE_BORDER_CHOICE_H
#define VANTREL_ANYWHERE_BORDER_CHOICE_H

#include "anywhere/border_signal.h"
#include "anywhere/line_search.h"
#include "anywhere/side_profiles.h"

namespace vantrel::anywhere {

/**
 * The outermost line parallel to one, within `reach` samples of the centre, with nearly as much evidence: cards have
 * frames printed along their borders, and hardly anything runs along a card outside it.
 */
SampleLine outermost_line(const Evidence& evidence, const SampleLine& line, int centre, int reach);

/**
 * The inner flank of a thin dark line of which `line` is the outer flank; else `line`. A white card on a white ground
 * is seen by its shadow alone, and it is the inner flank that lies on the card's edge; of a dark rim of the card's own
 * it is the outer one.
 */
SampleLine inner_flank(const SideProfiles& profiles, const BorderSignal& signal, const SampleLine& line);

}  // namespace vantrel::anywhere

#endif
