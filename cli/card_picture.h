/**
 * @file card_picture.h
 * @brief The picture of a card that was found.
 */
#ifndef VANTREL_CLI_CARD_PICTURE_H
#define VANTREL_CLI_CARD_PICTURE_H

#include "card_search.h"

namespace tool {

/** A card at its own size: straightened, or as it lies where its method finds upright ones alone. */
Bitmap card_picture(const Bitmap& target, const CardSearch& search, const vantrel_card& card);

}  // namespace tool

#endif
