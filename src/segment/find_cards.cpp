#include "segment/find_cards.h"

#include <algorithm>

#include "image/work_array.h"
#include "segment/card_window.h"
#include "segment/reduce.h"

namespace vantrel::segment {
namespace {

using geometry::Rect;
using image::WorkArray;

/** Work memory for a sheet; the passes over both columns use the same. */
struct Work {
  Work(int sheet_rows, int sheet_cols)
      : sheet(static_cast<std::size_t>(sheet_rows) * static_cast<std::size_t>(sheet_cols)),
        rows(static_cast<std::size_t>(sheet_rows)),
        bands(static_cast<std::size_t>(most_bands(sheet_rows))),
        profile(static_cast<std::size_t>(sheet_cols)) {}
  bool ready() const { return sheet.ready() && rows.ready() && bands.ready() && profile.ready(); }

  WorkArray<unsigned char> sheet;
  WorkArray<RowClass> rows;
  WorkArray<Span> bands;
  WorkArray<int> profile;
};

/** Makes the reduced black-and-white copy on which everything is decided; false when there is no memory. */
bool reduce_sheet(ConstPixels scan, int bit_count, int factor, Pixels sheet) {
  switch (bit_count) {
    case 1:
      reduce_bits(scan, sheet, factor);
      return true;
    case 8:
      reduce_gray(scan, sheet, factor);
      return binarise(sheet);
    default:
      reduce_colour(scan, sheet, factor);
      return binarise(sheet);
  }
}

ConstPixels view(ConstPixels sheet, Span strip) {
  return {sheet.data + strip.first, sheet.rows, strip.size(), sheet.stride};
}

/** The pixels from the first to the last of a span, in the scan. */
Span enlarged(Span reduced, int factor) { return {factor * reduced.first, factor * reduced.last() + 1}; }

/** A card that begins at a column of the reduced sheet, and is as long as cards are where the sheet is. */
Rect rect_in_scan(int left, Span rows, int length, int sheet_cols, int factor) {
  const Span cols = {left, std::min(left + length, sheet_cols)};
  return {enlarged(rows, factor), enlarged(cols, factor)};
}

/** Finds the cards of a strip of the sheet's columns. */
Column find_column(ConstPixels sheet, Span cols, const CardSize& size, int factor, Work& work) {
  const ConstPixels strip = view(sheet, cols);
  const std::span<RowClass> rows = work.rows.all();
  classify_rows(strip, size.dense_count, rows);
  bridge_gaps(rows, size.bridged_gap);
  const std::span<const Span> bands = collect_bands(rows, work.bands.all());

  Groups groups = merge_bands(bands, size.height);
  reassign_by_centre(bands, groups);
  balance_by_midpoint(bands, groups);
  balance_by_height(bands, groups, size);

  const std::array<Span, kMostGroups> completed = complete_heights(bands, groups, size.height, strip.rows);
  Column column;
  column.count = groups.count;
  for (int k = 0; k < groups.count; ++k) {
    const auto i = static_cast<std::size_t>(k);
    const Window window = fullest_window(strip, rows_of(bands, groups, k), size.length, work.profile.all());
    const int left = cols.first + window.cols.first;
    column.cards[i] = {rect_in_scan(left, completed[i], size.length, sheet.cols, factor), window.share};
  }
  return column;
}

}  // namespace

CardSheet find_cards(ConstPixels scan, int bit_count, float dots_per_inch) {
  CardSheet cards;
  const int factor = reduction_factor(dots_per_inch);
  const int rows = scan.rows / factor;
  const int cols = scan.cols / factor;
  if (rows <= 0 || cols <= 0) {
    cards.ready = true;
    return cards;
  }
  Work work(rows, cols);
  if (!work.ready()) return cards;
  const Pixels sheet{work.sheet.get(), rows, cols, cols};
  cards.ready = reduce_sheet(scan, bit_count, factor, sheet);
  if (!cards.ready) return cards;

  const CardSize size = card_size(dots_per_inch, factor);
  cards.two_columns = has_two_columns(sheet, size);
  if (cards.two_columns) {
    const int half = cols / 2;
    cards.columns[0] = find_column(sheet, {0, half}, size, factor, work);
    cards.columns[1] = find_column(sheet, {half, 2 * half}, size, factor, work);
  } else {
    cards.columns[0] = find_column(sheet, {0, cols}, size, factor, work);
  }
  return cards;
}

}  // namespace vantrel::segment
