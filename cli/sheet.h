/**
 * @file sheet.h
 * @brief The cards on a scanned sheet.
 */
#ifndef VANTREL_CLI_SHEET_H
#define VANTREL_CLI_SHEET_H

#include <string>
#include <vector>

#include "bitmap.h"
#include "canvas.h"
#include "report.h"

namespace tool {

struct SheetCard {
  vantrel_sheet_card seen;
  vantrel_quad corners;
};

struct Sheet {
  vantrel_reason reason;
  std::vector<SheetCard> cards; /**< in reading order */
};

/** How the cards of a sheet are looked for. */
struct SheetRequest {
  bool straighten = false; /**< by each card's own corners */
  int most_cards = 0;      /**< 0: as many as there are */
};

/** Finds the cards on a sheet. @throws Failure, std::bad_alloc */
Sheet find_sheet_cards(const Bitmap& scan, const SheetRequest& request);

/** Takes a card out of the sheet: straightened where its own corners were found, otherwise as it lies. */
Bitmap take_card(const Bitmap& scan, const SheetCard& card);

/** result; and cards, each with its column and its rectangle. */
Json json_of(const Sheet& sheet);

/** Frames and numbers the cards. */
void draw(const Sheet& sheet, Canvas& canvas, Colour colour);

/** Why a sheet has no cards. */
std::string reason_without_cards(const Sheet& sheet, const Bitmap& scan);

}  // namespace tool

#endif
