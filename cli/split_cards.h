/**
 * @file split_cards.h
 * @brief All the cards on a scan: by their borders, or on a sheet by the marks on them.
 */
#ifndef VANTREL_CLI_SPLIT_CARDS_H
#define VANTREL_CLI_SPLIT_CARDS_H

#include <optional>

#include "batch.h"
#include "card_options.h"
#include "card_search.h"
#include "sheet.h"

namespace tool {

struct SplitRequest {
  std::optional<vantrel_method> method; /**< none: what shows more */
  bool straighten = false;
  bool cut = true; /**< whether pictures are made */
  CardRequest cards;
};

struct SplitCards {
  CardSearch anywhere;
  Sheet sheet;           /**< without the places that show no evidence of a card */
  int without_evidence;  /**< so many places were left out */
  bool by_marks = false; /**< whether it is the sheet that counts */
};

/**
 * Drops the places of a sheet that are not as large as its cards, on which there is neither print nor a card's border,
 * or where the borders found anywhere are those of another card. Returns how many.
 */
int keep_evident(Sheet& sheet, const CardSearch& anywhere, const Bitmap& scan);

/**
 * Where nobody said that it is a sheet of cards, so many places with print make one: two or three of them may as well
 * be the paragraphs and pictures of a page.
 */
inline constexpr std::size_t kFewestByMarks = 4;

/**
 * Whether the segmentation sees more cards, kFewestByMarks at least: on a sheet whose cards have no borders, print on
 * paper on a white lid. Marks that lie on one card with borders, be they several, are that card's.
 */
bool shows_more(const Sheet& sheet, const CardSearch& anywhere);

/** @throws Failure, std::bad_alloc */
SplitCards find_split(const Bitmap& scan, const SplitRequest& request);

/** The cards by their marks, as the segmentation of a sheet finds them. They are doubtful: it sees no borders. */
Finding sheet_finding(const SplitCards& found, const SplitRequest& request, const Orientation& orientation,
                      const Bitmap& scan);

Finding split_finding(const SplitCards& found, const SplitRequest& request, const Orientation& orientation,
                      const Bitmap& scan);

}  // namespace tool

#endif
