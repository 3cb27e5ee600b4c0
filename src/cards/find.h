/**
 * @file find.h
 * @brief Looking for cards on a scan, method by method, or by what is surest.
 *
 * Every method writes what it found, or why it found nothing, into one record. What it returns is VANTREL_OK or
 * VANTREL_ERROR_MEMORY.
 */
#ifndef VANTREL_CARDS_FIND_H
#define VANTREL_CARDS_FIND_H

#include <span>

#include "cards/findings.h"

namespace vantrel::cards {

/** What to find, and how: checked options. */
struct Request {
  std::span<const vantrel_method> methods; /**< none: what is surest */
  double analysis_dpi = 0.0;
  std::size_t most_cards = kMostCards;
  bool straighten = false;
};

/** Tries the methods in turn until one finds a card, or takes what is surest. */
vantrel_status find(const vantrel_image& scan, const Request& request, vantrel_cards& found);

vantrel_status find_on_dark_glass(const vantrel_image& scan, const Request& request, vantrel_cards& found);
vantrel_status find_on_flat_light(const vantrel_image& scan, const Request& request, vantrel_cards& found);
vantrel_status find_on_sheet(const vantrel_image& scan, const Request& request, vantrel_cards& found);
vantrel_status find_anywhere(const vantrel_image& scan, const Request& request, vantrel_cards& found);

}  // namespace vantrel::cards

#endif
