/**
 * @file border_choice.h
 * @brief Which of several parallel lines beside a side is the card's edge.
 */
#ifndef VANTREL_ANYWHERE_BORDER_CHOICE_H
#define VANTREL_ANYWHERE_BORDER_CHOICE_H

#include <span>

#include "anywhere/line_search.h"
#include "anywhere/side_profiles.h"

namespace vantrel::anywhere {

/**
 * The outermost line parallel to one, within `reach` samples of the centre, with nearly as much evidence: cards have
 * frames printed along their borders, and hardly anything runs along a card outside it.
 */
SampleLine outermost_line(const Evidence& evidence, const SampleLine& line, int centre, int reach);

/** A thin dark line along a border, between an inner flank and an outer one. */
struct DarkLine {
  SampleLine inner;
  double width = 0.0; /**< from flank to flank, in samples; 0: there is none */
  double level = 1.0; /**< what it leaves of the light outside it */
  bool soft = false;  /**< whether its inner flank is the steeper one, or about as steep */
};

/**
 * The dark line of which `outer` is the outer flank, if there is one: darker than what lies outside it, but of the same
 * hue. A card is seen by its shadow, too, and then it is the inner flank that lies on the card's edge; of a dark rim of
 * the card's own it is the outer one.
 */
DarkLine dark_line(const SideProfiles& profiles, const Evidence& evidence, const SampleLine& outer);

/**
 * Whether dark lines along all sides of a card are its rim: alike all around, as shadows are not, and steeper outside
 * or very dark.
 */
bool is_rim(std::span<const DarkLine> sides);

}  // namespace vantrel::anywhere

#endif
