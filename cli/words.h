/**
 * @file words.h
 * @brief Names and sentences that several commands share.
 */
#ifndef VANTREL_CLI_WORDS_H
#define VANTREL_CLI_WORDS_H

#include <vantrel_cards.h>

#include <array>
#include <string>

namespace tool {

/** By vantrel_side_index. */
inline constexpr std::array kSideNames = {"top", "bottom", "left", "right"};

/** A number as printf writes it by the format of one double. */
std::string rounded(double value, const char* format);

/** Why there is no card: the library's sentence, with the number that bounds what it takes. */
std::string words_of(vantrel_reason reason);

/** What to try where there is no card for this reason; empty where nothing helps. */
std::string advice_for(vantrel_reason reason);

}  // namespace tool

#endif
