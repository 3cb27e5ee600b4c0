/**
 * @file ground.h
 * @brief What lies around the cards: the lid, the glass, a table.
 */
#ifndef VANTREL_CLI_GROUND_H
#define VANTREL_CLI_GROUND_H

#include <string>

#include "card_search.h"

namespace tool {

enum class Ground { kUnknown, kDark, kGray, kLight, kColoured };

/** What most of the scan's frame shows where no card lies that is claimed. @throws std::bad_alloc */
Ground ground_of(const Bitmap& scan, const CardSearch& search);

/** "dark"; null when it is not known. */
Json name_of(Ground ground);

/** "a dark ground". */
std::string words_of(Ground ground);

}  // namespace tool

#endif
