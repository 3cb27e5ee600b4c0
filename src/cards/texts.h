/**
 * @file texts.h
 * @brief Sentences for people, and names.
 */
#ifndef VANTREL_CARDS_TEXTS_H
#define VANTREL_CARDS_TEXTS_H

#include "vantrel_cards.h"

namespace vantrel::cards {

const char* text_of(vantrel_status status);
const char* text_of(vantrel_reason reason);

/** Null when there is no such method. */
const char* name_of(vantrel_method method);

}  // namespace vantrel::cards

#endif
