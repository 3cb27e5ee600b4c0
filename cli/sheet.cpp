#include "sheet.h"

#include <algorithm>
#include <new>

namespace tool {
namespace {

constexpr int kNoMemory = -1;
constexpr int kResolutionTooLow = -3;

/** A column's cards from the top down; the library counts from the bottom of the picture upwards. */
std::vector<SheetCard> column_of(const MYRECT* rects, int count, int column, int height) {
  std::vector<SheetCard> cards;
  for (int i = count - 1; i >= 0; --i) cards.push_back({from_memory_rows(rects[i], height), column});
  return cards;
}

/** Whether the left card comes first: it lies beside the right one, or above it. */
bool left_first(const Rectangle& left, const Rectangle& right) { return left.top <= (right.top + right.bottom) / 2; }

}  // namespace

Sheet find_sheet_cards(Bitmap& scan) {
  RectRegions regions{};
  Sheet sheet{CardSeg(scan.record(), regions), {}};
  if (sheet.result == kNoMemory) throw std::bad_alloc();
  if (sheet.result != 1) return sheet;
  const auto first = column_of(regions.firstColumn, regions.firstCount, 1, scan.height());
  const auto second = column_of(regions.secondColumn, regions.secondCount, 2, scan.height());
  auto left = first.begin();
  auto right = second.begin();
  while (left != first.end() || right != second.end()) {
    const bool take_left =
        right == second.end() || (left != first.end() && left_first(left->rectangle, right->rectangle));
    sheet.cards.push_back(take_left ? *left++ : *right++);
  }
  return sheet;
}

std::string reason_without_cards(const Sheet& sheet, const Bitmap& scan) {
  if (sheet.result != kResolutionTooLow) return "no card was found on the sheet";
  const int dpi = std::min(scan.dpi_x(), scan.dpi_y());
  return (dpi == 0 ? std::string("the resolution is not known") : "the resolution is " + std::to_string(dpi) + " dpi") +
         ": sheets need 250 dpi or more (--dpi tells it)";
}

void draw(const Sheet& sheet, Canvas& canvas, Colour colour) {
  int number = 0;
  for (const SheetCard& card : sheet.cards) {
    const Rectangle& r = card.rectangle;
    canvas.frame(r.left, r.top, r.right, r.bottom, colour);
    canvas.label((r.left + r.right) / 2.0, (r.top + r.bottom) / 2.0, std::to_string(++number), colour);
  }
}

}  // namespace tool
