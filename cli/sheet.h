/**
 * @file sheet.h
 * @brief The cards on a scanned sheet.
 */
#ifndef VANTREL_CLI_SHEET_H
#define VANTREL_CLI_SHEET_H

#include <string>
#include <vector>

#include "canvas.h"
#include "rectangle.h"

namespace tool {

struct SheetCard {
  Rectangle rectangle;
  int column; /**< 1 or 2 */
};

struct Sheet {
  int result; /**< what CardSeg returned */
  std::vector<SheetCard> cards;
};

/**
 * Finds the cards on a sheet, in reading order: from the top down, and of two cards side by side the left one first.
 *
 * @throws std::bad_alloc
 */
Sheet find_sheet_cards(Bitmap& scan);

/** Frames and numbers the cards. */
void draw(const Sheet& sheet, Canvas& canvas, Colour colour);

/** Why a sheet has no cards. */
std::string reason_without_cards(const Sheet& sheet, const Bitmap& scan);

}  // namespace tool

#endif
